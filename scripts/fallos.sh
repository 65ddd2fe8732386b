#!/usr/bin/env bash
# Plants the faults of scripts/fallos.txt in a copy of the program, one at a time, and says for
# each whether the SQLite test suite catches it (some test fails or times out) or misses it
# (every test passes).
#
#   scripts/fallos.sh                 every fault, on the working tree as it stands
#   scripts/fallos.sh REV             every fault, on revision REV (a commit, a tag, HEAD~2...)
#   scripts/fallos.sh REV ID...       only the faults named, on REV ("." is the working tree)
#   scripts/fallos.sh --comprobar [REV]
#                                     only checks that every fault applies (no build, no tests)
#
# The copy lives outside the repository, in ${TMPDIR:-/tmp}/tarifas-fallos/<name>/src (<name> is
# the revision's short hash, or "arbol" for the working tree), with its own build folder beside
# it, kept from one run to the next: only what a fault touches is rebuilt. The copy is brought
# back to the sources before each run, so a run cut short leaves nothing behind it.
# The faults come from scripts/fallos.txt of the working tree (FALLOS_DATOS=file for another).
#
# First the untouched copy must build and pass; then each fault is applied, built (a fault that
# doesn't build is reported as "no compila": mend it in the data file), tested with
# ctest -L '^sqlite$' --stop-on-failure, and the file is put back as it was, even when the run
# is interrupted. The table and the score go to the screen and to resultados.txt in the work
# folder; the latest result of every fault ever run on that copy is kept in resultados-todos.txt.
# With FALLOS_TODAS=1 the suite runs whole for each fault, and the table names every test
# program that fails: the programs that alone catch a fault are the ones a cut must keep.
# Exit status: 0 when every fault could be planted and built, 1 otherwise.
set -uo pipefail

raiz="$(cd "$(dirname "$0")/.." && pwd)"
datos="${FALLOS_DATOS:-$raiz/scripts/fallos.txt}"
base="${TMPDIR:-/tmp}/tarifas-fallos"
hilos=$(nproc)

comprobar=false
if [ "${1:-}" = "--comprobar" ]; then
  comprobar=true
  shift
