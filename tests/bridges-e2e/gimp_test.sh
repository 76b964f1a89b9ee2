#!/usr/bin/env bash
# GIMP on a virtual display with a private session bus: `kro send` sets its foreground and background (read
# back by a Script-Fu call of our own), `kro get` reads them, the picker in "Send to software" mode sends the
# pixel under the pointer, and a GIMP that goes away fails within the time limit with the colour left on the
# clipboard.
source "$(dirname "$0")/lib.sh" "$1" gimp

start_program

# GIMP's colour as GIMP itself reports it, through a Script-Fu call that does not go through Kro.
gimp_color() {
    local file=$WORK/gimp-$1-$RANDOM.txt
    gdbus call --session --dest org.gimp.GIMP.UI --object-path /org/gimp/GIMP/UI --method org.gimp.GIMP.UI.BatchRun \
        plug-in-script-fu-eval "(let ((port (open-output-file \"$file\"))) (write (gimp-context-get-$1) port) (close-output-port port))" >/dev/null
    for _ in $(seq 100); do [[ -s $file ]] && break; sleep 0.1; done
    cat "$file" 2>/dev/null
}

kro send --primary FF0080 --app org.gimp.GIMP || fail "send --primary"
[[ $(gimp_color foreground) == "((255 0 128))" ]] || fail "GIMP's foreground after send: $(gimp_color foreground)"
[[ $(kro get --primary --app org.gimp.GIMP) == FF0080 ]] || fail "get --primary did not return what was set"
kro send --secondary '#00C0FF' --app org.gimp.GIMP || fail "send --secondary"
[[ $(gimp_color background) == "((0 192 255))" ]] || fail "GIMP's background after send: $(gimp_color background)"
[[ $(kro get --secondary --app GIMP) == 00C0FF ]] || fail "get --secondary by name did not return what was set"
wait_for_library '"00C0FF" in [c["hex"] for c in user["history"]["colors"]]' || fail "the colour read is not in the history"

# A colour text that is not a colour never reaches GIMP.
kro send --primary 'rgb(1, 2' --app org.gimp.GIMP && fail "a broken colour was sent"
[[ $(gimp_color foreground) == "((255 0 128))" ]] || fail "a refused colour changed GIMP's foreground"

# The picker over GIMP's picture, in "Send to software": a click sends the pixel to GIMP's foreground.
click_in_plugin_mode_over gimp
for _ in $(seq 40); do [[ $(gimp_color foreground) == "((32 128 192))" ]] && break; sleep 0.25; done
[[ $(gimp_color foreground) == "((32 128 192))" ]] || fail "the pick did not reach GIMP: $(gimp_color foreground); $(agent_log | grep -i gimp | tail -3)"
xdotool key Escape

# GIMP gone in the middle of a call: a failure within the time limit, and the colour on the clipboard.
kro send --primary 123456 --app org.gimp.GIMP >"$WORK/send.out" 2>&1 &
SEND_PID=$!
kill -KILL $PROGRAM_PID
start=$SECONDS
wait $SEND_PID && fail "a send to a GIMP that went away succeeded"
# The two-second limit itself is the unit tests' to check; here only that nothing hangs on a loaded machine.
((SECONDS - start <= 30)) || fail "the failed send hung for $((SECONDS - start)) s"
grep -q "did not take the color" "$WORK/send.out" || fail "the failure says: $(cat "$WORK/send.out")"
[[ $(clipboard) =~ ^#?123456$ ]] || fail "the clipboard after the failed send: '$(clipboard)'"

stop_agent
echo "gimp bridge test passed"
