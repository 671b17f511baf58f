#!/usr/bin/env bash
# Calls between the rooms of the library lead down only, in the order of docs/architecture.md:
# rooms.sh PAGE SOURCES OBJECTS
set -euo pipefail
order=$(sed -n 's/^| `src\/\(tvk_map_common\/\)\{0,1\}\([a-z_]*\)\/` |.*/\2/p' "$1")
sources=$(cd "$2" && find . -name '*.cpp')
[ -n "$order" ] && [ -n "$sources" ]
for source in $sources; do
  object=$3/$source.o
  nm "$object" | awk -v room="$(basename "$(dirname "$object")")" '$(NF - 1) ~ /^[TDBRU]$/ { print room, $(NF - 1), $NF }'
done | awk -v order="$order" '
  BEGIN { for (n = split(order, rooms, "\n"); n > 0; --n) level[rooms[n]] = n }
  !($1 in level) { print $1 " is a room that the page does not name"; bad = 1; exit }
  $2 == "U" { calls[$1 " " $3] }
  $2 != "U" { home[$3] = $1; ++defined }
  END {
    for (call in calls) {
      split(call, part, " ")
      if (part[2] in home && level[home[part[2]]] < level[part[1]]) {
        print part[1] " calls " part[2] " of " home[part[2]] ", which stands above it"
        bad = 1
      }
    }
    exit bad || !defined
  }'
