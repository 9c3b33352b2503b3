#!/usr/bin/env bash
# Installs every Debian package that the project needs: to build, to run, to test and to benchmark.
# Safe to run twice; asks for root only when a package is missing.
set -euo pipefail

packages=(
    # build
    g++ cmake ninja-build ccache lld pkg-config git
    # libraries
    qt6-base-dev libpugixml-dev libboost-dev libhdf5-dev libisal-dev libpng-dev libtiff-dev libhwy-dev libcli11-dev
    # tests: GoogleTest, and the tools of others that open our files
    libgtest-dev libgmock-dev python3 python3-h5py python3-xarray python3-h5netcdf python3-netcdf4
    # fuzzing: clang with libFuzzer
    clang libclang-rt-dev
    # benchmarks and the peer that they compare with
    libbenchmark-dev libopencv-core-dev
    # pictures with text, without a display
    fontconfig fonts-dejavu-core
    # documentation and layout checks
    doxygen clang-format
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
        missing+=("$package")
done
[ "${#missing[@]}" -eq 0 ] && exit 0

root=()
[ "$(id -u)" -eq 0 ] || root=(sudo)
echo "installing: ${missing[*]}" >&2
"${root[@]}" apt-get update --quiet
"${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install --yes --quiet --no-install-recommends "${missing[@]}"
