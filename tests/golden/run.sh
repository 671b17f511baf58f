#!/usr/bin/env bash
# Sample requests and filters of the examples against the replies that stand beside them.
#
#   run.sh TVK-MAP             compares
#   run.sh TVK-MAP --refresh   rewrites the replies; read the diff
set -euo pipefail
tool=$(realpath "$1")
refresh=${2-}
cd "$(dirname "$0")/../../examples"

failed=0
fail() {
  echo "$1"
  failed=$((failed + 1))
}

# golden REPLY STATUS ARGUMENT...: tvk-map with the arguments, in the folder of the example, prints replies/REPLY.xml.
golden() {
  local reply=replies/$1.xml status=$2 actual got=0
  shift 2
  actual=$("$tool" "$@") || got=$?
  [ "$refresh" != --refresh ] || printf '%s\n' "$actual" >"$reply"
  [ "$got" -eq "$status" ] || fail "$*: exit status $got, expected $status"
  diff -u "$reply" <(printf '%s\n' "$actual") || fail "$*: not $reply"
}

# edit STATUS REQUEST [OPTION...], get FILTER [OPTION...]: the latter in both phases of the filter, which agree here.
edit() {
  local status=$1 request=$2
  shift 2
  golden "$request" "$status" edit --mapping "$example" "$@" "requests/$request.xml"
}
get() {
  local filter=$1
  shift
  for phase in mark container; do
    golden "get-$filter" 0 get --mapping "$example" --native "$device" --phase $phase "$@" "filters/$filter.xml"
  done
}
# begin EXAMPLE: what follows, up to end, is of that example.
begin() {
  example=$1
  device=native-device.xml
  pushd "$example" >/dev/null
}
# Every sample has been run.
end() {
  for sample in requests/*.xml; do
    [ -e "replies/$(basename "$sample")" ] || fail "$example/$sample is not run"
  done
  for sample in filters/*.xml; do
    [ -e "replies/get-$(basename "$sample")" ] || fail "$example/$sample is not run"
  done
  popd >/dev/null
}

begin openconfig_interfaces
edit 0 create-two
edit 0 merge-bare
edit 0 merge-into --into native-before-edit.xml
edit 0 add-beside --into native-before-edit.xml
edit 0 replace-entry --into native-before-edit.xml
edit 0 replace-container --into native-before-edit.xml
edit 0 delete-entry --into native-before-edit.xml
edit 0 add-then-delete
edit 0 delete-parts --into native-before-edit.xml
edit 1 wrong-leafref
edit 1 empty-key
edit 1 key-with-delete
edit 1 unsupported-namespace
edit 1 unknown-identity
edit 1 wrong-module
edit 1 delete-with-content
get one-by-key
get one-leaf
get content-match
get key-and-content
get two-branches
get empty-container
get whole-list
get addresses
get unknown-namespace
get no-such-entry
for mode in report-all trim explicit report-all-tagged; do
  golden "get-two-branches-$mode" 0 get --mapping "$example" --native "$device" --with-defaults $mode \
    filters/two-branches.xml
done
golden get-everything 0 get --mapping "$example" --native "$device"
end

begin openconfig_bgp
edit 0 create-instance
edit 0 merge-into --into native-before-edit.xml
edit 0 delete-beside-add --into native-before-edit.xml
edit 0 replace-neighbor --into native-before-edit.xml
edit 0 replace-neighbors --into native-before-edit.xml
edit 0 delete-parts --into native-before-edit.xml
edit 0 delete-instance --into native-before-edit.xml
edit 0 delete-then-add --into native-before-edit.xml
edit 1 second-process --into native-before-edit.xml
edit 1 other-protocol
edit 1 wrong-module
edit 1 wrong-module-copy
edit 1 unqualified-identity
edit 1 unknown-identity
edit 1 bad-address
edit 1 address-with-zone
edit 1 bad-as
edit 1 bad-bandwidth
get one-by-key
get one-leaf
get augmented-leaf
get identity-match
get identity-key
get identity-of-other-module
get other-protocol
get instances
get whole-list
get no-such-entry
golden get-everything 0 get --mapping "$example" --native "$device"
end

[ $failed -eq 0 ]
