#!/usr/bin/env bash
# Builds one fault into a copy of the committed tree and reports whether the tests catch it.
#   tools/mutate.sh FILE LINE 's/OLD/NEW/' [TESTS]    TESTS: expression for the names of the tests to run; all by default
# Exit status: 0 caught, 1 not caught, 2 wrong usage, or a fault that changes nothing or does not compile.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/setup.sh

[ $# -ge 3 ] || { sed -n '3,4s/^# *//p' "$0" >&2; exit 2; }
copy=build-mutate
[ -d "$copy" ] || git worktree add -q --detach "$copy"
cd "$copy"
git checkout -q --detach "$(git -C .. rev-parse HEAD)"
git checkout -q -- .
trap 'git checkout -q -- .' EXIT
sed -i "$2$3" "$1"
git diff --exit-code -U0 -- "$1" | tail -n +5 && { echo "mutate.sh: line $2 of $1 stays the same" >&2; exit 2; }
(build release) >mutate.log 2>&1 || { echo "mutate.sh: the fault does not compile; see $copy/mutate.log" >&2; exit 2; }
if ctest --preset release -j"$(nproc)" --stop-on-failure --no-tests=error -R "${4:-.}" >mutate.log 2>&1; then
    echo "NOT CAUGHT"
    exit 1
fi
echo "caught by $(grep -oE '[0-9]+ - [^ ]+ \((Failed|Timeout|SEGFAULT|Subprocess aborted)' mutate.log | sed -E 's/.* - (.*) \(.*/\1/' | head -n 1)"
