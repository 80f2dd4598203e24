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

TEST(XmlParserTest, FilesTooShortForTextFailButMarkAndOneUnitLoads)
{
    CQKXmlDocument doc;
    EXPECT_FALSE(LoadBytes(doc, ""));
    EXPECT_FALSE(LoadBytes(doc, "<"));
    EXPECT_FALSE(LoadBytes(doc, std::string("<a", 2)));
    EXPECT_FALSE(LoadBytes(doc, std::string("\xFF\xFE", 2)));
    EXPECT_FALSE(LoadBytes(doc, std::string("\xFE\xFF", 2)));
    EXPECT_FALSE(LoadBytes(doc, std::string("\xEF\xBB", 2)));
    EXPECT_TRUE(LoadBytes(doc, std::string("\xFF\xFE\x41", 3)));
    EXPECT_EQ(doc.GetChildCount(), 0);
    EXPECT_TRUE(LoadBytes(doc, std::string("\xEF\xBB\xBF", 3)));
    EXPECT_EQ(doc.GetChildCount(), 0);
}

TEST(XmlParserTest, TextWithoutTagsLoadsAsEmptyDocument)
{
    CQKXmlDocument doc;
    EXPECT_TRUE(LoadText(doc, u"just some words > and more"));
    EXPECT_EQ(doc.GetChildCount(), 0);
    EXPECT_TRUE(LoadBytes(doc, "plain ascii without a mark"));
    EXPECT_EQ(doc.GetChildCount(), 0);
}

TEST(XmlParserTest, AnyClosingTagClosesTheCurrentElement)
{
    CQKXmlDocument doc;
    // The name behind "</" is never read, so only the depth counts.
    EXPECT_FALSE(LoadText(doc, u"<a><b></a>"));
    EXPECT_EQ(doc.GetChildCount(), 0) << "a failed load leaves nothing behind";
    ASSERT_TRUE(LoadText(doc, u"<a><b/></x>"));
    CQKXmlNode* a = OnlyChild(doc);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(U8(a->GetName()), "a");
    ASSERT_NE(OnlyChild(*a), nullptr);
    EXPECT_EQ(U8(OnlyChild(*a)->GetName()), "b");

    ASSERT_TRUE(LoadText(doc, u"<a>text</b>"));
    ASSERT_NE(OnlyChild(doc), nullptr);
    EXPECT_EQ(U8(OnlyChild(doc)->GetValue()), "text");
}

TEST(XmlParserTest, FailsOnlyOnTopLevelCloseShortDeclarationAndOpenElements)
{
    CQKXmlDocument doc;
    EXPECT_FALSE(LoadText(doc, u"</a>"));
    EXPECT_FALSE(LoadText(doc, u"<a/></a>"));
    EXPECT_FALSE(LoadText(doc, u"</a><b/><c>x</c>")) << "the parse stops at once, with nothing to close";
    EXPECT_FALSE(LoadText(doc, u"<a>"));
    EXPECT_FALSE(LoadText(doc, u"<a><b>x</b>"));
    EXPECT_FALSE(LoadText(doc, u"<!x>"));
    EXPECT_FALSE(LoadText(doc, u"<!abc>"));

    // A five-unit declaration is long enough, and becomes a comment of what lies between.
    ASSERT_TRUE(LoadText(doc, u"<!abcd>"));
    CQKXmlNode* c = OnlyChild(doc);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->GetType(), CQKXmlNode::kTypeComment);
    EXPECT_EQ(U8(c->GetName()), "");
    ASSERT_TRUE(LoadText(doc, u"<!DOCTYPE x>"));
    ASSERT_NE(OnlyChild(doc), nullptr);
    EXPECT_EQ(OnlyChild(doc)->GetType(), CQKXmlNode::kTypeComment);
    EXPECT_EQ(U8(OnlyChild(doc)->GetName()), "CTYPE");
}

TEST(XmlParserTest, EmptyTagOrUnterminatedCommentEndsTheParse)
{
    // At the top level the stop keeps what came before and drops the rest; inside an element
    // it leaves the element open, which fails the load.
    const struct
    {
        const char16_t* pszTop;
        const char16_t* pszInside;
    } cases[] = {
        { u"<a/> <> <b/>", u"<a><></a>" },
        { u"<a/><!-- never closed <b/>", u"<a><!-- never closed </a>" },
        { u"<a/><b", nullptr }, // a "<" without any ">" behind it
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(U8(c.pszTop));
        CQKXmlDocument doc;
        ASSERT_TRUE(LoadText(doc, c.pszTop));
        ASSERT_EQ(doc.GetChildCount(), 1);
        EXPECT_EQ(U8(OnlyChild(doc)->GetName()), "a");
        if (c.pszInside) {
            EXPECT_FALSE(LoadText(doc, c.pszInside));
        }
    }
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

TEST(XmlParserTest, RawGreaterThanInsideQuotesEndsTheTag)
{
    CQKXmlDocument doc;
    // The head ends at "1", the quote is unterminated, the attribute dropped, a left open.
    EXPECT_FALSE(LoadText(doc, u"<a b=\"1>2\"/>"));
    ASSERT_TRUE(LoadText(doc, u"<a b=\"1>2\"/></a>"));
    CQKXmlNode* a = OnlyChild(doc);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->GetAttributeCount(), 0);
    EXPECT_EQ(U8(a->GetValue()), "2\"/>");
}

