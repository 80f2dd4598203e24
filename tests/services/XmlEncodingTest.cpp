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
    const std::string ascii = QKWideText::ToUtf8(kOptions);
    for (const std::string& bytes : { Utf16Le(kOptions), Utf16Be(kOptions), "\xEF\xBB\xBF" + ascii, ascii }) {
        CQKXmlDocument doc;
        ASSERT_TRUE(LoadBytes(doc, bytes));
        EXPECT_EQ(Body(doc), kExpectedBody);
        EXPECT_EQ(doc.FindChild(u"options")->GetIntAttribute(u"dr", -1), 2);
    }
}

TEST(XmlEncodingTest, WideFilesKeepUnitsOutsideAscii)
{
    // A surrogate pair and a unit above 0xFF survive both byte orders unchanged.
    const std::u16string text = u"<f name=\"\u00E9\u4E2D\U0001F600\"/>";
    for (const std::string& bytes : { Utf16Le(text), Utf16Be(text) }) {
        CQKXmlDocument doc;
        ASSERT_TRUE(LoadBytes(doc, bytes));
        EXPECT_EQ(std::u16string(doc.FindChild(u"f")->GetAttribute(u"name", u"")), u"\u00E9\u4E2D\U0001F600");
    }
}

TEST(XmlEncodingTest, OddByteCountDropsTheHalfUnit)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadBytes(doc, Utf16Le(u"<a/>") + "<"));
    EXPECT_EQ(Body(doc), "<a/>\r\n");
    ASSERT_TRUE(LoadBytes(doc, Utf16Be(u"<b/>") + "<"));
    EXPECT_EQ(Body(doc), "<b/>\r\n");
}

TEST(XmlEncodingTest, TwoByteUtf8SequencesReadWithSwappedFields)
{
    // C3 A9 is U+00E9 elsewhere; here the low six bits of the second byte come first.
    for (const std::string& prefix : { std::string(), std::string("\xEF\xBB\xBF") }) {
        CQKXmlDocument doc;
        ASSERT_TRUE(LoadBytes(doc, prefix + "<a v=\"\xC3\xA9\"/>"));
        const char16_t* v = doc.FindChild(u"a")->GetAttribute(u"v", u"");
        ASSERT_EQ(QKWideText::Length(v), 1u);
        EXPECT_EQ(v[0], 0x523);
    }
}

TEST(XmlEncodingTest, ThreeByteUtf8SequencesReadStandard)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadBytes(doc, "<a v=\"\xE2\x82\xAC\xE4\xB8\xAD\"/>"));
    EXPECT_EQ(std::u16string(doc.FindChild(u"a")->GetAttribute(u"v", u"")), u"\u20AC\u4E2D");
}

TEST(XmlEncodingTest, UndecodableBytesCutTheTextSilently)
{
    CQKXmlDocument doc;
    // A four-byte sequence passes the scan but ends the decoding: b is never seen.
    ASSERT_TRUE(LoadBytes(doc, "<a/>\xF0\x9F\x98\x80<b/>"));
    EXPECT_EQ(Body(doc), "<a/>\r\n");
    // Behind a mark there is no scan: a stray continuation byte cuts the text, which then
    // fails when an element is left open, or loads what stands before it.
    EXPECT_FALSE(LoadBytes(doc, "\xEF\xBB\xBF<a>\x85</a>"));
    ASSERT_TRUE(LoadBytes(doc, "\xEF\xBB\xBF<a/>\x85<b/>"));
    EXPECT_EQ(Body(doc), "<a/>\r\n");
    // A sequence cut by the end of the file ends it the same way.
    ASSERT_TRUE(LoadBytes(doc, "\xEF\xBB\xBF<a/>\xE2\x82"));
    EXPECT_EQ(Body(doc), "<a/>\r\n");
    ASSERT_TRUE(LoadBytes(doc, "\xEF\xBB\xBF<a/>\xC3"));
    EXPECT_EQ(Body(doc), "<a/>\r\n");
}

TEST(XmlEncodingTest, InvalidUtf8WithoutMarkFails)
{
    CQKXmlDocument doc;
    EXPECT_FALSE(LoadBytes(doc, "<a v=\"caf\xE9\"/>")) << "a legacy code page is not read";
    EXPECT_FALSE(LoadBytes(doc, "<a/>\x85"));
    EXPECT_FALSE(LoadBytes(doc, "<a/>\xC3")) << "lead byte at the very end";
    EXPECT_FALSE(LoadBytes(doc, "<a/>\xF8\x80\x80\x80\x80"));
    EXPECT_FALSE(LoadBytes(doc, "<a/>\xE2\x28\xA1")) << "continuation byte out of range";
    // Overlong forms are not looked for: C0 80 passes the scan.
    EXPECT_TRUE(LoadBytes(doc, "<a/>\xC0\x80"));
}
