#!/usr/bin/env bash
# Times the three whole-tree reports beside the tools a user would reach for, on one generated
# home, warm and cold, and on one folder of a million entries:
#   bench/walks.sh [EXE]          (EXE default build/sorrelin)
# The home (bench/make-storage-tree.py, $FILES files, default 560,000) is made once in
# $BENCH_HOME (default /var/lib/sorrelin-bench/home), the folder of 1,000,000 empty files in
# $BENCH_MILLION (default /var/lib/sorrelin-bench/million/Downloads). Warm figures are the median
# of $RUNS runs (default 5) after one unmeasured run; cold ones drop the page cache before each
# of $COLD_RUNS runs (default 3), where the machine allows it. Peak memory is the maximum resident size of one warm run.
# Beside them, build/bench/sorrelin_walk_limit: a bare walk of the same home on every core.
set -euo pipefail
cd "$(dirname "$0")/.."
exe=$(realpath "${1:-build/sorrelin}")
home=${BENCH_HOME:-/var/lib/sorrelin-bench/home}
million=${BENCH_MILLION:-/var/lib/sorrelin-bench/million}
runs=${RUNS:-5}
[ -d "$home" ] || python3 bench/make-storage-tree.py "$home" "${FILES:-560000}" >/dev/null
if [ ! -d "$million/Downloads" ]; then
  mkdir -p "$million/Downloads"
  python3 -c "
import os, sys
d = sys.argv[1]
for i in range(1000000):
    os.close(os.open(os.path.join(d, 'file-%07d.txt' % i), os.O_CREAT | os.O_WRONLY, 0o644))
" "$million/Downloads"
fi
support=$(mktemp -d)
trap 'rm -rf "$support"' EXIT

# As root the program runs with empty temporary folders of its own (bench/with-empty-temp.sh):
# --storage also walks /tmp and /var/tmp, which on a shared build machine hold other people's
# trees, and `du -s` of the home does not. TEMP_AS_IS=1 leaves them as they are.
apart=
if [ "$(id -u)" -eq 0 ] && [ -z "${TEMP_AS_IS:-}" ] && command -v unshare >/dev/null; then
  apart=$(realpath bench/with-empty-temp.sh)
fi
at() { # the environment of a home folder, as a command prefix
  local h=$1
  echo env HOME="$h" XDG_CACHE_HOME="$h/.cache" XDG_CONFIG_HOME="$h/.config" XDG_DATA_HOME="$h/.local/share" \
       XDG_STATE_HOME="$h/.local/state" SORRELIN_SUPPORT="$support" $apart
}
cold=0
if [ -w /proc/sys/vm/drop_caches ]; then cold=1; fi
drop() { sync; echo 3 > /proc/sys/vm/drop_caches; }
seconds() { local s e; s=$(date +%s%N); "$@" >/dev/null 2>&1 || true; e=$(date +%s%N); echo "scale=3; ($e - $s) / 1000000000" | bc; }
median() { sort -n | awk '{a[NR]=$1} END {print (NR % 2) ? a[(NR+1)/2] : (a[NR/2] + a[NR/2+1]) / 2}'; }
warm() { "$@" >/dev/null 2>&1 || true; for _ in $(seq "$runs"); do seconds "$@"; done | median; }
coldly() { for _ in $(seq "${COLD_RUNS:-3}"); do drop; seconds "$@"; done | median; }
peak() { { /usr/bin/time -f %M "$@" 2>&1 >/dev/null || true; } | tail -1; } # KB

entries=$(find "$home" | wc -l)
echo "machine: $(nproc) cores, load before: $(cut -d' ' -f1-3 /proc/loadavg)"
if [ -n "$apart" ]; then echo "temporary folders: empty, private to each run"; else
  echo "temporary folders: as they are (/tmp $(find /tmp -xdev 2>/dev/null | wc -l) entries)"; fi
echo "home $home: $entries entries, $(du -sh "$home" | cut -f1)"
printf '| %-34s | %9s | %9s | %9s |\n' "command" "warm s" "cold s" "peak MB"
row() { # row LABEL CMD...
  local label=$1; shift
  local w c="-" m
  w=$(warm "$@")
  [ "$cold" = 1 ] && c=$(coldly "$@")
  m=$(peak "$@")
  printf '| %-34s | %9s | %9s | %9s |\n' "$label" "$w" "$c" "$(echo "scale=1; $m / 1024" | bc)"
  eval "${label//[^a-z]/_}_w=$w; ${label//[^a-z]/_}_c=$c"
}
row "sorrelin --storage" $(at "$home") "$exe" --storage
row "du -s" du -s "$home"
# The least a walk costs here (plain calls on every core, nothing else), built beside the program.
bare=$(dirname "$exe")/bench/sorrelin_walk_limit
if [ -x "$bare" ]; then row "bare walk, every core" "$bare" "$home"; else echo "| bare walk: $bare not built |"; fi
if command -v gdu >/dev/null; then row "gdu -n -p" gdu -n -p "$home"; else echo "| gdu -n -p: not installed |"; fi
row "sorrelin --growth" $(at "$home") "$exe" --growth
row "find -newermt -14 days -type f" find "$home" -newermt '-14 days' -type f
row "sorrelin --scan" $(at "$home") "$exe" --scan
ratio() { echo "scale=2; $1 / $2" | bc; }
echo
echo "warm: --storage throughput $(ratio "$du__s_w" "$sorrelin___storage_w")× du -s," \
     "$(echo "scale=2; $entries / $sorrelin___storage_w / 1000000" | bc) M entries/s;" \
     "--growth $(ratio "$sorrelin___growth_w" "$find__newermt_____days__type_f_w")× the time of find;" \
     "--scan $(ratio "$sorrelin___scan_w" "$du__s_w")× the time of du -s"
if [ -x "$bare" ]; then
  echo "warm: the bare walk $(echo "scale=2; $entries / $bare_walk__every_core_w / 1000000" | bc) M entries/s;" \
       "--storage takes $(ratio "$sorrelin___storage_w" "$bare_walk__every_core_w")× its time"
fi
if [ "$cold" = 1 ]; then
  echo "cold: --storage throughput $(ratio "$du__s_c" "$sorrelin___storage_c")× du -s;" \
       "--growth $(ratio "$sorrelin___growth_c" "$find__newermt_____days__type_f_c")× find;" \
       "--scan $(ratio "$sorrelin___scan_c" "$du__s_c")× du -s"
fi

echo
echo "one folder of $(ls -f "$million/Downloads" | wc -l) entries ($million/Downloads):"
printf '| %-34s | %9s | %9s | %9s |\n' "command" "warm s" "cold s" "peak MB"
row "du -s" du -s "$million"
row "sorrelin --storage" $(at "$million") "$exe" --storage
row "sorrelin --scan" $(at "$million") "$exe" --scan
row "sorrelin --projects" $(at "$million") "$exe" --projects
echo "load after: $(cut -d' ' -f1-3 /proc/loadavg)"
