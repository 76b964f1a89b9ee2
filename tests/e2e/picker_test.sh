#!/usr/bin/env bash
# A whole pick on a real X server: a window of known colours, the picker's hot key typed through XTest, the
# pointer moved, a click (and Return after arrow-key moves), then the clipboard text and the saved history.
# Every pick lands where the loupe itself was drawn a moment before: the sample must be the real pixel.
source "$(dirname "$0")/lib.sh"

# Four blocks of known colours at a known place (no window manager: the geometry is kept as asked).
python3 - >"$WORK/colors.log" 2>&1 <<'PY' &
import tkinter
root = tkinter.Tk()
root.title("kro-e2e-colors")
root.geometry("600x400+100+100")
canvas = tkinter.Canvas(root, width=600, height=400, highlightthickness=0, borderwidth=0)
canvas.place(x=0, y=0)
for x, y, color in ((0, 0, "#FF0000"), (300, 0, "#00C000"), (0, 200, "#0000FF"), (300, 200, "#808080")):
    canvas.create_rectangle(x, y, x + 300, y + 200, fill=color, width=0)
root.mainloop()
PY
PIDS+=($!)
for _ in $(seq 100); do xdotool search --name kro-e2e-colors >/dev/null 2>&1 && break; sleep 0.1; done
xdotool search --name kro-e2e-colors >/dev/null 2>&1 || fail "the colour window did not appear"

clipboard() {
    python3 -c 'import tkinter; r = tkinter.Tk(); r.withdraw(); print(r.clipboard_get())' 2>/dev/null
}

wait_for_clipboard() {
    for _ in $(seq 50); do [[ $(clipboard) == "$1" ]] && return 0; sleep 0.1; done
    return 1
}

# Started here rather than by start_agent: the agent's informational lines may be muted, so readiness is
# its socket and its debug line for the tray menu.
agent_runs=1
"$KRO" >"$WORK/agent-1.log" 2>&1 &
AGENT_PID=$!
for _ in $(seq 150); do
    [[ -S $XDG_RUNTIME_DIR/kroapp.Kro.socket ]] && break
    kill -0 "$AGENT_PID" 2>/dev/null || fail "the agent exited at start"
    sleep 0.1
done
[[ -S $XDG_RUNTIME_DIR/kroapp.Kro.socket ]] || fail "the agent did not start"
sleep 1

# Opened over red; the pointer then goes into the green block, where the lens was just drawn; a click picks.
xdotool mousemove 350 200
xdotool key ctrl+alt+p
sleep 0.8
xdotool mousemove 420 200
sleep 0.5
xdotool click 1
wait_for_clipboard "#00C000" || fail "clipboard after the click: '$(clipboard)'"
wait_for_library 'user["history"]["colors"][0]["hex"] == "00C000"' || fail "the pick is not in the saved history"

# Opened in the blue block three pixels left of the grey one; three one-pixel moves by arrow key, then Return.
xdotool mousemove 397 400
xdotool key ctrl+alt+p
sleep 0.8
xdotool key Right Right Right
sleep 0.3
xdotool key Return
sleep 0.3
wait_for_clipboard "#808080" || fail "clipboard after Return: '$(clipboard)'"
wait_for_library '[c["hex"] for c in user["history"]["colors"]][:2] == ["808080", "00C000"]' \
    || fail "the second pick is not first in the history"

# Escape closes without a pick; the next hot key opens again (the global set is back).
xdotool mousemove 200 400
xdotool key ctrl+alt+p
sleep 0.8
xdotool key Escape
sleep 0.3
[[ $(clipboard) == "#808080" ]] || fail "Escape changed the clipboard"
xdotool key ctrl+alt+p
sleep 0.8
xdotool click 1
wait_for_clipboard "#0000FF" || fail "clipboard after reopening: '$(clipboard)'"

agent_log | grep -q "Screen capture failed" && fail "a capture failed: $(agent_log | grep 'Screen capture failed' | head -1)"
stop_agent
echo "picker test passed"
