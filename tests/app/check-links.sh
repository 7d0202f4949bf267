#!/usr/bin/env bash
# Fails when the binary needs a shared library whose name matches the pattern.
set -euo pipefail
binary=$1
pattern=$2
needed=$(objdump -p "$binary" | awk '/NEEDED/ {print $2}')
[ -n "$needed" ] || { echo "could not read the libraries $binary needs"; exit 1; }
if echo "$needed" | grep -E "$pattern"; then
    echo "$binary needs the libraries above, which its layer must not link"
    exit 1
fi
echo "$binary: nothing matching $pattern"
