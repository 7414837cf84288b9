#!/bin/sh
# Puts pictures of the windows on several screens side by side, with scale factors, a large font and
# palettes: looks.sh TOUR FOLDER. One picture for each window and screen, one for the palettes.
set -eu
tour=$1
folder=$2
windows="search list detail import"

# look SCREEN FACTOR POINTS PALETTE
look() {
    SCREEN=$1 QT_SCALE_FACTOR=$2 "$(dirname "$0")/on-desktop.sh" "$tour" "$folder/$1-$2-$3-$4" "$4" "$3" \
        >/dev/null
}

# beside FILE SHEET-COLUMNS PICTURE...
beside() {
    file=$1
    columns=$2
    shift 2
    montage -label '%d' "$@" -tile "$columns"x -geometry 900x+6+6 "$file" 2>/dev/null
    echo "$file"
}

rm -rf "$folder"
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
for screen in 1366x768 1440x900 3840x2160; do
    for factor in 1 1.25 1.5 2; do
        look $screen $factor 9 light
    done
    look $screen 1 14 light
    for window in $windows; do
        beside "$folder/$window-$screen.png" 3 "$folder/$screen"-*-light/*-"$window.png"
    done
done
for palette in dark contrast; do
    look 1440x900 1 9 $palette
done
beside "$folder/palettes.png" 4 "$folder"/1440x900-1-9-*/*.png
