#!/usr/bin/env bash
# Builds everything and runs the whole test suite.
set -euo pipefail
raiz="$(cd "$(dirname "$0")/.." && pwd)"
"$raiz/scripts/dependencias.sh"
cmake -S "$raiz" -B "$raiz/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$raiz/build" -j"$(nproc)"
cd "$raiz/build"
ctest --output-on-failure -j"$(nproc)"
