#!/usr/bin/env bash
# Inkscape on a virtual display with a private session bus, a document holding a selected rectangle: `kro send`
# sets the selection's fill and stroke (read from the document Inkscape writes), `kro get` reads them, the
# picker in "Send to software" mode fills the selection with the pixel under the pointer, and an Inkscape
# that stops answering fails within the time limit.
source "$(dirname "$0")/lib.sh" "$1" inkscape

start_program
[[ $LAST == 336699 ]] || fail "the square's fill read as '$LAST'"

# The square's style in the document as Inkscape writes it now.
square_style() {
    rm -f "$WORK/out.svg"
    inkscape_action export-filename "[<'$WORK/out.svg'>]" && inkscape_action export-plain-svg "[<true>]" &&
        inkscape_action export-overwrite "[<true>]" && inkscape_action export-do
    python3 - "$WORK/out.svg" <<'PY'
import sys, xml.etree.ElementTree as tree
for element in tree.parse(sys.argv[1]).iter():
    if element.get("id") == "square":
        print(element.get("style"))
PY
}


kro send --primary FF0080 --app org.inkscape.Inkscape || fail "send --primary"
[[ $(square_style) == *"fill:#ff0080"* ]] || fail "the saved fill after send: $(square_style)"
[[ $(kro get --primary --app org.inkscape.Inkscape) == FF0080 ]] || fail "get --primary did not return what was set"
kro send --secondary 00C0FF --app Inkscape || fail "send --secondary"
[[ $(square_style) == *"stroke:#00c0ff"* ]] || fail "the saved stroke after send: $(square_style)"
[[ $(kro get --secondary --app Inkscape) == 00C0FF ]] || fail "get --secondary did not return what was set"

# The picker over the backdrop, in "Send to software": a click fills the selected square with its colour.
click_in_plugin_mode_over inkscape
for _ in $(seq 20); do [[ $(square_style) == *"fill:#cc3300"* ]] && break; sleep 0.25; done
[[ $(square_style) == *"fill:#cc3300"* ]] || fail "the pick did not reach Inkscape: $(square_style); $(agent_log | grep -i inkscape | tail -3)"
xdotool key Escape

# An Inkscape that stops answering: the read fails within the time limit and nothing is invented.
kill -STOP $PROGRAM_PID
start=$SECONDS
kro get --primary --app org.inkscape.Inkscape >"$WORK/get.out" 2>&1 && fail "a read from a stopped Inkscape succeeded: $(cat "$WORK/get.out")"
# The two-second limit itself is the unit tests' to check; here only that nothing hangs on a loaded machine.
((SECONDS - start <= 30)) || fail "the failed read hung for $((SECONDS - start)) s"
kill -KILL $PROGRAM_PID

stop_agent
echo "inkscape bridge test passed"
