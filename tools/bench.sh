#!/usr/bin/env bash
# Builds and runs the benches. Each prints its rows: our cost, the floor's in the same run, their ratio, the ratio wanted.
#   tools/bench.sh [NAME]...    all, or bench/bench_NAME.cpp
# The rows are appended to bench/results/MACHINE.csv too; MACHINE is the processor's model and its number of cores.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/setup.sh

names=("$@")
[ ${#names[@]} -gt 0 ] || mapfile -t names < <(sed 's/.*bench_\(.*\)\.cpp/\1/' < <(ls bench/bench_*.cpp))
for name in "${names[@]}"; do
    [ -f "bench/bench_$name.cpp" ] || die "there is no bench/bench_$name.cpp"
done
install_packages
build release

model=$(sed -n 's/^model name[^:]*: //p;T;q' /proc/cpuinfo)
machine=$(tr -cs '[:alnum:]' - <<<"${model:-$(uname -m)} $(nproc) cores" | tr '[:upper:]' '[:lower:]')
results=bench/results/${machine%-}.csv
commit=$(git rev-parse --short=10 HEAD 2>/dev/null || echo unknown)
git diff --quiet HEAD -- . ':!bench/results' 2>/dev/null || commit+=+  # with changes
mkdir -p bench/results
[ -f "$results" ] || echo "date,commit,bench,row,cost,unit,floor,ratio,limit" >"$results"

printed=$(mktemp)
trap 'rm -f "$printed"' EXIT
for name in "${names[@]}"; do
    "build/bin/bench_$name" 2>/dev/null | tee "$printed" || echo "bench_$name: a limit is missed, or the run was not whole"
    # The three kinds of rows: a table's with costs in ns, a cost with its limit, a picture's time.
    awk -F ' *[|] *' -v CONVFMT=%.10g -v start="$(date -u +%F),$commit,$name," '
        { gsub(",", "") }
        / quality$/ { quality = $0 ": "; sub(" quality", "", quality) }
        /^[|]/ && $2 != "" { print start $2 "," $3 + 0 ",ns," $4 + 0 "," $5 "," ($6 == "-" ? "" : $6) }
        /: [0-9.]+ .*[(]limit / {
            row = cost = limit = $0
            sub(": [0-9.]+ .*", "", row)
            cost = substr($0, length(row) + 3)
            sub(".*[(]limit ", "", limit)
            unit = cost
            sub(/^[0-9.]+ /, "", unit)
            sub(" [(].*", "", unit)
            print start row "," cost + 0 "," unit ",,," limit + 0
        }
        /ms +[0-9.]+ frames\/s/ {
            row = $0
            sub(/ +[0-9.]+ ms .*/, "", row)
            print start quality row "," substr($0, length(row) + 1) + 0 ",ms,,,"
        }' "$printed" >>"$results"
done
echo "bench.sh: rows appended to $results"
