// How the forgiving parser reads what stands in a settings file, including the hand-edited
// and damaged forms that it accepts or refuses.
#include "XmlTestSupport.h"

#include <gtest/gtest.h>

using xmltest::Body;
using xmltest::LoadBytes;
using xmltest::LoadText;
using xmltest::U8;

namespace {

CQKXmlNode* OnlyChild(const CQKXmlNode& node)
{
    return node.GetChildCount() == 1 ? node.GetLastChild() : nullptr;
}

} // namespace

TEST(XmlParserTest, ShortFilesAndTextWithoutTags)
{
    // Too short for text fails; a mark and one unit, or text without tags, is an empty document.
    const struct
    {
        std::string bytes;
        bool bLoads;
    } cases[] = {
        { "", false }, { "<", false }, { "<a", false }, { "\xFF\xFE", false }, { "\xFE\xFF", false }, { "\xEF\xBB", false },
        { "\xFF\xFE\x41", true }, { "\xEF\xBB\xBF", true }, { "plain ascii without a mark", true },
        { xmltest::Utf16Le(u"just some words > and more"), true }
    };
    for (const auto& c : cases) {
        CQKXmlDocument doc;
        EXPECT_EQ(LoadBytes(doc, c.bytes), c.bLoads) << c.bytes;
        EXPECT_EQ(doc.GetChildCount(), 0) << c.bytes;
    }
}

TEST(XmlParserTest, HandEditedTextReadsAsTheWriterShowsIt)
{
    // What loads is shown by writing it out again; a failed load leaves nothing behind.
    const struct
    {
        const char16_t* pszText;
        const char* pszBody; // nullptr: the load fails
    } cases[] = {
        // Any closing tag closes the current element: its name is never read.
        { u"<a><b></a>", nullptr }, { u"<a><b/></x>", "<a>\r\n\t<b/>\r\n</a>\r\n" }, { u"<a>text</b>", "<a>text</a>\r\n" },
        // A close at the top level, an element left open or a declaration under five units fails.
        { u"</a>", nullptr }, { u"<a/></a>", nullptr }, { u"</a><b/><c>x</c>", nullptr }, { u"<a>", nullptr },
        { u"<a><b>x</b>", nullptr }, { u"<a >", nullptr }, { u"<!x>", nullptr }, { u"<!abc>", nullptr },
        // A longer declaration becomes a comment of what lies between.
        { u"<!abcd>", "<!---->\r\n" }, { u"<!DOCTYPE x>", "<!--CTYPE-->\r\n" },
        // An empty tag, an unterminated comment or a "<" without ">" ends the parse: at the
        // top level what came before stays; inside an element it is left open.
        { u"<a/> <> <b/>", "<a/>\r\n" }, { u"<a/><!-- never closed <b/>", "<a/>\r\n" }, { u"<a/><b", "<a/>\r\n" },
        { u"<a><></a>", nullptr }, { u"<a><!-- never closed </a>", nullptr },
        // A raw ">" inside quotes ends the tag: the quote is unterminated, the attribute
        // dropped and the element left open.
        { u"<a b=\"1>2\"/>", nullptr }, { u"<a b=\"1>2\"/></a>", "<a>2\"/></a>\r\n" },
        // An attribute takes the next quoted text whatever stands between; one without a
        // quoted value is dropped, single quotes are no quotes, and a dropped name swallows
        // the "/" unless the "/" stops it.
        { u"<a b = \"1\" c \"2\" d e=\"3\" f=\"\"/>", "<a b=\"1\" c=\"2\" d=\"3\" f=\"\"/>\r\n" }, { u"<a f='4'/>", nullptr },
        { u"<a f='4'></a>", "<a/>\r\n" }, { u"<a flag/>", "<a/>\r\n" }, { u"<a flag />", nullptr },
        // Only the space separates, so line breaks and tabs join names.
        { u"<a b=\"1\"\r\nc=\"2\"/>", "<a b=\"1\" \r\nc=\"2\"/>\r\n" }, { u"<a\tb=\"1\"/>", "<a\tb=\"1\"/>\r\n" },
        // A "/" after the name closes the tag and skips the rest.
        { u"<a/b><c x=\"1\" /><d x=\"2\"/>", "<a/>\r\n<c x=\"1\"/>\r\n<d x=\"2\"/>\r\n" },
        // Duplicate attributes are kept. Names take letters outside ASCII, digits, "-", "." and
        // ":"; quoted values take any unit but the quote, and comments any text.
        { u"<a x=\"1\" x=\"2\"/>", "<a x=\"1\" x=\"2\"/>\r\n" },
        { u"<\u00E9-1.b:c x_\u4E2D=\"&;:,.-_/=!?\t\u03A9\U0001F600\">\uFFFD /=! ?</\u00E9-1.b:c><!--c <>/=\"\u00E9-->",
            "<\u00E9-1.b:c x_\u4E2D=\"&;:,.-_/=!?\t\u03A9\U0001F600\">\uFFFD /=! ?</\u00E9-1.b:c>\r\n<!--c <>/=\"\u00E9-->\r\n" },
        // Element text is kept raw; mixed content loses its text.
        { u"<a>\t two &lt; words \r\n</a><m> lost <b/> lost too </m><e></e>", "<a>\t two &lt; words \r\n</a>\r\n<m>\r\n\t<b/>\r\n</m>\r\n<e/>\r\n" },
        // Declarations are ignored wherever they stand.
        { u"<?xml version=\"9\" encoding=\"nonsense\"?><a><?pi?><b/></a><?x?>", "<a>\r\n\t<b/>\r\n</a>\r\n" }
    };
    for (const auto& c : cases) {
        CQKXmlDocument doc;
        EXPECT_EQ(LoadText(doc, c.pszText), c.pszBody != nullptr) << U8(c.pszText);
        EXPECT_EQ(Body(doc), c.pszBody ? c.pszBody : "") << U8(c.pszText);
    }
    // The first of duplicate attributes is found; mixed content has no text.
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a x=\"1\" x=\"2\"> lost <b/> lost too </a>"));
    EXPECT_EQ(doc.FindChild(u"a")->GetIntAttribute(u"x", 0), 1);
    EXPECT_EQ(U8(doc.FindChild(u"a")->GetValue()), "");
}

