#!/usr/bin/env bash
# Builds the fuzz targets with clang and runs each for a given time.
#   fuzz/run.sh [seconds per target, default 60] [target ...]
# Seeds are in fuzz/corpus/<target>/; new inputs go to build-fuzz/corpus/<target>/
# and findings to build-fuzz/findings/.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true
cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVELTOR_FUZZ=ON -DVELTOR_BUILD_TESTS=OFF -DVELTOR_BUILD_BENCH=OFF >/dev/null
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    mapfile -t targets < <(sed -n 's/^veltor_add_fuzzer(\(.*\))$/\1/p' fuzz/CMakeLists.txt)
fi
cmake --build build-fuzz -j"$(nproc)" --target "${targets[@]}"
mkdir -p build-fuzz/findings
for target in "${targets[@]}"; do
    work=build-fuzz/corpus/$target
    mkdir -p "$work" "fuzz/corpus/$target"
    echo "== $target: ${seconds}s"
    build-fuzz/fuzz/$target -max_total_time="$seconds" -max_len=70000 -print_final_stats=1 \
        -artifact_prefix=build-fuzz/findings/$target- "$work" "fuzz/corpus/$target" 2>&1 |
        grep -E "^(stat::number_of_executed_units|stat::peak_rss_mb|==|SUMMARY|Done)" || true
done
