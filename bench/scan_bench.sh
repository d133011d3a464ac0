#!/usr/bin/env bash
# Times lumabroom-scan against du and gdu over a synthetic developer home in the macOS layout, then
# checks every size it reported against an independent count made with find. See bench/README.md.
#
#   bench/scan_bench.sh [--files N | --small] [--runs K] [--seed S] [--keep]
#   bench/scan_bench.sh --check-json SCAN.jsonl --home HOME     (the size check alone)
#
# Needs bash, coreutils, findutils, gdu, GNU time and g++; not python3 or jq.
# shellcheck disable=SC2016 # the patterns hold the variable names literally, as the catalogue does
set -euo pipefail
export LC_ALL=C

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
repo=$(dirname "$here")
out_root=$here/out
files=1000000
runs=5
seed=1
keep=0
check_json=
check_home=

usage() {
    sed -n '2,8p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//' >&2
    exit 2
}

while (($#)); do
    case $1 in
        --files) files=${2:?}; shift 2 ;;
        --small) files=20000; shift ;;
        --runs) runs=${2:?}; shift 2 ;;
        --seed) seed=${2:?}; shift 2 ;;
        --keep) keep=1; shift ;;
        --check-json) check_json=${2:?}; shift 2 ;;
        --home) check_home=${2:?}; shift 2 ;;
        -h|--help) usage ;;
        *) echo "scan_bench: unknown argument: $1" >&2; usage ;;
    esac
done
[[ $files =~ ^[0-9]+$ && $runs =~ ^[1-9][0-9]*$ && $seed =~ ^[0-9]+$ ]] || usage

mkdir -p "$out_root/bin"
work=$(mktemp -d "$out_root/work.XXXXXX")
cleanup() { rm -rf "$work"; }
trap cleanup EXIT

# The bench's own helpers, rebuilt when their source is newer; one compiler call each, no project build.
helper() {
    local name=$1 bin=$out_root/bin/$1
    if [[ ! -x $bin || $here/$name.cpp -nt $bin ]]; then
        g++ -O2 -std=c++20 "$here/$name.cpp" -o "$bin" >&2
    fi
    printf '%s\n' "$bin"
}
scan_json=$(helper scan_json)

# ---------------------------------------------------------------------------------------------
# The size check.

# The macOS catalogue: id and pattern. The two rules with a route of their own and the worktree
# rule, which has no pattern, are handled apart below.
catalogue=(
    'xcode.derived-data|~/Library/Developer/Xcode/DerivedData/*'
    'xcode.device-support|~/Library/Developer/Xcode/iOS DeviceSupport/*'
    'xcode.device-support|~/Library/Developer/Xcode/watchOS DeviceSupport/*'
    'xcode.device-support|~/Library/Developer/Xcode/tvOS DeviceSupport/*'
    'xcode.archives|~/Library/Developer/Xcode/Archives/*/*'
    'xcode.simulator-caches|~/Library/Developer/CoreSimulator/Caches'
    'xcode.xcode-caches|~/Library/Caches/com.apple.dt.Xcode'
    'xcode.previews|~/Library/Developer/Xcode/UserData/Previews/*/*'
    'xcode.xctest-devices|~/Library/Developer/XCTestDevices/*'
    'xcode.doc-cache|~/Library/Developer/Xcode/DocumentationCache'
    'xcode.simulator-devices|~/Library/Developer/CoreSimulator/Devices/????????-????-????-????-????????????'
    'pm.swiftpm|~/Library/Caches/org.swift.swiftpm'
    'pm.cocoapods|~/Library/Caches/CocoaPods'
    'pm.carthage|~/Library/Caches/org.carthage.CarthageKit'
    'pm.homebrew|~/Library/Caches/Homebrew/*'
    'pm.npm|~/.npm/_cacache'
    'pm.yarn|~/Library/Caches/Yarn'
    'pm.yarn|~/.yarn/berry/cache'
    'pm.pnpm|~/Library/pnpm/store/*'
    'pm.pnpm|~/.pnpm-store/*'
    'pm.bun|~/.bun/install/cache'
    'pm.pip|~/Library/Caches/pip'
    'pm.uv|~/Library/Caches/uv'
    'pm.uv|~/.cache/uv'
    'pm.cargo|~/.cargo/registry/cache'
    'pm.cargo|~/.cargo/registry/src'
    'pm.go-build|~/Library/Caches/go-build'
    'pm.gradle|~/.gradle/caches/*'
    'pm.maven|~/.m2/repository'
    'tool.docker|~/Library/Containers/com.docker.docker/Data/vms'
    'tool.orbstack|~/Library/Group Containers/HUAQ24HBR6.dev.orbstack/data/*.raw'
    'tool.orbstack|~/Library/Group Containers/HUAQ24HBR6.dev.orbstack/data/swap.img'
    'tool.orbstack|~/.orbstack/data'
    'tool.playwright|~/Library/Caches/ms-playwright/*'
    'tool.puppeteer|~/.cache/puppeteer/*'
    'tool.electron|~/Library/Caches/electron'
    'rt.chrome-cache|~/Library/Caches/Google/Chrome'
    'rt.arc-cache|~/Library/Caches/Arc'
    'rt.edge-cache|~/Library/Caches/Microsoft Edge'
    'rt.firefox-cache|~/Library/Caches/Firefox'
    'code.codex-sessions|~/.codex/sessions/*/*'
    'sys.tmp-folders|$TMPDIR/*'
    'sys.tmp-folders|$DARWIN_CACHE/*'
    'sys.downloads-installers|~/Downloads/*.dmg'
    'sys.downloads-installers|~/Downloads/*.pkg'
    'sys.downloads-installers|~/Downloads/*.xip'
    'sys.downloads-installers|~/Downloads/*.iso'
)

