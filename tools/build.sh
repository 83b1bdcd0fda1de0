# shellcheck shell=bash
# Sourced: builds, and runs the tests of a build. Needs the other files of this folder.

presets=(product gcc coverage native native-release)

# configure PRESET: the folder build/PRESET stays held.
configure() {
    local preset=$1
    hold "$preset"
    remove_foreign "build/$preset"
    [ ! -e "build/$preset/build.ninja" ] || return 0
    step "configuring build/$preset"
    long "build/logs/configure-$preset.log" cmake --preset "$preset"
}

# build PRESET [--target TARGETS...]: the folder build/PRESET stays held.
build() {
    local preset=$1
    shift
    configure "$preset"
    step "building $preset"
    long "build/logs/build-$preset.log" cmake --build --preset "$preset" "$@"
}

# A build folder that came with a copy of the clone builds the original's sources.
remove_foreign() {
    local folder=$1 home
    home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$folder/CMakeCache.txt" 2>/dev/null) || return 0
    if [ -n "$home" ] && [ ! "$home" -ef . ]; then
        step "removing $folder, which builds $home"
        remove_build "$folder"
    fi
}

# Ends what runs on a build folder, and removes it.
remove_build() {
    local prefix
    for prefix in "$1"/*/dosdevices; do
        [ ! -e "$prefix" ] || forget_wine "$(realpath "${prefix%/*}")"
    done
    rm -rf "$1"
}

# The same without a word unless it takes long or fails, for commands whose output is the program's. It leaves the folder
# to others.
build_quietly() {
    quiet=yes
    build "$@"
    release
}

# run_tests PRESET [CTEST ARGUMENTS...]: two more at a time than there are processors, since some of them mostly wait.
run_tests() {
    local preset=$1 result=0
    shift
    [ "$preset" = native ] || prepare_prefix "$preset" || return
    step "testing $preset"
    show_tests "build/logs/test-$preset.log" ctest --test-dir "build/$preset" --parallel $(($(nproc) + 2)) \
        --output-on-failure --no-tests=error "$@" || result=$?
    count_tests "build/$preset/Testing/Temporary/LastTest.log"
    [ "$preset" = native ] || stop_wine "$PWD/build/$preset/prefix"
    return $result
}

# A program is one test of ctest, and says itself how many it ran.
count_tests() {
    sed -nE 's/^\[==========\] ([0-9]+) tests? .* ran\..*/\1/p' "$1" 2>/dev/null |
        awk '{ tests += $1 } END { if (NR) printf "    tests run: %d\n", tests }'
}

# list_tests PRESET REGEX: those of ctest, one a line.
list_tests() {
    local shown
    shown=$(ctest --test-dir "build/$1" --show-only --tests-regex "$2" 2>&1) || {
        printf '%s\n' "$shown"
        return 1
    }
    sed -nE 's/^ *Test +#[0-9]+: ([^ ]+).*/\1/p' <<<"$shown"
}

# test_filter PRESET REGEX PROGRAMS...: GoogleTest's filter of what matches in these programs. One that is named itself
# runs whole.
test_filter() {
    local preset=$1 name=$2 program path filters=()
    shift 2
    for program in "$@"; do
        if [ "$program" = "$name" ]; then
            filters+=("*")
            continue
        fi
        path=$(head -n 1 "build/$preset/test-programs/$program")
        filters+=("$(cmake/wine-run --demand test "$PWD/build/$preset/prefix" "$path" --gtest_list_tests |
            python3 tools/select_tests.py filter "$name")") || fail "$program does not list its tests"
    done
    (
        IFS=:
        printf '%s' "${filters[*]}"
    )
}

# join_names NAMES...: as alternatives of a regular expression.
join_names() {
    local names
    names=$(printf '|%s' "${@//./\\.}")
    printf '%s' "${names:1}"
}

# Runs ctest: on a terminal with its own progress, elsewhere showing what did not pass and the sum.
show_tests() {
    local log=$1 result=0
    shift
    if [ -t 1 ]; then
        attend "$@" --progress
        return
    fi
    attend_logged "$log" "$@" || result=$?
    grep -vE '^ +Start +[0-9]+: | +Passed +[0-9.]+ sec$|^$' "$log"
    return $result
}

# A Wine prefix in which Windows finds the simulator's runtime classes, if they are built. Its wineserver stays until the
# end of the script; one that a killed script left is ended first.
prepare_prefix() {
    local prefix=$PWD/build/$1/prefix simulator=build/$1/simulator/sim.exe
    at_end stop_wine "$prefix"
    stop_wine "$prefix"
    [ ! -e "$simulator" ] || attend cmake/wine-run "$prefix" "$simulator" install >/dev/null
}
