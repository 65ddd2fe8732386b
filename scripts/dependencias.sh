#!/usr/bin/env bash
# Installs, from Debian 12's packages, whatever of the build and test needs is missing.
# The PostgreSQL server and its ODBC driver serve only the second test run: a machine that
# can't have them still builds and tests on SQLite (in CI, where both runs are required,
# that is a failure).
set -euo pipefail
necesarios=(
  cmake g++ make pkg-config
  qt6-base-dev qt6-base-dev-tools libgl1-mesa-dev
  libqt6sql6-sqlite libqt6sql6-psql libqt6sql6-odbc libsqlite3-dev sqlite3
  unixodbc libsqliteodbc
  fonts-dejavu-core qt6-translations-l10n
  libcsv-dev libxlsxwriter-dev zlib1g-dev unzip poppler-utils
)
servidor=(postgresql odbc-postgresql)

faltan() {
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || echo "$p"
  done
}

actualizado=no
instalar() {
  [ $# -eq 0 ] && return 0
  echo "Instalando: $*"
  local como_root=()
  [ "$(id -u)" -eq 0 ] || como_root=(sudo)
  if [ $actualizado = no ]; then
    "${como_root[@]}" apt-get update -qq || return 1
    actualizado=si
  fi
  DEBIAN_FRONTEND=noninteractive "${como_root[@]}" apt-get install -y -qq --no-install-recommends "$@"
}

mapfile -t paquetes < <(faltan "${necesarios[@]}")
instalar "${paquetes[@]}"
mapfile -t paquetes < <(faltan "${servidor[@]}")
if ! instalar "${paquetes[@]}"; then
  [ "${CI:-}" = true ] && exit 1
  echo "No se pudo instalar ${paquetes[*]}: las pruebas en PostgreSQL se omitirán." >&2
fi
