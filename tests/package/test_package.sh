#!/usr/bin/env bash
# test_package.sh BUILD SOURCE OUT: makes the Debian package from the build tree with CPack into
# OUT (where the unpacked-package test finds it) and checks it as Debian and the desktops would:
# lintian, the desktop entry, the AppStream metainfo, the files it holds and what it depends on.
set -euo pipefail
build=$1
source=$2
out=$3
id=io.github.corvanta.Corvanta
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

rm -rf "$out"
mkdir -p "$out"
(cd "$build" && cpack -G DEB -B "$out" >"$out/cpack.log" 2>&1) || { cat "$out/cpack.log"; exit 1; }
rm -rf "$out/_CPack_Packages"
version=$("$build/corvanta" --version | sed -n 's/^corvanta //p')
deb="$out/corvanta_${version}_$(dpkg --print-architecture).deb"
[[ -n "$version" && -f "$deb" ]] || { ls "$out"; echo "no package named $deb"; exit 1; }
echo "made $deb"
[[ $(dpkg-deb -f "$deb" Version) == "$version" ]] || fail "package version is not $version"

# lintian: no errors (warnings are Debian's advice, not faults).
lintian --fail-on error --allow-root --tag-display-limit 0 "$deb" >"$out/lintian.log" 2>&1 \
    || { cat "$out/lintian.log"; fail "lintian reports errors"; }
grep -E '^(E|W): ' "$out/lintian.log" || true

# Every file a desktop, a manual reader and the program itself look for.
listing=$(dpkg-deb -c "$deb" | awk '{print $6}')
for file in usr/bin/corvanta usr/share/applications/$id.desktop \
    usr/share/metainfo/$id.metainfo.xml usr/share/icons/hicolor/scalable/apps/$id.svg \
    usr/share/icons/hicolor/{48x48,128x128,256x256}/apps/$id.png usr/share/man/man1/corvanta.1.gz \
    usr/share/corvanta/help/{guide,about,privacy,report}.html usr/share/corvanta/help/style.css \
    usr/share/corvanta/resources/{ffmpeg,img2webp} usr/share/doc/corvanta/{copyright,changelog.gz}; do
    grep -qx "\./$file" <<<"$listing" || fail "the package lacks /$file"
done

# Depends: what dpkg-shlibdeps found, and the programs and plug-ins run at run time.
depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"
for package in ffmpeg webp gstreamer1.0-plugins-base gstreamer1.0-plugins-good \
    gstreamer1.0-plugins-bad gstreamer1.0-libav libqt6widgets6 libqt6multimedia6 libc6; do
    grep -qE "(^|, )$package( \(|,|$)" <<<"$depends" || fail "Depends does not name $package"
done
grep -qw qt6-translations-l10n <<<"$(dpkg-deb -f "$deb" Recommends)" \
    || fail "Recommends does not name qt6-translations-l10n"

# The unpacked files as the desktop reads them.
root="$out/root"
dpkg -x "$deb" "$root"
desktop-file-validate "$root/usr/share/applications/$id.desktop" || fail "desktop entry invalid"
appstreamcli validate --no-net --explain "$root/usr/share/metainfo/$id.metainfo.xml" \
    || fail "metainfo invalid"
for size in 48 128 256; do
    file "$root/usr/share/icons/hicolor/${size}x$size/apps/$id.png" \
        | grep -q "PNG image data, $size x $size," || fail "the $size pixel icon is not $size pixels"
done

# One version and one ID throughout.
metainfo="$root/usr/share/metainfo/$id.metainfo.xml"
grep -q "<release version=\"$version\"" "$metainfo" || fail "metainfo has no release $version"
grep -q "<id>$id</id>" "$metainfo" || fail "metainfo has another ID"
grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" "$metainfo" \
    || fail "metainfo launches another desktop entry"
grep -qx "Icon=$id" "$root/usr/share/applications/$id.desktop" || fail "desktop entry names another icon"
grep -q "Version $version" "$root/usr/share/corvanta/help/about.html" \
    || fail "the About page does not show version $version"
zcat "$root/usr/share/man/man1/corvanta.1.gz" | grep -q "^\.TH CORVANTA 1 .*\"Corvanta $version\"" \
    || fail "the manual page is not of version $version"
# The screenshot the metainfo points at is the one committed beside the sources.
shot=$(sed -n 's|.*<image>[^<]*/raw/main/\([^<]*\)</image>.*|\1|p' "$metainfo")
[[ -n "$shot" ]] && file "$source/$shot" | grep -q "PNG image data" \
    || fail "the metainfo's screenshot '$shot' is not a PNG in the sources"

[[ $failures -eq 0 ]] || { echo "$failures failed"; exit 1; }
echo "package checked"
