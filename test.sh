#!/usr/bin/env bash
# Sets the machine up, builds, and runs all tests.
#   ./test.sh [PRESET]    release (default), debug or sanitize
set -euo pipefail
cd "$(dirname "$0")"
. tools/setup.sh

preset=${1:-release}
install_packages
build "$preset"
# Leaks are looked for by the tests that are about memory; libraries below keep their own pools until the end.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0} UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}
ctest --preset "$preset" -j"$(nproc)" || die "tests failed; they are named above"
