# Shared by scripts/test, scripts/run and scripts/bench: the packages the build and the tests
# need, their installation, and configuring a build folder. Source it; it runs nothing itself.

veltrino_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
veltrino_jobs=${VELTRINO_JOBS:-2}

# Compilers and build tools, the libraries the code and the tests link, the libFuzzer runtime,
# Qt for the desktop program, and the packages whose real profiles land in /usr/share/color.
veltrino_packages=(
    build-essential g++ cmake pkg-config ccache clang libclang-rt-14-dev
    libgtest-dev libgmock-dev libbenchmark-dev libssl-dev liblcms2-dev libcli11-dev
    nlohmann-json3-dev
    qt6-base-dev
    icc-profiles-free colord-data libgs-common argyll
)

veltrino_log() {
    printf '==> %s\n' "$*" >&2
}

# Installs whichever of the packages is missing. The package lists are refreshed only when
# something has to be installed, so a prepared machine never touches the network.
veltrino_install_missing() {
    if ! command -v dpkg-query >/dev/null 2>&1; then
        veltrino_log "no dpkg-query here: assuming the build tools and libraries are installed"
        return 0
    fi
    local missing=() package
    for package in "${veltrino_packages[@]}"; do
        if [[ $(dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null) != ii* ]]; then
            missing+=("$package")
        fi
    done
    if ((${#missing[@]} == 0)); then
        return 0
    fi

    local as_root=()
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null 2>&1; then
            veltrino_log "missing packages and neither root nor sudo: ${missing[*]}"
            return 1
        fi
        # -n: fail instead of waiting for a password nobody will type.
        as_root=(sudo -n)
    fi
    veltrino_log "installing ${missing[*]}"
    # sudo drops the environment, hence env: no debconf question may wait for an answer.
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update </dev/null || return 1
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -o Dpkg::Use-Pty=0 "${missing[@]}" </dev/null
}

# veltrino_configure DIR [CMAKE ARGS...]: configures the source tree into DIR (relative to the
# repository unless absolute).
veltrino_configure() {
    local dir=$1
    shift
    cmake -S "$veltrino_root" -B "$dir" "$@" </dev/null
}

# veltrino_build DIR [TARGETS...]: builds everything, or just the given targets.
veltrino_build() {
    local dir=$1 target_args=() target
    shift
    for target in "$@"; do
        target_args+=(--target "$target")
    done
    cmake --build "$dir" -j "$veltrino_jobs" "${target_args[@]}" </dev/null
}
