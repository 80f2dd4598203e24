// The programming interface of nodes and attributes: building, finding, walking, typed
// reads with their defaults, and ownership.
#include "XmlTestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using xmltest::Body;
using xmltest::LoadText;
using xmltest::U8;

namespace {

// The names met by a walk with a First/Next pair of the node.
template <typename T>
std::vector<std::string> Names(const CQKXmlNode& node, T* (CQKXmlNode::*first)(QKXMLPOS&) const, T* (CQKXmlNode::*next)(QKXMLPOS&) const)
{
    std::vector<std::string> names;
    QKXMLPOS pos;
    for (T* p = (node.*first)(pos); p; p = (node.*next)(pos))
        names.push_back(U8(p->GetName()));
    return names;
}

std::vector<std::string> AttributeNames(const CQKXmlNode& node)
{
    return Names(node, &CQKXmlNode::FirstAttribute, &CQKXmlNode::NextAttribute);
}

std::vector<std::string> ChildNames(const CQKXmlNode& node)
{
    return Names(node, &CQKXmlNode::FirstChild, &CQKXmlNode::NextChild);
}

} // namespace

TEST(XmlNodeTest, ChildrenAreOnlyElementsAndComments)
{
    CQKXmlDocument doc;
    EXPECT_EQ(doc.AddChild(u"x", CQKXmlNode::kTypeDocument), nullptr);
    EXPECT_EQ(doc.AddChild(u"x", 3), nullptr);
    CQKXmlNode* e = doc.AddChild(u"e", CQKXmlNode::kTypeElement);
    CQKXmlNode* c = doc.AddChild(nullptr, CQKXmlNode::kTypeComment);
    ASSERT_NE(e, nullptr);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(e->GetParent(), &doc);
    EXPECT_EQ(U8(c->GetName()), "");
    EXPECT_EQ(doc.GetChildCount(), 2);

    EXPECT_EQ(doc.AttachChild(nullptr), nullptr);
    CQKXmlDocument other;
    EXPECT_EQ(doc.AttachChild(&other), nullptr);
    EXPECT_EQ(e->AttachChild(e), nullptr);
    auto* loose = new CQKXmlNode(CQKXmlNode::kTypeElement);
    loose->SetName(u"loose");
    EXPECT_EQ(e->AttachChild(loose), loose);
    EXPECT_EQ(loose->GetParent(), e);
    EXPECT_EQ(e->GetLastChild(), loose);
}

TEST(XmlNodeTest, AddAttributeReplacesTheFirstOfItsNameAtTheEnd)
{
    CQKXmlNode node;
    node.AddAttribute(u"a", u"1");
    node.AddAttribute(u"b", u"2");
    node.AddAttribute(u"c", u"3");
    node.AddAttribute(u"a", u"4");
    EXPECT_EQ(AttributeNames(node), (std::vector<std::string> { "b", "c", "a" }));
    EXPECT_EQ(U8(node.GetAttribute(u"a", u"")), "4");
    EXPECT_EQ(node.GetAttributeCount(), 3);
    // With a null value the attribute exists with an empty value.
    node.AddAttribute(u"b", nullptr);
    EXPECT_EQ(AttributeNames(node), (std::vector<std::string> { "c", "a", "b" }));
    EXPECT_EQ(U8(node.GetAttribute(u"b", u"default")), "");
}

TEST(XmlNodeTest, AddAttributeOfDuplicatedNameReplacesOnlyTheFirst)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a x=\"1\" y=\"0\" x=\"2\"/>"));
    CQKXmlNode* a = doc.FindChild(u"a");
    a->AddIntAttribute(u"x", 3);
    EXPECT_EQ(Body(doc), "<a y=\"0\" x=\"2\" x=\"3\"/>\r\n");
    EXPECT_EQ(a->GetIntAttribute(u"x", 0), 2);
}

