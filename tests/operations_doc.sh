#!/usr/bin/env bash
# The table of operations names what the library exports, each once: operations_doc.sh TABLE LIST
set -euo pipefail
documented=$(sed -n 's/^| `\([a-z0-9_]*\)` |.*/\1/p' "$1" | sort)
listed=$(sed -n 's/^ *\([a-zA-Z0-9_]*\);$/\1/p' "$2" | sort)
[ -n "$listed" ]
diff <(echo "$listed") <(echo "$documented")
