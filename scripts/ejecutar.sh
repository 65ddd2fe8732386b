#!/usr/bin/env bash
# Builds tarifas and starts it. With no TARIFAS_DB it runs on the embedded database of the
# user's data directory, created with the demo shop on the first start.
set -euo pipefail
raiz="$(cd "$(dirname "$0")/.." && pwd)"
"$raiz/scripts/dependencias.sh"
cmake -S "$raiz" -B "$raiz/build-ejecutar" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$raiz/build-ejecutar" --target tarifas -j"$(nproc)"
exec "$raiz/build-ejecutar/src/app/tarifas" "$@"
