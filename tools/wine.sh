# shellcheck shell=bash
# Sourced: the Wine server of a prefix.

# stop_wine PREFIX: ends the server, and with it all that runs in the prefix. A process that is just starting outlives
# its server and waits for it without end.
stop_wine() {
    local process
    WINEPREFIX=$1 WINEDEBUG=-all wineserver -k || true
    for process in /proc/[0-9]*; do
        if [[ $(readlink "$process/exe") == */wine64* ]] && grep -qzxF "WINEPREFIX=$1" "$process/environ"; then
            kill -KILL "${process#/proc/}"
        fi
    done 2>/dev/null
    return 0
}

# wine_meeting PREFIX: the folder where the server listens. Debian's Wine keeps it in a temporary one, which copies of a
# prefix share, and names that in the prefix.
wine_meeting() {
    local name
    name=$(cat "$1/wineserver" 2>/dev/null) || return 1
    printf '%s/%s/server-%x-%x' "${TMPDIR:-/tmp}" "${name:?}" "$(stat -c %d "$1")" "$(stat -c %i "$1")"
}

# wine_server PREFIX: tells one server of the prefix from another; fails when none answers. (One that ends may have ended
# its programs already, and still listen.)
wine_server() {
    local place
    place=$(wine_meeting "$1") && python3 - "$place/socket" <<'EOF' 2>/dev/null
import os, socket, sys

with socket.socket(socket.AF_UNIX) as server:
    server.settimeout(30)
    server.connect(sys.argv[1])
    if not server.recv(1):
        sys.exit(1)
listening = os.stat(sys.argv[1])
print(listening.st_ino, listening.st_ctime_ns)
EOF
}

# forget_wine PREFIX: ends the server before the prefix is removed, and removes what lies elsewhere.
forget_wine() {
    local meeting
    command -v wineserver >/dev/null || return 0
    stop_wine "$1"
    if meeting=$(wine_meeting "$1"); then
        rm -rf "$meeting"
        rmdir "${meeting%/*}" 2>/dev/null || true
    fi
}
