#!/usr/bin/env bash
# Files and data dragged from another program onto the library window, over XDND: a separate process
# (tests/support's drag source) starts the drag at a press in its window, xdotool carries the pointer to
# the library window and lets go. A GIMP palette becomes a palette of the library; a file that is not a
# palette is named in a notice and changes nothing; data of a type Kro does not read is refused.
# usage: drop_test.sh PATH_TO_KRO PATH_TO_DRAG_SOURCE
source "$(dirname "$0")/lib.sh"
DRAG_SOURCE=${2:?usage: $0 PATH_TO_KRO PATH_TO_DRAG_SOURCE}

visible() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1; }
wait_visible() {
    for _ in $(seq 100); do [[ -n $(visible "$1") ]] && return 0; sleep 0.1; done
    return 1
}

# Drags what the arguments name from a new drag source to the middle of the library window; the source
# writes how the drag ended to $DRAG_LOG. It stays until the next drag, since the library window fetches
# the data from it after the drop.
DRAG_LOG=$WORK/drag-source.log
source_pid=""
drag_to_library() {
    local log=$DRAG_LOG
    if [[ -n $source_pid ]]; then kill "$source_pid"; wait "$source_pid" 2>/dev/null || true; fi
    "$DRAG_SOURCE" "$@" >"$log" 2>&1 &
    source_pid=$!
    PIDS+=($source_pid)
    wait_visible '^kro-drag-source$' || fail "the drag source did not appear"
    xdotool windowmove "$(visible '^kro-drag-source$')" 20 600
    sleep 0.3
    eval "$(xdotool getwindowgeometry --shell "$(visible '^Kro Library$')")"
    local to_x=$((X + WIDTH / 2)) to_y=$((Y + HEIGHT / 2))
    xdotool mousemove 80 660 mousedown 1
    sleep 0.3
    # XDND follows real motion: the pointer travels in steps, as a hand would move it.
    for step in $(seq 1 10); do
        xdotool mousemove $((80 + (to_x - 80) * step / 10)) $((660 + (to_y - 660) * step / 10))
        sleep 0.05
    done
    sleep 0.3
    xdotool mouseup 1
    for _ in $(seq 100); do grep -q "drag ended" "$log" && return 0; sleep 0.1; done
    fail "the drag did not end: $(cat "$log")"
}

start_agent
xdotool key ctrl+alt+shift+l
wait_visible '^Kro Library$' || fail "the shortcut did not open the library window"

cat >"$WORK/Sunset.gpl" <<'GPL'
GIMP Palette
Name: Sunset
Columns: 2
#
255  94  58	Ember
250 200  80	Glow
 40  30  90	Dusk
GPL
drag_to_library "$WORK/Sunset.gpl"
grep -q "drag ended: copied" "$DRAG_LOG" || fail "the library window did not take the dropped file: $(cat "$DRAG_LOG")"
wait_for_library 'any(p["name"] == "Sunset" and [c["hex"] for c in p["colors"]] == ["FF5E3A", "FAC850", "281E5A"] for p in user["palettes"])' \
    || fail "the dropped GIMP palette is not in the saved library"

# A file that is not a palette is named in a notice and changes nothing.
before=$(sha1sum "$USER_JSON")
printf '\x00\xff\x10 not a palette' >"$WORK/Broken.gpl"
drag_to_library "$WORK/Broken.gpl"
for _ in $(seq 50); do agent_log | grep -q "notice: Could not import Broken.gpl" && break; sleep 0.1; done
agent_log | grep -q "notice: Could not import Broken.gpl" || fail "no notice names the file that did not import"
[[ $(sha1sum "$USER_JSON") == "$before" ]] || fail "a file that did not import changed the library"

# Data of a type Kro does not read is refused, and nothing changes.
drag_to_library --type application/x-unknown-thing "1 2 3"
grep -q "drag ended: refused" "$DRAG_LOG" || fail "the library window took data it cannot read: $(cat "$DRAG_LOG")"
sleep 0.5
[[ $(sha1sum "$USER_JSON") == "$before" ]] || fail "a drop of unknown data changed the library"
stop_agent
echo "drop test passed"
