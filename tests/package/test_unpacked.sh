#!/usr/bin/env bash
# test_unpacked.sh OUT CLIP: unpacks the package that test_package.sh made in OUT into a
# temporary folder and starts the program from there, offscreen and with a temporary HOME, as
# the desktop would: on CLIP it must find its tools and help pages in the unpacked layout and
# come up with the clip prepared; on a missing file it must say so in the window; its command
# line must answer --help, --version and an unknown option without opening a window.
set -euo pipefail
out=$1
clip=$2
deb=$(ls "$out"/corvanta_*.deb)
root=$(mktemp -d)
apps=()
trap 'for app in "${apps[@]}"; do kill "$app" 2>/dev/null || true; done; rm -rf "$root"' EXIT
dpkg -x "$deb" "$root"
program=$root/usr/bin/corvanta
version=$(dpkg-deb -f "$deb" Version)
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

# A fresh HOME and runtime folder, and a PATH without the build tree's tools.
new_home() {
    local home
    home=$(mktemp -d "$root/home.XXXX")
    mkdir -m 700 "$home/runtime"
    echo "$home"
}
run() { # run HOME ARGS...: the program with its standard output and error in HOME/{out,err}
    local home=$1
    shift
    HOME=$home XDG_RUNTIME_DIR=$home/runtime QT_QPA_PLATFORM=offscreen PATH=/usr/bin:/bin \
        "$program" "$@" >"$home/out" 2>"$home/err"
}
start() { # start HOME ARGS...: run, in the background; its process id is last in apps
    local home=$1
    shift
    HOME=$home XDG_RUNTIME_DIR=$home/runtime QT_QPA_PLATFORM=offscreen PATH=/usr/bin:/bin \
        "$program" "$@" >"$home/out" 2>"$home/err" &
    apps+=($!)
}
wait_for() { # wait_for LOG PATTERN PID: until LOG has a line matching PATTERN, or PID ends
    for _ in $(seq 600); do
        grep -qE "$2" "$1" && return 0
        kill -0 "$3" 2>/dev/null || break
        sleep 0.1
    done
    grep -qE "$2" "$1"
}

# --version, --help and an unknown option answer and end; none makes the work folder.
home=$(new_home)
run "$home" --version || fail "--version ended with status $?"
[[ $(cat "$home/out") == "corvanta $version" && ! -s "$home/err" ]] \
    || fail "--version printed '$(cat "$home/out" "$home/err")'"
run "$home" --help || fail "--help ended with status $?"
[[ $(head -1 "$home/out") == "Usage: corvanta [options] [FILE]" ]] || fail "--help has no usage"
page=$root/usr/share/corvanta/help/guide.html
grep -qx "  $page" "$home/out" || fail "--help does not name $page"
grep -q "Keyboard shortcuts" "$page" || fail "$page lists no keyboard shortcuts"
status=0
run "$home" --no-such-option "$clip" || status=$?
[[ $status -eq 2 ]] || fail "an unknown option ended with status $status, not 2"
[[ ! -s "$home/out" && $(head -1 "$home/err") == "corvanta: Unknown option 'no-such-option'." ]] \
    || fail "an unknown option printed '$(cat "$home/out" "$home/err")'"
sed -n 2p "$home/err" | grep -q '^Usage: corvanta' || fail "an unknown option shows no usage"
[[ ! -e "$home/Documents" ]] || fail "the command line alone made the work folder"

# The clip: the window comes up, finds ffmpeg in the unpacked resources and prepares the clip.
home=$(new_home)
start "$home" "$clip"
wait_for "$home/err" '^Prepared ' "${apps[-1]}" || fail "the clip was not prepared"
grep -E '^(ffmpeg|img2webp|Prepared|Alert)' "$home/err" || true
grep -qx "ffmpeg: $root/usr/share/corvanta/resources/ffmpeg" "$home/err" \
    || fail "ffmpeg was not taken from the unpacked resources folder"
seconds=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$clip" | cut -d. -f1)
grep -qx "Prepared $clip ($seconds s)" "$home/err" || fail "the clip's $seconds s are not shown"

# A file that does not exist: the window says it could not be opened.
home=$(new_home)
start "$home" "$home/missing.mp4"
wait_for "$home/err" '^Alert: ' "${apps[-1]}" || true
grep -q "^Alert: The file could not be opened Corvanta could not read “missing.mp4”" "$home/err" \
    || fail "a missing file was not reported: $(cat "$home/err")"
kill -0 "${apps[-1]}" 2>/dev/null || fail "the window did not stay up after a missing file"

[[ $failures -eq 0 ]] || { echo "$failures failed"; exit 1; }
echo "unpacked package checked"
