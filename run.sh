#!/usr/bin/env bash
# Sets the machine up, builds, and runs deckview with a flight-simulation host against it.
#   ./run.sh [--seconds N]
set -euo pipefail
cd "$(dirname "$0")"
. tools/setup.sh

seconds=60
while [ $# -gt 0 ]; do
    case "$1" in
        --seconds)
            [[ "${2:-}" =~ ^[1-9][0-9]*$ ]] || { echo "run.sh: --seconds takes a whole number above 0" >&2; exit 2; }
            seconds=$2
            shift 2
            ;;
        *) echo "usage: ./run.sh [--seconds N]" >&2; exit 2 ;;
    esac
done

install_packages
build release

if [ -n "${DISPLAY:-}" ]; then
    build/bin/deckview --stats &
else
    echo "There is no display: pictures of the run go to out/"
    build/bin/deckview --headless --stats --screenshot out/deck.png@60 --screenshot out/deck_last.png &
fi
viewer=$!
trap 'kill -TERM "$viewer" 2>/dev/null || true' EXIT
host_status=0
build/bin/flyhost --seconds "$seconds" || host_status=$?
viewer_status=0
kill -TERM "$viewer" 2>/dev/null || true
wait "$viewer" || viewer_status=$?
trap - EXIT

[ "$viewer_status" -eq 0 ] || die "deckview ended with status $viewer_status; its messages stand above"
[ "$host_status" -eq 0 ] || die "flyhost ended with status $host_status: no feedback came back"
[ -n "${DISPLAY:-}" ] || echo "Pictures of the run: $(ls out/deck*.png | tr '\n' ' ')"
echo "run.sh: done"
