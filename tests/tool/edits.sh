#!/bin/bash
# Applies edits to data, and refuses others: edits.sh TVK-MAP. Ends with the first expectation that fails.
set -eu
tool=$(realpath "$1")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

oc=http://openconfig.net/yang/interfaces
nc=urn:ietf:params:xml:ns:netconf:base:1.0
yang=urn:ietf:params:xml:ns:yang:1

fail() {
    echo "FAILED: $1" >&2
    sed 's/^/  /' out err >&2
    exit 1
}

# run STATUS ARGUMENT...
run() {
    local status=$1 got=0
    shift
    "$tool" "$@" >out 2>err || got=$?
    [ $got -eq "$status" ] || fail "$*: exit status $got, expected $status"
}
# says PATTERN: in one line of what was printed, whatever the stream.
says() { grep -Eq -- "$1" out err || fail "nothing matches $1"; }
# Prints the data alone, without the envelope, line breaks and indent.
data() { tr -d '\n' <out | sed -E 's/> +</></g; s/<config [^>]*>//; s/<\/config>//; s/ xmlns="[^"]*"//g'; }
# comes_to TEXT
comes_to() { [ "$(data)" = "$1" ] || fail "$(data), expected $1"; }
# document NAME CONTENT: with operations as a="...", places as y:...
document() { echo "<config xmlns:nc='$nc' xmlns:y='$yang'>${2// op=/ nc:operation=}</config>" >"$1"; }

# ---- apply ----

# applied DATA EDIT RESULT CHANGES
applied() {
    document data.xml "$1"
    document edit.xml "$2"
    run 0 apply --list t/u=k data.xml edit.xml
    comes_to "$3"
    run 0 apply --list t/u=k --changes data.xml edit.xml
    comes_to "$(echo "$4" | sed 's/ op=/ nc:operation=/g')"
}
u() { echo "<u><k>$1</k>${2-}</u>"; }
applied "<t>$(u 1 '<v>a</v>')</t>" "<t>$(u 1 '<v>b</v><w>c</w>')</t>" "<t>$(u 1 '<v>b</v><w>c</w>')</t>" \
    '<t><u><k>1</k><v op="replace">b</v><w op="create">c</w></u></t>'
applied "<t>$(u 1)$(u 2)</t><x>1</x>" "<t><u op='delete'><k>1</k></u><u op='remove'><k>3</k></u></t>" \
    "<t>$(u 2)</t><x>1</x>" '<t><u op="delete"><k>1</k></u></t>'
applied "<t>$(u 1 '<v>a</v><w>b</w>')</t>" "<t><u op='replace'><k>1</k><w>b</w></u></t>" "<t>$(u 1 '<w>b</w>')</t>" \
    '<t><u op="replace"><k>1</k><w>b</w></u></t>'
applied "<t>$(u 1 '<v>a</v><w>b</w>')</t>" "<t op='replace'><u><w>b</w><k>1</k><v>a</v></u></t>" \
    "<t>$(u 1 '<v>a</v><w>b</w>')</t>" ''
applied "<t>$(u 1 '<v>a</v>')</t>" "<t><u op='delete'><k>1</k></u><u><k>1</k><w op='remove'/><v>b</v></u></t>" \
    "<t>$(u 1 '<v>b</v>')</t>" '<t><u op="delete"><k>1</k></u><u op="create"><k>1</k><v>b</v></u></t>'
applied "<t><s/>$(u 1)$(u 2)<z/></t>" "<t><u y:insert='first'><k>3</k></u><u y:insert='after' y:key=\"[k='1']\"><k>4</k></u>
    <u y:insert='before' y:key=\"[k='3']\"><k>2</k></u><u><k>5</k></u></t>" \
    "<t><s/>$(u 2)$(u 3)$(u 1)$(u 4)$(u 5)<z/></t>" \
    "<t><u op=\"create\" yang:insert=\"first\"><k>3</k></u><u op=\"create\" yang:insert=\"after\" yang:key=\"[k='1']\"><k>4</k></u><u \
yang:insert=\"before\" yang:key=\"[k='3']\"><k>2</k></u><u op=\"create\"><k>5</k></u></t>"
applied '<l>a</l><l>b</l>' "<l op='delete'>a</l><l y:insert='before' y:value='b'>c</l><l>b</l>" '<l>c</l><l>b</l>' \
    '<l op="delete">a</l><l op="create" yang:insert="before" yang:value="b">c</l>'
