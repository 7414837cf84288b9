# What ./run, ./test and ./bench share: packages and the build. Sourced, not run.

# mdbtools-dev, which brings pkg-config and glib, is for "tldb import"; mdbtools for a test of it;
# libxlsxwriter-dev for the list as a workbook.
packages="g++ cmake ninja-build qt6-base-dev libsqlite3-dev libpq-dev qt6-translations-l10n
          libxlsxwriter-dev libgtest-dev sqlite3 python3 cmark-gfm librsvg2-bin xvfb xauth openbox
          fonts-ipaexfont-gothic mdbtools-dev mdbtools"

say() { printf '== %s\n' "$*"; }

die() {
    printf '!! %s\n' "$1" >&2
    [ -n "${2:-}" ] && printf '!! %s\n' "$2" >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs what is missing of the packages, each only once.
install_packages() {
    local missing="" name
    for name in $packages; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'install ok installed' ||
            missing="$missing $name"
    done
    [ -z "$missing" ] && return
    say "installing:$missing"
    [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null ||
        die "packages are missing and there is no sudo" "as root: apt-get install$missing"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq ||
        die "apt-get update failed" "check the network and /etc/apt/sources.list, then run this again"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        $missing >/dev/null ||
        die "apt-get install failed" "try by hand: apt-get install$missing"
}

# Installs a package that is not there where that can be done; goes on without it else.
try_package() {
    dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed' ||
        (packages=$1 install_packages) || say "going on without $1"
}

# build FOLDER "CMAKE OPTIONS" [TARGET...]
build() {
    local folder=$1 options=$2
    shift 2
    say "building in $folder"
    # shellcheck disable=SC2086
    cmake -S . -B "$folder" -G Ninja $options >"$folder.log" 2>&1 ||
        { cat "$folder.log" >&2; die "cmake failed" "see the lines above; rm -r $folder starts afresh"; }
    cmake --build "$folder" ${1:+--target "$@"} >"$folder.log" 2>&1 ||
        { grep -E 'error|warning|FAILED' -A3 "$folder.log" >&2
          die "the build failed" "the whole output is in $folder.log"; }
}

# A virtual display for programs that need one.
on_virtual_display() {
    xvfb-run -a -s "-screen 0 1440x900x24" "$@"
}
