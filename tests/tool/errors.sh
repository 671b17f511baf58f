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
wd=urn:ietf:params:xml:ns:yang:ietf-netconf-with-defaults

# Arguments and files. One line each: name, status, stream, pattern, arguments.
: >empty.xml
mkdir folder.xml
echo '<config/>' >nothing.xml
echo 'no library' >text.so
printf '<a>\n<b>' >broken.xml
expect "no command" 2 err "subcommand" </dev/null
expect "unknown command" 2 err "." frobnicate </dev/null
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
expect "missing file to print" 2 err "missing\.xml: .*No such file" print missing.xml </dev/null
expect "mixed content to print" 2 err "standard input:1: <a> mixes text" print - <<<'<a>text<b/></a>'
expect "listing" 0 out '^a \(urn:a\) : 1$' print --namespaces - <<<'<data><a xmlns="urn:a">1</a></data>'
expect "help" 0 out "Examples:" edit --help </dev/null
expect "version" 0 out "^tvk-map [0-9]" --version </dev/null
expect "nothing to do" 0 out "^<config xmlns=\"$nc\"/>" edit --mapping "$module" - <nothing.xml

# Documents that are not read.
edit "broken" 2 err "request\.xml:3: .*mismatch" <<<$'<config>\n<a>\n</b>\n</config>'
edit "cut off" 2 err "request\.xml:[12]: " <<<'<config><a>'
edit "no XML" 2 err "request\.xml:1: " <<<'interfaces'
edit "prefix without a namespace" 2 err 'request\.xml:2: .*p' <<<$'<config>\n<p:a/></config>'
edit "two attributes of one name" 2 err "request\.xml:1: .*redefined" <<<'<config><a b="1" b="2"/></config>'
edit "document type" 2 err "request\.xml:2: .*document type" <<<$'<?xml version="1.0"?>\n<!DOCTYPE a><a/>'
edit "entities" 2 err "document type" <<<'<!DOCTYPE a [<!ENTITY e SYSTEM "/etc/passwd">]><a>&e;</a>'
edit "unknown entity" 2 err "request\.xml:1: .*nbsp" <<<'<a>&nbsp;</a>'
edit "too deep" 2 err "request\.xml:1: .*depth" <<<"$(printf '<a>%.0s' {1..300})$(printf '</a>%.0s' {1..300})"
edit "mixed content" 2 err "request\.xml:2: <a> mixes text" <<<$'<config>\n<a>text<b/></a></config>'
edit "text in config" 2 err "request\.xml:1: <config> holds text" <<<'<config>text</config>'

# Requests that say what they must not.
edit "operation" 2 err 'request\.xml:2: operation "mrge" of <mtu> is none of merge, replace, create, delete, remove' \
    <<<$'<config xmlns:nc="'$nc$'"><a>\n<mtu nc:operation="mrge">1</mtu></a></config>'
edit "default operation" 2 err 'request\.xml:1: default-operation "create" is none of merge, replace, none' \
    <<<'<edit-config><default-operation>create</default-operation><config/></edit-config>'
edit "insert position" 2 err 'insert position "middle" of <a> is none of' \
    <<<'<config xmlns:y="urn:ietf:params:xml:ns:yang:1"><a y:insert="middle"/></config>'
for key in "" "name" "[name]" "[name='a'" "[='a']" "[name='a]" "[name='a'] x" "[1]"; do
    edit "insert key $key" 2 err 'insert key ".*" of <a> is no list of' \
        <<<"<config xmlns:y='urn:ietf:params:xml:ns:yang:1'><a y:insert='after' y:key=\"$key\"/></config>"
done
edit "no operation" 2 err "request\.xml:1: <rpc> holds 0 operations" <<<"<rpc xmlns='$nc'/>"
edit "no config" 2 err "request\.xml:1: <edit-config> holds no <config>" <<<'<edit-config><url>x</url></edit-config>'

edit "a read" 2 err "request\.xml:1: <get-config> is no edit" <<<"<rpc xmlns='$nc'><get-config/></rpc>"

# Reads that say what they must not.
for other in "<edit-config/>" "<config/>" "<data xmlns='$nc'/>" "<hello xmlns='$nc'/>" "<rpc><edit-config/></rpc>" \
    "<rpc xmlns='$nc'><a xmlns='urn:a'/></rpc>"; do
    get "another message, $other" 2 err "filter\.xml:1: <[a-z-]+> is no read" <<<"$other"
done
get "two operations" 2 err "filter\.xml:1: <rpc> holds 2 operations" <<<"<rpc><get/><get/></rpc>"
get "xpath filter" 2 err 'filter\.xml:2: filter type "xpath" is not supported' \
    <<<$'<get>\n<filter type="xpath" select="/a"/></get>'
get "qualified filter type" 2 err 'filter type "xpath"' <<<"<n:filter xmlns:n='$nc' n:type='xpath'/>"
get "text in a filter" 2 err "<filter> holds text" <<<'<filter>interfaces</filter>'
get "mixed content in a filter" 2 err "filter\.xml:1: <a> mixes text" <<<'<filter><a>text<b/></a></filter>'
get "mode in a request" 2 err 'filter\.xml:2: with-defaults mode "all" is none of' \
    <<<$'<get>\n<with-defaults xmlns="'$wd$'"> all </with-defaults></get>'
get "mode without its namespace" 2 err "filter\.xml:1: <with-defaults> is not in its namespace, $wd" \
    <<<"<rpc xmlns='$nc'><get><with-defaults>trim</with-defaults></get></rpc>"

# Top containers that no module maps select nothing; nor does an empty filter.
unknown="<no-such-container xmlns='urn:example:none'/>"
for filter in "$unknown" "<filter/>" "<filter type='subtree'>$unknown</filter>" "<get><filter/></get>" \
    "<rpc xmlns='$nc'><get-config><filter>$unknown$unknown</filter></get-config></rpc>"; do
    get "nothing selected by $filter" 0 out "^  <data/>" <<<"$filter"
done
get "message id of a read" 0 out '<rpc-reply .*message-id="a&amp;1"' \
    <<<"<rpc xmlns='$nc' message-id='a&amp;1'><get><filter/></get></rpc>"

# Top containers that no module maps, in an edit: an rpc-error, whatever the envelope.
for request in "$unknown" "<config>$unknown</config>" "<edit-config><config>$unknown</config></edit-config>" \
    "<copy-config><source><config>$unknown</config></source></copy-config>" "<rpc><config>$unknown</config></rpc>"; do
    edit "unknown container in $request" 1 out "<error-tag>unknown-element</error-tag>" <<<"$request"
done
grep -q "<bad-element>no-such-container</bad-element>" out || fail "unknown container" "no bad-element"
grep -Eq "<error-message.*; it maps .+\.</error-message>" out || fail "unknown container" "what the module maps is not told"
edit "message id" 1 out '<rpc-reply .*message-id="a&amp;1"' \
    <<<"<rpc xmlns='$nc' message-id='a&amp;1'><edit-config><config>$unknown</config></edit-config></rpc>"

if [ -w /dev/full ]; then
    "$tool" edit --mapping "$module" nothing.xml >/dev/full 2>err
    status=$?
    [ $status -eq 2 ] || fail "full disk" "exit status $status, expected 2"
    grep -q "standard output: No space" err || fail "full disk" "not reported"
fi
echo "all error exits as expected"
