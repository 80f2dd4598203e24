// Which encodings the loader takes, and how it decodes UTF-8 files made by other programs.
#include "XmlTestSupport.h"

#include <gtest/gtest.h>

using xmltest::Body;
using xmltest::LoadBytes;
using xmltest::U8;
using xmltest::Utf16Be;
using xmltest::Utf16Le;

namespace {

const char16_t kOptions[] = u"<?xml version=\"1.0\"?>\r\n<options dr=\"2\" ds=\"1\">\r\n\t<item>x y</item>\r\n</options>\r\n";
const char kExpectedBody[] = "<options dr=\"2\" ds=\"1\">\r\n\t<item>x y</item>\r\n</options>\r\n";

} // namespace

TEST(XmlEncodingTest, EveryAcceptedEncodingOfAsciiGivesTheSameDocument)
{
    // A half unit at the end of a wide file is dropped.
    const std::string ascii = QKWideText::ToUtf8(kOptions);
    for (const std::string& bytes : { Utf16Le(kOptions), Utf16Be(kOptions), Utf16Le(kOptions) + "<", Utf16Be(kOptions) + "<", "\xEF\xBB\xBF" + ascii, ascii }) {
        CQKXmlDocument doc;
        ASSERT_TRUE(LoadBytes(doc, bytes));
        EXPECT_EQ(Body(doc), kExpectedBody);
    }
}

TEST(XmlEncodingTest, UnitsOutsideAsciiDecode)
{
    // Wide files keep a surrogate pair and a unit above 0xFF in both byte orders. Two-byte
    // UTF-8 sequences read with swapped fields: C3 A9 is U+00E9 elsewhere, here the low six
    // bits of the second byte come first. Three-byte sequences read standard.
    const std::u16string wide = u"\u00E9\u4E2D\U0001F600";
    const struct
    {
        std::string bytes;
        std::u16string value;
    } cases[] = {
        { Utf16Le(u"<a v=\"" + wide + u"\"/>"), wide }, { Utf16Be(u"<a v=\"" + wide + u"\"/>"), wide },
        { "<a v=\"\xC3\xA9\"/>", u"\u0523" }, { "\xEF\xBB\xBF<a v=\"\xC3\xA9\"/>", u"\u0523" },
        { "<a v=\"\xE2\x82\xAC\xE4\xB8\xAD\"/>", u"\u20AC\u4E2D" }
    };
    for (const auto& c : cases) {
        CQKXmlDocument doc;
        ASSERT_TRUE(LoadBytes(doc, c.bytes));
        EXPECT_EQ(std::u16string(doc.FindChild(u"a")->GetAttribute(u"v", u"")), c.value) << U8(c.value.c_str());
    }
}

TEST(XmlEncodingTest, UndecodableBytesCutTheTextOrFailTheLoad)
{
    // A four-byte sequence passes the scan but ends the decoding. Behind a mark there is no
    // scan: a stray continuation byte or a sequence cut by the end of the file cuts the text,
    // which then fails when an element is left open. Without a mark invalid UTF-8 fails (a
    // legacy code page is not read); overlong forms are not looked for.
    const struct
    {
        const char* bytes;
        bool bLoads;
    } cases[] = {
        { "<a/>\xF0\x9F\x98\x80<b/>", true }, { "\xEF\xBB\xBF<a>\x85</a>", false }, { "\xEF\xBB\xBF<a/>\x85<b/>", true },
        { "\xEF\xBB\xBF<a/>\xE2\x82", true }, { "\xEF\xBB\xBF<a/>\xC3", true }, { "<a v=\"caf\xE9\"/>", false },
        { "<a/>\x85", false }, { "<a/>\xC3", false }, { "<a/>\xF8\x80\x80\x80\x80", false }, { "<a/>\xE2\x28\xA1", false },
        { "<a/>\xC0\x80", true }
    };
    for (const auto& c : cases) {
        CQKXmlDocument doc;
        EXPECT_EQ(LoadBytes(doc, c.bytes), c.bLoads) << c.bytes;
        EXPECT_EQ(Body(doc), c.bLoads ? "<a/>\r\n" : "") << c.bytes;
    }
}