applied "<x>1</x>" "<t op='create'><u><k>1</k><v>a</v></u><u y:insert='first'><k>2</k></u><u><k>1</k><v>b</v></u><w op='remove'/></t>" \
    "<x>1</x><t>$(u 2)$(u 1 '<v>b</v>')</t>" "<t op=\"create\">$(u 2)$(u 1 '<v>b</v>')</t>"
applied '<t><m xmlns="urn:a">1</m><m xmlns="urn:b">2</m></t>' '<t><m xmlns="urn:a" op="delete">1</m><m xmlns="urn:a">3</m></t>' \
    '<t><m>2</m><m>3</m></t>' '<t><m op="delete">1</m><m op="create">3</m></t>'
applied "<t>$(u 1)$(u 2)</t>" "<t op='replace'>$(u 2)$(u 1)</t>" "<t>$(u 2)$(u 1)</t>" "<t op=\"replace\">$(u 2)$(u 1)</t>"
applied '<t><v a="1">x</v></t>' "<t><v op='replace' a='2'>x</v></t>" '<t><v a="2">x</v></t>' \
    '<t><v op="replace" a="2">x</v></t>'
applied "<t><v xmlns:a='urn:a'>a:x</v></t>" "<t><v xmlns:b='urn:b'>b:y</v></t>" '<t><v xmlns:b="urn:b">b:y</v></t>' \
    '<t><v op="replace" xmlns:b="urn:b">b:y</v></t>'
# An entry that stands there already is not moved. The change tells the place of a new one.
applied "<t>$(u 1)$(u 2)</t>" "<t><u y:insert='first'><k>1</k></u><u y:insert='after' y:key=\"[k='1']\"><k>2</k></u></t>" \
    "<t>$(u 1)$(u 2)</t>" ''
applied "<t>$(u 1)</t>" "<t><u y:insert='last'><k>2</k></u></t>" "<t>$(u 1)$(u 2)</t>" \
    '<t><u op="create" yang:insert="last"><k>2</k></u></t>'
# The same identity by another prefix, and the same text where nothing is declared.
applied "<t><u><k xmlns:a='urn:a'>a:x</k></u>$(u b:y)</t>" \
    "<t><u><k xmlns:i='urn:a'>i:x</k><v>1</v></u><u xmlns:b='urn:b'><k>b:y</k><v>2</v></u></t>" \
    "<t><u><k xmlns:a=\"urn:a\">a:x</k><v>1</v></u><u><k>b:y</k><v>2</v></u></t>" \
    "<t><u><k xmlns:a=\"urn:a\">a:x</k><v op=\"create\">1</v></u><u><k>b:y</k><v op=\"create\">2</v></u></t>"
# Keys that nobody named: the first leaf alone does not tell these entries apart.
document data.xml '<t><r><a>1</a><b>1</b><c>x</c></r><r><a>1</a><b>2</b><c>x</c></r></t>'
document edit.xml '<t><r><a>1</a><b>2</b><c>y</c></r></t>'
run 0 apply --changes data.xml edit.xml
comes_to '<t><r><a>1</a><b>2</b><c nc:operation="replace">y</c></r></t>'

