#!/usr/bin/env bash
# Runs two builds of the program over one home folder and prints where their reports differ,
# leaving out the figures that move by themselves (time taken, the disk's used and free space):
#   bench/compare-reports.sh OLD_EXE NEW_EXE HOME [OPTION...]   (default: --storage --growth --scan)
# As root the runs happen in a private mount namespace with empty temporary folders, so that
# what other programs write to /tmp meanwhile is no difference. Exits 1 when a report differs.
set -euo pipefail
old=$(realpath "$1") new=$(realpath "$2") home=$(realpath "$3")
shift 3
for path in "$old" "$new" "$home"; do
  case "$path" in /tmp/*|/var/tmp/*) echo "$path: keep it out of the temporary folders, which are emptied" >&2; exit 2;; esac
done
options=("$@")
[ ${#options[@]} -gt 0 ] || options=(--storage --growth --scan)

inner() { # runs inside the namespace: every report of both builds
  for place in /tmp /var/tmp "/run/user/$(id -u)"; do
    if [ -d "$place" ]; then mount -t tmpfs tmpfs "$place"; fi
  done
  local status=0
  for option in "${options[@]}"; do
    for exe in "$old" "$new"; do
      support=$(mktemp -d)
      env HOME="$home" XDG_CACHE_HOME="$home/.cache" XDG_CONFIG_HOME="$home/.config" \
          XDG_DATA_HOME="$home/.local/share" XDG_STATE_HOME="$home/.local/state" SORRELIN_SUPPORT="$support" \
          "$exe" "$option" 2>/dev/null |
        sed -E -e 's/^.* used of [^,]*, /used of the disk, /' -e '/^The system and the rest: /d' \
               -e '/^took /d' -e 's/ · scan took .*//' -e 's/^.* free of .*$/(free space)/' > "$support.out"
      rm -rf "$support"
      outs+=("$support.out")
    done
    if ! diff "${outs[-2]}" "${outs[-1]}" > /dev/null; then
      echo "== $option differs"
      diff "${outs[-2]}" "${outs[-1]}" || true
      status=1
    else
      echo "== $option same ($(wc -l < "${outs[-1]}") lines)"
    fi
  done
  rm -f "${outs[@]}"
  return $status
}

outs=()
if [ "$(id -u)" -eq 0 ] && [ -z "${COMPARE_INSIDE:-}" ]; then
  exec unshare -m env COMPARE_INSIDE=1 "$0" "$old" "$new" "$home" "${options[@]}"
fi
if [ -n "${COMPARE_INSIDE:-}" ]; then inner; else
  # Without root the temporary folders are shared with the machine: differences there are noise.
  inner
fi
