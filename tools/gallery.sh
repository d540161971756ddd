#!/usr/bin/env bash
# Draws the pictures of docs/gallery.md anew as WebP, with the release build.
#   tools/gallery.sh [NAME]...    all, or those named
set -euo pipefail
cd "$(dirname "$0")/.."

die() {
    echo "gallery.sh: $1" >&2
    exit 1
}
deckview=build/bin/deckview
[ -x "$deckview" ] || die "$deckview is missing; ./test.sh builds it"
command -v cwebp >/dev/null || die "cwebp is missing; install the package webp"

names=()
declare -A options
# draw NAME OPTIONS...: lists the picture after two seconds of the scene; the end of this script draws it
draw() {
    local name=$1
    shift
    names+=("$name")
    options[$name]=$(printf '%q ' --frames "${frames:-120}" --size "${size:-1280x720}" "$@")
}

# scene NAME OPTIONS...: the same without the panels
scene() {
    draw "$@" --no-panels
}

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

models=data/assets/Targets/MODELS
aerobatic=(--aircraft $models/EXTRA300S/EXTRA300S.cfg --airport start_runway --track TOD=42)
helicopter=(--aircraft $models/HELICOPTER/HELICOPTER.cfg --track TOD=42)
scene jet_front --camera 112.3963627,16.8239389,24.5,292.0,-6.8 --track TOD=42
scene jet_side --camera 112.3962680,16.8238103,23.2,337.0,-2.4 --track TOD=42
scene jet_rear --camera 112.3959896,16.8240591,26.0,105.0,-10.8 --track TOD=42
scene jet_gear --camera 112.3962795,16.8239141,22.2,329.0,-1.5 --track TOD=42 --input tools/gallery/gear.txt
frames=690 scene jet_climb --set fly_mode=2 --track TOD=42
frames=1900 scene jet_flight --set fly_mode=2 --track TOD=42
scene aerobatic_front "${aerobatic[@]}" --camera 112.3397621,16.8358263,6.6,285,-6.1
scene aerobatic_side "${aerobatic[@]}" --camera 112.3397307,16.8357791,6.4,337,-3.8
scene aerobatic_rear "${aerobatic[@]}" --camera 112.3396352,16.8358591,7.2,105,-9.8
scene aerobatic_panel "${aerobatic[@]}" --camera 112.3396984,16.8358396,6.458,67.25,-7
scene helicopter_front "${helicopter[@]}" --camera 112.3963801,16.8239321,25.0,292.0,-6.2
scene helicopter_side "${helicopter[@]}" --camera 112.3962717,16.8238019,23.5,337.0,-1.6
scene helicopter_rear "${helicopter[@]}" --camera 112.3959715,16.8240638,27.0,105.0,-11.5
frames=1600 scene helicopter_hover "${helicopter[@]}" --input tools/gallery/hover.txt
frames=2820 scene helicopter_sea "${helicopter[@]}" --input tools/gallery/hover_sea.txt
frames=2220 scene helicopter_grass "${helicopter[@]}" --airport start_runway --input tools/gallery/hover_grass.txt
frames=1552 scene helicopter_night --aircraft $models/HELICOPTER/HELICOPTER.cfg --track TOD=84 \
    --input tools/gallery/hover_night.txt --camera 112.3960468,16.8238484,30.0,34.3,-2.8

missile=(--track TOD=42 --script tools/gallery/missile.txt)
frames=482 scene missile_launch "${missile[@]}" --camera 112.3984861,16.8247670,24.0,317.0,-6.0
frames=552 scene missile_flight "${missile[@]}" --camera 112.4014772,16.8260875,23.0,305.0,-7.6
frames=693 scene burst_1 "${missile[@]}" --camera 112.4059873,16.8284548,38.0,120.0,-7.4
frames=741 scene burst_2 "${missile[@]}" --camera 112.4059873,16.8284548,38.0,120.0,-7.4
frames=921 scene burst_3 "${missile[@]}" --camera 112.4059873,16.8284548,38.0,120.0,-7.4
frames=150 scene water_explosion --track TOD=42 --script tools/gallery/water.txt --camera 112.3961394,16.8227490,12.0,70.0,6.4
frames=600 scene torpedo --track TOD=42 --script tools/gallery/torpedo.txt --camera 112.3980188,16.8223784,5.5,305.0,-11.6
frames=150 scene burning --track TOD=42 --script tools/gallery/burning.txt --camera 112.3962680,16.8238103,24.2,337.0,0
frames=720 scene destroyed --track TOD=42 --script tools/gallery/burning.txt --camera 112.3963627,16.8239389,25.5,292.0,-5
frames=20 scene targets --track TOD=42 --script tools/gallery/targets.txt --camera 112.3950234,16.8231918,120.0,58.0,-18.4
instructor=(--track TOD=42 --script tools/gallery/instructor.txt --input tools/gallery/instructor_hand.txt)
draw instructor_en "${instructor[@]}" --language en
draw instructor_zh "${instructor[@]}" --language zh

under_way=(--track TOD=42 --drive-ship steady)
size=960x540 frames=2700 scene ship_wake "${under_way[@]}" --camera 112.3985133,16.8217683,190.011,23.937,-21.554
size=960x540 frames=2700 scene bow_wave "${under_way[@]}" --camera 112.4029932,16.8263405,6.051,283.162,1.594
for beaufort in 0 4 7; do
    size=960x540 scene sea_$beaufort --track TOD=42 --script tools/gallery/sea_$beaufort.txt --camera 112.3926453,16.8235627,9.009,80.939,0.425
done
size=960x540 scene deck_hand --track TOD=42 --camera 112.3964658,16.8239592,22.600,282.613,-4.213
size=960x540 scene deck_flag --track TOD=42 --camera 112.3948672,16.8233430,22.501,104.944,3.703

# lens NAME TIME PLACE: the landing lens from 400 m up the glide path, through a long lens; what blinks is lit in this frame
lens() {
    size=480x270 frames=20 scene "$1" --track TOD="$2" --camera "$3" --set 'slaves={"lens":{"fov":1.6}}' --channel lens
}
lens lens_1 42 112.3919225,16.8222463,56.269,60.249,-5.154
lens lens_2 42 112.3919199,16.8222449,52.653,60.249,-4.634
lens lens_3 42 112.3919184,16.8222441,50.286,60.249,-4.294
lens lens_4 42 112.3919170,16.8222433,47.919,60.249,-3.954
lens lens_5 42 112.3919157,16.8222426,45.551,60.249,-3.614
lens lens_6 42 112.3919145,16.8222420,43.181,60.249,-3.274
lens lens_7 42 112.3919132,16.8222412,40.254,60.249,-2.854
lens lens_night 92 112.3919170,16.8222433,47.919,60.249,-3.954

wanted=("$@")
[ ${#wanted[@]} -gt 0 ] || wanted=("${names[@]}")
for name in "${wanted[@]}"; do
    [ -n "${options[$name]:-}" ] || die "there is no picture $name; there are: ${names[*]}"
done
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
for name in "${wanted[@]}"; do
    echo "$name"
    eval "arguments=(${options[$name]})"
    "$deckview" --headless --step 1/60 "${arguments[@]}" --screenshot "$folder/$name.png" >/dev/null
    cwebp -quiet -q 90 -m 6 -sharp_yuv "$folder/$name.png" -o "docs/gallery/$name.webp"
done
