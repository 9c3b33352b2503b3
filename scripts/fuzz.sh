#!/usr/bin/env bash
# Fuzzes file readers for longer than the tests do and goes on after each finding: scripts/fuzz.sh [SECONDS [READER…]]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
readers=("${@:2}")
[ "${#readers[@]}" -gt 0 ] || readers=(Bmp Native Pgm Png Tiff)

scripts/install-dependencies.sh
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
found=0
for reader in "${readers[@]}"; do
    name=${reader,,}
    folder=build/fuzz/Fuzz/$name
    seeds=(Tests/Buffer/golden)
    [ ! -d "Fuzz/Seeds/$name" ] || seeds+=("Fuzz/Seeds/$name")
    "build/fuzz/bin/${reader}Fuzzer" -fork=1 -ignore_crashes=1 -ignore_timeouts=1 -ignore_ooms=1 \
        -max_total_time="$seconds" -max_len=65536 -timeout=10 -rss_limit_mb=2048 -malloc_limit_mb=512 \
        -artifact_prefix="$folder/findings/" "$folder/corpus" "${seeds[@]}" 2>&1 | tee "$folder/log" | grep -E 'ERROR|SUMMARY' || true
    tail -n 1 "$folder/log"
    [ -z "$(ls "$folder/findings")" ] || { found=1; ls "$folder"/findings/*; }
done
exit $found
