# Sourced by the scripts beside it: the repository's root, its packages, one way to build.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1 CLICOLOR_FORCE=

# Installs what packages.txt names and this machine lacks: as root, through sudo, or by telling which are missing.
install_packages() {
    local wanted missing=() package
    wanted=$(sed 's/#.*//' scripts/packages.txt)
    for package in $wanted; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local run=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null || ! sudo -v; then
            echo "missing Debian packages (install them and run this again): ${missing[*]}" >&2
            return 1
        fi
        run=(sudo)
    fi
    echo "installing: ${missing[*]}" >&2
    "${run[@]}" apt-get update -qq
    "${run[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [TARGET…]: configures and builds; says little unless something is wrong.
build() {
    local preset=$1 log
    shift
    mkdir -p "build/$preset"
    log="build/$preset/configure.log"
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
    cmake --build --preset "$preset" ${1:+--target "$@"}
}

# run_tests PRESET: runs every test of that build; the last line counts them, and none at all is a failure.
run_tests() {
    local preset=$1 report="$PWD/build/$1/test-report.xml" status=0
    rm -f "$report"
    ctest --preset "$preset" -j "$(nproc)" --output-junit "$report" >"build/$preset/test.log" 2>&1 || status=$?
    [ "$status" -eq 0 ] || grep -E '\*\*\*(Failed|Exception|Timeout)|: Failure$|: error:|^SUMMARY' "build/$preset/test.log" | head -200 >&2
    count() { grep -o -m1 "$1=\"[0-9]*\"" "$report" | grep -o '[0-9]*' || echo 0; }
    if [ ! -s "$report" ]; then
        tail -20 "build/$preset/test.log" >&2
        echo "0 passed, 0 failed"
        return 1
    fi
    local total failed skipped
    total=$(count tests) failed=$(count failures) skipped=$(($(count skipped) + $(count disabled)))
    [ "$skipped" -eq 0 ] || echo "$skipped skipped"
    echo "$((total - failed - skipped)) passed, $failed failed"
    [ "$status" -eq 0 ] && [ "$failed" -eq 0 ] && [ "$((total - skipped))" -gt 0 ]
}