# refused EDIT PATTERN: of data.xml
refused() {
    document edit.xml "$1"
    run 1 apply ${list+"$list"} data.xml edit.xml
    says "$2"
}
list=--list=t/u=k
document data.xml "<t><m>1</m>$(u 1 '<v>a</v>')</t>"
refused "<t><u op='create'><k>1</k></u></t>" "data-exists"
refused "<t><u><k>1</k><w op='delete'/></u></t>" "<error-path>/t/u\[k='1'\]/w</error-path>"
refused "<t><u op='create'><k>2</k><v op='delete'/></u></t>" "data-missing"
refused "<t><u><v>1</v></u></t>" "<error-tag>missing-element<"
refused "<t><u><k/></u></t>" "its key 'k' is missing"
refused "<t><u><k op='delete'>1</k></u></t>" "<error-tag>operation-not-supported<"
refused "<t><u y:insert='after' y:key=\"[k='9']\"><k>1</k></u></t>" "beside an entry that is not there"
refused "<t op='replace'><u y:insert='after' y:key=\"[k='9']\"><k>1</k></u></t>" "beside an entry that is not there"
refused "<t><u><k>1</k><v><x/></v></u></t>" "/t/u\[k='1'\]/v: it has a value on one side and elements on the other"
unset list
refused "<t><u><k>2</k></u></t>" "/t/u: nothing shows whether this is a list: 'k' is '1' in the data and '2' in the edit"
refused "<t><u/><u/></t>" "nothing shows what the keys of this list are"
refused "<r><u><a>1</a><b>1</b></u><u><a>1</a><c>1</c></u></r>" "nothing shows what the keys of this list are"
document edit.xml "<t><u><k>1</k><v>b</v></u></t>"
run 0 apply --list=t/u=k,w --list=t/u=k data.xml edit.xml  # the last word counts
comes_to "<t><m>1</m><u><k>1</k><v>b</v></u></t>"
run 2 apply --list=t data.xml edit.xml
says "is no PATH=KEY"
document edit.xml "<t op='delete'/>"
run 2 apply edit.xml data.xml
says 'edit.xml:1: <t> carries "operation": this is an edit'
edit_config() { echo "<edit-config xmlns='$nc'><default-operation>$1</default-operation>$2</edit-config>" >edit.xml; }
config() { echo "<config xmlns:nc='$nc'>${1//<t/<t xmlns=\'\'}</config>"; }
edit_config none "$(config "<t><u><k>1</k><v nc:operation='replace'>b</v></u></t>")"
run 0 apply --changes --list t/u=k data.xml edit.xml
comes_to '<t><u><k>1</k><v nc:operation="replace">b</v></u></t>'
edit_config none "$(config "<t><m>2</m><u><k>2</k><v nc:operation='remove'/></u></t>")"
run 1 apply --list t/u=k data.xml edit.xml
says "data-missing"
edit_config replace "$(config '<t><m>2</m></t>')"
run 0 apply data.xml edit.xml
comes_to '<t><m>2</m></t>'
edit_config replace "$(config '<t nc:operation="merge"><m>2</m></t>')"
run 0 apply data.xml edit.xml
comes_to '<t><m>2</m><u><k>1</k><v>a</v></u></t>'
echo "<copy-config xmlns='$nc'><source>$(config '')</source></copy-config>" >edit.xml
run 0 apply data.xml edit.xml
comes_to ''

# ---- edit ----

