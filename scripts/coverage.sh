#!/bin/bash
# Lines and branches of the library that the suite reached in the coverage build, by folder:
#   ./test.sh --preset coverage && scripts/coverage.sh [BUILD_DIRECTORY]
# Branches that only an exception takes are left out. Needs gcovr.
set -eu
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build/coverage}
command -v gcovr >/dev/null || { echo "coverage.sh: gcovr is missing" >&2; exit 1; }
folders=()
for folder in core language schema addressing mapping verbs output terminal; do
    folders+=(--filter "$root/$folder/")
done
exec gcovr --root "$root" --object-directory "$build" "${folders[@]}" \
    --exclude-throw-branches --exclude-unreachable-branches --gcov-ignore-parse-errors --print-summary
