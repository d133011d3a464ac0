#!/usr/bin/env bash
# The packaging checks run by ctest. Exit 77 (skipped) when a needed tool or target is missing.
set -euo pipefail

skip() { echo "skipped: $*"; exit 77; }
need() { command -v "$1" >/dev/null || skip "$1 is not installed (scripts/deps installs it)"; }

# A validator is clean when it exits 0 and prints nothing beyond its verdict.
desktop_entry() {
    need desktop-file-validate
    local out
    out=$(desktop-file-validate "$1" 2>&1) || { echo "$out"; exit 1; }
    [[ -z $out ]] || { echo "$out"; exit 1; }
}

metainfo() {
    need appstreamcli
    local out
    out=$(appstreamcli validate --no-net --no-color "$1" 2>&1) || { echo "$out"; exit 1; }
    echo "$out"
    # Any issue line looks like "W: id:line: tag"; a clean file yields only the verdict.
    if grep -qE '^[EWI]: ' <<<"$out"; then exit 1; fi
}

# Installs into a fresh prefix and compares the file list with the expected one, exactly; then
# checks that nothing installed names the build folder (no RPATH, no path to a resource there).
installed_files() {
    local cmake=$1 build=$2 expected=$3 app=$4
    [[ $(uname -s) == Linux ]] || skip "the expected list is the Linux layout"
    prefix=$(mktemp -d) # not local: the trap reads it after the function returns
    trap 'rm -rf "$prefix"' EXIT
    "$cmake" --install "$build" --prefix "$prefix" >/dev/null
    local want got
    want=$(grep -v '^#' "$expected" | while read -r when path; do
        if [[ $when == all || ( $when == app && -n $app ) ]]; then echo "$path"; fi
    done | sort)
    got=$(cd "$prefix" && find . -type f -o -type l | sed 's|^\./||' | sort)
    if [[ $want != "$got" ]]; then
        echo "installed files differ from $expected (< expected, > installed):"
        diff <(echo "$want") <(echo "$got") || true
        exit 1
    fi
    local refs
    refs=$(grep -rlF -- "$build" "$prefix" || true)
    [[ -z $refs ]] || { echo "these installed files name the build folder: $refs"; exit 1; }
    [[ -z $(find "$prefix" -perm -o+w) ]] || { echo "world-writable files installed"; exit 1; }
}

# The options of --help and the items of the man page's OPTIONS (tag lines after .TP, written \-\-name)
# must be the same set: a missing entry and a stale one are both faults.
man_page() {
    local binary=$1 page=$2
    [[ -n $binary ]] || skip "the target of this man page is not built yet"
    local help documented
    help=$(QT_QPA_PLATFORM=offscreen "$binary" --help)
    help=$(grep -E '^\s+-' <<<"$help" | grep -oE -- '--[a-zA-Z][a-zA-Z0-9-]*' | sort -u)
    [[ -n $help ]] || { echo "no option found in the output of --help"; exit 1; }
    documented=$(awk 'previous == ".TP" { print } { previous = $1 }' "$page" | sed 's/\\-/-/g' \
        | grep -oE -- '--[a-zA-Z][a-zA-Z0-9-]*' | sort -u)
    if [[ $help != "$documented" ]]; then
        echo "options of --help (<) and of $page (>) differ:"
        diff <(echo "$help") <(echo "$documented") || true
        exit 1
    fi
    echo "$(wc -w <<<"$help") options, all documented"
}

command=$1
shift
case $command in
    desktop-entry) desktop_entry "$@" ;;
    metainfo) metainfo "$@" ;;
    installed-files) installed_files "$@" ;;
    man-page) man_page "$@" ;;
    *) echo "unknown check: $command" >&2; exit 2 ;;
esac
