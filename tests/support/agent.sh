# The agent under test, started and stopped by its process id, with a log of its own per run. Source it with
# KRO (the binary), WORK, XDG_DATA_HOME, XDG_RUNTIME_DIR, a PIDS array that the test's clean-up kills, and
# `fail` defined.

USER_JSON=$XDG_DATA_HOME/kroapp.Kro/v5/user.json
AGENT_PID=""
agent_runs=0

# Starts the agent, with the environment assignments given (NAME=VALUE ...), and waits for its socket and its
# "Kro is running": generously, as a sanitizer build on a loaded machine starts slowly.
start_agent_with() {
    agent_runs=$((agent_runs + 1))
    env "$@" "$KRO" >"$WORK/agent-$agent_runs.log" 2>&1 &
    AGENT_PID=$!
    PIDS+=($AGENT_PID)
    for _ in $(seq 600); do
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
    wait "$AGENT_PID" || true
    AGENT_PID=""
}

agent_log() { cat "$WORK/agent-$agent_runs.log"; }
# Whether the agent has logged a line matching $1 (read from the file: a pipe from agent_log into grep -q could
# be cut off mid-write and fail under pipefail).
agent_logged() { grep -q "$1" "$WORK/agent-$agent_runs.log"; }
