#!/usr/bin/env bash
# Sample requests and filters of the examples against the replies that stand beside them.
#
#   run.sh TVK-MAP             compares
#   run.sh TVK-MAP --refresh   rewrites the replies; read the diff
set -euo pipefail
tool=$(realpath "$1")
refresh=${2-}
cd "$(dirname "$0")/../../examples"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

failed=0
fail() {
  echo "$1"
  failed=$((failed + 1))
}

# golden REPLY ARGUMENT...: tvk-map with the arguments, in the folder of the example, prints replies/REPLY.xml. It ends
# with 1 when that tells an error.
golden() {
  local reply=replies/$1.xml actual got=0
  shift
  actual=$("$tool" "$@") || got=$?
  [ "$refresh" != --refresh ] || printf '%s\n' "$actual" >"$reply"
  [ "$got" -eq "$(grep -c -m 1 '<rpc-error>' "$reply")" ] || fail "$*: exit status $got"
  diff -u "$reply" <(printf '%s\n' "$actual") || fail "$*: not $reply"
}

# Edits are made into native data, but for these.
onto_nothing=" create-two merge-bare add-then-delete create-instance "
edit() {
  local native=(--into native-before-edit.xml)
  [[ $onto_nothing != *" $1 "* ]] || native=()
  golden "$1" edit --mapping "$example" "${native[@]}" "requests/$1.xml"
  grep -q '<rpc-error>' "replies/$1.xml" || closes "$1" "${native[@]}"
}
# closes REQUEST [--into NATIVE]: the data that results, read and edited again, stays as it is.
closes() {
  local request=$1
  shift
  "$tool" edit --mapping "$example" "$@" --apply "requests/$request.xml" >"$work/data.xml" &&
    "$tool" get --mapping "$example" --native "$work/data.xml" >"$work/reply.xml" &&
    "$tool" edit --mapping "$example" --into "$work/data.xml" --apply --changes "$work/reply.xml" >"$work/changes.xml" ||
    fail "$request: not applied, read and edited again"
  ! grep -q '  <' "$work/changes.xml" || fail "$request: read and edited again it changes $(<"$work/changes.xml")"
}
# get FILTER: in both phases, which agree here.
get() {
  for phase in mark container; do
    golden "get-$1" get --mapping "$example" --native native-device.xml --phase $phase "filters/$1.xml"
  done
}

# closes REQUEST: what the edit of a sample request makes of native data is read back, and edited into it again, which
# changes nothing.
whole='<rpc xmlns="urn:ietf:params:xml:ns:netconf:base:1.0"><get-config/></rpc>'
closes() {
  local native=(--into native-before-edit.xml)
  [[ $onto_nothing != *" $1 "* ]] || native=()
  ! grep -q '<rpc-error>' "replies/$1.xml" || return 0
  "$tool" edit --mapping "$example" "${native[@]}" --apply "requests/$1.xml" >"$work/edited.xml" &&
    "$tool" get --mapping "$example" --native "$work/edited.xml" - <<<"$whole" >"$work/read.xml" &&
    "$tool" edit --mapping "$example" --into "$work/edited.xml" --apply "$work/read.xml" >"$work/again.xml" ||
    fail "requests/$1.xml: does not close"
  diff -u "$work/edited.xml" "$work/again.xml" || fail "requests/$1.xml: edited again"
}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for example in openconfig_interfaces openconfig_bgp; do
  pushd "$example" >/dev/null
  for sample in requests/*.xml; do
    edit "$(basename "$sample" .xml)"
    closes "$(basename "$sample" .xml)"
  done
  for sample in filters/*.xml; do
    get "$(basename "$sample" .xml)"
  done
  golden get-everything get --mapping "$example" --native native-device.xml
  for mode in report-all trim explicit report-all-tagged; do
    ! [ -e "replies/get-two-branches-$mode.xml" ] ||
      golden "get-two-branches-$mode" get --mapping "$example" --native native-device.xml --with-defaults $mode \
        filters/two-branches.xml
  done
  popd >/dev/null
done

[ $failed -eq 0 ]
