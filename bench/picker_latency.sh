#!/usr/bin/env bash
# Time from opening the picker to its first lens frame, and the drawing of one lens frame, by each route to
# the screen: X11 (live, on Xvfb) and, in a headless Sway session, the compositor's screen copy and the desktop
# portal's screenshot. Each session is opened with `kro open kro://picker`, followed by pointer moves for about
# a second, and ended with a click; the agent's own log lines give the figures. Use a release build:
#   cmake -S . -B build-rel -G Ninja -DCMAKE_BUILD_TYPE=Release -DKRO_BENCH=ON
#   ninja -C build-rel kro wayland_colour_client
#   bench/picker_latency.sh build-rel/kro build-rel/tests/wayland/wayland_colour_client [SESSIONS]
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)

if [[ ${1:-} == --route ]]; then
    route=$2 KRO=$3 CLIENT=$4 SESSIONS=$5
    if [[ $route == x11 ]]; then
        source "$here/../tests/e2e/lib.sh" "$KRO"
        move() { xdotool mousemove "$1" "$2"; }
        press() { xdotool click 1; }
        "$KRO" >"$WORK/agent.log" 2>&1 &
        PIDS+=($!)
    else
        source "$here/../tests/wayland/session.sh" "$CLIENT"
        move() { pointer_to "$1" "$2"; }
        press() { click; }
        KRO_TEST_CAPTURE_ROUTE=$route "$KRO" >"$WORK/agent.log" 2>&1 &
        PIDS+=($!)
    fi
    for _ in $(seq 300); do grep -q "Kro is running" "$WORK/agent.log" 2>/dev/null && break; sleep 0.1; done
    for ((session = 1; session <= SESSIONS; session++)); do
        move 300 300
        before=$(grep -c "Loupe: first lens frame" "$WORK/agent.log" || true)
        "$KRO" open kro://picker
        for _ in $(seq 100); do (($(grep -c "Loupe: first lens frame" "$WORK/agent.log") > before)) && break; sleep 0.05; done
        for step in $(seq 20); do move $((300 + step * 10)) $((300 + step * 5)); sleep 0.05; done
        press
        sleep 0.5
    done
    sleep 0.5
    grep -o "Loupe: .*" "$WORK/agent.log" | "${PYTHON:-/usr/bin/python3}" -c '
import re, statistics, sys
first, drawing, rate = [], [], []
for line in sys.stdin:
    if m := re.search(r"first lens frame (\d+) ms", line):
        first.append(int(m.group(1)))
    elif m := re.search(r"(\d+) lens frames in ([\d.]+) s, ([\d.]+) ms of drawing", line):
        drawing.append(float(m.group(3)))
        rate.append(int(m.group(1)) / float(m.group(2)))
if not first:
    sys.exit("no lens frame was logged")
print(f"{sys.argv[1]:12} first lens frame: median {statistics.median(first):6.0f} ms (of {len(first)}, {min(first)}-{max(first)})"
      f"   drawing one frame: median {statistics.median(drawing):5.2f} ms   frames/s while open: {statistics.median(rate):4.1f}")
' "$route"
    exit 0
fi

KRO=${1:?usage: $0 KRO COLOUR_CLIENT [SESSIONS]}
CLIENT=${2:?usage: $0 KRO COLOUR_CLIENT [SESSIONS]}
SESSIONS=${3:-5}
for route in x11 screen-copy portal; do
    bash "$0" --route "$route" "$KRO" "$CLIENT" "$SESSIONS" | grep -E "first lens frame|skipped|FAIL"
done
