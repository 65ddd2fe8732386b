#!/usr/bin/env bash
# Installs, from Debian 12's packages, whatever of the build and test needs is missing.
set -euo pipefail
paquetes=(
  cmake g++ make pkg-config
  qt6-base-dev qt6-base-dev-tools libgl1-mesa-dev
  libqt6sql6-sqlite libqt6sql6-psql libqt6sql6-odbc libsqlite3-dev
  unixodbc libsqliteodbc odbc-postgresql postgresql
  fonts-dejavu-core
)
faltan=()
for p in "${paquetes[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || faltan+=("$p")
done
[ ${#faltan[@]} -eq 0 ] && exit 0
echo "Instalando: ${faltan[*]}"
como_root=()
[ "$(id -u)" -eq 0 ] || como_root=(sudo)
"${como_root[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${como_root[@]}" apt-get install -y -qq --no-install-recommends "${faltan[@]}"
