#!/bin/bash
# Installs what is missing, builds with warnings as errors and runs every test under CTest, in
# parallel. The last line is "N passed, N failed".
#   ./test.sh [ARGUMENT...]                   the optimised build; arguments go to ctest
#   ./test.sh --preset asan [ARGUMENT...]     another build: asan, tsan, debug, coverage
set -u
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd) || exit
preset=release
if [ "${1-}" = --preset ]; then
    preset=${2:?"--preset wants a name"}
    shift 2
fi
. "$root/scripts/prepare.sh"

test_packages=(libgtest-dev libxml2-utils sblim-wbemcli)

# Counts one attribute of the whole run in CTest's report.
count() {
    sed -n "0,/<testsuite/s/.*\\b$1=\"\\([0-9]*\\)\".*/\\1/p" <<<"$summary"
}

need_packages "${build_packages[@]}" "${test_packages[@]}" || exit
build_targets ON || exit

report="$build/tests.xml"
rm -f "$report"
# What a sanitizer finds ends the process that it is found in, with the place.
export UBSAN_OPTIONS=${UBSAN_OPTIONS-print_stacktrace=1} TSAN_OPTIONS=${TSAN_OPTIONS-halt_on_error=1}
ctest --test-dir "$build" --parallel "$(nproc)" --output-on-failure --output-junit "$report" "$@"
status=$?
[ -e "$report" ] || exit "$status"

summary=$(tr '\n' ' ' <"$report" | grep -o '<testsuite [^>]*>' | head -n 1)
failed=$(($(count failures) + $(count errors) + 0))
passed=$(($(count tests) - failed - $(count skipped) - $(count disabled)))
echo "$passed passed, $failed failed"
exit "$status"