TEST(XmlNodeTest, TypedWritesUseTheFixedFormats)
{
    CQKXmlNode node;
    node.AddBoolAttribute(u"t", true);
    node.AddBoolAttribute(u"f", false);
    node.AddIntAttribute(u"i", -2147483647 - 1);
    node.AddFloatAttribute(u"fl", 0.1f);
    node.AddVolumeScaleAttribute(0.35);
    node.AddFloatAttribute(u"big", 1234567.0f);
    node.AddFloatAttribute(u"small", 1e-7f);
    const std::pair<const char16_t*, const char*> written[] = { { u"t", "true" }, { u"f", "false" }, { u"i", "-2147483648" }, { u"fl", "0.1" },
        { u"dVolumeScale", "0.35" }, { u"big", "1.23457e+06" }, { u"small", "1e-07" } };
    for (const auto& [name, text] : written)
        EXPECT_EQ(U8(node.GetAttribute(name, u"")), text) << U8(name);

    CQKXmlAttribute attr;
    attr.SetIntValue(42);
    EXPECT_EQ(U8(attr.GetValue()), "42");
    attr.SetDoubleValue(2.5);
    EXPECT_EQ(U8(attr.GetValue()), "2.5");
    attr.SetFloatValue(100.0f);
    EXPECT_EQ(U8(attr.GetValue()), "100");
}

TEST(XmlNodeTest, TypedReadsTakeWhatTheirFormAllowsElseTheDefault)
{
    // Bools are true for two spellings only; numbers read the leading number and garbage
    // gives zero; arrays fill from commas and default the rest; enums give the first match.
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a a=\"true\" b=\"TRUE\" c=\"True\" d=\"1\" e=\"\" f=\"true \" "
                              u"n1=\"42px\" n2=\"  -7\" n3=\"abc\" n4=\"99999999999\" n5=\"+3.9\" "
                              u"h1=\"FF8800\" h2=\"0x1a\" h3=\"zz\" h4=\"ff\" "
                              u"f1=\"0.5s\" f2=\"x\" f3=\"-1e3\" dVolumeScale=\"0.25\" "
                              u"v=\"1, 2,,4x\" one=\"5\" empty=\"\" m=\"fit\" n=\"Fit\"/>"));
    CQKXmlNode* a = doc.FindChild(u"a");
    EXPECT_TRUE(a->GetBoolAttribute(u"a", false));
    EXPECT_TRUE(a->GetBoolAttribute(u"b", false));
    for (const char16_t* name : { u"c", u"d", u"e", u"f" })
        EXPECT_FALSE(a->GetBoolAttribute(name, true)) << U8(name);
    EXPECT_TRUE(a->GetBoolAttribute(u"absent", true));
    EXPECT_FALSE(a->GetBoolAttribute(nullptr, false));
    auto ints = [a](auto read, std::initializer_list<const char16_t*> names) {
        std::vector<int32_t> v;
        for (const char16_t* name : names)
            v.push_back((a->*read)(name, -1));
        return v;
    };
    EXPECT_EQ(ints(&CQKXmlNode::GetIntAttribute, { u"n1", u"n2", u"n3", u"n4", u"n5", u"absent" }), (std::vector<int32_t> { 42, -7, 0, 2147483647, 3, -1 }));
    EXPECT_EQ(ints(&CQKXmlNode::GetHexAttribute, { u"h1", u"h2", u"h3", u"h4", u"absent" }), (std::vector<int32_t> { 0xFF8800, 0x1A, 0, 0xFF, -1 }));
    std::vector<float> floats;
    for (const char16_t* name : { u"f1", u"f2", u"f3", u"absent" })
        floats.push_back(a->GetFloatAttribute(name, -1.0f));
    EXPECT_EQ(floats, (std::vector<float> { 0.5f, 0.0f, -1000.0f, -1.0f }));
    EXPECT_DOUBLE_EQ(a->GetVolumeScaleAttribute(1.0), 0.25);
    EXPECT_DOUBLE_EQ(doc.GetVolumeScaleAttribute(0.75), 0.75);
    int32_t v[6];
    a->GetIntArrayAttribute(u"v", v, 6, 9);
    EXPECT_EQ(std::vector<int32_t>(v, v + 6), (std::vector<int32_t> { 1, 2, 0, 4, 9, 9 }));
    a->GetIntArrayAttribute(u"v", v, 2, 9);
    EXPECT_EQ(std::vector<int32_t>(v, v + 2), (std::vector<int32_t> { 1, 2 }));
    a->GetIntArrayAttribute(u"one", v, 3, 9);
    EXPECT_EQ(std::vector<int32_t>(v, v + 3), (std::vector<int32_t> { 5, 9, 9 }));
    a->GetIntArrayAttribute(u"empty", v, 2, 9);
    EXPECT_EQ(std::vector<int32_t>(v, v + 2), (std::vector<int32_t> { 0, 9 }));
    a->GetIntArrayAttribute(u"absent", v, 3, 7);
    EXPECT_EQ(std::vector<int32_t>(v, v + 3), (std::vector<int32_t> { 7, 7, 7 }));
    // The value itself is not cut by the reading.
    EXPECT_EQ(U8(a->GetAttribute(u"v", u"")), "1, 2,,4x");
    const char16_t* table[] = { u"stretch", u"fit", u"fill", u"fit" };
    EXPECT_EQ(a->GetEnumAttribute(u"m", table, 4, -1), 1);
    EXPECT_EQ(a->GetEnumAttribute(u"n", table, 4, -1), -1) << "case matters";
    EXPECT_EQ(a->GetEnumAttribute(u"m", table, 0, -1), -1);
    EXPECT_EQ(a->GetEnumAttribute(u"m", table, 1, -1), -1);
    EXPECT_EQ(a->GetEnumAttribute(u"absent", table, 4, 2), 2);
}

