# shellcheck shell=bash disable=SC2034
# Shared by the scripts: the Debian packages that they need, by purpose, and their first checks.
#
# NAME>=VERSION is the distribution's default package or, if that is too old, the newest one with its version in its name,
# such as libboost-json1.81-dev. The libraries' versions are those of cmake/dependencies.cmake.

build_packages=(
    cmake g++ make ninja-build pkg-config
    qt6-base-dev libcurl4-openssl-dev 'libboost-json-dev>=1.81' 'libboost-url-dev>=1.81' libicu-dev
)

# Usually present on a desktop: certificates, fonts, the opener.
desktop_packages=(ca-certificates fonts-dejavu-core fonts-noto-color-emoji xdg-utils)

test_packages=(
    libgtest-dev libcpp-httplib-dev openssl
    libatspi2.0-dev libxtst-dev at-spi2-core dbus-daemon xvfb procps libxml2-utils
    libwayland-dev qt6-wayland sway grim
)

browser_packages=(chromium)

bench_packages=(libbenchmark-dev fontconfig)

fuzz_packages=(clang libclang-rt-dev)

icon_packages=(librsvg2-bin icnsutils)

package_packages=(dpkg-dev fakeroot)

package_test_packages=(
    lintian desktop-file-utils appstream man-db debootstrap debian-archive-keyring xvfb xdotool x11-utils
    at-spi2-core binutils procps qt6-wayland
)

mutate_packages=(python3)

system_check_packages=(debootstrap debian-archive-keyring git)

check_packages=(clang-format clang-tidy shellcheck yamllint)

fail() { echo "$*" >&2; exit 1; }

# require_tools ADVICE TOOL...: ends the script with the advice if a tool is missing.
require_tools() {
    local advice=$1 tool
    shift
    for tool in "$@"; do command -v "$tool" >/dev/null || fail "There is no $tool here: $advice"; done
}

# prepare PACKAGE...: checks the build folder and installs the packages; ends the script if that fails.
prepare() {
    case $PWD in
        *[\ :]*) fail "$PWD has a blank or a colon in it, with which no library can be preloaded: move the checkout." ;;
    esac
    if ! mkdir -p build 2>/dev/null || [ ! -w build ]; then
        fail "$PWD/build cannot be written to: make it writable, or copy the sources to a place that is."
    fi
    echo "==> Checking for packages"
    scripts/install-packages "$@" || exit 1
}

# configure ARGUMENT...: runs CMake's configuration, silently unless it fails.
configure() {
    cmake "$@" >build/configure.log 2>&1 || { cat build/configure.log >&2; exit 1; }
}

# mach_o_files FOLDER: prints the paths of the programs and libraries for macOS in it.
mach_o_files() {
    find "$1" -type f | sort | while read -r file; do
        case $(head -c 4 "$file" | od -An -tx1 | tr -d ' \n') in # od's blanks differ between systems.
            cffaedfe | cafebabe) echo "$file" ;; # One processor, several processors.
        esac
    done
}

# mount_image IMAGE FOLDER: mounts a disk image at FOLDER/image; at the script's end unmounts it and removes FOLDER.
mount_image() {
    mounted=$2
    mkdir -p "$mounted/image"
    trap close_image EXIT
    hdiutil attach -quiet -nobrowse -readonly -mountpoint "$mounted/image" "$1" || fail "$1 cannot be opened: make it again by scripts/package."
}
close_image() {
    hdiutil detach -quiet -force "$mounted/image" 2>/dev/null || true # A program that has just ended may still count as using it.
    rm -rf "$mounted"
}