TEST(XmlParserTest, CommentsKeepTheirTextAndAllowTagsInside)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<!-- one <b/> two --><a><!--x--></a><!---->"));
    ASSERT_EQ(doc.GetChildCount(), 3);
    QKXMLPOS pos;
    CQKXmlNode* c = doc.FirstChild(pos);
    EXPECT_EQ(c->GetType(), CQKXmlNode::kTypeComment);
    EXPECT_EQ(U8(c->GetName()), " one <b/> two ");
    CQKXmlNode* a = doc.NextChild(pos);
    ASSERT_NE(OnlyChild(*a), nullptr);
    EXPECT_EQ(U8(OnlyChild(*a)->GetName()), "x");
    EXPECT_EQ(U8(a->GetValue()), "") << "an element with a comment child has no text";
    EXPECT_EQ(U8(doc.NextChild(pos)->GetName()), "");

    // The dashes of the opening "<!--" never count towards the closing "-->".
    ASSERT_TRUE(LoadText(doc, u"<!-->x--><a/>"));
    ASSERT_EQ(doc.GetChildCount(), 2);
    EXPECT_EQ(U8(doc.FindChild(u">x")->GetName()), ">x");
    EXPECT_EQ(doc.FindChild(u">x")->GetType(), CQKXmlNode::kTypeComment);
}

TEST(XmlParserTest, LoadedTextStaysInTheBufferUntilChanged)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a x=\"1\">v</a>"));
    EXPECT_TRUE(doc.HasBuffer());
    CQKXmlNode* a = doc.FindChild(u"a");
    QKXMLPOS pos;
    CQKXmlAttribute* x = a->FirstAttribute(pos);
    EXPECT_FALSE(a->OwnsName());
    EXPECT_FALSE(a->OwnsValue());
    EXPECT_FALSE(x->OwnsName());
    EXPECT_FALSE(x->OwnsValue());
    a->SetValue(u"w");
    EXPECT_TRUE(a->OwnsValue());
    EXPECT_EQ(Body(doc), "<a x=\"1\">w</a>\r\n");
}

TEST(XmlParserTest, ReloadReplacesAndFailedLoadEmptiesTheDocument)
{
    CQKXmlDocument doc;
    doc.AddAttribute(u"kept", u"yes");
    ASSERT_TRUE(LoadText(doc, u"<a/><b/>"));
    ASSERT_TRUE(LoadText(doc, u"<c/>"));
    EXPECT_EQ(Body(doc), "<c/>\r\n");
    EXPECT_FALSE(LoadText(doc, u"<c>"));
    EXPECT_EQ(doc.GetChildCount(), 0);
    EXPECT_FALSE(doc.HasBuffer());
    // Attributes of the document node itself are not part of any file and stay.
    EXPECT_EQ(U8(doc.GetAttribute(u"kept", u"-")), "yes");
}

TEST(XmlParserTest, DeepNestingNeitherOverflowsNorLeaks)
{
    const int kDepth = 200000;
    std::u16string text;
    for (int i = 0; i < kDepth; ++i)
        text += u"<a>";
    std::u16string open = text;
    for (int i = 0; i < kDepth; ++i)
        text += u"</a>";
    CQKXmlDocument doc;
    EXPECT_FALSE(LoadText(doc, open)) << "still open at the end";
    ASSERT_TRUE(LoadText(doc, text));
    int nDepth = 0;
    for (CQKXmlNode* p = doc.FindChild(u"a"); p; p = p->FindChild(u"a"))
        ++nDepth;
    EXPECT_EQ(nDepth, kDepth);
    CQKXmlNode* pCopy = doc.FindChild(u"a")->Clone();
    doc.LoadBuffer(nullptr, 0, false);
    delete pCopy;
}
