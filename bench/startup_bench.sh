#!/usr/bin/env bash
# Times the window's cold start under a virtual X server with an empty home: from exec to the first
# paint, and from there to the first scan result painted. Median of the runs.
# Usage: bench/startup_bench.sh [--runs K]   (the app from build/release/bin/lumabroom or $LUMABROOM_APP)
set -euo pipefail
cd "$(dirname "$0")/.."

# One run inside its own X server: the stamp just before exec, then the app's own stamps.
if [[ ${1:-} == --inside ]]; then
    app=$2
    exec python3 - "$app" <<'PY'
import os, subprocess, sys, time
start = time.monotonic_ns()
proc = subprocess.Popen([sys.argv[1]], stderr=subprocess.PIPE, text=True,
                        env=dict(os.environ, LUMABROOM_STARTUP_TRACE="1"))
stamps = {}
deadline = time.monotonic() + 20
for line in proc.stderr:
    parts = line.split()
    if len(parts) == 3 and parts[0] == "startup":
        stamps[parts[1]] = int(parts[2])
    if "first-result" in stamps or time.monotonic() > deadline:
        break
proc.kill()
proc.wait()
if "first-paint" not in stamps or "first-result" not in stamps:
    sys.exit("no stamps from the app")
print((stamps["first-paint"] - start) / 1e6, (stamps["first-result"] - stamps["first-paint"]) / 1e6)
PY
fi

runs=5
[[ ${1:-} == --runs ]] && runs=$2
app=${LUMABROOM_APP:-build/release/bin/lumabroom}
[[ -x $app ]] || { echo "no $app: build the target lumabroom first" >&2; exit 1; }
for tool in xvfb-run python3; do
    command -v $tool >/dev/null || { echo "the benchmark needs $tool" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
paint=() result=()
for i in $(seq "$runs"); do
    # A fresh empty home each time, so no settings or caches of an earlier run help.
    home=$work/home-$i
    mkdir -p "$home/tmp"
    read -r p r < <(HOME=$home TMPDIR=$home/tmp XDG_CONFIG_HOME=$home/.config XDG_CACHE_HOME=$home/.cache \
        xvfb-run -a -s "-screen 0 1280x800x24" "$(realpath "$0")" --inside "$(realpath "$app")")
    printf 'run %d: first paint %.1f ms, first result %.1f ms later\n' "$i" "$p" "$r"
    paint+=("$p") result+=("$r")
done
median() { printf '%s\n' "$@" | sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
printf 'median of %d: first paint %.1f ms (goal < 400), first result %.1f ms after it (goal < 100)\n' \
    "$runs" "$(median "${paint[@]}")" "$(median "${result[@]}")"
