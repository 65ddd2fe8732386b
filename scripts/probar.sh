#!/usr/bin/env bash
# Builds everything and runs the whole test suite twice: on SQLite, then on a throw-away
# PostgreSQL server started for this run (127.0.0.1 only, in a temporary directory, stopped
# however the run ends). Without PostgreSQL the second run is skipped, and said so; in CI
# (CI=true) both runs are required. TARIFAS_WERROR=ON (CI sets it) makes every warning an
# error.
set -euo pipefail
raiz="$(cd "$(dirname "$0")/.." && pwd)"
build="$raiz/build-pruebas"
"$raiz/scripts/dependencias.sh"

temporal=$(mktemp -d "${TMPDIR:-/tmp}/tarifas-pruebas.XXXXXX")
chmod 755 "$temporal" # as root the server runs as the postgres user, who must get in
servidor=""
terminar() {
  "$raiz/scripts/postgres_temporal.sh" stop "$temporal/servidor" 2>/dev/null || true
  rm -rf "$temporal"
  # The build directory is left without the server that no longer exists.
  if [ -n "$servidor" ]; then
    cmake -S "$raiz" -B "$build" -DTARIFAS_PRUEBAS_PG= >/dev/null 2>&1 || true
  fi
}
trap terminar EXIT

if servidor=$("$raiz/scripts/postgres_temporal.sh" start "$temporal/servidor" 2>"$temporal/error"); then
  echo "Servidor PostgreSQL de pruebas: ${servidor/tarifas:tarifas@/}"
else
  servidor=""
  if [ "${CI:-}" = true ]; then
    echo "No se pudo arrancar el servidor PostgreSQL de pruebas:" >&2
    cat "$temporal/error" >&2
    exit 1
  fi
  echo "AVISO: no se pudo arrancar PostgreSQL ($(head -n 1 "$temporal/error")):" \
    "las pruebas en PostgreSQL se omiten." >&2
fi

cmake -S "$raiz" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARIFAS_PRUEBAS_PG="$servidor" \
  -DTARIFAS_WERROR="${TARIFAS_WERROR:-OFF}" >/dev/null
cmake --build "$build" -j"$(nproc)"
cd "$build"

resultado=0
resumen=()
correr() { # label, name
  echo
  echo "=== Pruebas en $2 ==="
  if ctest --output-on-failure -j"$(nproc)" -L "^$1\$" | tee "$temporal/ctest-$1.log"; then :; else resultado=1; fi
  resumen+=("$2: $(grep -E 'tests passed|tests failed' "$temporal/ctest-$1.log" | tail -n 1)")
}
correr sqlite SQLite
if [ -n "$servidor" ]; then
  correr postgresql PostgreSQL
else
  resumen+=("PostgreSQL: omitidas (no hay servidor)")
fi

echo
printf '%s\n' "${resumen[@]}"
exit $resultado
