#!/usr/bin/env bash
# The main job: velora-host on the embedded cloud. Without a display it
# renders the tour of every dialog to PNG files and prints where they are.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build="$here/build"
"$here/scripts/setup.sh" "$build"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  out=${1:-"$here/tour"}
  QT_QPA_PLATFORM=offscreen "$build/app/velora-host" --tour "$out"
else
  exec "$build/app/velora-host" "$@"
fi
