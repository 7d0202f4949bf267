#!/usr/bin/env bash
# Runs a command with empty temporary folders of its own, in a private mount namespace (root
# only), so that what other programs keep in /tmp and /var/tmp is not part of a measurement.
# $SORRELIN_SUPPORT, where it lies in /tmp, is made again inside.
set -euo pipefail
exec unshare -m sh -c 'mount -t tmpfs tmpfs /tmp && mount -t tmpfs tmpfs /var/tmp &&
  if [ -n "${SORRELIN_SUPPORT:-}" ]; then mkdir -p "$SORRELIN_SUPPORT"; fi && exec "$@"' sh "$@"
