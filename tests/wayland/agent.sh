# The agent in the headless Wayland session of session.sh: started and stopped by process id, with a log of its
# own per run. Source after session.sh, with KRO set to the binary.

source "$(dirname "${BASH_SOURCE[0]}")/../support/agent.sh"

# Starts the agent with the capture route forced to $1 (screen-copy, portal, pick-color) and waits for it.
start_agent() { start_agent_with KRO_TEST_CAPTURE_ROUTE="$1"; }

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
