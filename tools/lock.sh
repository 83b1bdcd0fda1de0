# shellcheck shell=bash
# Sourced: one ./dev at a time works in a folder of build/. Needs tools/processes.sh.

# hold NAME: waits until no other ./dev holds build/NAME, and holds it until the end of the script, `release` or the next
# `hold`. Descriptor 9 is the lock; what outlives the script has to close it.
hold() {
    local lock=build/$1.lock
    mkdir -p build
    while :; do
        exec 9>>"$lock"
        if ! flock --nonblock 9; then
            printf '\n./dev: build/%s is in use by %s; waiting for its end\n' "$1" "$(cat "$lock")" >&2
            attend flock 9
        fi
        # Its former holder may have removed it.
        [ "$lock" -ef /dev/fd/9 ] && break
    done
    : >"$lock"
    printf './dev %s (process %d)' "$command_line" $$ >&9
}

release() { exec 9>&-; }
