#!/usr/bin/env bash
# Builds the targets that need nothing but the library into $OUT, with their seeds, for a service that fuzzes
# continuously: it gives the compilers in CC and CXX, their options in CFLAGS and CXXFLAGS, and the engine to link with in
# LIB_FUZZING_ENGINE.
set -euo pipefail
cd "$(dirname "$0")/.."

work=${WORK:-build/continuous}
cmake -S . -B "$work" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTREL_BUILD_TOOL=OFF \
  -DVANTREL_FUZZING_ENGINE="${LIB_FUZZING_ENGINE:--fsanitize=fuzzer}"
for target in entries corners lines headers cards anywhere proposals candidate blocks components kernels; do
  cmake --build "$work" --target "fuzz_${target}_fuzzer"
  cp "$work/fuzz/fuzz_${target}_fuzzer" "$OUT/$target"
  (cd "fuzz/corpus/$target" && python3 -m zipfile -c "$OUT/${target}_seed_corpus.zip" ./*)
done
