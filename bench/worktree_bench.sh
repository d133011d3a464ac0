#!/usr/bin/env bash
# Times worktree discovery (lumabroom-scan --worktrees --json) over generated repositories: the time
# to the first report (every git fact known) and to the last (every worktree measured), against the
# same git commands run one after another from a shell loop. See bench/README.md.
#
#   bench/worktree_bench.sh [--repos N] [--worktrees M] [--files F] [--runs K] [--keep]
#
# Defaults: 40 repositories with 4 worktrees each, 60 tracked files per checkout, 5 timed runs after
# one warm-up run of each side (so the page cache is warm for all timed runs). Needs bash 5, git,
# sqlite3, du and awk.
set -euo pipefail
export LC_ALL=C

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
repo=$(dirname "$here")
out_root=$here/out
repos=40
per_repo=4
files=60
runs=5
keep=0

usage() {
    sed -n '2,10p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//' >&2
    exit 2
}

while (($#)); do
    case $1 in
        --repos) repos=${2:?}; shift 2 ;;
        --worktrees) per_repo=${2:?}; shift 2 ;;
        --files) files=${2:?}; shift 2 ;;
        --runs) runs=${2:?}; shift 2 ;;
        --keep) keep=1; shift ;;
        -h|--help) usage ;;
        *) echo "worktree_bench: unknown argument: $1" >&2; usage ;;
    esac
done
[[ $repos =~ ^[1-9][0-9]*$ && $per_repo =~ ^[1-9][0-9]*$ && $files =~ ^[0-9]+$ && $runs =~ ^[1-9][0-9]*$ ]] || usage
((BASH_VERSINFO[0] >= 5)) || { echo "worktree_bench: needs bash 5 for EPOCHREALTIME" >&2; exit 2; }

scan=${LUMABROOM_SCAN:-$repo/build/release/bin/lumabroom-scan}
[[ -x $scan ]] || { echo "worktree_bench: no scanner at $scan (build the release preset, or set LUMABROOM_SCAN)" >&2; exit 2; }
git=$(command -v git) || { echo "worktree_bench: git is needed" >&2; exit 2; }
[[ -x /usr/bin/sqlite3 ]] || { echo "worktree_bench: /usr/bin/sqlite3 is needed" >&2; exit 2; }

# Discovery ignores working folders under /tmp by design, so the home lives in bench/out.
mkdir -p "$out_root"
work=$(mktemp -d "$out_root/worktrees.XXXXXX")
cleanup() { ((keep)) && echo "kept $work" >&2 || rm -rf "$work"; }
trap cleanup EXIT
home=$work/home
mkdir -p "$home/.codex"

export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null
export GIT_AUTHOR_NAME=bench GIT_AUTHOR_EMAIL=bench@example.invalid
export GIT_COMMITTER_NAME=bench GIT_COMMITTER_EMAIL=bench@example.invalid

# ---------------------------------------------------------------------------------------------
# The repositories: every fourth worktree state repeats, half of them in the Codex worktree folder.

echo "generating $repos repositories with $per_repo worktrees each, $files files per checkout…" >&2
seeds=()
for ((r = 1; r <= repos; r++)); do
    name=$(printf 'repo%02d' "$r")
    dir=$home/src/$name
    mkdir -p "$dir/src"
    "$git" -C "$dir" init -q -b main
    for ((f = 1; f <= files; f++)); do printf 'line %d of file %d in %s\n' "$f" "$f" "$name" >"$dir/src/file$f.txt"; done
    printf '*.bin\n' >"$dir/.gitignore"
    "$git" -C "$dir" add -A
    "$git" -C "$dir" commit -q -m start
    ((r % 2)) && "$git" -C "$dir" remote add origin "https://example.invalid/$name.git"
    for ((w = 1; w <= per_repo; w++)); do
        if ((w % 2)); then wt=$home/.codex/worktrees/$(printf '%04x' $((r * 16 + w)))/$name-w$w; else wt=$home/wt/$name-w$w; fi
        case $((w % 4)) in
            1) "$git" -C "$dir" worktree add -q -b "b$w" "$wt" ;;
            2) "$git" -C "$dir" worktree add -q -b "b$w" "$wt"; echo changed >>"$wt/src/file1.txt" ;;
            3) "$git" -C "$dir" worktree add -q --detach "$wt" main
               echo more >>"$wt/src/file2.txt"; "$git" -C "$wt" commit -q -am "only here" ;;
            0) "$git" -C "$dir" worktree add -q -b "b$w" "$wt"; echo new >"$wt/untracked.txt" ;;
        esac
        head -c $((w * 100000)) /dev/zero >"$wt/ballast.bin"
    done
    seeds+=("$dir")
done
db=$home/.codex/state_5.sqlite
{
    echo "CREATE TABLE threads(id INTEGER PRIMARY KEY, cwd TEXT);"
    for s in "${seeds[@]}"; do echo "INSERT INTO threads(cwd) VALUES('$s');"; done
} | /usr/bin/sqlite3 "$db"
expected=$((repos * per_repo))

# ---------------------------------------------------------------------------------------------
# One run of each side. Times are in seconds, from EPOCHREALTIME.

