#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test. A preset other than release may be named: ./test.sh asan
set -euo pipefail
cd "$(dirname "$0")"
preset=${1:-release}

scripts/install-dependencies.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
