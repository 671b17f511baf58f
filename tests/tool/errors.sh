#!/bin/bash
# The error exits of tvk-map: errors.sh TVK-MAP MODULE
# MODULE is the name or the path of any mapping module. Ends with the first expectation that fails.
set -u
if [ $# -ne 2 ]; then
    echo "usage: $0 TVK-MAP MODULE" >&2
    exit 2
fi
tool=$(realpath "$1")
module=$2
case $module in */*) module=$(realpath "$module") ;; esac
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 2

fail() {
    echo "FAILED: $1: $2" >&2
    sed 's/^/  stdout: /' out >&2
    sed 's/^/  stderr: /' err >&2
    exit 1
}

# expect NAME STATUS STREAM PATTERN ARGUMENT...: runs the tool on the standard input given. A usage error prints
# nothing on standard output, a failed request an rpc-reply and nothing else.
expect() {
    local name=$1 status=$2 stream=$3 pattern=$4
    shift 4
    "$tool" "$@" >out 2>err
    local got=$?
    [ "$got" -eq "$status" ] || fail "$name" "exit status $got, expected $status"
    grep -Eq -- "$pattern" "$stream" || fail "$name" "no line on std$stream matches: $pattern"
    case $status in
        1) [ "$(head -c 10 out)" = "<rpc-reply" ] || fail "$name" "standard output is no rpc-reply" ;;
        2) [ ! -s out ] || fail "$name" "something stands on standard output"
           [ "$(head -c 9 err)" = "tvk-map: " ] || fail "$name" "standard error does not begin with \"tvk-map: \"" ;;
    esac
}

# edit NAME STATUS STREAM PATTERN: an edit of the request on standard input, kept in request.xml.
edit() {
    cat >request.xml
    expect "$@" edit --mapping "$module" request.xml </dev/null
}

# get NAME STATUS STREAM PATTERN: a read of no native data with the filter on standard input, kept in filter.xml.
get() {
    cat >filter.xml
    expect "$@" get --mapping "$module" --native nothing.xml filter.xml </dev/null
}

nc=urn:ietf:params:xml:ns:netconf:base:1.0

# Arguments and files. One line each: name, status, stream, pattern, arguments.
: >empty.xml
mkdir folder.xml
echo '<config/>' >nothing.xml
echo 'no library' >text.so
printf '<a>\n<b>' >broken.xml
expect "no command" 2 err "subcommand" </dev/null
expect "no mapping" 2 err "--mapping" edit nothing.xml </dev/null
expect "no request" 2 err "REQUEST" edit --mapping "$module" </dev/null
expect "unknown option" 2 err "--frobnicate" edit --mapping "$module" --frobnicate nothing.xml </dev/null
expect "unknown module" 2 err 'no mapping module "no_such_module"; searched: .*; modules there: ' \
    edit --mapping no_such_module nothing.xml </dev/null
expect "missing module file" 2 err "\./missing\.so: .*No such file" edit --mapping ./missing.so nothing.xml </dev/null
expect "module that is none" 2 err "\./text\.so: cannot be loaded" edit --mapping ./text.so nothing.xml </dev/null
expect "missing request" 2 err "missing\.xml: .*No such file" edit --mapping "$module" missing.xml </dev/null
expect "folder as request" 2 err "folder\.xml: .*[Ii]s a directory" edit --mapping "$module" folder.xml </dev/null
expect "empty request" 2 err "empty\.xml: is empty" edit --mapping "$module" empty.xml </dev/null
expect "empty standard input" 2 err "standard input: is empty" edit --mapping "$module" - </dev/null
expect "standard input twice" 2 err "only one" edit --mapping "$module" --into - - </dev/null
expect "one name twice" 2 err "missing\.xml: .*No such file" \
    edit --mapping "$module" --into missing.xml missing.xml </dev/null
expect "missing target" 2 err "missing\.xml: .*No such file" \
    edit --mapping "$module" --into missing.xml nothing.xml </dev/null
expect "broken target" 2 err "broken\.xml:2: " edit --mapping "$module" --into broken.xml nothing.xml </dev/null
expect "filter without native data" 2 err "--native" get --mapping "$module" nothing.xml </dev/null
expect "standard input twice in a read" 2 err "only one" get --mapping "$module" --native - - </dev/null
expect "missing native data" 2 err "missing\.xml: .*No such file" get --mapping "$module" --native missing.xml </dev/null
expect "unknown phase" 2 err 'phase "sweep" is none of mark, container' \
    get --mapping "$module" --native nothing.xml --phase sweep </dev/null
expect "unknown mode" 2 err 'mode "all" is none of report-all, report-all-tagged, trim, explicit' \
    get --mapping "$module" --native nothing.xml --with-defaults all </dev/null
expect "nothing to print" 2 err "FILE" print </dev/null
expect "listing" 0 out '^a \(urn:a\) : 1$' print --namespaces - <<<'<data><a xmlns="urn:a">1</a></data>'
expect "help" 0 out "Examples:" edit --help </dev/null
expect "version" 0 out "^tvk-map [0-9]" --version </dev/null
expect "nothing to do" 0 out "^<config xmlns=\"$nc\"/>" edit --mapping "$module" - <nothing.xml

# The corpora of the fuzz targets hold the reasons for refusals. These tests check how users are told.
expect "70,002 lines" 2 err 'standard input:70002: operation "bad" of <v>' print - < <(
    echo '<data>' && yes '' | head -n 70000 && echo "<e><k>1</k><v xmlns:nc='$nc' nc:operation='bad'/></e></data>")
edit "message id" 1 out '<rpc-reply .*message-id="a&amp;1"' \
    <<<"<rpc xmlns='$nc' message-id='a&amp;1'><edit-config><config><none/></config></edit-config></rpc>"
get "xpath filter" 2 err 'filter\.xml:2: filter type "xpath" is not supported' \
    <<<$'<get>\n<filter type="xpath" select="/a"/></get>'
get "message id of a read" 0 out '<rpc-reply .*message-id="a&amp;1"' \
    <<<"<rpc xmlns='$nc' message-id='a&amp;1'><get><filter/></get></rpc>"

if [ -w /dev/full ]; then
    "$tool" edit --mapping "$module" nothing.xml >/dev/full 2>err
    status=$?
    [ $status -eq 2 ] || fail "full disk" "exit status $status, expected 2"
    grep -q "standard output: No space" err || fail "full disk" "not reported"
fi
echo "all error exits as expected"
