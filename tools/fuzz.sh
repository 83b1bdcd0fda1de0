# shellcheck shell=bash
# Sourced: the fuzz targets. Needs the other files of this folder.

# Name, where it runs, the longest input in bytes, what it tries. Those of Python decide themselves how long.
fuzz_table() {
    cat <<'EOF'
redaction|native|96|messages through the log's redaction, against its rules applied one by one
line|native|512|lines and headers of the log, against their parts put together
copies|native|512|names in a log's folder: which are deleted, against the rules for each name on its own
log|native|4096|bytes as a log that the doctor reads: lines that do not depend on blocks, a report that agrees with itself
protocol|native|512|bytes as messages of the simulator: refused, or exactly the encoding of what they decode to
text|wine|256|UTF-8 to UTF-16 and back, and texts cut in a character, against the tables of the Unicode standard
dates|wine|64|dated names and the days before, against a calendar that counts day by day
xml|wine|1024|XML and pages' markup: bytes read or refused; a tree written as XML comes back
manifest|wine|2048|manifests: bytes read or refused; declarations come back, forbidden and missing ones are refused
values|wine|512|value sets: bytes refused or travelling on unchanged; values come back as they were
package|python||damaged packages through --verify: answered soon, without an exception; contents as the block map tells
EOF
}

fuzz_names() { fuzz_table | cut -d '|' -f 1; }

list_fuzz_targets() { fuzz_table | awk -F '|' '{ printf "  %-10s %s\n", $1, $4 }'; }

# fuzz_facts NAME: sets where and longest.
fuzz_facts() {
    # shellcheck disable=SC2034 # for the caller
    IFS='|' read -r _ where longest _ < <(fuzz_table | grep "^$1|")
}

# build_fuzz NAMES...: the build folders stay held.
build_fuzz() {
    # shellcheck disable=SC2034 # fuzz_facts sets both
    local name where longest native=() wine=()
    for name in "$@"; do
        fuzz_facts "$name"
        case $where in
        native) native+=("${name}_fuzz") ;;
        wine) wine+=("${name}_fuzz") ;;
        esac
    done
    [ ${#native[@]} -eq 0 ] || build native --target "${native[@]}"
    if [ ${#wine[@]} -gt 0 ]; then
        build product --target "${wine[@]}"
        at_end stop_wine "$PWD/build/product/prefix"
    fi
}

# fuzz SECONDS SEED NAMES...: each so long, two at a time. SEED: empty for other inputs each time.
fuzz() {
    local seconds=$1 seed=$2 log=build/logs/fuzz.log result=0
    shift 2
    build_fuzz "$@"
    step "fuzzing for $seconds s each: $*"
    attend_logged "$log" xargs --max-procs=2 --max-lines=1 tools/fuzz-one < <(printf "%s $seconds $seed\n" "$@") || result=1
    cat "$log"
    return $result
}

# fuzz_again NAME FILE: plays an input again.
fuzz_again() {
    build_fuzz "$1"
    step "playing $2"
    attend tools/fuzz-one "$1" "$2"
}