# lumabroom-scan: prints "first last reports". The first report is written in one piece, so its
# first byte marks it; the output ends right behind the last report. Reading the rest with cat, not
# line by line in bash, keeps the reader from holding up the scanner.
run_scan() {
    local start first last reports
    start=$EPOCHREALTIME
    {
        head -c 1 >/dev/null
        first=$EPOCHREALTIME
        cat >"$work/scan.jsonl"
        last=$EPOCHREALTIME
    } < <(HOME=$home "$scan" --worktrees --json)
    reports=$(grep -c '"report":' "$work/scan.jsonl" || true)
    awk -v s="$start" -v f="$first" -v l="$last" -v n="$reports" 'BEGIN { printf "%.4f %.4f %d\n", f - s, l - s, n }'
}

# The same git commands, one after another: the seeds from the state database, the main repository
# of each seed, the worktree list and the remotes of each repository, and status and rev-list of
# each worktree. Prints "git_seconds du_seconds worktrees"; du then measures each worktree.
run_loop() {
    local start mid end seed line count=0
    local -a found=() worktrees=()
    start=$EPOCHREALTIME
    while IFS= read -r seed; do
        [[ -n $seed ]] || continue
        found+=("$("$git" -C "$seed" rev-parse --git-common-dir)")
    done < <(/usr/bin/sqlite3 -readonly "file:$db?mode=ro" "SELECT DISTINCT cwd FROM threads;")
    for seed in "${seeds[@]}"; do
        local first=1
        while IFS= read -r line; do
            [[ $line == "worktree "* ]] || continue
            if ((first)); then first=0; continue; fi
            worktrees+=("${line#worktree }")
        done < <("$git" -C "$seed" worktree list --porcelain)
        "$git" -C "$seed" remote >/dev/null
    done
    for line in "${worktrees[@]}"; do
        "$git" -C "$line" status --porcelain=v2 --branch >/dev/null
        "$git" -C "$line" rev-list --count HEAD --not --branches --remotes >/dev/null
        count=$((count + 1))
    done
    mid=$EPOCHREALTIME
    for line in "${worktrees[@]}"; do du -sk "$line" >/dev/null; done
    end=$EPOCHREALTIME
    ((${#found[@]} == repos)) || { echo "worktree_bench: the loop found ${#found[@]} repositories" >&2; exit 1; }
    awk -v s="$start" -v m="$mid" -v e="$end" -v n="$count" 'BEGIN { printf "%.4f %.4f %d\n", m - s, e - m, n }'
}

median() { sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

echo "warm-up run of each side…" >&2
read -r _ _ reports < <(run_scan)
((reports == expected + 1)) || { echo "worktree_bench: $reports reports, expected $((expected + 1))" >&2; exit 1; }
read -r _ _ count < <(run_loop)
((count == expected)) || { echo "worktree_bench: the loop saw $count worktrees, expected $expected" >&2; exit 1; }

# The two sides alternate, and each speed-up is the median of the per-run ratios, so that a load
# that comes and goes weighs on both sides of a ratio alike.
firsts=() lasts=() loops=() dus=() first_ratios=() last_ratios=()
for ((i = 1; i <= runs; i++)); do
    read -r f l _ < <(run_scan)
    read -r g d _ < <(run_loop)
    firsts+=("$f") lasts+=("$l") loops+=("$g") dus+=("$d")
    first_ratios+=("$(awk -v a="$g" -v b="$f" 'BEGIN { print a / b }')")
    last_ratios+=("$(awk -v a="$g" -v c="$d" -v b="$l" 'BEGIN { print (a + c) / b }')")
    echo "run $i: first report ${f}s, last report ${l}s; loop: git ${g}s, du ${d}s" >&2
done

first=$(printf '%s\n' "${firsts[@]}" | median)
last=$(printf '%s\n' "${lasts[@]}" | median)
loop=$(printf '%s\n' "${loops[@]}" | median)
du_time=$(printf '%s\n' "${dus[@]}" | median)
first_ratio=$(printf '%s\n' "${first_ratios[@]}" | median)
last_ratio=$(printf '%s\n' "${last_ratios[@]}" | median)

cores=$(getconf _NPROCESSORS_ONLN 2>/dev/null || echo '?')
echo
echo "Worktree discovery: $repos repositories × $per_repo worktrees ($expected worktrees), $files files per checkout,"
echo "$cores processors, warm cache, median of $runs runs ($("$git" --version))."
echo
awk -v f="$first" -v l="$last" -v g="$loop" -v d="$du_time" -v fr="$first_ratio" -v lr="$last_ratio" 'BEGIN {
    printf "| %-44s | %10s | %10s |\n", "", "seconds", "speed-up"
    printf "| %-44s | %10s | %10s |\n", "--------------------------------------------", "----------", "----------"
    printf "| %-44s | %10.3f | %10s |\n", "shell loop: the git commands one by one", g, "1.00"
    printf "| %-44s | %10.3f | %10.2f |\n", "lumabroom-scan --worktrees: first report", f, fr
    printf "| %-44s | %10.3f | %10s |\n", "shell loop: git commands, then du -sk each", g + d, "1.00"
    printf "| %-44s | %10.3f | %10.2f |\n", "lumabroom-scan --worktrees: last report", l, lr
}'
