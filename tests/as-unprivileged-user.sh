#!/usr/bin/env bash
# Permissions do not bind root, so the cases about unreadable and read-only folders skip when
# the suite runs as root (as CI does). Run them again as an unprivileged user; 77 means skipped.
# Usage: as-unprivileged-user.sh BINARY [CASES COUNT]: the core cases below unless others are named.
set -euo pipefail
binary=$1
[ "$(id -u)" -eq 0 ] || exit 77
command -v setpriv >/dev/null || exit 77
cases='FSMeasure.UnreadableFolderAddsNothingBelowIt'
cases+=':Eraser.ReadOnlyFoldersInsideAnItemAreOpenedUpAndRemoved:Eraser.TheFolderHoldingTheItemIsNeverChanged'
cases+=':RemoverTrash.AReadOnlyTrashGivesAClearSentenceAndLeavesTheThing:RemoverTrash.EmptyingAReadOnlyTrashSaysWhy'
cases+=':StorageScan.UnreadableFoldersAreCountedAndTheRestGoesOn:Walker.AFolderThatMayBeReadButNotSearchedIsUnreadable'
# Paths through links, and the second try that reaches a folder through this process's handle.
cases+=':Ways/RemoverLinks.*:Eraser.TreesDeeperThanTheWalkGoesAreLeftToTheFallback'
cases+=':AtomicFile.AWriteRemovesStaleTemporariesAndNothingElse'
expected=17
if [ $# -ge 3 ]; then cases=$2; expected=$3; fi
# The user must reach the binary: a copy in a folder of its own.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp "$binary" "$scratch/tests"
chmod 755 "$scratch" "$scratch/tests"
cd "$scratch"
out=$(setpriv --reuid=65534 --regid=65534 --clear-groups env HOME="$scratch" TMPDIR=/tmp \
      ./tests --gtest_filter="$cases" --gtest_brief=1 2>&1) || { echo "$out"; exit 1; }
echo "$out" | tail -3
# Every case must have run: a skip here would hide the very check this is for.
ran=$(echo "$out" | sed -n 's/.*\[  PASSED  \] \([0-9]*\) test.*/\1/p')
[ "$ran" = "$expected" ] || { echo "$out"; echo "expected $expected cases to pass, got ${ran:-none}"; exit 1; }
