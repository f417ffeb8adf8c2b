# shellcheck shell=bash disable=SC2034
# The Debian 12 packages that the scripts beside this file need, by what they are for.

build_packages=(
    cmake g++ ninja-build pkg-config
    qt6-base-dev libcurl4-openssl-dev zlib1g-dev libboost1.81-dev libboost-json1.81-dev libboost-url1.81-dev libicu-dev
)

# What a desktop has anyway: certificates, fonts, the opener.
desktop_packages=(ca-certificates fonts-dejavu-core fonts-noto-color-emoji xdg-utils)

test_packages=(
    libgtest-dev libcpp-httplib-dev openssl
    libatspi2.0-dev libxtst-dev at-spi2-core dbus-daemon xvfb xauth procps libxml2-utils
)

bench_packages=(libbenchmark-dev)

fuzz_packages=(clang libclang-rt-14-dev)

icon_packages=(librsvg2-bin icnsutils)

package_packages=(dpkg-dev fakeroot)

package_test_packages=(lintian desktop-file-utils appstream man-db debootstrap debian-archive-keyring xvfb xdotool x11-utils)

mutate_packages=(python3)

check_packages=(clang-format clang-tidy shellcheck yamllint)
