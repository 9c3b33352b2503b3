#!/usr/bin/env bash
# Layout by .clang-format, and the few rules of the house that a compiler does not check.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t sources < <(git ls-files -co --exclude-standard -- '*.h' '*.cpp' | while read -r f; do [ -f "$f" ] && echo "$f"; done)
clang-format --dry-run --Werror "${sources[@]}"

status=0
# Every exception is raised in one place, so that each is located and logged.
if git grep -nE '(^|[^a-zA-Z_"])throw([ ;(]|$)' -- 'Core/*.h' 'Core/*.cpp' 'Tools/*.cpp' ':!Core/Common/Raise.h' | grep -vE '^[^:]*:[0-9]+: *(//|\*|///)'; then
    echo "raise exceptions through RTE::raise" >&2
    status=1
fi
if git grep -nE '#include <(boost/|pugixml|nanoflann|hdf5|H5|tiff|iostream|regex)' -- 'Core/*.h' | grep -v 'ZtPugi.h' | grep -v 'Formats/'; then
    echo "third-party headers stay out of the public headers" >&2
    status=1
fi
exit $status
