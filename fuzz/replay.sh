#!/bin/bash
# Replays a corpus and the samples of the target, and then random inputs: replay.sh REPLAY CORPUS COUNT [--refresh]
# CORPUS.txt, if there is one, names inputs with a reason for each, and has what they come to; --refresh writes that anew.
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/samples"
bash "$(dirname "$0")/samples.sh" "$(basename "$2")" "$folder/samples"
record=$2.txt
[ -f "$record" ] || record=/dev/null
"$1" "$record" "$3" "$2" "$folder/samples" >"$folder/actual"
[ "${4-}" != --refresh ] || cp "$folder/actual" "$record"
diff -u "$record" "$folder/actual"
