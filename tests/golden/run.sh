#!/usr/bin/env bash
# Sample requests of the examples against the replies that stand beside them.
#
#   run.sh TVK-MAP             compares
#   run.sh TVK-MAP --refresh   rewrites the replies; read the diff
set -euo pipefail
tool=$(realpath "$1")
refresh=${2-}
cd "$(dirname "$0")/../../examples"

failed=0
total=0
# golden EXAMPLE STATUS REQUEST [OPTION...]: requests/REQUEST.xml through EXAMPLE gives replies/REQUEST.xml.
golden() {
  local example=$1 status=$2 request=$3 got=0
  shift 3
  local reply=$example/replies/$request.xml
  total=$((total + 1))
  actual=$("$tool" edit --mapping "$example" "$@" "$example/requests/$request.xml") || got=$?
  [ "$refresh" != --refresh ] || printf '%s\n' "$actual" >"$reply"
  if [ "$got" -ne "$status" ]; then
    echo "$example/$request: exit status $got, expected $status"
    failed=$((failed + 1))
  elif ! diff -u "$reply" <(printf '%s\n' "$actual"); then
    failed=$((failed + 1))
  fi
}

native=openconfig_interfaces/native-state.xml
golden openconfig_interfaces 0 create-two
golden openconfig_interfaces 0 merge-bare
golden openconfig_interfaces 0 merge-into --into $native
golden openconfig_interfaces 0 replace-entry --into $native
golden openconfig_interfaces 0 replace-container --into $native
golden openconfig_interfaces 0 delete-entry --into $native
golden openconfig_interfaces 0 delete-parts --into $native
golden openconfig_interfaces 1 wrong-leafref
golden openconfig_interfaces 1 empty-key
golden openconfig_interfaces 1 key-with-delete
golden openconfig_interfaces 1 unsupported-namespace
golden openconfig_interfaces 1 unknown-identity
golden openconfig_interfaces 1 delete-with-content

# Every sample request is run here.
samples=$(ls ./*/requests/*.xml | wc -l)
if [ "$samples" -ne "$total" ]; then
  echo "$samples sample requests, $total of them run"
  failed=$((failed + 1))
fi
[ $failed -eq 0 ]
