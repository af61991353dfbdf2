#!/bin/bash
# Runs one fuzz target under AddressSanitizer and UndefinedBehaviorSanitizer:
#   scripts/fuzz.sh NAME SECONDS [LIBFUZZER ARGUMENT...]
# New inputs are gathered in build/fuzz/corpus/NAME; what is found is left in build/fuzz/found.
# Needs clang and its runtime library (packages clang, libclang-rt-14-dev).
set -eu
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
name=${1:?"name a target of tests/fuzz"} seconds=${2:?"and say for how many seconds"}
shift 2
build=$root/build/fuzz
[ -e "$root/tests/fuzz/${name}_fuzz.cpp" ] || { echo "no target named $name" >&2; exit 2; }
[ -e "$build/build.ninja" ] ||
    cmake -G Ninja -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=clang \
        -DCMAKE_CXX_COMPILER=clang++ -DVELCLP_FUZZ=ON -DVELCLP_SANITIZE=address,undefined >&2
ninja --quiet -C "$build" "fuzz_$name" >&2

mkdir -p "$build/corpus/$name" "$build/found"
options=(-max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 -print_final_stats=1
    -artifact_prefix="$build/found/$name-")
[ ! -e "$root/tests/fuzz/dictionaries/$name.dict" ] ||
    options+=(-dict="$root/tests/fuzz/dictionaries/$name.dict")
# The simulator's statistics grow with each request, which a look for leaks behind each takes for one.
[ "$name" != sim_request ] || options+=(-detect_leaks=0)
exec "$build/tests/fuzz/fuzz_$name" "${options[@]}" "$@" \
    "$build/corpus/$name" "$root/tests/fuzz/corpus/$name"
