#!/bin/sh
# Makes the operator's guide as a page of HTML with its pictures: guide.sh GUIDE.md FOLDER
set -eu
guide=$1
folder=$2

rm -rf "$folder"
mkdir -p "$folder"
title=$(sed -n 's/^# //p' "$guide" | head -n 1)
{
    cat <<PAGE
<!DOCTYPE html>
<html lang="ja">
<head>
<meta charset="utf-8">
<title>$title</title>
<style>
body { max-width: 60em; margin: 1em auto; padding: 0 1em; font-family: sans-serif; line-height: 1.6 }
img { max-width: 100%; border: 1px solid #999 }
table { border-collapse: collapse }
th, td { border: 1px solid #999; padding: 0.2em 0.6em; text-align: left }
</style>
</head>
<body>
PAGE
    cmark-gfm --extension table --to html "$guide"
    printf '</body>\n</html>\n'
} >"$folder/index.html"
# Every picture that the guide names, wherever it stands beside it.
sed -n 's/.*!\[[^]]*\](\([^)]*\)).*/\1/p' "$guide" | while read -r picture; do
    mkdir -p "$folder/$(dirname "$picture")"
    cp "$(dirname "$guide")/$picture" "$folder/$picture"
done
