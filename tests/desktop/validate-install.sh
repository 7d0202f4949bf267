#!/usr/bin/env bash
# Installs the build into a scratch prefix and holds the desktop entry and the AppStream
# metainfo to the freedesktop validators. Usage: validate-install.sh CMAKE BUILD_DIR
set -euo pipefail
cmake=$1 build=$2
for tool in desktop-file-validate appstreamcli; do
  command -v "$tool" >/dev/null || { echo "$tool is not installed; skipped"; exit 77; }
done
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
entry=$prefix/share/applications/app.sorrelin.Sorrelin.desktop
desktop-file-validate "$entry"
appstreamcli validate --no-net "$prefix/share/metainfo/app.sorrelin.Sorrelin.metainfo.xml"
# Everything a desktop needs is in its place, and the entry names the installed program.
for f in bin/sorrelin share/dbus-1/services/app.sorrelin.Sorrelin.service \
         share/icons/hicolor/scalable/apps/app.sorrelin.Sorrelin.svg; do
  [ -e "$prefix/$f" ] || { echo "missing: $f"; exit 1; }
done
# The window's library, in a folder of the program's own under LIBDIR.
[ -n "$(find "$prefix" -path '*/lib*/sorrelin/libsorrelin-app.so')" ] ||
  { echo "missing: LIBDIR/sorrelin/libsorrelin-app.so"; exit 1; }
for size in 16 22 24 32 48 64 128 256 512; do
  png=$prefix/share/icons/hicolor/${size}x${size}/apps/app.sorrelin.Sorrelin.png
  [ -s "$png" ] || { echo "missing: $png"; exit 1; }
done
grep -qx "Exec=$prefix/bin/sorrelin" "$entry" || { echo "the entry does not start $prefix/bin/sorrelin"; exit 1; }
grep -qx "Exec=$prefix/bin/sorrelin --background" "$prefix/share/dbus-1/services/app.sorrelin.Sorrelin.service"
echo "installed files validate"
