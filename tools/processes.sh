# shellcheck shell=bash
# Sourced: what a script starts ends with it, on every way out: at its end, after a failure, by Ctrl-C or a signal.

endings=() # what is done at the end, the last first

# at_end COMMAND...: runs the command when the script ends.
at_end() { endings=("${*@Q}" "${endings[@]}"); }

# attend COMMAND...: runs a command in a process group of its own and waits for it. The shell hears signals meanwhile.
attend() {
    setsid "$@" <&0 &
    wait $!
}

# attend_logged LOG COMMAND...: the same with all output in a file; every half minute shows how far the file tells of.
attend_logged() {
    local log=$1 started=$SECONDS attended ticker ended code
    shift
    mkdir -p "$(dirname "$log")"
    setsid "$@" <&0 >"$log" 2>&1 &
    attended=$!
    while :; do
        sleep "${VELMO_PROGRESS_SECONDS:-30}" 9>&- &
        ticker=$!
        code=0
        wait -n -p ended "$attended" "$ticker" || code=$?
        [ "$ended" = "$ticker" ] || break
        show_progress "$(progress_in "$log")$((SECONDS - started)) s"
    done
    kill "$ticker" 2>/dev/null || true
    wait "$ticker" 2>/dev/null || true
    return $code
}

# What ninja or ctest last wrote of its steps: "12/345 steps, ".
progress_in() {
    sed -nE 's|^\[([0-9]+/[0-9]+)\].*|\1 steps, |p; s|^ *([0-9]+/[0-9]+) Test +#.*|\1 tests, |p' "$1" | tail -n 1
}

# lives JOBS...: true while one of these processes lives, or one of its group. (One that has ended may stay in the table,
# and one may end while the table is read.)
lives() {
    { cat /proc/[0-9]*/stat 2>/dev/null || true; } |
        awk -v jobs=" $* " '
            { id = $1; sub(/^.*\) /, "") }
            $1 != "Z" && (index(jobs, " " id " ") || index(jobs, " " $3 " ")) { n++ }
            END { exit !n }'
}

# send SIGNAL JOBS...: to each and to its group, which one that has just been started has not made yet.
send() {
    local signal=$1 job
    shift
    for job in "$@"; do
        kill -s "$signal" -- "-$job" "$job" 2>/dev/null || true
    done
}

# The shell's own table of jobs is right at any moment, unlike a variable that is set after the start.
end_jobs() {
    local jobs deadline=$((SECONDS + 10))
    mapfile -t jobs <<<"$(jobs -p)"
    [ -n "${jobs[*]}" ] || return 0
    send TERM "${jobs[@]}"
    while lives "${jobs[@]}" && [ $SECONDS -lt $deadline ]; do
        sleep 0.1
    done
    send KILL "${jobs[@]}"
}

end_all() {
    trap '' INT TERM HUP
    end_jobs
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
