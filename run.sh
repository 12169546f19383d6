#!/usr/bin/env bash
# Builds KW3400R and starts it wired to the bundled analyser simulator on a pseudo-terminal.
# Installs the Debian packages it needs when they are missing.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh
ensure_packages

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ "${QT_QPA_PLATFORM:-}" != "offscreen" ]; then
  echo "run.sh: no desktop to show the window on (neither DISPLAY nor WAYLAND_DISPLAY is set)."
  echo "        On a machine without a desktop, run it under a virtual X server:"
  echo "            sudo apt-get install xvfb && xvfb-run -a ./run.sh"
  exit 1
fi

BUILD=${BUILD:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE:-RelWithDebInfo} >/dev/null
cmake --build "$BUILD" --parallel "$(nproc)"

# The simulator stands behind Com2 (the program's default port) through a link in the build tree.
LINK="$PWD/$BUILD/ttyKT3400"
# The bench of an EMC run: write "dut off"/"dut on" or "antenna vertical"/"antenna horizontal" into
# this file when the program asks you to switch the device or turn the antenna.
BENCH="$PWD/$BUILD/bench.txt"
[ -e "$BENCH" ] || printf 'dut on\nantenna horizontal\n' > "$BENCH"
"$BUILD/sim/kt3400sim" --link "$LINK" --bench "$BENCH" --baud "${KT_BAUD:-19200}" --model "${KT_MODEL:-3420}" ${KT_OPTIONS:-} &
SIM=$!
trap 'kill $SIM 2>/dev/null || true' EXIT
for _ in $(seq 50); do [ -e "$LINK" ] && break; sleep 0.1; done
if [ ! -e "$BUILD/ports.def" ] || ! grep -q "ttyKT3400" "$BUILD/ports.def"; then
  printf '# Com port -> device. Written by run.sh for the simulator.\nCom2=%s\n' "$LINK" > "$BUILD/ports.def"
fi
echo "Simulator on $LINK (Com2). Tick RM to connect."
echo "EMC bench: echo 'dut off' > $BENCH  (or 'dut on', 'antenna vertical', 'antenna horizontal')"
"$BUILD/kw3400r"
