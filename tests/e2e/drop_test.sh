#!/usr/bin/env bash
# Files and data dragged from another program onto the library window, over XDND: a separate process
# (tests/support's drag source) starts the drag at a press in its window, xdotool carries the pointer to
# the library window and lets go. A GIMP palette becomes a palette of the library; a file that is not a
# palette is named in a notice and changes nothing; colours in dropped text are added to the palette shown;
# data of a type Kro does not read is refused.
# usage: drop_test.sh PATH_TO_KRO PATH_TO_DRAG_SOURCE
source "$(dirname "$0")/lib.sh"
DRAG_SOURCE=${2:?usage: $0 PATH_TO_KRO PATH_TO_DRAG_SOURCE}
source "$(dirname "$0")/windows.sh"

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

# Text with colours written in it, as an editor drags it, adds them to the palette the window shows (the
# history, where the window opened).
drag_to_library --type text/plain "brand: #112233; accent: #445566"
wait_for_library '{"112233", "445566"} <= {c["hex"] for c in user["history"]["colors"]}' \
    || fail "the colours in the dropped text are not in the shown palette"
before=$(sha1sum "$USER_JSON")

# Data of a type Kro does not read is refused, and nothing changes.
drag_to_library --type application/x-unknown-thing "1 2 3"
grep -q "drag ended: refused" "$DRAG_LOG" || fail "the library window took data it cannot read: $(cat "$DRAG_LOG")"
sleep 0.5
[[ $(sha1sum "$USER_JSON") == "$before" ]] || fail "a drop of unknown data changed the library"
stop_agent
echo "drop test passed"
