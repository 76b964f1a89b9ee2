# Helpers for the end-to-end tests of the windows, sourced after lib.sh: windows found by title, and drags
# from another program.

# The first visible window whose title matches a pattern; waiting for one to show or to go.
visible() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1; }
wait_visible() {
    for _ in $(seq 100); do [[ -n $(visible "$1") ]] && return 0; sleep 0.1; done
    return 1
}
wait_hidden() {
    for _ in $(seq 100); do [[ -z $(visible "$1") ]] && return 0; sleep 0.1; done
    return 1
}

# Drags what the arguments name (files; --type MIME VALUE for data) from a new $DRAG_SOURCE to the middle
# of the library window; the source writes how the drag ended to $DRAG_LOG. It stays until the next drag,
# since the library window fetches the data from it after the drop.
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