# A pattern with its variable prefix or tilde replaced; "$DARWIN_CACHE" is the temporary folder's
# parent and "/C".
resolve_pattern() {
    local pattern=$1 home=$2 tmpdir=$3
    case $pattern in
        '$TMPDIR'*) printf '%s\n' "$tmpdir${pattern#'$TMPDIR'}" ;;
        '$DARWIN_CACHE'*) printf '%s\n' "$(dirname "${tmpdir%/}")/C${pattern#'$DARWIN_CACHE'}" ;;
        '~'*) printf '%s\n' "$home${pattern#'~'}" ;;
        *) printf '%s\n' "$pattern" ;;
    esac
}

# The existing locations that one pattern denotes, NUL-separated: wildcard segments match the names
# of one folder, a leading dot only explicitly; the last step follows links, so dangling ones drop.
expand_pattern() {
    local resolved
    resolved=$(resolve_pattern "$@")
    local -a segments current=(/) next
    local segment dir match
    IFS=/ read -r -a segments <<<"$resolved"
    # No word splitting from here on: an unquoted wildcard segment is globbed but never split at blanks.
    local IFS=
    shopt -s nullglob
    shopt -u dotglob nocaseglob extglob
    for segment in "${segments[@]}"; do
        [[ -n $segment ]] || continue
        next=()
        for dir in "${current[@]}"; do
            if [[ $segment == *[\*\?\[]* ]]; then
                for match in "${dir%/}"/$segment; do
                    next+=("$match")
                done
            else
                next+=("${dir%/}/$segment")
            fi
        done
        ((${#next[@]})) || return 0
        current=("${next[@]}")
    done
    for dir in "${current[@]}"; do
        if [[ -e $dir ]]; then printf '%s\0' "$dir"; fi
    done
    return 0
}

# Allocated bytes below a root: every hard link each time, links inside not followed, a root that is
# a link followed, folders' own blocks not counted. With "exclusive", files of 2 links or more count 0.
allocated() {
    local root=$1 mode=${2:-all}
    { find -H "$root" -type f -printf '%n %b\n' 2>/dev/null || true; } |
        awk -v mode="$mode" '!(mode == "exclusive" && $1 >= 2) { s += $2 } END { printf "%.0f\n", s * 512 }'
}

# Logical bytes of the session files directly inside one agent project folder.
session_bytes() {
    { find -H "$1" -mindepth 1 -maxdepth 1 -type f -name '*.jsonl' -printf '%s\n' 2>/dev/null || true; } |
        awk '{ s += $1 } END { printf "%.0f\n", s }'
}

expected_size() {
    local id=$1 path=$2
    case $id in
        pm.pnpm) allocated "$path" exclusive ;;
        code.claude-sessions) session_bytes "$path" ;;
        tool.ollama)
            if [[ $path == */manifests/* && -f $path ]]; then
                "$scan_json" manifest "$path" || echo "unparsable"
            else
                allocated "$path"
            fi ;;
        *) allocated "$path" ;;
    esac
}

# What each rule should have found, as "id NUL path NUL" records.
expected_entries() {
    local home=$1 tmpdir=$2 row id pattern path
    for row in "${catalogue[@]}"; do
        id=${row%%|*}
        pattern=${row#*|}
        while IFS= read -r -d '' path; do
            # On Linux a temporary entry that holds a socket or FIFO belongs to something running.
            if [[ $id == sys.tmp-folders && $(uname -s) == Linux ]] &&
                [[ -n $(find "$path" -maxdepth 3 \( -type p -o -type s \) -print -quit 2>/dev/null) ]]; then
                continue
            fi
            printf '%s\0%s\0' "$id" "$path"
        done < <(expand_pattern "$pattern" "$home" "$tmpdir")
    done
    # Models: one entry per manifest whose sizes add up to more than 0; with none, the folder itself.
    local models=$home/.ollama/models found=0 total
    if [[ -d $models/manifests ]]; then
        while IFS= read -r -d '' path; do
            total=$("$scan_json" manifest "$path" 2>/dev/null) || continue
            if ((total > 0)); then
                printf '%s\0%s\0' tool.ollama "$path"
                found=1
            fi
        done < <(find "$models/manifests" -type f -print0 2>/dev/null)
    fi
    if ((!found)) && [[ -e $models ]]; then
        printf '%s\0%s\0' tool.ollama "$models"
    fi
    # Agent projects: one entry per folder whose session files hold more than 0 bytes.
    local projects=$home/.claude/projects
    if [[ -d $projects ]]; then
        while IFS= read -r -d '' path; do
            [[ -d $path ]] || continue
            total=$(session_bytes "$path")
            if ((total > 0)); then printf '%s\0%s\0' code.claude-sessions "$path"; fi
        done < <(find "$projects" -mindepth 1 -maxdepth 1 -print0 2>/dev/null)
    fi
    return 0
}

show() { printf '%q' "$1"; }

# Compares the scan's JSON lines with the independent count. Prints mismatches; returns 1 if any.
check_sizes() {
    local json=$1 home=$2 tmpdir=${2%/}/tmp/
    local records=$work/records
    if ! "$scan_json" entries "$json" >"$records"; then
        echo "sizes: cannot read the scan's output $json" >&2
        return 1
    fi
    local -A json_total json_count json_sum indep_sum got want known
    local -a rules=()
    local kind id path size total count expected bad=0 entries=0 row
    for row in "${catalogue[@]}"; do known[${row%%|*}]=1; done
    known[tool.ollama]=1
    known[code.claude-sessions]=1

    while IFS= read -r -d '' kind; do
        case $kind in
            R)
                IFS= read -r -d '' id; IFS= read -r -d '' total; IFS= read -r -d '' count
                [[ $total =~ ^[0-9]+$ ]] || { echo "MISMATCH rule $id: total '$total' is not a count of bytes"; bad=1; }
                if [[ -n ${json_count[$id]+x} ]]; then
                    echo "MISMATCH rule $id: reported twice"; bad=1
                fi
                rules+=("$id")
                json_total[$id]=$total; json_count[$id]=$count; json_sum[$id]=0; indep_sum[$id]=0
                ;;
            E)
                IFS= read -r -d '' id; IFS= read -r -d '' path; IFS= read -r -d '' size
                entries=$((entries + 1))
                if ! [[ $size =~ ^[0-9]+$ ]]; then
                    echo "MISMATCH entry $id $(show "$path"): size '$size' is not a count of bytes"
                    bad=1
                    size=0
                fi
                got[$id$'\x01'$path]=$((${got[$id$'\x01'$path]:-0} + 1))
                json_sum[$id]=$((json_sum[$id] + size))
                if [[ $id == tool.codex-worktrees || -z ${known[$id]+x} ]]; then
                    echo "note: entry of rule $id not checked: $(show "$path")"
                    continue
                fi
                expected=$(expected_size "$id" "$path")
                if [[ $expected != "$size" ]]; then
                    echo "MISMATCH entry $id $(show "$path"): scan $size, independent $expected"
                    bad=1
                fi
                if [[ $expected =~ ^[0-9]+$ ]]; then indep_sum[$id]=$((indep_sum[$id] + expected)); fi
                ;;
            *) echo "sizes: unexpected record '$kind'" >&2; return 1 ;;
        esac
    done <"$records"

    while IFS= read -r -d '' id && IFS= read -r -d '' path; do
        want[$id$'\x01'$path]=$((${want[$id$'\x01'$path]:-0} + 1))
    done < <(expected_entries "$home" "$tmpdir")

    local key
    for key in "${!want[@]}"; do
        id=${key%%$'\x01'*}
        if [[ -z ${json_count[$id]+x} ]]; then
            continue # reported once below, per rule
        fi
        if [[ ${got[$key]:-0} != "${want[$key]}" ]]; then
            echo "MISMATCH entry $id $(show "${key#*$'\x01'}"): found ${got[$key]:-0} times, expected ${want[$key]}"
            bad=1
        fi
    done
    for key in "${!got[@]}"; do
        id=${key%%$'\x01'*}
        [[ -n ${known[$id]+x} ]] || continue
        if [[ -z ${want[$key]+x} ]]; then
            echo "MISMATCH entry $id $(show "${key#*$'\x01'}"): not a location the rule's patterns denote"
            bad=1
        fi
    done
    local -A wanted_rule
    for key in "${!want[@]}"; do wanted_rule[${key%%$'\x01'*}]=1; done
    for id in "${!wanted_rule[@]}"; do
        if [[ -z ${json_count[$id]+x} ]]; then
            echo "MISMATCH rule $id: missing from the scan's output"
            bad=1
        fi
    done

    for id in "${rules[@]}"; do
        if [[ ${json_total[$id]} != "${json_sum[$id]}" ]]; then
            echo "MISMATCH rule $id: total ${json_total[$id]}, its entries add up to ${json_sum[$id]}"
            bad=1
        fi
        if [[ -n ${known[$id]+x} && ${json_total[$id]} != "${indep_sum[$id]}" ]]; then
            echo "MISMATCH rule $id: total ${json_total[$id]}, independent ${indep_sum[$id]}"
            bad=1
        fi
    done
    echo "sizes: $entries entries in ${#rules[@]} rules checked: $([[ $bad == 0 ]] && echo "all match" || echo "MISMATCHES above")"
    return "$bad"
}

if [[ -n $check_json ]]; then
    [[ -n $check_home ]] || { echo "scan_bench: --check-json needs --home" >&2; exit 2; }
    check_sizes "$check_json" "$(cd "$check_home" && pwd)"
    exit
fi

# ---------------------------------------------------------------------------------------------
# The timing.

scan=${LUMABROOM_SCAN:-$repo/build/release/bin/lumabroom-scan}
[[ -x $scan ]] || { echo "scan_bench: no scanner at $scan (build the release preset, or set LUMABROOM_SCAN)" >&2; exit 2; }
have_gdu=1
command -v gdu >/dev/null || { have_gdu=0; echo "scan_bench: gdu is not installed; its rows are left out" >&2; }
[[ -x /usr/bin/time ]] || { echo "scan_bench: /usr/bin/time is missing (Debian package 'time')" >&2; exit 2; }

# Unreadable folders must be opened up before a tree can be removed by a user who is not root.
remove_tree() {
    [[ -e $1 ]] || return 0
    find "$1" -type d ! -perm -u=rwx -exec chmod u+rwx {} \; 2>/dev/null || true
    rm -rf "$1"
}

tree=$out_root/home-$files-s$seed
if [[ -f $tree/.complete ]]; then
    echo "tree: reusing $tree"
else
    remove_tree "$tree"
    gen_home=$(helper gen_home)
    echo "tree: generating $files files in $tree"
    t0=${EPOCHREALTIME/./}
    "$gen_home" "$tree" --files "$files" --seed "$seed"
    sync -f "$tree"
    t1=${EPOCHREALTIME/./}
    echo "tree: generated in $(((t1 - t0) / 1000)) ms"
    touch "$tree/.complete"
fi
home=$tree/home
tmpdir=$home/tmp/

scan_cmd=(env -u XDG_CACHE_HOME -u XDG_DATA_HOME HOME="$home" TMPDIR="$tmpdir" "$scan" --json --catalogue macos)

# Warm pass, whose output also gives the roots for du and gdu and the sizes to check.
reference=$work/scan.jsonl
if ! "${scan_cmd[@]}" >"$reference"; then
    echo "scan_bench: the scanner failed" >&2
    exit 1
fi
roots=$work/roots
"$scan_json" entries "$reference" |
    while IFS= read -r -d '' kind; do
        if [[ $kind == R ]]; then
            IFS= read -r -d '' _; IFS= read -r -d '' _; IFS= read -r -d '' _
        else
            IFS= read -r -d '' _; IFS= read -r -d '' path; IFS= read -r -d '' _
            if [[ -e $path ]]; then printf '%s\0' "$path"; fi
        fi
    done >"$roots"
root_count=$(tr -cd '\0' <"$roots" | wc -c)
((root_count > 0)) || { echo "scan_bench: the scan found no entries" >&2; exit 1; }

# gdu takes one path and pays its start-up per path, so it is timed twice: once per root, and once
# per pattern base (the folder above a pattern's first wildcard, or the pattern's location itself),
# which covers the roots and some siblings that no pattern matches, in far fewer runs.
bases=$work/bases
for row in "${catalogue[@]}"; do
    pattern=$(resolve_pattern "${row#*|}" "$home" "$tmpdir")
    base=${pattern%%[\*\?\[]*}
    [[ $base == "$pattern" ]] || base=${base%/*}
    base=$(realpath -m -s -- "$base")
    if [[ -e $base ]]; then printf '%s\n' "$base"; fi
done | sort -u | tr '\n' '\0' >"$bases"
base_count=$(tr -cd '\0' <"$bases" | wc -c)

# du takes all roots at once and follows roots that are links, as the scanner does.
du_cmd=(xargs -0 -a "$roots" du -D -s -B1)
gdu_cmd=(env HOME="$work" xargs -0 -n1 -a "$roots" gdu --config-file /dev/null -n -p -s --no-prefix)
gdu_bases_cmd=(env HOME="$work" xargs -0 -n1 -a "$bases" gdu --config-file /dev/null -n -p -s --no-prefix)
# The yardstick: a bare two-thread getdents64 and fstatat walk of the same roots.
bare_cmd=("$(helper bare_walk)" "$roots")
"${du_cmd[@]}" >/dev/null 2>&1 || true
"${bare_cmd[@]}" >/dev/null 2>&1 || true
if ((have_gdu)); then
    "${gdu_cmd[@]}" >/dev/null 2>&1 || true
    "${gdu_bases_cmd[@]}" >/dev/null 2>&1 || true
fi

# Wall time in microseconds of one run; its peak resident memory in KiB goes to the file given.
timed() {
    local memfile=$1; shift
    local t0=${EPOCHREALTIME/./}
    /usr/bin/time -f %M -o "$memfile" "$@" >/dev/null 2>&1 || true
    local t1=${EPOCHREALTIME/./}
    echo $((t1 - t0))
}

median() { printf '%s\n' "$@" | sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
peak() {
    local m=0 v f
    for f in "$@"; do
        [[ -f $f ]] || continue
        v=$(tail -n 1 "$f")
        if [[ $v =~ ^[0-9]+$ ]] && ((v > m)); then m=$v; fi
    done
    echo "$m"
}

declare -a t_scan=() t_bare=() t_du=() t_gdu=() t_gdu_bases=() t_empty=()
for ((i = 1; i <= runs; i++)); do
    t_scan+=("$(timed "$work/mem.scan.$i" "${scan_cmd[@]}")")
    t_bare+=("$(timed "$work/mem.bare.$i" "${bare_cmd[@]}")")
    t_du+=("$(timed "$work/mem.du.$i" "${du_cmd[@]}")")
    if ((have_gdu)); then
        t_gdu+=("$(timed "$work/mem.gdu.$i" "${gdu_cmd[@]}")")
        t_gdu_bases+=("$(timed "$work/mem.gdubases.$i" "${gdu_bases_cmd[@]}")")
    else
        t_gdu+=(0)
        t_gdu_bases+=(0)
    fi
    echo "run $i/$runs: scan $((t_scan[-1] / 1000)) ms, bare walk $((t_bare[-1] / 1000)) ms, du $((t_du[-1] / 1000)) ms," \
        "gdu per root $((t_gdu[-1] / 1000)) ms, gdu per base $((t_gdu_bases[-1] / 1000)) ms"
done

# A scan of an empty home: what starting up and finding nothing costs.
empty=$work/empty
mkdir -p "$empty/home"
empty_cmd=(env -u XDG_CACHE_HOME -u XDG_DATA_HOME HOME="$empty/home" TMPDIR="$empty/home/" "$scan" --json --catalogue macos)
"${empty_cmd[@]}" >/dev/null
for ((i = 1; i <= runs; i++)); do
    t_empty+=("$(timed "$work/mem.empty.$i" "${empty_cmd[@]}")")
done

m_scan=$(median "${t_scan[@]}")
m_bare=$(median "${t_bare[@]}")
m_du=$(median "${t_du[@]}")
m_gdu=$(median "${t_gdu[@]}")
m_gdu_bases=$(median "${t_gdu_bases[@]}")
m_empty=$(median "${t_empty[@]}")
awk -v files="$files" -v seed="$seed" -v roots="$root_count" -v bases="$base_count" -v runs="$runs" -v cpus="$(nproc)" \
    -v gdu="$have_gdu" -v s="$m_scan" -v b="$m_bare" -v mb="$(peak "$work"/mem.bare.*)" -v d="$m_du" -v g="$m_gdu" -v gb="$m_gdu_bases" -v e="$m_empty" \
    -v ms="$(peak "$work"/mem.scan.*)" -v md="$(peak "$work"/mem.du.*)" -v mg="$(peak "$work"/mem.gdu.*)" \
    -v mgb="$(peak "$work"/mem.gdubases.*)" -v me="$(peak "$work"/mem.empty.*)" '
BEGIN {
    printf "\n%d files (seed %d), %d roots, warm cache, median of %d interleaved runs, %d processors\n", files, seed, roots, runs, cpus
    printf "| %-34s | %12s | %14s | %13s |\n", "tool", "median ms", "ratio to scan", "peak RSS MiB"
    printf "|%s|%s|%s|%s|\n", "------------------------------------", "--------------", "----------------", "---------------"
    printf "| %-34s | %12.1f | %14.2f | %13.1f |\n", "lumabroom-scan --json", s / 1000, 1, ms / 1024
    printf "| %-34s | %12.1f | %14.2f | %13.1f |\n", "bare walk, 2 threads (bare_walk)", b / 1000, b / s, mb / 1024
    printf "| %-34s | %12.1f | %14.2f | %13.1f |\n", "du -D -s -B1 (all roots)", d / 1000, d / s, md / 1024
    if (gdu) {
        printf "| %-34s | %12.1f | %14.2f | %13.1f |\n", "gdu -n -p -s, once per root (" roots ")", g / 1000, g / s, mg / 1024
        printf "| %-34s | %12.1f | %14.2f | %13.1f |\n", "gdu -n -p -s, once per base (" bases ")", gb / 1000, gb / s, mgb / 1024
    }
    printf "| %-34s | %12.1f | %14s | %13.1f |\n", "lumabroom-scan, empty home", e / 1000, "", me / 1024
}'
echo

status=0
check_sizes "$reference" "$home" || status=1

if ((keep)); then
    echo "tree: kept at $tree"
else
    remove_tree "$tree"
fi
exit "$status"
