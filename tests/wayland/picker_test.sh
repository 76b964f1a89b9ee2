#!/usr/bin/env bash
# The picker in a headless Wayland session, by each of its routes to the screen: the compositor's screen copy
# and the desktop portal's screenshot. For each, picks on the native Wayland window and on the X11 one, each
# at both sides of a colour edge, must give exactly the pixel the compositor shows under the pointer, and land
# in the saved history. Then the faults: a portal that is gone ends the session with one line, and no loupe
# is left on the screen; a compositor that dies under an open loupe ends the agent with the library whole.
# Usage: picker_test.sh KRO COLOUR_CLIENT
KRO=${1:?usage: $0 KRO COLOUR_CLIENT}
source "$(dirname "$0")/session.sh" "${2:?usage: $0 KRO COLOUR_CLIENT}"

source "$(dirname "$0")/agent.sh"

# Opens the picker with the pointer elsewhere, moves onto the point and clicks: the history's first colour must
# be `expected`, the pixel the compositor showed there before the picker opened.
pick_at() {
    pointer_away_from "$1" "$2"
    "$KRO" open kro://picker || fail "kro open kro://picker failed"
    click_pick "$@"
    echo "  ($1, $2): $3"
}

read -r nx ny nw nh < <(window_rect kro-native)
read -r xx xy xw xh < <(window_rect kro-x11)
# Both sides of a colour edge in each window.
native_edge=$((nx + nw / 2)) native_y=$((ny + 100))
x11_edge=$((xx + xw / 2)) x11_y=$((xy + xh - 100))
points=("$((native_edge - 1)),$native_y" "$native_edge,$native_y" "$((x11_edge - 1)),$x11_y" "$x11_edge,$x11_y")
mapfile -t truth < <(screen_pixels "${points[@]}")
# The windows hold what they were painted with, so the screen's truth is not a black or empty picture.
[[ ${truth[*]} == "FF0000 00C000 FF00FF 102030" ]] || fail "the windows are not on screen as painted: ${truth[*]}"

check_route() {
    # A colour already in the history keeps its place: each route starts with an empty library.
    rm -rf "$XDG_DATA_HOME/kroapp.Kro"
    start_agent "$1"
    agent_logged "capture: $2" || fail "the agent did not take the $1 route: $(agent_log | grep 'session:')"
    echo "$1:"
    for i in "${!points[@]}"; do pick_at "${points[i]%,*}" "${points[i]#*,}" "${truth[i]}"; done
    agent_logged "Screen capture failed" && fail "a capture failed: $(agent_log | grep 'Screen capture failed' | head -1)"
    stop_agent
}

# Only WAYLAND_DISPLAY: the agent starts all the same, and says that the portals need its desktop entry.
check_route screen-copy "a still of the output copied by the compositor"
agent_logged "kroapp.Kro.desktop is not installed.*install Kro" || fail "no line says to install the desktop entry"

# `kro pick`, which a desktop shortcut runs where the desktop takes none from applications, prints the pick.
rm -rf "$XDG_DATA_HOME/kroapp.Kro"
start_agent screen-copy
"$KRO" pick >"$WORK/pick.out" 2>"$WORK/pick.err" &
pick=$!
read -r px py <<<"${points[0]/,/ }"
pointer_away_from "$px" "$py"
click_pick "$px" "$py" "${truth[0]}"
wait "$pick" || fail "kro pick failed: $(cat "$WORK/pick.err")"
[[ $(cat "$WORK/pick.out") == "#${truth[0]}" ]] || fail "kro pick printed '$(cat "$WORK/pick.out")', the screen shows ${truth[0]}"
echo "kro pick: #${truth[0]}"
stop_agent
# With XWayland's DISPLAY too, as in a desktop session: still a Wayland session.
DISPLAY=$X11_DISPLAY check_route portal "a still through the desktop portal's Screenshot"

# The portal goes away: the next session ends with one line saying what to install, and leaves nothing behind.
start_agent portal
kill "$PORTAL_PID"
for _ in $(seq 50); do kill -0 "$PORTAL_PID" 2>/dev/null || break; sleep 0.1; done
"$KRO" open kro://picker
for _ in $(seq 100); do agent_logged "The picker closed" && break; sleep 0.1; done
line=$(agent_log | grep "The picker closed")
[[ $line == *"install xdg-desktop-portal"* ]] || fail "no line saying what to install when the portal is gone: '$line'"
sleep 0.5
loupe_on_screen && fail "a loupe was left on screen after the portal failed"
kill -0 "$AGENT_PID" 2>/dev/null || fail "the agent ended with the portal"
stop_agent

# The compositor dies with the loupe open: Qt ends the agent, and the saved library is whole, picks and all.
saved=$(cat "$USER_JSON")
start_agent screen-copy
pointer_away_from 400 300
"$KRO" open kro://picker
for _ in $(seq 100); do loupe_on_screen && break; sleep 0.1; done
loupe_on_screen || fail "the loupe did not appear before the compositor was stopped"
kill "${PIDS[0]}"
for _ in $(seq 100); do kill -0 "$AGENT_PID" 2>/dev/null || break; sleep 0.1; done
kill -0 "$AGENT_PID" 2>/dev/null && fail "the agent outlived its compositor by 10 s"
agent_logged "The Wayland connection broke" || fail "the agent did not say why it ended: $(agent_log | tail -3)"
"$PYTHON" -c 'import json, sys; json.load(open(sys.argv[1]))' "$USER_JSON" || fail "the library is not whole after the compositor died"
[[ $(cat "$USER_JSON") == "$saved" ]] || fail "the library changed when the compositor died"
echo "wayland picker test passed"
