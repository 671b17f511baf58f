#!/bin/bash
# Documents that nobody means well: hostile.sh TVK-MAP DEEP-MAPPING
# Each is answered, or refused with file, line and reason; in bounded memory, and with nothing read beside it.
# DEEP-MAPPING is the module of deep_mapping.cpp. Ends with the first expectation that fails.
set -eu
if [ $# -ne 2 ]; then
    echo "usage: $0 TVK-MAP DEEP-MAPPING" >&2
    exit 2
fi
tool=$(realpath "$1")
deep=$(realpath "$2")
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 2

marker=not-to-be-read-$$
echo "$marker" >secret.txt
echo '<config/>' >nothing.xml
oc=http://openconfig.net/yang/interfaces
nc=urn:ietf:params:xml:ns:netconf:base:1.0

# An address sanitizer reserves more than any limit, so with one the memory is not bounded.
limit=1000000 # KiB
bounds="in memory bounded to $limit KiB"
(ulimit -v $limit && "$tool" --version) >out 2>err || { limit=unlimited && bounds="in memory without bounds"; }

fail() {
    echo "FAILED: $1: $2" >&2
    head -c 400 out | sed 's/^/  stdout: /' >&2
    head -c 400 err | sed 's/^/  stderr: /' >&2
    exit 1
}

# expect NAME STATUS STREAM PATTERN ARGUMENT...: runs the tool. The time is a guard against hanging, no more.
expect() {
    local name=$1 status=$2 stream=$3 pattern=$4
    shift 4
    local got=0
    (ulimit -v $limit && exec timeout 300 "$tool" "$@") >out 2>err </dev/null || got=$?
    [ "$got" -eq "$status" ] || fail "$name" "exit status $got, expected $status ($1)"
    grep -Eq -- "$pattern" "$stream" || fail "$name" "no line on std$stream matches: $pattern ($1)"
    ! grep -q "$marker" out err || fail "$name" "another file was read ($1)"
}

# NAME STATUS STREAM PATTERN, and the document on standard input.
edit() { cat >document.xml && expect "$@" edit --mapping openconfig_interfaces document.xml; }
edit_deep() { cat >document.xml && expect "$@" edit --mapping "$deep" document.xml; }
read_deep() { cat >document.xml && expect "$@" get --mapping "$deep" --native nothing.xml document.xml; }
list() { cat >document.xml && expect "$@" print document.xml; }

# refused NAME LINE PATTERN: whatever the document is for.
refused() {
    cat >document.xml
    local name=$1 pattern="^tvk-map: document\.xml:$2: $3"
    expect "$name" 2 err "$pattern" edit --mapping openconfig_interfaces document.xml
    expect "$name" 2 err "$pattern" edit --mapping openconfig_interfaces --into document.xml nothing.xml
    expect "$name" 2 err "$pattern" get --mapping openconfig_interfaces --native nothing.xml document.xml
    expect "$name" 2 err "$pattern" get --mapping openconfig_interfaces --native document.xml
    expect "$name" 2 err "$pattern" print document.xml
}

# repeat COUNT TEXT
repeat() { yes -- "$2" | head -n "$1" | tr -d '\n'; }

# Entities and other files.
refused "entity expansion" 1 "a document type declaration is not accepted" \
    <<<'<!DOCTYPE a [<!ENTITY a "xxxxxxxxxx"><!ENTITY b "&a;&a;&a;&a;"><!ENTITY c "&b;&b;&b;&b;">]><a>&c;&c;</a>'
refused "external entity" 2 "a document type declaration is not accepted" \
    <<<$'<?xml version="1.0"?>\n<!DOCTYPE a [<!ENTITY e SYSTEM "secret.txt">]><a>&e;</a>'
refused "parameter entity" 1 "a document type declaration is not accepted" \
    <<<'<!DOCTYPE a [<!ENTITY % e SYSTEM "secret.txt"> %e;]><a/>'
refused "external subset" 1 "a document type declaration is not accepted" \
    <<<"<!DOCTYPE a SYSTEM 'file://$folder/secret.txt'><a/>"
refused "undeclared entity" 1 "not well-formed XML: Entity 'e' not defined" <<<"<a>&e;</a>"
refused "tag without an end" 3 "not well-formed XML" <<<$'<a>\n<b c="'
list "inclusion" 0 out "include href=secret\.txt" \
    <<<'<a xmlns:xi="http://www.w3.org/2001/XInclude"><xi:include href="secret.txt" parse="text"/></a>'
list "style sheet and schema" 0 out "schemaLocation=urn:a secret\.txt" \
    <<<'<?xml-stylesheet href="secret.txt"?><a xmlns:x="urn:x" x:schemaLocation="urn:a secret.txt"/>'

# Depth, width and length.
{ repeat 100000 '<a>' && repeat 100000 '</a>'; } | refused "100,000 levels" 1 "not well-formed XML: .*depth"
{ echo "<interfaces xmlns='$oc'>" && repeat 1000000 '<interface/>' && echo '</interfaces>'; } |
    edit "1,000,000 children" 1 out "<error-tag>missing-element</error-tag>"
expect "1,000,000 children" 0 out "^    interface *$" print document.xml
{ echo '<filter>' && repeat 100000 "<top xmlns='urn:example:deep'><a/></top>" && echo '</filter>'; } |
    read_deep "100,000 filters of one name" 0 out "<data/>"
{ echo '<filter>' && seq -f "<a%.0f/>" 100000 && echo '</filter>'; } |
    read_deep "100,000 filters of as many names" 0 out "<data/>"
{ echo '<a><b>' && head -c 100000000 /dev/zero | tr '\0' x && echo '</b></a>'; } |
    list "100 MB of text" 0 out ': \\nx{200}'
{ echo "<top xmlns='urn:example:deep'>" && head -c 100000000 /dev/zero | tr '\0' ' ' && echo '<b>1</b></top>'; } |
    edit_deep "100 MB of white space" 0 out ">1</b>"
{ echo '<a b="' && head -c 4000000 /dev/zero | tr '\0' x && echo '"/>'; } |
    list "20 MB of an attribute" 0 out "b= ?x{200}"
{ echo '<a>' && echo "<$(repeat 60000 n)/></a>"; } | refused "60,000 letters of a name" 2 ".*[Nn]ame too long"
{ echo $'<a>\n<b' && seq -f ' a%.0f=">"' 100000 && echo '/></a>'; } |
    refused "100,000 attributes" 2 "a tag with more than 1000 attributes"
many=$(seq -f " a%.0f=''" 2000)
{ echo "<a><?b $many?><b><![CDATA[<b$many]]></b><!-- <b$many--><b" && seq -f " a%.0f='>'" 1000 && echo '/></a>'; } |
    list "1,000 attributes" 0 out "a1000=>"
printf '<a%3000s' | refused "a long tag without an end" 1 "not well-formed XML: Couldn't find end of Start Tag a"
{ echo -n '<a xmlns="' && head -c 1000000 /dev/zero | tr '\0' n && echo '">' && repeat 20000 '<b/>' && echo '</a>'; } |
    refused "a namespace of 1 MB for 20,000 nodes" 1 "a namespace of <a> is longer than 1000 characters"
list "1,000,000 pieces of text" 0 out "^a : x{100}" < <(echo -n '<a>' && repeat 1000000 '<![CDATA[x]]>' && echo '</a>')

# Bytes that no input of a fuzz target can hold, and a word of any length.
printf '<a>\n1\0</a>' | refused "zero byte in a text" 2 "not well-formed XML: a zero byte"
printf '<a/>\n\0<b/>' | refused "zero byte behind the end" 2 "not well-formed XML: a zero byte"
printf '<a\0/>' | refused "zero byte in a name" 1 "not well-formed XML: a zero byte"
printf '\xff\xfe<\0a\0/\0>\0\0\0<\0b\0/\0>\0' |
    refused "zero character in UTF-16" 1 "not well-formed XML: a zero character"
list "UTF-16" 0 out "^a : x$" < <(printf '\xff\xfe<\0a\0>\0x\0<\0/\0a\0>\0')
{ echo '<a>' && echo "<b$(seq -s '' -f " a%.0f=''" 2000)/></a>"; } | iconv -t UTF-16 |
    refused "2,000 attributes in UTF-16" 2 "a tag with more than 1000 attributes"
printf '\x4c\x6f\xa7\x94' | refused "EBCDIC" 1 "is written in an encoding that is not read"
refused "UTF-7" 1 'the encoding "utf-7" is not read' <<<"<?xml version='1.0' encoding='UTF-7'?><a/>"
list "ISO 8859-1" 0 out "^a : é" < <(printf "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xe9</a>")
{ seq -f "<a xmlns:p%.0f='urn:p'>" 60 && echo "<b$(seq -s '' -f " xmlns:q%.0f='urn:q'" 990)/>" && repeat 60 '</a>'; } |
    refused "many namespace declarations" 61 "more than 1000 namespace declarations are in force"
refused "an element of XML itself" 2 "<xml:foo> is in the namespace of XML itself" <<<$'<a>\n<xml:foo/></a>'

# Inputs that are no XML document, or more than one.
refused "JSON" 1 "is JSON" <<<$' {"a": 1}'
refused "broken chunks" 1 "the chunked framing is broken" < <(printf '\n#4\n<a/>\n#9\n</a>\n##\n')
refused "two framed messages" 1 "holds more than one framed message" < <(printf '\n#4\n<a/>\n##\n\n#4\n<a/>\n##\n')
list "chunks" 0 out "^a : xy$" < <(printf '\n#4\n<a>x\n#5\ny</a>\n##\n')
list "end of message" 0 out "^a : x$" <<<'<a>x</a>]]>]]>'
list "escape sequences" 0 out '^a : \\n\\x9b1m$' <<<'<a>&#10;&#x9b;1m</a>'
list "escape sequences in a message" 2 err 'operation "\\t1m" of <a>' \
    <<<"<a xmlns:nc='$nc' nc:operation='&#9;1m'/>"
{ echo -n '<a xmlns:y="urn:ietf:params:xml:ns:yang:1" y:insert="' && repeat 100000 'é' && echo '"/>'; } |
    edit "100,000 letters where a word was expected" 2 err 'insert position "(é){400,500}\.\.\.$'

# The limits of the library.
top() { echo "<top xmlns='urn:example:deep' xmlns:y='urn:ietf:params:xml:ns:yang:1'>$1</top>"; }
levels() { top "$(repeat "$1" '<c>')$2$(repeat "$1" '</c>')"; }
levels 60 '<leaf>1</leaf>' | edit_deep "60 levels of containers" 0 out ">1</leaf>"
levels 60 '<entry/>' | edit_deep "60 levels, and an error" 1 out "<error-tag>data-missing</error-tag>"
levels 60 '<leaf/>' | read_deep "60 levels of a filter" 0 out "<data/>"
keys=$(for key in {1..12}; do echo "<k$key>v$key</k$key>"; done)
entry() { top "<entry>$1<leaf>1</leaf></entry>"; }
entry "$keys" | edit_deep "12 keys" 0 out ">v12</k12>"
entry "$keys" | read_deep "12 keys in a filter" 0 out "<data/>"
entry "${keys/v12/}" | edit_deep "the last of 12 keys is empty" 1 out "<error-tag>missing-element</error-tag>"
entry "${keys/v5/$(repeat 2000 v)}<entry/>" |
    edit_deep "a key that no error path has room for" 1 out "<error-tag>data-missing</error-tag>"
top '<chain>2000</chain>' >document.xml
expect "2,000 levels to carry out" 1 out "the data has more than 1000 levels" edit --mapping "$deep" --apply document.xml
top '<chain>300000</chain>' | edit_deep "300,000 native levels" 1 out "more than 250 levels, which no reader of XML takes"
top '<odd/>' | edit_deep "a status that means nothing" 1 out "/top: a handler of the mapping 'deep_mapping' answered .* 0x0000dead"
inserted() { top "<leaf y:insert='after' y:key=\"$1\">1</leaf>"; }
inserted "$(repeat 8 "[k='v']")" | edit_deep "8 insert keys" 0 out "(\[key:k='v'\]){8}"
inserted "$(repeat 8 "[k='v']")" | list "8 insert keys" 0 out "insert=after\) \(key\) (\(k=v\)){5}$"
special='&lt;&gt;&amp;&quot;&#13;&#9;é'
top "<leaf y:insert='after' y:key=\"[k='$special']\">$special</leaf>" |
    edit_deep "characters that XML has a use for" 0 out "'${special/é/"&#xE9;"}'\]\">${special/"&#9;"/$'\t'}</leaf>"
inserted "[p:k='v']" | list "an insert key with a prefix" 0 out "\(key\) \(k=v\)$"
inserted "[k='$(repeat 5000 v)']" | list "an insert key of 5,000 characters" 0 out "insert=after"

# Comments, instructions and CDATA between elements.
note='<!-- <a> --><?x <a>?>'
leaf="<leaf>$note<!-- -->1$note<![CDATA[2]]>$note</leaf>"
edit_deep "comments and instructions everywhere" 0 out ">12</leaf>" \
    <<<"$note<config>$note$(top "$note<c>$note$leaf$note</c>$note")$note</config>$note"

# Filters of many nodes for the same entries, in less memory than a response for each would take.
interfaces() { echo "<interfaces xmlns='$oc'>" && seq -f "<interface><name>eth%.0f</name>$2</interface>" "$1" && echo '</interfaces>'; }
interfaces 20000 '<config><mtu>9000</mtu></config>' >many.xml
"$tool" edit --mapping openconfig_interfaces --apply many.xml >native.xml
same() { echo "<filter><interfaces xmlns='$oc'>" && repeat 1000 "$1" && echo '</interfaces></filter>'; }
{ [ $limit = unlimited ] || limit=400000; }
same '<interface/>' >document.xml
expect "1,000 equal filter nodes" 0 out "<name>eth20000<" get --mapping openconfig_interfaces --native native.xml document.xml
{ echo '<filter>' && interfaces 10000 '<config/>' && echo '</filter>'; } >document.xml
expect "10,000 filter nodes for an entry each" 0 out "<name>eth10000<" \
    get --mapping openconfig_interfaces --native native.xml document.xml
# A condition far below the nodes that it decides about, which many entries fulfil.
neighbors() {
    echo "<network-instances xmlns='http://openconfig.net/yang/network-instance'><network-instance>$1<protocols><protocol>"
    echo "$2<bgp><neighbors>$3</neighbors></bgp></protocol></protocols></network-instance></network-instances>"
}
neighbor='<neighbor-address>192.0.2.%.0f</neighbor-address><config><peer-as>65001</peer-as></config>'
neighbors '<name>default</name>' \
    "<identifier xmlns:t='http://openconfig.net/yang/policy-types'>t:BGP</identifier><name>main</name>" \
    "$(seq -f "<neighbor>$neighbor</neighbor>" 200)" >peers.xml
"$tool" edit --mapping openconfig_bgp --apply peers.xml >peers-native.xml
neighbors '' '' '<neighbor><config><peer-as>65001</peer-as></config></neighbor>' >document.xml
expect "200 entries that fulfil a condition" 0 out "<neighbor-address>192.0.2.200<" \
    get --mapping openconfig_bgp --native peers-native.xml document.xml
for kib in $(seq 54000 8000 150000); do
    for run in "edit --mapping openconfig_interfaces many.xml" \
        "get --mapping openconfig_interfaces --native native.xml"; do
        got=0
        # shellcheck disable=SC2086
        [ $limit = unlimited ] || (ulimit -v $kib && exec "$tool" $run) >out 2>err || got=$?
        [ $got -le 2 ] || fail "$kib KiB" "exit status $got ($run)"
    done
done

echo "all hostile documents as expected, $bounds"
