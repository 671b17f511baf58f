#!/bin/bash
# Replays a corpus; what its inputs come to is what FOLDER.txt says: replay.sh REPLAY FOLDER COUNT [--refresh]
set -euo pipefail
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
"$1" "$2" "$3" >"$actual"
[ "${4-}" != --refresh ] || cp "$actual" "$2.txt"
diff -u "$2.txt" "$actual"
