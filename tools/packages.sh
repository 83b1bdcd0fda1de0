# shellcheck shell=bash
# Sourced: what the machine needs, a Debian 12. Needs tools/steps.sh and tools/lock.sh.

build_packages=(clang-19 lld-19 llvm-19 libclang-rt-19-dev libstdc++-12-dev cmake ninja-build python3 googletest
    g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 util-linux wine wine64 libcli11-dev nlohmann-json3-dev node-d3)
mutate_packages=("${build_packages[@]}" python3-clang-19)
test_packages=("${mutate_packages[@]}" chromium chromium-driver python3-selenium)
bench_packages=("${build_packages[@]}" libspdlog-dev libfmt-dev libpcre2-dev)
check_packages=("${build_packages[@]}" clang-format-19 clang-tidy-19 cppcheck git shellcheck)

# need PACKAGES...: installs what is missing.
need() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "needs these packages and no sudo is here to install them: ${missing[*]}"
        as_root=(sudo)
    fi
    hold packages
    step "installing ${#missing[@]} packages with apt: ${missing[*]}"
    install_step build/logs/apt-update.log "${as_root[@]}" apt-get update
    install_step build/logs/apt-install.log "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}"
}

# In the foreground, unlike other steps: sudo may ask for a password.
install_step() {
    local log=$1
    shift
    if [ -t 1 ]; then
        "$@"
        return
    fi
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 || show_failure "$log" "$@"
}
