# Sourced by run.sh and test.sh: installs what is missing, configures and builds. REQUIRES the working folder to be the project's.

die() {
    printf '%s: %s\n' "$(basename "$0")" "$1" >&2
    exit 1
}

install_packages() {
    local package missing=() sudo=()
    while read -r package; do
        case "$package" in '' | '#'*) continue ;; esac
        [ "$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null)" = "install ok installed" ] || missing+=("$package")
    done <tools/packages.txt
    [ ${#missing[@]} -eq 0 ] && return 0

    command -v apt-get >/dev/null || die "these packages are missing and there is no apt-get to install them: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || die "these packages are missing; install them as root, or install sudo: ${missing[*]}"
        sudo=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    "${sudo[@]}" apt-get update -q || die "the package lists could not be read; is there a network?"
    "${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}" \
        || die "the packages could not be installed: ${missing[*]}"
}

# build PRESET
build() {
    local launcher=()
    command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    cmake --preset "$1" "${launcher[@]}" >/dev/null || die "the configuration failed; its messages stand above"
    cmake --build --preset "$1" || die "the build failed; its messages stand above"
}
