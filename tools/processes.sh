# shellcheck shell=bash
# Sourced: what a script starts ends with it, on every way out: at its end, after a failure, by Ctrl-C or a signal.

group=     # the process group of the command that is attended to
ticker=    # the process that tells when to show progress
endings=() # what is done at the end, the last first

# at_end COMMAND...: runs the command when the script ends.
at_end() { endings=("${*@Q}" "${endings[@]}"); }

# attend COMMAND...: runs a command in a process group of its own and waits for it. The shell hears signals meanwhile.
attend() {
    local code=0
    setsid "$@" <&0 &
    group=$!
    wait "$group" || code=$?
    group=
    return $code
}

# attend_logged LOG COMMAND...: the same with all output in a file; every half minute shows how far the file tells of.
attend_logged() {
    local log=$1 started=$SECONDS ended code
    shift
    mkdir -p "$(dirname "$log")"
    setsid "$@" <&0 >"$log" 2>&1 &
    group=$!
    while :; do
        sleep "${VELMO_PROGRESS_SECONDS:-30}" &
        ticker=$!
        code=0
        wait -n -p ended "$group" "$ticker" || code=$?
        [ "$ended" = "$ticker" ] || break
        show_progress "$(progress_in "$log")$((SECONDS - started)) s"
    done
    group=
    kill "$ticker" 2>/dev/null || true
    ticker=
    return $code
}

# What ninja or ctest last wrote of its steps: "12/345 steps, ".
progress_in() {
    sed -nE 's|^\[([0-9]+/[0-9]+)\].*|\1 steps, |p; s|^ *([0-9]+/[0-9]+) Test +#.*|\1 tests, |p' "$1" | tail -n 1
}

# True while processes of the attended group live. (One that has ended may stay in the table.)
group_lives() {
    cat /proc/[0-9]*/stat 2>/dev/null |
        awk -v group="$group" '{ sub(/^.*\) /, "") } $3 == group && $1 != "Z" { n++ } END { exit !n }'
}

end_group() {
    kill -TERM -- "-$group" 2>/dev/null || true
    local deadline=$((SECONDS + 10))
    while group_lives && [ $SECONDS -lt $deadline ]; do
        sleep 0.1
    done
    kill -KILL -- "-$group" 2>/dev/null || true
}

end_all() {
    trap '' INT TERM HUP
    [ -z "$ticker" ] || kill "$ticker" 2>/dev/null || true
    [ -z "$group" ] || end_group
    local ending
    for ending in "${endings[@]}"; do
        eval "$ending" || true
    done
}

# Ends by the signal itself, so that a caller knows of it.
end_by() {
    end_all
    trap - EXIT "$1"
    kill -s "$1" $$
}

trap end_all EXIT
for signal in INT TERM HUP; do
    # shellcheck disable=SC2064 # the signal of now is meant
    trap "end_by $signal" $signal
done
