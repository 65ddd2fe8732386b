#!/usr/bin/env bash
# Formats every C++ file of the project with the root .clang-format (the screens' design
# tables keep their own layout between "clang-format off" and "on"). With --comprobar it
# changes nothing and fails, naming the files, when one is not formatted.
set -euo pipefail
raiz="$(cd "$(dirname "$0")/.." && pwd)"
cd "$raiz"
if ! command -v clang-format >/dev/null; then
  como_root=()
  [ "$(id -u)" -eq 0 ] || como_root=(sudo)
  "${como_root[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${como_root[@]}" apt-get install -y -qq --no-install-recommends clang-format
fi
mapfile -t ficheros < <(git ls-files '*.cpp' '*.h' 2>/dev/null || find src tests bench -name '*.cpp' -o -name '*.h')
if [ "${1:-}" = --comprobar ]; then
  mal=()
  for f in "${ficheros[@]}"; do
    clang-format --dry-run --Werror "$f" >/dev/null 2>&1 || mal+=("$f")
  done
  if [ ${#mal[@]} -gt 0 ]; then
    echo "Sin formato (scripts/formato.sh los formatea):" >&2
    printf '  %s\n' "${mal[@]}" >&2
    exit 1
  fi
  echo "Formato: ${#ficheros[@]} ficheros en orden."
else
  clang-format -i "${ficheros[@]}"
fi
