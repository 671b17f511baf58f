#!/usr/bin/env bash
# The visible symbols of the library are those of its list, no more and no less: exports.sh LIBRARY LIST
set -euo pipefail
visible=$(nm -D --defined-only "$1" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | sort)
listed=$(sed -n 's/^ *\([a-zA-Z0-9_]*\);$/\1/p' "$2" | sort)
[ -n "$listed" ]
diff <(echo "$listed") <(echo "$visible")
