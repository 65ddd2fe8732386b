#!/usr/bin/env bash
# Draws the screens' pictures (the sizes the screens were designed for) into data/imagenes.
# They are committed; run this again only to change them. Needs ImageMagick.
set -euo pipefail
cd "$(dirname "$0")/../data/imagenes"
dibujar() { # name width height drawing...
  local nombre=$1 w=$2 h=$3; shift 3
  convert -size "${w}x${h}" xc:none "$@" "$nombre"
}
dibujar tarifas.gif 45 40 -fill '#f08a1c' -draw 'circle 22,20 22,2'
dibujar flecha.gif 45 45 -stroke '#f08a1c' -strokewidth 7 -fill none -draw 'arc 6,6 39,39 150,420' \
  -fill '#f08a1c' -stroke none -draw 'polygon 2,24 16,24 9,36'
dibujar aceptar.gif 48 43 -stroke '#1f9d36' -strokewidth 8 -fill none -draw 'stroke-linejoin round stroke-linecap round polyline 6,22 19,35 42,8'
dibujar cancelar.gif 45 44 -fill '#d42020' -draw 'polygon 13,1 32,1 44,13 44,31 32,43 13,43 1,31 1,13' \
  -fill white -draw 'roundrectangle 15,14 30,34 3,3' -draw 'rectangle 16,9 19,20' -draw 'rectangle 21,7 24,20' -draw 'rectangle 26,9 29,20'
dibujar nuevo.gif 41 45 -fill '#2ea043' -draw 'circle 20,22 20,2' -fill white -draw 'rectangle 17,10 23,34' -draw 'rectangle 8,19 32,25'
dibujar salir.gif 44 50 -fill '#8a5a2b' -draw 'rectangle 4,2 26,48' -fill '#e9c48a' -draw 'circle 21,26 21,28' \
  -fill '#2ea043' -draw 'polygon 26,21 34,21 34,14 43,25 34,36 34,29 26,29'
dibujar ayuda.gif 44 45 -fill '#1f5fbf' -draw 'circle 22,22 22,2' -fill white -draw 'circle 22,11 22,14' -draw 'rectangle 19,18 25,35'
dibujar eliminar.gif 45 42 -fill '#8c8c8c' -draw 'rectangle 8,10 36,40' -fill '#d42020' -draw 'rectangle 4,4 40,9' \
  -stroke '#d42020' -strokewidth 5 -draw 'line 6,6 38,38' -draw 'line 38,6 6,38'
# The program's icon, at the sizes a desktop asks for.
for s in 16 24 32 48 128; do
  convert -size "${s}x${s}" xc:none -fill '#f08a1c' -draw "circle $((s/2)),$((s/2)) $((s/2)),1" \
    -fill white -pointsize $((s*5/8)) -gravity center -annotate 0 '€' "icono$s.png"
done
convert icono16.png icono24.png icono32.png icono48.png icono128.png tarifas.ico
rm -f icono*.png
