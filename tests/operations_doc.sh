#!/usr/bin/env bash
# The table of operations names what the library exports, each once, and the source that defines it:
# operations_doc.sh TABLE LIST
set -euo pipefail
table=$1 list=$2
rows=$(sed -n 's/^| `\([a-z0-9_]*\)` | .* | `\([a-z_/]*\.cpp\)` |$/\1 \2/p' "$table" | sort)
listed=$(sed -n 's/^ *\([a-zA-Z0-9_]*\);$/\1/p' "$list" | sort)
[ -n "$listed" ]
diff <(echo "$listed") <(cut -d' ' -f1 <<<"$rows")
sources=$(dirname "$list")
while read -r operation source; do
  file=$sources/$source
  [ -e "$file" ] || file=$sources/tvk_map_common/$source
  # A definition begins a line and does not end with the next semicolon, as a declaration does.
  tr '\n' ' ' <"$file" | grep -qE "[ *]$operation(\([^;{]*\{|\[[^]]*\] *=? *)" || {
    echo "$operation is not defined in $source"
    exit 1
  }
done <<<"$rows"
