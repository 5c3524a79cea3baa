#!/usr/bin/env bash
# Builds the Debian package from a build folder, unpacks it and checks what it holds: the three
# programs, the chart module where marlune-desk looks for it (and not linked to the program), the
# manuals where the help finds them, the desktop entry, the icons and the man pages; the unpacked
# program tells its version; lintian, when installed, finds no error and no warning.
# package_test.sh BUILD_DIR VERSION MODULE_DIR
set -euo pipefail
build=$1
version=$2
module_dir=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

if ! cpack --config "$build/CPackConfig.cmake" -B "$work/out" >"$work/cpack.log" 2>&1; then
  cat "$work/cpack.log"
  exit 1
fi
deb="$work/out/marlune-desk_${version}_amd64.deb"
[ -f "$deb" ] || { echo "no package $deb"; ls "$work/out"; exit 1; }
dpkg-deb -x "$deb" "$work/root"

failed=0
for file in usr/bin/marlune-desk usr/bin/marlune-sim usr/bin/marlune-scenario \
  "usr/$module_dir/marlune-scope-view.so" usr/share/doc/marlune-desk/controller-language.md usr/share/doc/marlune-desk/links.md \
  usr/share/doc/marlune-desk/scenarios.md usr/share/doc/marlune-desk/copyright \
  usr/share/doc/marlune-desk/changelog.gz usr/share/applications/marlune-desk.desktop \
  usr/share/icons/hicolor/scalable/apps/marlune-desk.svg usr/share/icons/hicolor/48x48/apps/marlune-desk.png \
  usr/share/icons/hicolor/256x256/apps/marlune-desk.png usr/share/man/man1/marlune-desk.1.gz \
  usr/share/man/man1/marlune-sim.1.gz usr/share/man/man1/marlune-scenario.1.gz; do
  [ -s "$work/root/$file" ] || { echo "the package lacks $file"; failed=1; }
done

entry="$work/root/usr/share/applications/marlune-desk.desktop"
grep -qx 'Categories=Development;Engineering;' "$entry" || { echo "desktop entry: wrong categories"; failed=1; }
grep -qx 'Exec=marlune-desk --from-launcher' "$entry" || { echo "desktop entry: wrong Exec line"; failed=1; }
for size in 48 256; do
  png="$work/root/usr/share/icons/hicolor/${size}x${size}/apps/marlune-desk.png"
  # The PNG header holds the width and height as 4-byte numbers at bytes 16 and 20.
  read -r width height < <(od -An -tu1 -j16 -N8 "$png" | awk '{print $1*16777216+$2*65536+$3*256+$4, $5*16777216+$6*65536+$7*256+$8}')
  [ "$width $height" = "$size $size" ] || { echo "icon $size is ${width}x${height}"; failed=1; }
done

# Qt Charts comes with the chart module, not with the program's start.
if readelf -d "$work/root/usr/bin/marlune-desk" | grep -q 'NEEDED.*Charts'; then
  echo "marlune-desk needs Qt Charts at start"
  failed=1
fi

answer=$("$work/root/usr/bin/marlune-desk" --version)
[ "$answer" = "Marlune Desk $version" ] || { echo "--version said: $answer"; failed=1; }

if command -v lintian >/dev/null; then
  if ! lintian --fail-on error,warning "$deb" >"$work/lintian.log" 2>&1; then
    grep -v 'root privileges' "$work/lintian.log" || true
    echo "lintian reports errors or warnings"
    failed=1
  fi
fi
exit "$failed"