TEST(XmlNodeTest, SetValueEscapesAngleBracketsAndNullKeepsLoadedText)
{
    CQKXmlAttribute attr;
    attr.SetValue(u"a<b>c&\"d");
    EXPECT_EQ(U8(attr.GetValue()), "a&lt;b&gt;c&\"d");
    EXPECT_TRUE(attr.OwnsValue());
    attr.SetValue(nullptr);
    EXPECT_FALSE(attr.OwnsValue());
    EXPECT_EQ(U8(attr.GetValue()), "");

    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a x=\"loaded\"/>"));
    QKXMLPOS pos;
    CQKXmlAttribute* x = doc.FindChild(u"a")->FirstAttribute(pos);
    x->SetValue(nullptr);
    EXPECT_EQ(U8(x->GetValue()), "loaded");
    x->SetName(u"y");
    EXPECT_TRUE(x->OwnsName());
    EXPECT_EQ(Body(doc), "<a y=\"loaded\"/>\r\n");
}

TEST(XmlNodeTest, FindsMatchNamesExactlyAndWalkOnFromTheMatch)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<f n=\"1\"/><g/><F n=\"x\"/><f n=\"2\"/><!--f--><f n=\"3\"/>"));
    EXPECT_EQ(doc.CountChildren(u"f"), 4) << "three elements and the comment whose text is f";
    EXPECT_EQ(doc.CountChildren(u"F"), 1);
    EXPECT_EQ(doc.CountChildren(nullptr), 0);
    EXPECT_EQ(doc.CountChildren(u"none"), 0);
    std::vector<int> found;
    QKXMLPOS pos;
    for (CQKXmlNode* p = doc.FindChild(u"f", pos); p; p = doc.FindNextChild(u"f", pos))
        found.push_back(p->GetIntAttribute(u"n", 0));
    EXPECT_EQ(found, (std::vector<int> { 1, 2, 0, 3 }));
    EXPECT_EQ(doc.FindChild(nullptr), nullptr);
    EXPECT_EQ(doc.FindLastChild(u"f")->GetIntAttribute(u"n", 0), 3);
    EXPECT_EQ(doc.FindLastChild(nullptr), nullptr);
    EXPECT_EQ(doc.FindLastChild(u"none"), nullptr);
    EXPECT_EQ(doc.GetLastChild()->GetIntAttribute(u"n", 0), 3);
    // The comment's text is its name, so finds see it as well.
    doc.DeleteChild(doc.FindLastChild(u"f"));
    EXPECT_EQ(doc.GetLastChild()->GetType(), CQKXmlNode::kTypeComment);
    EXPECT_EQ(doc.FindLastChild(u"f"), doc.GetLastChild());
}

