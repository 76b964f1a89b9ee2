#!/usr/bin/env bash
# The preferences window with the real agent, driven by the keyboard as a person would: a format made and
# chosen in the formats pane is what the next pick puts on the clipboard; preferences changed in the
# appearance and general panes are stored, and a restarted agent keeps every one of them, the format too.
source "$(dirname "$0")/lib.sh"

xsetroot -solid '#336699'

clipboard() {
    python3 -c 'import tkinter; r = tkinter.Tk(); r.withdraw(); print(r.clipboard_get())' 2>/dev/null
}

# Opens a pane by its URL and waits until its window has the keyboard: the pane's first control has it then.
open_pane() {
    local pane=$1 title=$2 window
    "$KRO" open "kro://settings/$pane"
    for _ in $(seq 100); do
        window=$(xdotool search --onlyvisible --name "^$title — Kro Preferences\$" 2>/dev/null | head -1 || true)
        [[ -n $window && $(xdotool getwindowfocus 2>/dev/null) == "$window" ]] && break
        sleep 0.1
    done
    [[ -n $window ]] || fail "kro://settings/$pane did not open the $title pane"
    xdotool windowfocus --sync "$window"
    sleep 0.3
}

# Types keys with a pause after each, so a loaded machine's agent sees them one by one.
keys() {
    for key in "$@"; do xdotool key "$key"; sleep 0.15; done
}

# Picks the root's colour with `kro pick`, away from every window, and waits for the clipboard to hold `expected`.
pick_expecting() {
    local expected=$1 loupe=""
    xdotool mousemove 1100 700
    "$KRO" pick >/dev/null 2>"$WORK/pick.err" &
    local pick=$!
    for _ in $(seq 150); do
        loupe=$(xdotool search --onlyvisible --name "Kro Loupe" 2>/dev/null | head -1 || true)
        [[ -n $loupe ]] && break
        sleep 0.1
    done
    [[ -n $loupe ]] || fail "the loupe did not show"
    sleep 0.8
    xdotool click 1
    wait "$pick" || fail "kro pick failed: $(cat "$WORK/pick.err")"
    for _ in $(seq 30); do [[ $(clipboard) == "$expected" ]] && return 0; sleep 0.1; done
    fail "after the pick the clipboard holds '$(clipboard)', not '$expected'"
}

# The stored preferences this test changes, as "key=value" lines (each value is base64-encoded JSON).
DEFAULTS=$XDG_CONFIG_HOME/kroapp.Kro/defaults.json
CHANGED="AppTheme StatusItemStyle DisplayLastColor ColorBlindness PickerSize PlaySounds"
stored() {
    python3 - "$DEFAULTS" $CHANGED <<'PY'
import base64, json, sys
stored = json.load(open(sys.argv[1]))
for name in sys.argv[2:]:
    value = stored.get("UserDefaults.Kro." + name)
    print(f"{name}={json.loads(base64.b64decode(value)) if isinstance(value, str) else value}")
PY
}

start_agent

# The formats pane: "+" makes a format and hands the keyboard to its name; Tab goes on to the copied text's
# template; the format is then chosen for copying.
open_pane formats Formats
keys Tab space
xdotool type --delay 40 "E2E Format"
keys Tab ctrl+a
xdotool type --delay 40 'e2e hex[red]/hex[green]/hex[blue]'
keys shift+Tab shift+Tab space
pick_expecting "e2e 33/66/99"

# Each pane opens with its first control in hand; arrows choose in menus and numbers, space flips a switch.
before=$(stored)
open_pane appearance Appearance
keys Down Down Tab Up Tab space Tab Down Tab Up
open_pane general General
keys space Tab space
unchanged() { stored | grep -Fx -f <(echo "$before") || true; }
for _ in $(seq 50); do [[ -z $(unchanged) ]] && break; sleep 0.1; done
changed=$(stored)
[[ -z $(unchanged) ]] || fail "not changed by the panes: $(unchanged)"
grep -qx "AppTheme=dark" <<<"$changed" || fail "the theme was not stored as dark: $changed"
[[ -f $XDG_CONFIG_HOME/autostart/kroapp.Kro.desktop ]] || fail "starting at login wrote no autostart entry"

# A new agent reads them all back: the pick still uses the format, the stored values stand, and a further
# change rewrites the file without losing any of them.
stop_agent
start_agent
pick_expecting "e2e 33/66/99"
open_pane appearance Appearance
keys Up
for _ in $(seq 30); do [[ $(stored | grep AppTheme) == "AppTheme=light" ]] && break; sleep 0.1; done
[[ $(stored | grep -v AppTheme) == "$(grep -v AppTheme <<<"$changed")" ]] ||
    fail "after a restart the stored preferences are $(stored), not $changed"
[[ $(stored | grep AppTheme) == "AppTheme=light" ]] || fail "the theme chosen after the restart was not stored"
[[ -f $XDG_CONFIG_HOME/autostart/kroapp.Kro.desktop ]] || fail "the autostart entry went at the restart"

stop_agent
echo "preferences test passed"