fi
rev="${1:-.}"
[ $# -gt 0 ] && shift
ids=("$@")

# --- The helper that reads the data file, plants a fault and copies trees -----------------
read -r -d '' AYUDANTE <<'PY'
import hashlib, os, re, shutil, sys

CLAVES = {"id", "file", "description", "find", "replace"}

def leer(ruta):
    """Blocks separated by blank lines; '#' at the start of a line is a comment. A key may
    repeat with '+' ("find+:") to add a line to its value. Several find/replace pairs in one
    block are applied in order to the same file."""
    fallos, bloque, errores = [], None, []
    def cerrar():
        if bloque is None:
            return
        for k in ("id", "file", "description"):
            if not bloque.get(k):
                errores.append(f"line {bloque['_linea']}: the block lacks '{k}:'")
        if not bloque["pares"]:
            errores.append(f"line {bloque['_linea']}: the block has no find/replace")
        for f, r in bloque["pares"]:
            if r is None:
                errores.append(f"{bloque.get('id')}: a 'find:' without its 'replace:'")
            elif f == "":
                errores.append(f"{bloque.get('id')}: an empty 'find:'")
            elif f == r:
                errores.append(f"{bloque.get('id')}: 'replace:' equals 'find:'")
        fallos.append(bloque)
    with open(ruta, encoding="utf-8") as fichero:
        for n, linea in enumerate(fichero, 1):
            linea = linea.rstrip("\n")
            if linea.startswith("#"):
                continue
            if linea.strip() == "":
                cerrar()
                bloque = None
                continue
            m = re.match(r"^([a-z]+)(\+?):(.*)$", linea)
            if not m or m.group(1) not in CLAVES:
                errores.append(f"line {n}: not 'key: value' ({linea!r})")
                continue
            clave, mas, valor = m.group(1), m.group(2) == "+", m.group(3)
            if valor.startswith(" "):
                valor = valor[1:]
            if bloque is None:
                bloque = {"_linea": n, "pares": []}
            if clave in ("find", "replace"):
                pares = bloque["pares"]
                if clave == "find" and not mas:
                    pares.append([valor, None])
                elif clave == "replace" and not mas:
                    if not pares or pares[-1][1] is not None:
                        errores.append(f"line {n}: 'replace:' without a 'find:' before it")
                    else:
                        pares[-1][1] = valor
                else:
                    i = 0 if clave == "find" else 1
                    if not pares or pares[-1][i] is None:
                        errores.append(f"line {n}: '{clave}+:' continues nothing")
                    else:
                        pares[-1][i] += "\n" + valor
            elif mas:
                errores.append(f"line {n}: '{clave}+:' is only for find and replace")
            elif clave in bloque:
                errores.append(f"line {n}: '{clave}:' twice in one block")
            else:
                bloque[clave] = valor
    cerrar()
    vistos = set()
    for f in fallos:
        if f.get("id") in vistos:
            errores.append(f"id {f['id']} is used twice")
        vistos.add(f.get("id"))
        if f.get("id") and not re.fullmatch(r"[A-Za-z0-9_.-]+", f["id"]):
            errores.append(f"id {f['id']!r}: letters, digits, '.', '_' and '-' only")
    if errores:
        sys.exit("fallos.txt: " + "\n fallos.txt: ".join(errores))
    return fallos

def buscar(fallos, id_):
    for f in fallos:
        if f["id"] == id_:
            return f
    sys.exit(f"no fault with id {id_!r} in the data file")

def plantar(copia, f, escribir=True):
    """Applies the fault's pairs in order; each find must occur exactly once in the text as it
    stands at that point. Writes nothing unless every pair applies (nor ever, to only check)."""
    ruta = os.path.join(copia, f["file"])
    if not os.path.isfile(ruta):
        return f"not applicable: no file {f['file']}"
    with open(ruta, encoding="utf-8", newline="") as fichero:
        texto = fichero.read()
    for i, (buscado, puesto) in enumerate(f["pares"], 1):
        veces = texto.count(buscado)
        cual = f" (pair {i})" if len(f["pares"]) > 1 else ""
        if veces == 0:
            return "not applicable: text not found" + cual
        if veces > 1:
            return f"not applicable: ambiguous, text found {veces} times" + cual
        texto = texto.replace(buscado, puesto, 1)
    if not escribir:
        return ""
    with open(ruta, "w", encoding="utf-8", newline="") as fichero:
        fichero.write(texto)
    return ""

def sincronizar(origen, destino):
    """Makes `destino` hold exactly the files of `origen`. Only files whose content differs are
    written (with a new time, so the build sees them); the rest keep their time."""
    vistos = set()
    for carpeta, dirs, ficheros in os.walk(origen):
        rel = os.path.relpath(carpeta, origen)
        os.makedirs(os.path.join(destino, rel), exist_ok=True)
        for nombre in ficheros:
            o = os.path.join(carpeta, nombre)
            d = os.path.normpath(os.path.join(destino, rel, nombre))
            vistos.add(d)
            if os.path.islink(o):
                continue
            if os.path.isfile(d) and not os.path.islink(d):
                with open(o, "rb") as a, open(d, "rb") as b:
                    if a.read() == b.read():
                        continue
            if os.path.lexists(d):
                os.remove(d)
            shutil.copyfile(o, d)
            shutil.copymode(o, d)
    for carpeta, dirs, ficheros in os.walk(destino):
        for nombre in ficheros:
            d = os.path.normpath(os.path.join(carpeta, nombre))
            if d not in vistos:
                os.remove(d)

def huella(carpeta):
    h = hashlib.sha1()
    for c, dirs, ficheros in sorted(os.walk(carpeta)):
        dirs.sort()
        for nombre in sorted(ficheros):
            ruta = os.path.join(c, nombre)
            h.update(os.path.relpath(ruta, carpeta).encode() + b"\0")
            with open(ruta, "rb") as f:
                h.update(f.read())
    return h.hexdigest()

orden, args = sys.argv[1], sys.argv[2:]
if orden == "ids":
    print("\n".join(f["id"] for f in leer(args[0])))
elif orden == "campo":
    print(buscar(leer(args[0]), args[1]).get(args[2], ""))
elif orden in ("plantar", "comprobar"):
    motivo = plantar(args[1], buscar(leer(args[0]), args[2]), orden == "plantar")
    if motivo:
        print(motivo)
        sys.exit(3)
elif orden == "copiar-arbol":  # working tree: what git tracks or would track, as it stands
    origen, destino = args
    import subprocess
    salida = subprocess.run(["git", "-C", origen, "ls-files", "-z", "-co", "--exclude-standard"],
                            check=True, capture_output=True).stdout.decode()
    for rel in filter(None, salida.split("\0")):
        o = os.path.join(origen, rel)
        if not os.path.isfile(o):
            continue  # deleted in the working tree
        d = os.path.join(destino, rel)
        os.makedirs(os.path.dirname(d), exist_ok=True)
        shutil.copyfile(o, d)
        shutil.copymode(o, d)
elif orden == "sincronizar":
    sincronizar(args[0], args[1])
elif orden == "huella":
    print(huella(args[0]))
else:
    sys.exit(f"unknown order {orden}")
PY
ayudante() { python3 -c "$AYUDANTE" "$@"; }

[ -f "$datos" ] || { echo "No data file $datos" >&2; exit 1; }
todos=$(ayudante ids "$datos") || exit 1
if [ ${#ids[@]} -eq 0 ]; then
  mapfile -t ids <<<"$todos"
else
  for id in "${ids[@]}"; do
    grep -qxF -- "$id" <<<"$todos" || { echo "No fault with id $id in $datos" >&2; exit 1; }
  done
fi

# --- The copy -------------------------------------------------------------------------------
if [ "$rev" = "." ]; then
  nombre=arbol
else
  commit=$(git -C "$raiz" rev-parse --verify --quiet "$rev^{commit}") ||
    { echo "$rev is not a revision of $raiz" >&2; exit 1; }
  nombre=$(git -C "$raiz" rev-parse --short=7 "$commit")
fi
trabajo="$base/$nombre"
copia="$trabajo/src"
build="$trabajo/build"
mkdir -p "$trabajo/registros" "$trabajo/respaldo"
exec 9>"$trabajo/.cerrojo"
flock -n 9 || { echo "Another run is using $trabajo" >&2; exit 1; }

preparado=$(mktemp -d "$base/preparado.XXXXXX")
if [ "$nombre" = arbol ]; then
  ayudante copiar-arbol "$raiz" "$preparado" || exit 1
else
  git -C "$raiz" archive "$commit" | tar -x -C "$preparado" || exit 1
fi
mkdir -p "$copia"
ayudante sincronizar "$preparado" "$copia" || exit 1
rm -rf "$preparado"
echo "Copy of ${rev/#./the working tree} in $copia; build in $build"

if $comprobar; then
  mal=0
  for id in "${ids[@]}"; do
    fichero=$(ayudante campo "$datos" "$id" file)
    if motivo=$(ayudante comprobar "$datos" "$copia" "$id"); then
      printf '%-6s ok   %s\n' "$id" "$fichero"
    else
      printf '%-6s %s  %s\n' "$id" "$motivo" "$fichero"
      mal=1
    fi
  done
  exit $mal
fi

# --- Running the build and the tests, interruptible -----------------------------------------
hijo=""
pendiente="" # the file a fault is planted in, until it is put back
restaurar() {
  if [ -n "$pendiente" ]; then
    # A plain copy: the file gets a new time, so the next build recompiles it.
    cp -- "$trabajo/respaldo/fichero" "$copia/$pendiente" && pendiente=""
  fi
}
interrumpido() {
  trap - INT TERM HUP
  if [ -n "$hijo" ]; then
    kill -TERM -- "-$hijo" 2>/dev/null
    wait "$hijo" 2>/dev/null
  fi
  restaurar
  echo >&2
  echo "Interrupted: the copy is as it was." >&2
  exit 130
}
trap restaurar EXIT
trap interrumpido INT TERM HUP

# Runs a command in a process group of its own, its output to a log; gives its status.
correr() { # log, command...
  local registro=$1
  shift
  setsid "$@" >"$registro" 2>&1 &
  hijo=$!
  wait "$hijo"
  local estado=$?
  hijo=""
  return $estado
}

compilar() { correr "$1" cmake --build "$build" -j"$hilos"; }
parar=(--stop-on-failure)
[ "${FALLOS_TODAS:-}" = 1 ] && parar=()
probar() { # log; the SQLite suite, stopping at the first failure unless FALLOS_TODAS=1
  correr "$1" ctest --test-dir "$build" -L '^sqlite$' -j"$hilos" --timeout 120 "${parar[@]}" \
    --output-on-failure
}

# Each fault rebuilds one file and relinks whatever uses it, then the file put back is rebuilt
# with the next fault: ccache turns that second compile into a copy, and without debug
# information and with a faster linker (when the machine has one) the links take a fraction.
rapido=()
command -v ccache >/dev/null && rapido+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
for enlazador in lld gold; do
  if command -v "ld.$enlazador" >/dev/null; then
    rapido+=("-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=$enlazador")
    break
  fi
done
if [ ! -f "$build/CMakeCache.txt" ]; then
  echo "Configuring..."
  correr "$trabajo/registros/configurar.log" cmake -S "$copia" -B "$build" \
    -DCMAKE_BUILD_TYPE=Release -DTARIFAS_PRUEBAS_PG= "${rapido[@]}" ||
    { echo "cmake failed: see $trabajo/registros/configurar.log" >&2; exit 1; }
fi
echo "Building the untouched copy..."
if ! compilar "$trabajo/registros/base-compilar.log"; then
  echo "The untouched copy does not build: see $trabajo/registros/base-compilar.log" >&2
  tail -n 20 "$trabajo/registros/base-compilar.log" >&2
  exit 1
fi
# The untouched suite must pass; a pass is remembered for these exact sources.
huella=$(ayudante huella "$copia")
if [ "$(cat "$build/.fallos-base-ok" 2>/dev/null)" = "$huella" ]; then
  echo "The untouched suite passed before on these same sources."
else
  echo "Running the untouched suite..."
  if ! probar "$trabajo/registros/base-probar.log"; then
    echo "The untouched suite does not pass, so no fault can be judged. See" \
      "$trabajo/registros/base-probar.log:" >&2
    grep -E '\*\*\*|tests passed|tests failed' "$trabajo/registros/base-probar.log" >&2
    exit 1
  fi
  echo "$huella" >"$build/.fallos-base-ok"
fi

# --- One fault at a time --------------------------------------------------------------------
primer_fallo() { # ctest log -> "test" or "test (Timeout)" (with FALLOS_TODAS, every one),
  # and the first failing function
  python3 - "$1" <<'PY'
import os, re, sys
texto = open(sys.argv[1], encoding="utf-8", errors="replace").read()
if os.environ.get("FALLOS_TODAS") == "1":
    todas = re.findall(r"^\s*\d+/\d+ Test +#\d+: (\S+) .*?\*\*\*(\w+)", texto, re.M)
    if todas:
        print(", ".join(p if c == "Failed" else f"{p} ({c})" for p, c in todas))
        f = re.search(r"^FAIL!  : (.*)$", texto, re.M)
        print(f.group(1).strip()[:160] if f else "")
        sys.exit()
m = re.search(r"^\s*\d+/\d+ Test +#\d+: (\S+) .*?\*\*\*(\w+)", texto, re.M)
if not m:
    m2 = re.search(r"^\s*\d+ - (\S+) \((\w[^)]*)\)", texto, re.M)  # "The following tests FAILED"
    print(f"{m2.group(1)} ({m2.group(2)})" if m2 else "?")
    sys.exit()
prueba, clase = m.group(1), m.group(2)
print(prueba if clase == "Failed" else f"{prueba} ({clase})")
f = re.search(r"^FAIL!  : (.*)$", texto[m.end():], re.M)
print(f.group(1).strip()[:160] if f else "")
PY
}

filas=()
detalles=()
atrapados=0
juzgados=0
malos=0
inicio=$(date +%s)
for id in "${ids[@]}"; do
  fichero=$(ayudante campo "$datos" "$id" file)
  descripcion=$(ayudante campo "$datos" "$id" description)
  registro="$trabajo/registros/$id"
  printf '%s  %-6s %s ... ' "$(date -u +%H:%M:%S)" "$id" "$fichero"
  resultado=""
  prueba=""
  detalle=""
  if [ ! -f "$copia/$fichero" ]; then
    resultado="not applicable: no file"
  else
    cp -- "$copia/$fichero" "$trabajo/respaldo/fichero"
    pendiente="$fichero"
    if ! motivo=$(ayudante plantar "$datos" "$copia" "$id"); then
      resultado=$motivo
    elif ! compilar "$registro.compilar.log"; then
      resultado="no compila"
      detalle=$(grep -m1 -E 'error' "$registro.compilar.log" | cut -c1-200)
    elif probar "$registro.probar.log"; then
      resultado="missed"
    else
      resultado="caught"
      { read -r prueba; read -r detalle; } < <(primer_fallo "$registro.probar.log")
    fi
    restaurar
  fi
  case $resultado in
    caught) atrapados=$((atrapados + 1)); juzgados=$((juzgados + 1)) ;;
    missed) juzgados=$((juzgados + 1)) ;;
    *) malos=$((malos + 1))
       echo "FAULT $id: $resultado" >&2 ;;
  esac
  echo "$resultado${prueba:+ by $prueba}"
  filas+=("| $id | $fichero | $descripcion | $resultado | ${prueba:--} |")
  [ -n "$detalle" ] && detalles+=("$id: $detalle")
  printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$id" "$fichero" "$descripcion" "$resultado" "${prueba:--}" \
    "$detalle" >"$trabajo/registros/$id.resultado"
