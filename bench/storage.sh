#!/usr/bin/env bash
# Times the --storage report over a home folder beside `du -sx` of the same folder.
#
#   bench/storage.sh [HOME_DIR]
#
# Without an argument, a tree of about 500,000 files is made first in
# /var/tmp/sorrelin-storage-bench (bench/make-storage-tree.py). Each command runs once to warm
# the caches and is then timed three times; the best run counts. The report also walks the
# system's own places (package caches, temporary folders), which `du` of the home does not.
set -euo pipefail
cd "$(dirname "$0")/.."
exe=${SORRELIN:-build/sorrelin}
home=${1:-}
if [ -z "$home" ]; then
  home=/var/tmp/sorrelin-storage-bench
  python3 bench/make-storage-tree.py "$home" "${FILES:-500000}"
fi
support=$(mktemp -d)
trap 'rm -rf "$support"' EXIT

best() { # prints the best wall time of three runs of "$@", in seconds
  "$@" >/dev/null 2>&1 || true
  local best=""
  for _ in 1 2 3; do
    local start end t
    start=$(date +%s.%N)
    "$@" >/dev/null 2>&1 || true
    end=$(date +%s.%N)
    t=$(echo "$end - $start" | bc)
    if [ -z "$best" ] || (( $(echo "$t < $best" | bc) )); then best=$t; fi
  done
  echo "$best"
}

files=$(find "$home" -xdev -type f | wc -l)
ours=$(best env HOME="$home" XDG_CACHE_HOME="$home/.cache" XDG_CONFIG_HOME="$home/.config" \
  XDG_DATA_HOME="$home/.local/share" SORRELIN_SUPPORT="$support" "$exe" --storage)
du=$(best du -sx "$home")
# The places outside the home folder that the report also walks, where they exist.
places=("$home")
for p in /tmp /var/tmp /run/user/$(id -u) /var/cache/apt/archives /var/cache/PackageKit /var/cache/dnf \
         /var/cache/pacman/pkg /var/lib/flatpak/runtime /var/lib/snapd/snaps /home/linuxbrew/.linuxbrew /boot /var/log; do
  [ -d "$p" ] && places+=("$p")
done
duAll=$(best du -sxc "${places[@]}")
echo "home: $home ($files files, $(du -sxh "$home" | cut -f1))"
echo "sorrelin --storage:      ${ours} s"
echo "du -sx home:             ${du} s (ratio $(echo "scale=2; $ours / $du" | bc))"
echo "du -sx the same places:  ${duAll} s (ratio $(echo "scale=2; $ours / $duAll" | bc)): ${places[*]}"
env HOME="$home" XDG_CACHE_HOME="$home/.cache" XDG_CONFIG_HOME="$home/.config" \
  XDG_DATA_HOME="$home/.local/share" SORRELIN_SUPPORT="$support" "$exe" --storage | head -3
