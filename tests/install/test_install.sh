#!/usr/bin/env bash
# Installs into a temporary prefix, validates the desktop entry, and starts the installed
# program on a file as the desktop would hand it over: it must find ffmpeg in its own
# resources folder and prepare the file.
set -euo pipefail
build=$1
clip=$2
prefix=$(mktemp -d)
home=$(mktemp -d)
trap 'rm -rf "$prefix" "$home"; [[ -n "${app:-}" ]] && kill "$app" 2>/dev/null || true' EXIT

cmake --install "$build" --prefix "$prefix" >/dev/null
for file in bin/corvanta share/applications/corvanta.desktop \
            share/icons/hicolor/scalable/apps/corvanta.svg share/corvanta/help/guide.html \
            share/corvanta/resources/ffmpeg share/corvanta/resources/img2webp; do
    [[ -e "$prefix/$file" ]] || { echo "missing after install: $file"; exit 1; }
done
desktop-file-validate "$prefix/share/applications/corvanta.desktop"

log="$home/corvanta.log"
HOME="$home" QT_QPA_PLATFORM=offscreen PATH=/usr/local/bin:/usr/bin:/bin \
    "$prefix/bin/corvanta" "$clip" >"$log" 2>&1 &
app=$!
for _ in $(seq 600); do
    grep -q '^Prepared ' "$log" && break
    kill -0 "$app" 2>/dev/null || break
    sleep 0.1
done
cat "$log" | grep -E '^(ffmpeg|img2webp|Prepared)' || true
grep -qx "ffmpeg: $prefix/share/corvanta/resources/ffmpeg" "$log" \
    || { echo "the installed program did not take ffmpeg from its resources folder"; exit 1; }
grep -q "^Prepared $clip " "$log" || { echo "the file handed over was not prepared"; exit 1; }
echo "1 passed, 0 failed"