done
# The last fault's file goes back before the final build, which leaves the copy as it was.
compilar "$trabajo/registros/final-compilar.log" >/dev/null 2>&1 || true

# --- The table ------------------------------------------------------------------------------
tabla() { # title, then rows
  echo "$1"
  shift
  echo
  echo "| id | file | fault | result | first failing test |"
  echo "|----|------|-------|--------|--------------------|"
  printf '%s\n' "$@"
}
minutos=$(( ($(date +%s) - inicio + 59) / 60 ))
{
  tabla "Faults planted in ${rev/#./the working tree} ($nombre), $(date -u '+%Y-%m-%d %H:%M UTC'), $minutos min" \
    "${filas[@]}"
  echo
  echo "$atrapados of $juzgados caught"
  [ "$malos" -gt 0 ] && echo "$malos fault(s) could not be judged: mend them in $datos"
  if [ ${#detalles[@]} -gt 0 ]; then
    echo
    echo "First failure of each caught fault (or the build error):"
    printf '  %s\n' "${detalles[@]}"
  fi
} | tee "$trabajo/resultados.txt"

# Every fault of the data file with its latest result on this copy.
todas=()
t_atrapados=0
t_juzgados=0
sin=0
while read -r id; do
  if [ -f "$trabajo/registros/$id.resultado" ]; then
    IFS=$'\t' read -r i f d r p _ <"$trabajo/registros/$id.resultado"
    todas+=("| $i | $f | $d | $r | $p |")
    case $r in
      caught) t_atrapados=$((t_atrapados + 1)); t_juzgados=$((t_juzgados + 1)) ;;
      missed) t_juzgados=$((t_juzgados + 1)) ;;
    esac
  else
    sin=$((sin + 1))
  fi
done <<<"$todos"
{
  tabla "Latest result of every fault on $nombre" "${todas[@]}"
  echo
  echo "$t_atrapados of $t_juzgados caught"
  [ "$sin" -gt 0 ] && echo "$sin fault(s) of the data file not run yet on this copy"
} >"$trabajo/resultados-todos.txt"
echo
echo "Written to $trabajo/resultados.txt (all faults run so far: $trabajo/resultados-todos.txt)"
[ "$malos" -eq 0 ]
