#!/usr/bin/env bash
# Times the cleaning report over a generated home beside `du` over the same tree, warm cache:
#   bench/scan.sh [BUILD_DIR] [FILES]
# The home is made once by make-home.sh in $BENCH_HOME (default /tmp/sorrelin-bench-FILES).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
files=${2:-200000}
home=${BENCH_HOME:-/tmp/sorrelin-bench-$files}
[ -d "$home" ] || "$root/bench/make-home.sh" "$home" "$files"

scan() {
  env HOME="$home" XDG_CACHE_HOME="$home/.cache" XDG_CONFIG_HOME="$home/.config" \
      XDG_DATA_HOME="$home/.local/share" XDG_STATE_HOME="$home/.local/state" \
      XDG_DATA_DIRS="$home/.local/share" SORRELIN_SUPPORT="$home/.sorrelin-support" \
      "$build/sorrelin" --scan
}
ms() { local s e; s=$(date +%s%N); "$@" > /dev/null; e=$(date +%s%N); echo $(( (e - s) / 1000000 )); }
best() { local b=999999999 t; for _ in 1 2 3; do t=$(ms "$@"); [ "$t" -lt "$b" ] && b=$t; done; echo "$b"; }

entries=$(find "$home" | wc -l)
scan > /dev/null # warm the cache
s=$(best scan)
d=$(best du -sk "$home")
echo "home $home: $entries entries, $(du -sh "$home" | cut -f1)"
echo "sorrelin --scan: ${s} ms (best of 3, warm)"
echo "du -sk:          ${d} ms (best of 3, warm)"
awk -v s="$s" -v d="$d" 'BEGIN { printf "ratio scan/du:   %.2f\n", (d > 0 ? s / d : 0) }'