interface() { echo "<interfaces xmlns='$oc' xmlns:nc='$nc'><interface$2><name>$1</name>$3</interface></interfaces>"; }
eth0=$(interface eth0 '' '<config><name>eth0</name><mtu>9000</mtu></config>')
edit=(edit --mapping openconfig_interfaces)
edit_config none "<config>$eth0</config>"
run 0 "${edit[@]}" edit.xml
comes_to ''
edit_config replace "<config/>"
run 0 edit --mapping openconfig_bgp edit.xml
comes_to '<bgp><instances nc:operation="remove"/></bgp>'
edit_config none "<config>$(interface eth0 '' '<config><name>eth0</name><description nc:operation="merge">x</description><mtu>1</mtu></config>')</config>"
run 0 "${edit[@]}" edit.xml
says '<description nc:operation="merge">x<'
! grep -q '<mtu>' out || fail "an mtu without an operation was edited"
"$tool" "${edit[@]}" - <<<"$(interface eth0 '' '<config><name>eth0</name></config>')" >native.xml
run 0 "${edit[@]}" --into native.xml --apply --changes edit.xml
comes_to '<interface-configurations><interface-configuration><interface-name>eth0</interface-name><active>act</active><description nc:operation="create">x</description></interface-configuration></interface-configurations>'
"$tool" "${edit[@]}" - <<<"$(interface eth1 '' '<config><name>eth1</name></config>')" >native.xml
run 1 "${edit[@]}" --into native.xml edit.xml
says "interface\[name='eth0'\]: it leads to what is to be done, but is not there"
echo "<rpc xmlns='$nc' message-id='1'><copy-config><source><config>$eth0</config></source></copy-config></rpc>" >edit.xml
"$tool" "${edit[@]}" - <<<"$(interface eth1 '' '<config><name>eth1</name></config>')" >native.xml
run 0 "${edit[@]}" --into native.xml --apply edit.xml
says '<interface-name>eth0<'
! grep -q eth1 out || fail "copy-config left something of what it replaces"
"$tool" get --mapping openconfig_interfaces --native out >reply.xml
sed -n '/<data>/,/<\/data>/p' reply.xml >data.xml
for form in reply.xml data.xml; do
    run 0 "${edit[@]}" --apply $form
    says '<mtu>9000<'
done
# A prefix is part of a text; only identities lose theirs.
echo "$(interface x '' "<config xmlns:a='urn:a'><name>x</name><description>a:uplink nc:y</description></config>")" >edit.xml
run 0 "${edit[@]}" --apply edit.xml
says '>a:uplink nc:y</description>'
run 0 "${edit[@]}" --apply - <<<"$(interface x '' '<config><name>x</name><description nc:operation="merge">nc:backbone</description></config>')"
cp out native.xml
run 0 get --mapping openconfig_interfaces --native native.xml
says '<description>nc:backbone</description>'

# Below a top container whose lists the mapping names, all else is no list.
up() { interface eth0 '' "<config><name>eth0</name></config><hold-time><config><up>$1</up></config></hold-time>"; }
run 0 "${edit[@]}" --apply - <<<"$(up 1)"
cp out native.xml.2
run 0 "${edit[@]}" --into native.xml.2 --apply --changes - <<<"$(up 2)"
says '<up nc:operation="replace">2<'

# is_refused STATUS PATTERN: an edit by both examples of what stands on standard input.
is_refused() {
    cat >edit.xml
    run "$1" "${edit[@]}" --mapping openconfig_bgp edit.xml
    says "$2"
}
unmapped=$(interface eth0 '' "<a/><config><name>eth0</name><b>1</b></config><c xmlns='urn:c'/>")
is_refused 1 "<error-path xmlns:ns1=\"$oc\" xmlns:ns2=\"urn:c\">/ns1:interfaces/ns1:interface\[ns1:name='eth0'\]/ns2:c<" \
    <<<"<config>$unmapped<other/></config>"
[ "$(grep -c '<rpc-error>' out)" -eq 4 ] || fail "not all nodes that nothing maps are told"
is_refused 1 "; 20 more are not listed" <<<"<config>$(printf '<other%s/>' {1..120})</config>"
[ "$(grep -c '<rpc-error>' out)" -eq 100 ] || fail "too many errors"
is_refused 1 "<error-path xmlns:ns1=\"$oc\">/ns1:interfaces</error-path>" <<<"<interfaces xmlns='$oc'>text</interfaces>"
says "/interfaces: 'text' stands where only elements may stand"
is_refused 1 "<bad-attribute>insert<" <<<"<config xmlns:y='$yang'>$(interface eth0 " y:insert='first'" '')</config>"
is_refused 1 "<error-tag>invalid-value<" \
    <<<"<config xmlns:y='$yang'>$(interface eth0 " y:insert='first'" '<config><mtu>x</mtu></config>')</config>"
