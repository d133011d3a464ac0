#!/usr/bin/env bash
# Whether starting processes scales over the processors of this machine: N starts of /bin/true from
# one shell, against N/2 from each of two shells that run side by side, each held to a processor of
# its own. On a machine where it scales the second takes about half as long; where it does not, no
# amount of parallel git calls can beat a sequential loop by much (see bench/README.md).
#
#   bench/spawn_scaling.sh [N]        (default 400; needs bash 5 and taskset)
set -euo pipefail
n=${1:-400}
[[ $n =~ ^[1-9][0-9]*$ ]] || { sed -n '2,7p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//' >&2; exit 2; }
command -v taskset >/dev/null || { echo "spawn_scaling: taskset is needed" >&2; exit 2; }
((BASH_VERSINFO[0] >= 5)) || { echo "spawn_scaling: needs bash 5 for EPOCHREALTIME" >&2; exit 2; }

starts() { local i; for ((i = 0; i < $1; i++)); do /bin/true; done; }
export -f starts

elapsed() {
    local start=$EPOCHREALTIME
    "$@"
    awk -v s="$start" -v e="$EPOCHREALTIME" 'BEGIN { printf "%.3f", e - s }'
}
side_by_side() {
    taskset -c 0 bash -c "starts $((n / 2))" &
    taskset -c 1 bash -c "starts $((n / 2))"
    wait
}

starts 50 # warm-up
one=$(elapsed bash -c "starts $n")
two=$(elapsed side_by_side)
echo "$n starts of /bin/true: one shell ${one}s; two shells on two processors ${two}s (ratio $(awk -v a="$one" -v b="$two" 'BEGIN { printf "%.2f", a / b }'))"
