#!/bin/bash
# Figures of whole processes: sizes, memory, time of a line and of a one-shot, growth with the number
# of objects. Run it on an optimised build and an otherwise idle machine:
#   bench/figures.sh [BUILD_DIRECTORY]
# Needs curl and, for the comparison of one-shots, wbemcli.
set -eu
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build/release}
export USER=admin privileges=511
work=$(mktemp -d)
simulator=
trap '[ -z "$simulator" ] || kill "$simulator"; rm -rf "$work"' EXIT

now() { date +%s%N; }
# milliseconds START COUNT: since START, for each of COUNT.
milliseconds() { awk -v a="$1" -v b="$(now)" -v n="$2" 'BEGIN { printf "%.3f", (b - a) / 1e6 / n }'; }
say() { printf '%-62s %s\n' "$1" "$2"; }

start_simulator() {
    rm -rf "$work/run"
    "$build/host/velclp" --provision "$work/run"
    "$build/simulator/velclp-sim" --port 0 --model "$root/share/model" \
        --database "$work/run/clpsvc.db3" "$@" >"$work/sim.out" &
    simulator=$!
    until grep -q : "$work/sim.out"; do sleep 0.05; done
    port=$(sed 's/.*://' "$work/sim.out")
}
stop_simulator() {
    kill "$simulator"
    wait "$simulator" 2>/dev/null || true
    simulator=
}
session() { "$build/host/velclp" --prefix "$work/run" --port "$port" "$@"; }
# lines COUNT LINE: LINE, COUNT times.
lines() { yes "$2" | head -n "$1" || true; }
# time_lines COUNT LINE: milliseconds a line, the session's start taken off.
time_lines() {
    local begin start
    begin=$(now); session -c version >/dev/null; start=$(($(now) - begin))
    begin=$(now); lines "$1" "$2" | session >"$work/out"
    milliseconds $((begin + start)) "$1"
}
# CPU time of the session itself, milliseconds a line.
cpu_lines() {
    lines "$1" "$2" >"$work/in"
    ( TIMEFORMAT='%U %S'; time session <"$work/in" >/dev/null ) 2>&1 |
        awk -v n="$1" '{ printf "%.3f", ($1 + $2) * 1000 / n }'
}
# peak LINES...: resident kilobytes, in the middle of a session behind these lines.
resident() {
    mkfifo "$work/in.fifo"
    "$build/host/velclp" --prefix "$work/run" --port "$port" <"$work/in.fifo" >"$work/out" &
    local pid=$! line
    exec 8>"$work/in.fifo"
    for line in "$@"; do echo "$line" >&8; done
    echo "exit -examine" >&8
    until grep -q "pass syntax" "$work/out"; do sleep 0.1; done
    awk '/VmRSS/ { rss = $2 } /VmHWM/ { hwm = $2 } END { print rss " KiB, peak " hwm " KiB" }' \
        "/proc/$pid/status"
    exec 8>&-
    wait "$pid"
    rm "$work/in.fifo"
}

cp "$(readlink -f "$build/lib/libvelclp.so")" "$work/lib.so"
strip "$work/lib.so"
say "libvelclp.so, stripped" "$(stat -c %s "$work/lib.so") bytes"

start_simulator
session -c 'show -level all /admin1' >/dev/null
say "resident: one show" "$(resident 'show /admin1/system1')"
say "resident: show -level all, the three forms" "$(resident 'show -level all /admin1' \
    'show -level all -output format=keyword /admin1' 'show -level all -output format=clpxml /admin1')"
say "show -level all /admin1, cached" "$(time_lines 20 'show -level all /admin1') ms"
say "show -display verbs of a cached target, a line" \
    "$(time_lines 1000 'show -display verbs /admin1/system1') ms"
say "show -display properties of a cached target, a line" \
    "$(time_lines 1000 'show -display properties /admin1/system1') ms"
say "  the session's own processor time of it, the client's included" \
    "$(cpu_lines 1000 'show -display properties /admin1/system1') ms"
curl -s -X DELETE "http://127.0.0.1:$port/sim/stats" >/dev/null
session -c 'show -display properties /admin1/system1' >/dev/null
say "  its CIM calls (and one for the session)" \
    "$(curl -s "http://127.0.0.1:$port/sim/stats" | grep -o '"total":[0-9]*' | head -n 1)"
begin=$(now)
for _ in $(seq 100); do session -c 'show -display verbs /admin1/system1' >/dev/null; done
say "one-shot -c of a cached target" "$(milliseconds "$begin" 100) ms"
if command -v wbemcli >/dev/null; then
    path=$(wbemcli ein "http://$USER:@127.0.0.1:$port/root/zorm:ZORM_AdminDomain" | head -n 1)
    begin=$(now)
    for _ in $(seq 100); do wbemcli gi "http://$USER:@$path" >/dev/null; done
    say "one-shot wbemcli gi of one instance" "$(milliseconds "$begin" 100) ms"
fi
# Last, since the simulator shows each job for minutes.
say "version, a line" "$(time_lines 20000 version) ms"
begin=$(now)
lines 100000 version | session >"$work/out"
say "100,000 version lines" "$(milliseconds "$begin" 100000) ms a line, $(grep -c spawned "$work/out" || true) spawned"
stop_simulator

for count in 100 1000 10000; do
    start_simulator --scale "ZORM_NumericSensor=$count:SensorNumber"
    begin=$(now); session -c 'show -level all -display targets /admin1' >"$work/out"
    say "$count sensors: show -level all, empty cache" "$(milliseconds "$begin" 1) ms"
    begin=$(now); session -c 'show -level all -display targets /admin1' >"$work/out"
    say "$count sensors: show -level all, cached" "$(milliseconds "$begin" 1) ms"
    say "$count sensors: resident behind it" "$(resident 'show -level all -display targets /admin1')"
    say "$count sensors: a cached target, a line" \
        "$(time_lines 2000 'show -display verbs /admin1/system1') ms"
    stop_simulator
done
