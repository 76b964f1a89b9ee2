# The agent in the headless Wayland session of session.sh: started and stopped by process id, with a log of its
# own per run. Source after session.sh, with KRO set to the binary.

USER_JSON=$XDG_DATA_HOME/kroapp.Kro/v5/user.json
AGENT_PID=""
agent_runs=0

# Starts the agent with the capture route forced to $1 (screen-copy, portal, pick-color) and waits for it.
start_agent() {
    agent_runs=$((agent_runs + 1))
    KRO_TEST_CAPTURE_ROUTE=$1 "$KRO" >"$WORK/agent-$agent_runs.log" 2>&1 &
    AGENT_PID=$!
    PIDS+=($AGENT_PID)
    for _ in $(seq 300); do
        [[ -S $XDG_RUNTIME_DIR/kroapp.Kro.socket ]] && grep -q "Kro is running" "$WORK/agent-$agent_runs.log" && return 0
        kill -0 "$AGENT_PID" 2>/dev/null || fail "the agent exited at start: $(tail -5 "$WORK/agent-$agent_runs.log")"
        sleep 0.1
    done
    fail "the agent did not start"
}

stop_agent() {
    kill -TERM "$AGENT_PID"
    for _ in $(seq 100); do kill -0 "$AGENT_PID" 2>/dev/null || break; sleep 0.1; done
    kill -0 "$AGENT_PID" 2>/dev/null && fail "the agent did not stop on SIGTERM"
    AGENT_PID=""
}

agent_log() { cat "$WORK/agent-$agent_runs.log"; }
# Whether the agent has logged a line matching $1 (read from the file: a pipe from agent_log into grep -q could
# be cut off mid-write and fail under pipefail).
agent_logged() { grep -q "$1" "$WORK/agent-$agent_runs.log"; }

history_first() {
    "$PYTHON" -c 'import json, sys; print(json.load(open(sys.argv[1]))["history"]["colors"][0]["hex"])' "$USER_JSON" 2>/dev/null
}

loupe_on_screen() { window_rect "Kro Loupe" >/dev/null; }

# With the loupe open and the pointer elsewhere, moves onto (x, y) and clicks: the history's first colour must
# become `expected`, and the loupe must go.
click_pick() {
    local x=$1 y=$2 expected=$3
    for _ in $(seq 100); do loupe_on_screen && break; sleep 0.1; done
    loupe_on_screen || fail "the loupe did not appear for ($x, $y): $(agent_log | grep -E 'Picker|🔴' | tail -3)"
    # The click picks what the lens last sampled: it comes once the loupe has seen the pointer arrive.
    sleep 0.3
    pointer_to $((x + 5)) "$y"
    pointer_to "$x" "$y"
    sleep 0.5
    click
    for _ in $(seq 100); do [[ $(history_first) == "$expected" ]] && break; sleep 0.1; done
    [[ $(history_first) == "$expected" ]] || fail "the pick at ($x, $y) gave '$(history_first)', the screen shows $expected"
    for _ in $(seq 50); do loupe_on_screen || break; sleep 0.1; done
    loupe_on_screen && fail "the loupe stayed on screen after the pick"
    return 0
}

# Moves the pointer away from (x, y), where a still would show it, before a picker opens.
pointer_away_from() { pointer_to $(($1 > 640 ? $1 - 150 : $1 + 150)) $(($2 > 400 ? $2 - 100 : $2 + 100)); }
