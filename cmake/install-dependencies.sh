#!/bin/sh
# Installs the Debian packages that a build (default) or the tests ("check") need. Asks the system for
# nothing when all are there, so it works without a network then.
set -eu

build="g++ cmake ninja-build ccache pkg-config libicu-dev libfmt-dev nlohmann-json3-dev libcli11-dev
       libzip-dev libdeflate-dev libssl-dev libpugixml-dev libcsv-dev libcmark-dev
       libfontconfig-dev libxerces-c-dev librsvg2-dev libcairo2-dev libjpeg62-turbo-dev"
check="clang libclang-rt-14-dev llvm-14 clang-format clang-tidy libgtest-dev libgmock-dev libbenchmark-dev zlib1g-dev
       libsqlite3-dev libxml2-utils binutils jq libvalijson-dev tidy chromium chromium-driver python3-selenium"

packages=$build
[ "${1:-build}" = check ] && packages="$build $check"

missing=
for package in $packages; do
  dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
    missing="$missing $package"
done
[ -z "$missing" ] && exit 0

as_root=
[ "$(id -u)" = 0 ] || as_root=sudo
echo "Installing:$missing"
$as_root apt-get update -q
DEBIAN_FRONTEND=noninteractive $as_root apt-get install -q -y --no-install-recommends $missing
