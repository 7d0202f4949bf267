#!/usr/bin/env bash
# The session-bus tests and the action self-check once more with busctl and gdbus out of reach:
# absent from PATH and, where a mount namespace can be made (as root), hidden at their own
# places too, so that nothing can start them by their full path either. Every case must run:
# a skip would hide the very check this is for.
set -euo pipefail
unit=$1
e2e=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# A PATH of every program the usual one offers, but those two.
mkdir "$scratch/bin"
IFS=: read -ra dirs <<< "$PATH"
for dir in "${dirs[@]}"; do
  # A name already taken by an earlier folder stays the earlier one's, as on PATH.
  [ -d "$dir" ] && ln -s "$dir"/* "$scratch/bin/" 2>/dev/null || true
done
rm -f "$scratch/bin/busctl" "$scratch/bin/gdbus"

cat > "$scratch/run" <<'INNER'
#!/bin/bash
set -euo pipefail
unit=$1 e2e=$2 bin=$3
if [ "${HIDE:-}" = 1 ]; then
  for tool in busctl gdbus; do
    for place in /usr/bin /bin /usr/local/bin /usr/sbin /sbin; do
      [ -e "$place/$tool" ] && mount --bind /dev/null "$place/$tool"
    done
    for place in /usr/bin /bin /usr/local/bin; do
      [ ! -x "$place/$tool" ] || [ ! -f "$place/$tool" ] || { echo "$place/$tool is still there"; exit 1; }
    done
  done
  echo "busctl and gdbus are off PATH and hidden at their places."
fi
export PATH=$bin
if command -v busctl >/dev/null || command -v gdbus >/dev/null; then echo "busctl or gdbus is still on PATH"; exit 1; fi
check() {
  local out
  out=$("$@" --gtest_brief=1 2>&1) || { echo "$out"; exit 1; }
  echo "$out" | tail -2
  if echo "$out" | grep -q '\[  SKIPPED \]'; then echo "$out"; echo "a case was skipped"; exit 1; fi
  echo "$out" | grep -q '\[  PASSED  \] [1-9]' || { echo "$out"; echo "no case ran"; exit 1; }
}
check "$unit" --gtest_filter='SdSessionBus*:ActionsOnBus.*:X11Display.*'
check "$e2e" --gtest_filter='AdviceE2E.TestActions*'
INNER
chmod +x "$scratch/run"

if [ "$(id -u)" -eq 0 ] && unshare --mount --propagation private true 2>/dev/null; then
  HIDE=1 unshare --mount --propagation private "$scratch/run" "$unit" "$e2e" "$scratch/bin"
  exit
fi
echo "No mount namespace here: busctl and gdbus are only left off PATH."
"$scratch/run" "$unit" "$e2e" "$scratch/bin"
