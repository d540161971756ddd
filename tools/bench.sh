#!/usr/bin/env bash
# Builds and runs all benches. Each prints its rows: our cost, the floor's in the same run, their ratio, the ratio wanted.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/setup.sh

install_packages
build release
for bench in build/bin/bench_*; do
    "$bench" 2>/dev/null || echo "$(basename "$bench"): a limit is missed, or the run was not whole"
done
