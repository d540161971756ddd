#!/usr/bin/env bash
# Draws the pictures of docs/gallery.md anew, with the release build.
#   tools/gallery.sh [NAME]...    all, or those named
set -euo pipefail
cd "$(dirname "$0")/.."

deckview=build/bin/deckview
[ -x "$deckview" ] || { echo "gallery.sh: $deckview is missing; ./test.sh builds it" >&2; exit 1; }

# draw NAME OPTIONS...: the picture after two seconds of the scene
draw() {
    local name=$1
    shift
    if [ ${#wanted[@]} -gt 0 ] && [[ " ${wanted[*]} " != *" $name "* ]]; then return; fi
    echo "$name"
    "$deckview" --headless --step 1/60 --frames 120 --size "${size:-1280x720}" \
        --screenshot "docs/gallery/$name.png" "$@" >/dev/null
}

# scene NAME OPTIONS...: the same without the panels
scene() {
    draw "$@" --no-panels
}

wanted=("$@")
lights=(--track airport_light_enable=100 --track airport_light_brightness=100 --track road_light=100)

scene deck --camera 112.39587,16.82388,27,52,-5 --track TOD=42
scene approach --camera 112.3698,16.8138,185,67.25,-3.5 --track TOD=40
draw cockpit --track TOD=40 --input tools/gallery/cockpit.txt
draw orbit --track TOD=40 --input tools/gallery/orbit.txt
draw free --track TOD=40 --input tools/gallery/free.txt
draw test_panel --track TOD=40 --input tools/gallery/test_panel.txt
draw help --track TOD=40 --input tools/gallery/help.txt --language en
scene runway_night --camera 112.3340,16.8335,42,67.25,-4 --track TOD=92 "${lights[@]}"
scene fog --camera 112.39587,16.82388,27,52,-5 --track TOD=42 --visibility 1500
scene rain --camera 112.39587,16.82388,27,52,-5 --track TOD=42 --track runway_wet=100 --visibility 4500
scene snow --camera 112.3345,16.8337,40,67.25,-5 --track TOD=38 --track snow=45 --visibility 9000
scene island --camera 112.345,16.795,5000,3,-42 --track TOD=42
scene dusk --camera 112.3990,16.8232,32,290,-1 --track TOD=77.4
channels=(--camera 112.3935,16.8225,38,99,-3 --track TOD=40)
size=640x360 scene channel_left "${channels[@]}" --channel left
size=640x360 scene channel_centre "${channels[@]}" --channel centre
