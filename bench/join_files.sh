#!/usr/bin/env bash
# Join Files against a bare ffmpeg: three 5-minute 1920x1080 clips of one recording (kept in
# $CORVANTA_BENCH_CLIPS between runs) joined by the application's own plan (bench_join_files:
# probing with ffprobe, the planner, its one ffmpeg run) and by "ffmpeg -f concat -c copy" alone,
# taking turns three times. Prints the median times and their ratio; the goal is 1.2 or less.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${CORVANTA_BUILD_DIR:-$here/build}
clips=${CORVANTA_BENCH_CLIPS:-/tmp/corvanta-bench-clips}
minutes=${MINUTES:-5}
seconds=$((minutes * 60))
mkdir -p "$clips"
# One recording, cut into three clips at its keyframes (one every 2 s).
if [[ ! -s "$clips/join3-$minutes.mp4" ]]; then
    echo "Making three $minutes-minute 1920x1080 clips (a few minutes)" >&2
    ffmpeg -nostdin -loglevel error -y \
        -f lavfi -i "testsrc2=size=1920x1080:rate=30:duration=$((3 * seconds))" \
        -f lavfi -i "sine=frequency=440:sample_rate=48000:duration=$((3 * seconds))" \
        -c:v libx264 -preset ultrafast -g 60 -pix_fmt yuv420p -c:a aac -ac 2 \
        "$clips/recording-$minutes.mp4"
    for n in 1 2 3; do
        ffmpeg -nostdin -loglevel error -y -ss $(((n - 1) * seconds)) -t "$seconds" \
            -i "$clips/recording-$minutes.mp4" -c copy "$clips/join$n-$minutes.mp4"
    done
    rm "$clips/recording-$minutes.mp4"
fi
files=("$clips/join1-$minutes.mp4" "$clips/join2-$minutes.mp4" "$clips/join3-$minutes.mp4")
cmake --build "$build" --target bench_join_files >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for file in "${files[@]}"; do echo "file '$file'"; done >"$work/bare-list.txt"
cat "${files[@]}" >/dev/null # both runs read the clips from the page cache

elapsed() { # command...: runs it and prints its seconds
    local start end
    start=$(date +%s.%N)
    "$@" >&2
    end=$(date +%s.%N)
    echo "$end - $start" | bc
}
bare=()
corvanta=()
for _ in 1 2 3; do
    bare+=("$(elapsed ffmpeg -nostdin -loglevel error -y -f concat -safe 0 \
        -i "$work/bare-list.txt" -c copy "$work/bare.mp4")")
    rm -f "$work/bare.mp4"
    corvanta+=("$(elapsed "$build/bench/bench_join_files" "$(command -v ffmpeg)" "$work" \
        "$work/corvanta.mp4" "${files[@]}")")
    rm -f "$work/corvanta.mp4"
done
median() { printf '%s\n' "$@" | sort -n | sed -n 2p; }
b=$(median "${bare[@]}")
c=$(median "${corvanta[@]}")
printf 'bare ffmpeg -f concat -c copy: %6.2f s  (runs: %s)\n' "$b" "${bare[*]}"
printf 'Corvanta Join Files plan:      %6.2f s  (runs: %s)\n' "$c" "${corvanta[*]}"
printf 'ratio:                         %6.2f  (goal: 1.20 or less)\n' "$(echo "$c / $b" | bc -l)"
