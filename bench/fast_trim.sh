#!/usr/bin/env bash
# Fast Trim against Trim, against a bare stream copy, and against Fast Trim's own ffmpeg and
# ffprobe commands run bare one after another, on a 10-minute 1280x720 H.264+AAC clip (30 fps,
# a keyframe every 10 s, B-frames; kept in $CORVANTA_BENCH_CLIPS between runs). Three segments
# of 60 s start at 1:13, 4:37 and 8:02, so that no cut lands on a keyframe.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${CORVANTA_BUILD_DIR:-$here/build}
clips=${CORVANTA_BENCH_CLIPS:-/tmp/corvanta-bench-clips}
source_clip=$clips/ten.mp4
mkdir -p "$clips"
if [[ ! -s $source_clip ]]; then
    echo "Making $source_clip (a few minutes)..."
    ffmpeg -nostdin -loglevel error -y -f lavfi -i "testsrc2=size=1280x720:rate=30:duration=600" \
        -f lavfi -i "sine=frequency=440:sample_rate=48000:duration=600" \
        -c:v libx264 -preset veryfast -g 300 -keyint_min 300 -sc_threshold 0 -bf 3 \
        -pix_fmt yuv420p -c:a aac -b:a 128k "$source_clip"
fi
cmake --build "$build" --target corvanta >/dev/null
corvanta=$build/corvanta
work=$(mktemp -d)
trap 'rm -rf "$work" "${made_folders[@]}"' EXIT
printf '73,133\n277,337\n482,542\n' >"$work/cuts.csv"
now() { date +%s.%N; }
since() { echo "$(now) - $1" | bc -l; }
frames() { ffprobe -v error -select_streams v:0 -count_packets -show_entries stream=nb_read_packets -of csv=p=0 "$1"; }

mkdir "$work/trim" "$work/fast" "$work/copy"
start=$(now)
"$corvanta" --cut-list "$work/cuts.csv" --output-dir "$work/trim" "$source_clip" >/dev/null
trim_time=$(since "$start")

start=$(now)
QT_LOGGING_RULES="default.info=true" "$corvanta" --cut-list "$work/cuts.csv" --fast \
    --output-dir "$work/fast" "$source_clip" >/dev/null 2>"$work/fast.log"
fast_time=$(since "$start")

start=$(now)
: >"$work/copy/list.txt"
for s in 73 277 482; do
    ffmpeg -nostdin -v error -y -ss "$s" -i "$source_clip" -t 60 -map 0 -c copy "$work/copy/$s.mp4"
    echo "file '$work/copy/$s.mp4'" >>"$work/copy/list.txt"
done
ffmpeg -nostdin -v error -y -f concat -safe 0 -i "$work/copy/list.txt" -c copy "$work/copy/ten-cut.mp4"
copy_time=$(since "$start")

# The same commands, bare: the ffmpeg and ffprobe runs Fast Trim logged, in order. Only the
# piece list it writes itself is written here, untimed, before the join that reads it.
plan_time=0
made_folders=()
grep -E '^tool ended 0 after [0-9.]+ s: ' "$work/fast.log" | sed -E 's/^tool ended 0 after [0-9.]+ s: //' |
    grep -v -- '-show_entries stream=codec_type' | grep -vE 'ffmpeg -i [^ ]+$' >"$work/plan.sh"
while IFS= read -r line; do
    # The temporary work folder the batch made and removed again.
    folder=$(grep -oE '/tmp/corvanta-[A-Za-z0-9]{6}/' <<<"$line" | head -1 || true)
    folder=${folder%/}
    if [[ -n $folder && ! -d $folder ]]; then
        mkdir -p "$folder"
        made_folders+=("$folder")
    fi
    if [[ $line == *"-f concat"* ]]; then
        list=$(grep -oE '[^ ]+\.ffconcat' <<<"$line")
        {
            echo "ffconcat version 1.0"
            for piece in $(ls "$folder"/fast_piece_*.ts | sort -t_ -k3 -n); do
                echo "file '$piece'"
                echo "duration $(ffprobe -v error -show_entries format=duration -of csv=p=0 "$piece")"
            done
        } >"$list"
    fi
    start=$(now)
    bash -c "$line" >/dev/null 2>&1
    plan_time=$(echo "$plan_time + $(since "$start")" | bc -l)
done <"$work/plan.sh"
rm -rf "${made_folders[@]}"

printf '%-34s %8s %8s\n' "" "seconds" "frames"
printf '%-34s %8.2f %8s\n' "Trim" "$trim_time" "$(frames "$work/trim/ten-cut.mp4")"
printf '%-34s %8.2f %8s\n' "Fast Trim" "$fast_time" "$(frames "$work/fast/ten-cut.mp4")"
printf '%-34s %8.2f %8s\n' "stream copy + concat demuxer" "$copy_time" "$(frames "$work/copy/ten-cut.mp4")"
printf '%-34s %8.2f %8s\n' "Fast Trim's commands, bare" "$plan_time" "-"
echo "frames asked for: 5400"
printf 'Trim / Fast Trim: %.1fx   Fast Trim / its bare commands: %.2fx   Fast Trim / stream copy: %.1fx\n' \
    "$(echo "$trim_time / $fast_time" | bc -l)" "$(echo "$fast_time / $plan_time" | bc -l)" \
    "$(echo "$fast_time / $copy_time" | bc -l)"
echo "Where Fast Trim's time goes (its own log):"
grep -E '^tool ended' "$work/fast.log" | sed -E 's/^tool ended [0-9]+ after ([0-9.]+) s: ([^ ]+) (.*)$/\1 \2 \3/' |
    awk '{ t=$1; tool=$2; sub(".*/", "", tool); kind=tool;
           if ($0 ~ /-c copy -bsf:v noise/) kind="ffmpeg: copy pieces";
           else if ($0 ~ /-c:v lib|-c:v mpeg2/) kind="ffmpeg: re-encoded pieces";
           else if ($0 ~ /filter_units/) kind="ffmpeg: clean-start scan";
           else if ($0 ~ /-f concat/) kind="ffmpeg: join";
           else if ($0 ~ /-f matroska/) kind="ffmpeg: sound";
           else if (tool == "ffprobe") kind="ffprobe";
           else kind=tool ": other";
           sum[kind]+=t } END { for (k in sum) printf "  %-28s %6.2f s\n", k, sum[k] }'
