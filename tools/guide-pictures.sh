#!/bin/sh
# Puts the pictures that the pages name ("pictures/NAME.png") beside them, out of the tour's:
# guide-pictures.sh TOUR. With --check it only looks whether the tour has taken each of them.
set -eu
cd "$(dirname "$0")/.."
check=
[ "$1" = --check ] && { check=yes; shift; }
tour=$1

mkdir -p docs/pictures
status=0
for name in $(grep -oh 'pictures/[a-z-]*\.png' README.md docs/*.md | sort -u | sed 's|pictures/||'); do
    taken=$(find "$tour" -name "[0-9]*[0-9]-$name")
    if [ -z "$taken" ]; then
        echo "the tour takes no picture $name" >&2
        status=1
    elif [ -z "$check" ]; then
        cp "$taken" "docs/pictures/$name"
    elif [ ! -e "docs/pictures/$name" ]; then
        echo "docs/pictures has no $name: ./run --pictures" >&2
        status=1
    fi
done
for picture in docs/pictures/*.png; do
    grep -q "pictures/$(basename "$picture")" README.md docs/*.md && continue
    echo "no page shows $picture" >&2
    status=1
done
exit $status
