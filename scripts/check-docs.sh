#!/usr/bin/env bash
# The reference of the public headers builds without a warning.
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p build/doc
doxygen docs/Doxyfile
