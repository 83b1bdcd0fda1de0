# shellcheck shell=bash
# Sourced: what people see of ./dev. Needs tools/processes.sh.

quiet= # set: only what takes long or fails is told, as an error is

step() { [ -n "$quiet" ] || printf '\n==> %s\n' "$*"; }

fail() {
    printf '\n./dev: %s\n' "$*" >&2
    exit 1
}

# refuse WHY: the call is not understood.
refuse() {
    printf './dev: %s\n' "$*" >&2
    exit 2
}

# long LOG COMMAND...: runs a long command: on a terminal with its own progress, elsewhere into a file that is shown if
# it fails, showing steps done every half minute.
long() {
    local log=$1
    shift
    if [ -t 1 ] && [ -z "$quiet" ]; then
        attend "$@"
        return
    fi
    local started=$SECONDS
    attend_logged "$log" "$@" || show_failure "$log" "$@"
    [ -n "$quiet" ] || printf '    done in %d s\n' $((SECONDS - started))
}

show_progress() {
    if [ -n "$quiet" ]; then
        printf '%s\n' "./dev builds: $1" >&2
    else
        printf '    %s\n' "$1"
    fi
}

show_failure() {
    local log=$1
    shift
    tail -n 60 "$log" >&2
    fail "failed: $* (all of its output: $log)"
}
