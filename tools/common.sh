# What ./run, ./check and ./bench share. Sourced by them; `root` is the project's folder.

build_packages="g++ cmake ninja-build pkg-config qt6-base-dev qt6-svg-dev qt6-wayland libxcb1-dev
libxkbcommon-x11-dev libwayland-dev libicu-dev libarchive-dev nlohmann-json3-dev libpoppler-qt6-dev libmediainfo-dev
qt6-image-formats-plugins qt6-translations-l10n fonts-inter fonts-dejavu-core zsh"
check_packages="libgtest-dev libgmock-dev python3 python3-gi gir1.2-atspi-2.0 at-spi2-core dbus
strace xvfb weston openbox xdotool xclip x11-utils x11-xkb-utils clang-format-19
libarchive-tools p7zip-full unzip zip trash-cli e2fsprogs btrfs-progs ntfs-3g util-linux"
bench_packages="libbenchmark-dev python3 strace valgrind xvfb rsync e2fsprogs btrfs-progs libarchive-tools
p7zip-full unzip"
lint_packages="clang-tidy-19"
fuzz_packages="clang-19 libclang-rt-19-dev"

say() { printf '%s\n' "$*" >&2; }

give_up() {
    say "$*"
    exit 1
}

missing_packages() {
    for package in "$@"; do
        state=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
        [ "$state" = "install ok installed" ] || printf ' %s' "$package"
    done
}

install_packages() {
    command -v dpkg-query >/dev/null || return 0 # no Debian: what is missing shows while configuring
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    command -v apt-get >/dev/null ||
        give_up "Chybí balíčky, a apt-get, který by je nainstaloval, tu není:$missing"
    as_root=
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null ||
            give_up "Chybí balíčky, které smí nainstalovat jen správce, a sudo tu není. Jako root spusťte: apt-get install$missing"
        as_root=sudo
    fi
    say "Doinstaluji balíčky:$missing"
    install="$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends$missing"
    # The lists of packages may be missing or old.
    $install >"$log" 2>&1 || { $as_root apt-get update >"$log" 2>&1 && $install >"$log" 2>&1; } ||
        give_up "Balíčky se nepodařilo nainstalovat, nejspíš chybí připojení k síti:$missing"
}

# build_preset PRESET [targets…]
build_preset() {
    preset=$1
    shift
    for tool in g++ cmake ninja; do
        command -v "$tool" >/dev/null || give_up "K sestavení chybí $tool."
    done
    mkdir -p "$root/build" 2>/dev/null && [ -w "$root/build" ] ||
        give_up "Do složky $root/build nejde zapisovat, a tak v ní není jak Fennika sestavit."
    if [ ! "$root/build/$preset/build.ninja" -nt "$root/CMakePresets.json" ] &&
        ! (cd "$root" && cmake --preset "$preset") >"$log" 2>&1; then
        grep -A 5 -m 3 'CMake Error' "$log" >&2 || tail -n 20 "$log" >&2
        give_up "Sestavení se nepodařilo připravit, důvod stojí výše."
    fi
    # What takes only a moment is not worth a word.
    (sleep 2 >/dev/null 2>&1 && say "Sestavuji Fennika ($preset)…") &
    announcement=$!
    built=yes
    cmake --build "$root/build/$preset" --target "$@" >"$log" 2>&1 || built=no
    kill $announcement 2>/dev/null
    wait $announcement 2>/dev/null
    if [ $built = no ]; then
        grep -E -A 8 -m 5 'error|FAILED' "$log" >&2
        give_up "Sestavení se nepodařilo, důvod stojí výše."
    fi
}

log=$(mktemp)
trap 'rm -f "$log"' EXIT