TEST(XmlNodeTest, WalkSurvivesDeletingTheEntryJustReturned)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(LoadText(doc, u"<a x=\"1\" y=\"2\" z=\"3\"><k/><d/><k/><d/></a>"));
    CQKXmlNode* a = doc.FindChild(u"a");
    QKXMLPOS pos;
    for (CQKXmlNode* p = a->FirstChild(pos); p; p = a->NextChild(pos)) {
        if (U8(p->GetName()) == "d")
            a->DeleteChild(p);
    }
    EXPECT_EQ(ChildNames(*a), (std::vector<std::string> { "k", "k" }));
    for (CQKXmlAttribute* p = a->FirstAttribute(pos); p; p = a->NextAttribute(pos)) {
        if (U8(p->GetName()) != "y")
            a->DeleteAttribute(p);
    }
    EXPECT_EQ(AttributeNames(*a), (std::vector<std::string> { "y" }));
    EXPECT_EQ(a->NextChild(pos), nullptr) << "a finished walk stays finished";
}

TEST(XmlNodeTest, DeletingSomethingNotOwnedDoesNothing)
{
    CQKXmlDocument doc;
    CQKXmlNode* a = doc.AddChild(u"a", CQKXmlNode::kTypeElement);
    CQKXmlNode* b = a->AddChild(u"b", CQKXmlNode::kTypeElement);
    CQKXmlAttribute* x = a->AddAttribute(u"x", u"1");
    doc.DeleteChild(b);
    doc.DeleteChild(nullptr);
    doc.DeleteAttribute(x);
    doc.DeleteAttribute(nullptr);
    EXPECT_EQ(Body(doc), "<a x=\"1\">\r\n\t<b/>\r\n</a>\r\n");
    a->Clear();
    EXPECT_EQ(Body(doc), "<a/>\r\n");
    doc.DeleteAllChildren();
    EXPECT_EQ(doc.GetChildCount(), 0);
}

TEST(XmlNodeTest, CloneIsADeepPrivateCopyOutsideAnyList)
{
    std::unique_ptr<CQKXmlNode> copy;
    CQKXmlNode* pParentOfSource = nullptr;
    {
        CQKXmlDocument doc;
        ASSERT_TRUE(LoadText(doc, u"<r><a x=\"1&lt;\" y=\"2\">text</a><!--note--><b><c/></b></r>"));
        CQKXmlNode* r = doc.FindChild(u"r");
        pParentOfSource = r->GetParent();
        copy.reset(r->Clone());
        EXPECT_EQ(r->GetChildCount(), 3);
        EXPECT_EQ(doc.GetChildCount(), 1) << "the clone is in no list";
    }
    // The document and its buffer are gone; the copy holds its own text.
    EXPECT_EQ(copy->GetParent(), pParentOfSource);
    EXPECT_EQ(copy->GetType(), CQKXmlNode::kTypeElement);
    EXPECT_TRUE(copy->OwnsName());
    CQKXmlDocument out;
    out.AttachChild(copy.release());
    EXPECT_EQ(Body(out), "<r>\r\n\t<a x=\"1&lt;\" y=\"2\">text</a>\r\n\t<!--note-->\r\n\t<b>\r\n\t\t<c/>\r\n\t</b>\r\n</r>\r\n");
}
