#!/bin/sh
# Writes tldb's manual page from its own help: man/tldb.sh TLDB
set -eu
tldb=$1

# Text as it stands: no escapes, no requests.
verbatim() { echo .nf; sed 's/\\/\\e/g; s/-/\\-/g; s/^\./\\\&./; s/^'"'"'/\\\&&/'; echo .fi; }

cat <<'PAGE'
.TH TLDB 1 "" "TL030101" "User Commands"
.SH NAME
tldb \- database tool of TL030101
.SH SYNOPSIS
.B tldb
.I COMMAND
.RI [ OPTIONS ]
\&...
.SH DESCRIPTION
Makes, checks and brings over TLDB0010.MDB, the database that TL030101 works on, and shows what is in its
answer files. It needs no display.
.SH COMMANDS
PAGE
"$tldb" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z][a-z -]*[a-z]\) [A-Z[].*/\1/p' | while read -r command; do
    echo ".SS $command"
    # shellcheck disable=SC2086 # the name may be two words
    "$tldb" $command --help | sed '/^Exit code:/d' | verbatim
done
cat <<'PAGE'
.SH EXIT STATUS
.TP
.B 0
All is well.
.TP
.B 1
Something was found, or the work could not be done. One line on standard error says why.
.TP
.B 2
Wrong use.
.SH SEE ALSO
.BR TL030101 (1)
PAGE
