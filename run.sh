#!/bin/bash
# A CLP prompt on a simulated controller: installs what is missing, builds, provisions a run
# directory, starts the simulator and opens the prompt. Arguments go to the host program:
#   ./run.sh                            a prompt, or the lines on standard input
#   ./run.sh -c 'show /admin1'          one line; may be repeated
# Standard output carries the session's bytes alone.
set -u
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd) || exit
preset=release
. "$root/scripts/prepare.sh"

fail() {
    echo "run.sh: $*" >&2
    exit 1
}

# The simulator and the run directory go when every process that holds descriptor 7, the writing
# end of a pipe, has ended: this script and the host program. So they go however these two end.
keep_until_end() {
    setsid "$build/simulator/velclp-sim" --port 0 --model "$root/share/model" \
        --database "$run/clpsvc.db3" </dev/null >"$run/simulator.out" 2>"$run/simulator.log" &
    local simulator=$! try
    trap '' INT TERM HUP
    echo "$simulator" >"$run/simulator.pid"
    cat >/dev/null
    kill "$simulator" 2>/dev/null
    for ((try = 0; try < 100; try++)); do
        kill -0 "$simulator" 2>/dev/null || break
        sleep 0.02
    done
    kill -KILL "$simulator" 2>/dev/null
    rm -rf "$run"
}

# Prints the port once the simulator listens.
simulator_port() {
    local greeting try
    for ((try = 0; try < 400; try++)); do
        if read -r greeting 2>/dev/null <"$run/simulator.out"; then
            echo "${greeting##*:}"
            return 0
        fi
        [ ! -s "$run/simulator.pid" ] || kill -0 "$(<"$run/simulator.pid")" 2>/dev/null || break
        sleep 0.05
    done
    cat "$run/simulator.log" >&2
    return 1
}

# Runs the host program with this script's descriptors and passes on the signals that end it.
# What the terminal sends reaches it by itself.
run_host() {
    local host status
    "$build/host/velclp" --prefix "$run" --port "$port" "$@" <&0 &
    host=$!
    trap 'kill -TERM "$host" 2>/dev/null' TERM
    trap 'kill -HUP "$host" 2>/dev/null' HUP
    trap 'kill -USR1 "$host" 2>/dev/null' USR1
    trap : INT QUIT
    while :; do
        wait "$host"
        status=$?
        [ "$status" -gt 128 ] && kill -0 "$host" 2>/dev/null || return "$status"
    done
}

need_packages "${build_packages[@]}" || fail "packages are missing"
build_targets OFF host/velclp simulator/velclp-sim || fail "the build failed"

umask 077
mkdir -p "$root/run" && run=$(mktemp -d "$root/run/session.XXXXXX") || fail "no run directory"
trap 'rm -rf "$run"' EXIT
"$build/host/velclp" --provision "$run" >&2 </dev/null || fail "provisioning failed"

mkfifo "$run/alive" || fail "no pipe"
keep_until_end <"$run/alive" >/dev/null &
keeper=$!
exec 7>"$run/alive"
trap 'exec 7>&-; wait "$keeper" 2>/dev/null' EXIT
port=$(simulator_port) || fail "the simulator did not start"

if [ -z "${privileges+set}" ]; then
    export USER=admin privileges=511
fi
run_host "$@"
exit
