#!/usr/bin/env bash
# Makes a 60 s and a one-hour 1280x720 H.264 clip (kept in $CORVANTA_BENCH_CLIPS between runs),
# builds the stall probe and opens each clip while the timeline is clicked every 300 ms.
# CORVANTA_BENCH_TRACE=1 adds, for each stall, the GUI thread's call stacks sampled during it.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${CORVANTA_BUILD_DIR:-$here/build}
clips=${CORVANTA_BENCH_CLIPS:-/tmp/corvanta-bench-clips}
mkdir -p "$clips"
make_clip() { # name seconds
    [[ -s "$clips/$1" ]] && return
    ffmpeg -nostdin -loglevel error -y -f lavfi -i "testsrc2=size=1280x720:rate=25:duration=$2" \
        -f lavfi -i "sine=frequency=440:sample_rate=48000:duration=$2" \
        -c:v libx264 -preset ultrafast -g 250 -pix_fmt yuv420p -c:a aac "$clips/$1"
}
make_clip minute.mp4 60
make_clip hour.mp4 3600
cmake --build "$build" --target bench_gui_stalls >/dev/null
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
"$build/bench/bench_gui_stalls" "$clips/minute.mp4" 30 2>/dev/null
"$build/bench/bench_gui_stalls" "$clips/hour.mp4" 90 2>/dev/null
