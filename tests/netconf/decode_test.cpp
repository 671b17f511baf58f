// From elements of a document to records: what becomes of texts, prefixes and attributes, and what is refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "netconf/data_document.h"
#include "netconf/edit_request.h"
#include "netconf/xml_output.h"
#include "tree.h"

namespace {

using namespace tvk::framework;
using namespace tvk::netconf;

// The tops on one line, "a = 1|  b"; or why they are refused.
std::string decoded(const std::string &document, const Layout &layout = kDataLayout) {
    try {
        TreeHolder data;
        take_data(XmlDocument::parse(document, "document", layout), data);
        std::string text = tvk::test::show(data.root());
        text.erase(0, text.find('\n') + 1);
        std::replace(text.begin(), text.end(), '\n', '|');
        return text;
    } catch (const UsageError &error) {
        return error.what();
    }
}

// Elements without a namespace, two levels down.
std::string with_prefixes(const std::string &elements) {
    return "<data xmlns:nc='urn:ietf:params:xml:ns:netconf:base:1.0' xmlns:y='urn:ietf:params:xml:ns:yang:1' "
           "xmlns:p='urn:p'>" +
           elements + "</data>";
}

TEST(Decode, ElementsToRecords) {
    const struct {
        const char *why, *elements, *expected;
    } rows[] = {
        {"names and values", "<a xmlns='urn:a'><b>1</b><c/></a>", "  a (urn:a)|    b = 1|    c|"},
        {"blanks are a value", "<a>  </a>", "  a =   |"},
        {"but not with a line break", "<a>\n </a>", "  a|"},
        {"nor beside elements", "<a> <b/> </a>", "  a|    b|"},
        {"blanks around a value", "<a> x\n</a>", "  a =  x||"},
        {"pieces of a value", "<a>x<!-- -->y<![CDATA[<z>]]><?p?>&amp;</a>", "  a = xy<z>&|"},
        {"a prefix of the message around", "<a>p:x</a>", "  a = p:x data-ns=urn:p|"},
        {"ends with its element", "<a><b xmlns:q='urn:q'>q:x</b><c>q:x</c></a>",
         "  a|    b = q:x data-ns=urn:q|    c = q:x|"},
        {"hides that of an outer one", "<a xmlns:p='urn:1'><b xmlns:p='urn:2'>p:x</b><c>p:x</c></a>",
         "  a|    b = p:x data-ns=urn:2|    c = p:x data-ns=urn:1|"},
        {"what is no identity", "<a>p:1</a><a>p:x:y</a><a>p: x</a><a>xml:x</a><a>:x</a>",
         "  a = p:1|  a = p:x:y|  a = p: x|  a = xml:x|  a = :x|"},
        {"operations", "<a nc:operation='merge'/><a nc:operation='remove'/>", "  a <merge>|  a <remove>|"},
        {"of no other namespace", "<a operation='merge' p:operation='none'/>",
         "  a @operation=merge @{urn:p}operation=none|"},
        {"attributes", "<a u='1' p:u='' nc:x='2' y:x='3'/>",
         "  a @u=1 @{urn:p}u= @{urn:ietf:params:xml:ns:netconf:base:1.0}x=2 @{urn:ietf:params:xml:ns:yang:1}x=3|"},
        {"plain ones", "<a insert='first' key='k' value='v'/>", "  a @insert=first @key=k @value=v|"},
        {"places", "<a y:insert='first'/><a y:insert='last'>1</a>", "  a insert=first|  a = 1 insert=last|"},
        {"beside a value", "<a y:insert='after' y:value=''>1</a>", "  a = 1 insert=after value=|"},
        {"beside an entry", "<a y:insert='before' y:key=\" [p:k = 'a]b'] [m=&quot;it's&quot;]\"/>",
         "  a insert=before[k=a]b][m=it's] keys= [p:k = 'a]b'] [m=\"it's\"]|"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(row.expected, decoded(with_prefixes(row.elements))) << row.why;
    }
    EXPECT_EQ("  a = x|  a = p:x data-ns=urn:p|",
              decoded(with_prefixes("<a>\n x </a><a> p:x</a>"), {kDataLayout.is_data, Values::kTrimmed}))
        << "a filter is written with blanks";
}

TEST(Decode, RefusesWhatNoDataIs) {
    const struct {
        const char *elements, *reason;
    } rows[] = {
        {"<a>x<b/></a>", "<a> mixes text with elements, which no data node does"},
        {"<a><b/>x</a>", "<a> mixes text with elements, which no data node does"},
        {"<a><b/><c/>x<d/></a>", "<a> mixes text with elements, which no data node does"},
        {"<a nc:operation=''/>", "operation \"\" of <a> is none of merge, replace, create, delete, remove"},
        {"<a y:insert='middle'/>", "insert position \"middle\" of <a> is none of first, last, before, after"},
        {"<a y:insert='after'/>", "<a> is to be inserted before or after what no \"key\" or \"value\" names"},
        {"<a y:insert='last' y:value='1'/>", "<a> names another entry, but is not to be inserted before or after it"},
        {"<a y:key=\"[k='1']\"/>", "<a> names another entry, but is not to be inserted before or after it"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(std::string("document:1: ") + row.reason, decoded(with_prefixes(row.elements)));
    }
    for (const char *keys : {"", "[1]", "[='a']", "name", "[name]", "[name='a'", "[name='a]", "[name='a'] x"}) {
        EXPECT_EQ("document:1: insert key \"" + std::string(keys) + "\" of <a> is no list of [key='value'] predicates",
                  decoded(with_prefixes(std::string("<a y:insert='after' y:key=\"") + keys + "\"/>")));
    }
    EXPECT_EQ("  a @u=1|", decoded(with_prefixes("<a u='1'/>"), kNativeLayout));
    for (const char *attribute : {"nc:operation='merge'", "y:insert='first'", "y:key='k'", "y:value='v'"}) {
        const std::string refused = decoded(with_prefixes(std::string("<a ") + attribute + "/>"), kNativeLayout);
        EXPECT_NE(std::string::npos, refused.find(": this is an edit, not data")) << refused;
    }
}

// Places are looked at only where there are some.
TEST(Decode, NotesThatEntriesHavePlaces) {
    for (const auto &[elements, expected] :
         {std::pair("<a/><b><c/></b>", false), {"<a/><b><c y:insert='first'/></b>", true}}) {
        TreeHolder request;
        const std::string config =
            "<config xmlns:y='urn:ietf:params:xml:ns:yang:1'>" + std::string(elements) + "</config>";
        EXPECT_EQ(expected,
                  read_edit(XmlDocument::parse(config, "document", kEditLayout), request).parameters.has_inserts);
    }
}

TEST(Encode, WritesNothingThatNoReaderTakes) {
    const std::pair<const char *, const char *> rows[] = {
        {"a\xc3\xa9", "a\xc3\xa9"}, {"\xc0\x80", "??"},    {"\xe0\x80\xaf", "???"},
        {"\xed\xa0\x80", "???"},    {"\x01\x7f", "?\x7f"}, {"\xc3", "?"},
    };
    for (const auto &[text, expected] : rows) {
        EXPECT_EQ(expected, writable(text));
    }
    XmlOutput output;
    output.start("a");
    output.attribute("p1", "b", "urn:1", "<\n\"");
    output.attribute("p2", "c", "urn:2", "2");
    output.text("\r\n>");
    EXPECT_EQ("<a p1:b=\"&lt;&#10;&quot;\" p2:c=\"2\" xmlns:p2=\"urn:2\" xmlns:p1=\"urn:1\">&#13;\n&gt;</a>\n",
              output.finish());
}

}  // namespace