is_refused 1 "eth0'\]/config: a delete must not carry content" \
    <<<"$(interface eth0 '' '<config nc:operation="delete"><name>eth0</name></config>')"
is_refused 1 "name=concat\('a', &quot;'&quot;, '&quot;b'\)\]/ns1:config/ns1:mtu<" \
    <<<"$(interface "a'&quot;b" '' '<config><mtu>x</mtu></config>')"
copy=$(interface e '' '<config><name nc:operation="delete">e</name></config>')
is_refused 1 "config/name: it repeats a key of its list entry and cannot be deleted" <<<"$copy"
is_refused 1 "/interfaces/interface\[2\]: its key <name> is missing|<bad-element>name<" \
    <<<"<interfaces xmlns='$oc'><interface><name>a</name></interface><interface><config/></interface></interfaces>"
is_refused 1 "interfaces: a &lt;copy-config&gt; holds a configuration, without operations" \
    <<<"<copy-config xmlns='$nc'><config><interfaces xmlns='$oc' xmlns:nc='$nc' nc:operation='merge'/></config></copy-config>"
is_refused 1 '<rpc-reply xmlns="[^"]*" message-id="1" r1:user="fred" xmlns:r1="urn:ex"' \
    <<<"<rpc xmlns='$nc' message-id='1' xmlns:ex='urn:ex' ex:user='fred'><edit-config><config><x/></config></edit-config></rpc>"
is_refused 2 "to be inserted before or after what no" <<<"<a xmlns:y='$yang' y:insert='after'/>"
is_refused 1 "no mapping handles 'config' .namespace urn:x." <<<"<config xmlns='urn:x'>$(interface eth0 '' '')</config>"
is_refused 2 "holds a second <config>" <<<"<edit-config xmlns='$nc'><config/><config/></edit-config>"
is_refused 2 "holds <validate>, which is unknown there" <<<"<edit-config xmlns='$nc'><validate/><config/></edit-config>"
is_refused 2 "<rpc-reply> tells an error" <<<"<rpc-reply xmlns='$nc'><rpc-error/></rpc-reply>"
run 2 get --mapping openconfig_interfaces --native native.xml - <<<"<get xmlns='$nc'><filter/><filter/></get>"
says "holds a second <filter>"
run 2 "${edit[@]}" --mapping openconfig_interfaces edit.xml
says 'both map "interfaces"'
run 2 "${edit[@]}" --changes edit.xml
says "--changes requires --apply"
module=$(dirname "$tool")/../lib/tvk-map/openconfig_bgp.so
head -c 3000 "$module" >cut.so
run 2 edit --mapping ./cut.so edit.xml
says "cut off"
{ head -c 18 "$module" && printf '\1\2' && tail -c +21 "$module"; } >other.so
run 2 edit --mapping ./other.so edit.xml
says "another kind of machine"
if [ -w /dev/full ]; then
    ! "$tool" --help >/dev/full 2>err || fail "help on a full device"
fi

# ---- get ----

echo '<config/>' >empty.xml
run 0 get --mapping openconfig_interfaces --native empty.xml
says '<data/>'

# Several filter nodes for one entry, namespaces left out, values of leaves that are not mapped.
filtered() {
    "$tool" get --mapping openconfig_interfaces --native native.xml --phase "$2" - <<<"$1" >out 2>err || fail "$1"
    tr -d '\n' <out | grep -Eq -- "$3" || fail "$1 ($2): nothing matches $3"
}
for phase in mark container; do
    filtered "<filter><interfaces xmlns='$oc'><interface><name>x</name><config><description/></config></interface>
        <interface><name>x</name><state/></interface></interfaces></filter>" $phase 'backbone.*<state>'
    [ "$(grep -c '<interface>' out)" -eq 1 ] || fail "an entry is answered twice"
    filtered '<interfaces><interface><config><description/></config></interface></interfaces>' $phase backbone
    filtered "<interfaces xmlns='$oc'><interface><config><other>1</other><description/></config></interface></interfaces>" \
        $phase '<data/>'
done
echo "all edits and reads as expected"