TEST(XmlParserTest, AttributesTakeTheNextQuotedTextWhateverStandsBetween)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a b = \"1\" c \"2\" d e=\"3\" f=\"\"/>"));
    CQKXmlNode* a = OnlyChild(doc);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(U8(a->GetAttribute(u"b", u"-")), "1");
    EXPECT_EQ(U8(a->GetAttribute(u"c", u"-")), "2");
    EXPECT_EQ(U8(a->GetAttribute(u"d", u"-")), "3");
    EXPECT_EQ(a->FindAttribute(u"e"), nullptr);
    EXPECT_EQ(U8(a->GetAttribute(u"f", u"-")), "");
    EXPECT_EQ(a->GetChildCount(), 0);

    // Single quotes are not quotes: the attribute is dropped, and with it the "/" that would
    // have closed the tag is never reached.
    EXPECT_FALSE(LoadText(doc, u"<a f='4'/>"));
    ASSERT_TRUE(LoadText(doc, u"<a f='4'></a>"));
    EXPECT_EQ(OnlyChild(doc)->GetAttributeCount(), 0);
    // An attribute without any quoted value is dropped too; the tag closes only when the
    // "/" stops the dropped name.
    ASSERT_TRUE(LoadText(doc, u"<a flag/>"));
    EXPECT_EQ(OnlyChild(doc)->GetAttributeCount(), 0);
    EXPECT_FALSE(LoadText(doc, u"<a flag />"));
}

TEST(XmlParserTest, OnlyTheSpaceSeparatesSoLineBreaksJoinNames)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a b=\"1\"\r\nc=\"2\"/>"));
    CQKXmlNode* a = OnlyChild(doc);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->FindAttribute(u"c"), nullptr);
    EXPECT_EQ(U8(a->GetAttribute(u"\r\nc", u"-")), "2");

    ASSERT_TRUE(LoadText(doc, u"<a\tb=\"1\"/>"));
    EXPECT_EQ(U8(OnlyChild(doc)->GetName()), "a\tb=\"1\"");
    EXPECT_EQ(OnlyChild(doc)->GetAttributeCount(), 0);
}

TEST(XmlParserTest, SlashAfterTheNameClosesTheTagAndSkipsTheRest)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a/b><c x=\"1\" /><d x=\"2\"/>"));
    ASSERT_EQ(doc.GetChildCount(), 3);
    EXPECT_EQ(U8(doc.FindChild(u"a")->GetName()), "a");
    EXPECT_EQ(doc.FindChild(u"c")->GetIntAttribute(u"x", 0), 1);
    EXPECT_EQ(doc.FindChild(u"d")->GetIntAttribute(u"x", 0), 2);
    // A space and nothing else after the name leaves the element open.
    EXPECT_FALSE(LoadText(doc, u"<a >"));
}

TEST(XmlParserTest, DuplicateAttributesAreKeptAndTheFirstIsFound)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a x=\"1\" x=\"2\"/>"));
    CQKXmlNode* a = OnlyChild(doc);
    EXPECT_EQ(a->GetAttributeCount(), 2);
    EXPECT_EQ(a->GetIntAttribute(u"x", 0), 1);
}

TEST(XmlParserTest, ElementTextIsKeptRawAndMixedContentIsLost)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a>\t two &lt; words \r\n</a><m> lost <b/> lost too </m><e></e>"));
    EXPECT_EQ(U8(doc.FindChild(u"a")->GetValue()), "\t two &lt; words \r\n");
    CQKXmlNode* m = doc.FindChild(u"m");
    EXPECT_EQ(U8(m->GetValue()), "");
    EXPECT_EQ(m->GetChildCount(), 1);
    EXPECT_EQ(U8(doc.FindChild(u"e")->GetValue()), "");
}

TEST(XmlParserTest, DeclarationsAreIgnoredWherever)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<?xml version=\"9\" encoding=\"nonsense\"?><a><?pi?><b/></a><?x?>"));
    ASSERT_EQ(doc.GetChildCount(), 1);
    EXPECT_EQ(doc.FindChild(u"a")->GetChildCount(), 1);
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
