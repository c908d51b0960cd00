# Sourced by ./run, ./test and the scripts that make the Debian package: which Debian packages each
# needs, and how they come here. The only list of them.

# What the program is built from.
BUILD_PACKAGES="
    build-essential cmake ninja-build pkg-config
    qtbase5-dev qtbase5-private-dev libqt5svg5-dev qttools5-dev qttools5-dev-tools qttranslations5-l10n
    libuvc-dev libusb-1.0-0-dev libumockdev-dev umockdev libjpeg-dev libpng-dev
    libglib2.0-dev libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev libyuv-dev"

# What it cannot do without while it runs: the plug-ins of the media elements that it names, and a font.
RUN_PACKAGES="
    gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad
    gstreamer1.0-plugins-ugly gstreamer1.0-libav gstreamer1.0-alsa
    fonts-liberation"

# What it is better with: Chinese and Japanese texts, Wayland without an X server, the sound servers.
RECOMMENDED_PACKAGES="
    fonts-noto-cjk qtwayland5 gstreamer1.0-pulseaudio"

# What makes the Debian package, and what checks it.
DEB_PACKAGES="
    debhelper dpkg-dev fakeroot git lintian"

# What the tests drive it with.
TEST_PACKAGES="
    lld libxcb1-dev libsm-dev libice-dev qemu-user xserver-xorg-core xserver-xorg-dev xserver-xorg-video-dummy x11-xserver-utils
    weston xwayland xvfb xauth x11-utils xdotool openbox imagemagick python3 fonts-dejavu-core
    clang clang-format libclang-rt-dev e2fsprogs mpv cups-daemon cups-client poppler-utils pulseaudio pulseaudio-utils libasound2-plugins ffmpeg
    pipewire pipewire-pulse wireplumber bindfs
    desktop-file-utils appstream mandoc man-db dpkg-dev git udev umockdev gstreamer1.0-tools at-spi2-core dbus-daemon"

# What ./test tidy reads the sources with.
TIDY_PACKAGES="
    clang-tidy"

# What adds up what the tests reach (tests/coverage/coverage).
COVERAGE_PACKAGES="
    gcovr"

# What the benchmarks measure beside it.
BENCHMARK_PACKAGES="
    gstreamer1.0-tools libbenchmark-dev libopencv-dev libturbojpeg0-dev mpv
    graphicsmagick libvips-tools libgdk-pixbuf2.0-bin"

# check_folder FOLDER: fails, saying so in one line, where nothing can be built. Search paths for libraries
# and lists of files are separated by ':' and ';', and the build tools end a name at '"'.
check_folder() {
    case $1 in
    *[:\;\"]*)
        echo "The path of this folder holds ':', ';' or '\"', with which nothing can be built: $1" >&2
        return 1
        ;;
    esac
}

# missing_packages NAME...: prints those that are not installed.
missing_packages() {
    local name
    for name in $*; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || echo "$name"
    done
}

# install_packages NAME...: installs those that are missing, as root or through sudo, and says so.
install_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "This script installs packages of Debian 12 and its relatives, and this system has no" >&2
        echo "dpkg and apt-get. Install the equivalents of these by hand, then build with" >&2
        echo "'cmake --preset release && cmake --build --preset release':" >&2
        echo "   " $* >&2
        return 1
    fi
    local missing
    mapfile -t missing < <(missing_packages $*)
    [ ${#missing[@]} -eq 0 ] && return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages: ${missing[*]}" >&2
            echo "Install them as root: apt-get install ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}" >/dev/null 2>&1 && return 0
    # The package lists may be absent or old; once with fresh ones, and this time say what is wrong.
    "${as_root[@]}" apt-get update -q >/dev/null || return 1
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}" >/dev/null
}
