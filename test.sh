#!/bin/bash
# Installs what is missing, builds with warnings as errors and runs every test under CTest, in
# parallel. Arguments go to ctest. The last line is "N passed, N failed".
set -u
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd) || exit
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
ctest --test-dir "$build" --parallel "$(nproc)" --output-on-failure --output-junit "$report" "$@"
status=$?
[ -e "$report" ] || exit "$status"

summary=$(tr '\n' ' ' <"$report" | grep -o '<testsuite [^>]*>' | head -n 1)
failed=$(($(count failures) + $(count errors) + 0))
passed=$(($(count tests) - failed - $(count skipped) - $(count disabled)))
echo "$passed passed, $failed failed"
exit "$status"
