#!/usr/bin/env bash
# From packed camera bytes to a file and a picture: makes two pulses of particle images, decodes them, looks into the
# file, checks that it holds what was recorded, converts and compares it, and draws it. Everything lands in demo-output/.
set -euo pipefail
cd "$(dirname "$0")"

say() {
    if [ -t 1 ]; then printf '\n\033[1m%s\033[0m\n' "$*"; else printf '\n%s\n' "$*"; fi
}
run() {
    local shown="" word
    for word in "$@"; do
        [[ $word == *" "* ]] && word="'$word'"
        shown+=" $word"
    done
    echo "  \$$shown"
    "$@"
}

say "1. Installing what is missing and building (the first time takes a few minutes)"
scripts/install-dependencies.sh
cmake --preset release >/dev/null
cmake --build --preset release --target qf GenerateParticleImages SubtractImages >build/release/demo-build.log 2>&1 || {
    tail -n 40 build/release/demo-build.log >&2
    echo "the build failed; all of it stands in build/release/demo-build.log" >&2
    exit 1
}
PATH="$PWD/build/release/bin:$PATH"
mkdir -p demo-output
cd demo-output

say "2. A camera records two pulses of a vortex: 12-bit pixels, packed as Mono12p"
run GenerateParticleImages camera.raw pixels.raw --size 1280x1024 --pairs 1 --seed 1

say "3. The packed bytes become 16-bit frames in a file"
run qf decode --format mono-12p --size 1280x1024 --pixel-size 0.02mm --force --output run.qfi camera.raw

say "4. What the file holds"
run qf info -v --stats run.qfi

say "5. Are these the frames that the camera saw?"
expected=$(sha256sum pixels.raw | cut -d ' ' -f 1)
run qf info --hash run.qfi
qf info --hash run.qfi | grep -q "sha256:$expected\$" || {
    echo "no: the pixels that were recorded have sha256:$expected" >&2
    exit 1
}
echo "  yes: sha256sum of the pixels before packing gives the same"

say "6. Six lines of C++ subtract the first pulse from the second (Examples/SubtractImages.cpp)"
run SubtractImages run.qfi
run qf info difference.tif

say "7. Into the format of other programs and back, checked"
run qf convert --force run.qfi run.tif
run qf verify run.qfi run.tif
run qf diff run.qfi run.tif
run qf convert --force run.tif back.qfi
run qf diff run.qfi back.qfi

say "8. Pictures"
run qf plot run.qfi --force --output frame.png
run qf plot run.qfi --region 256x192+512+416 --title "Particle image, 20 µm per pixel" --force --output picture.png

say "Done. The first frame: demo-output/frame.png, its middle in close-up: demo-output/picture.png"
