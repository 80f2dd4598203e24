// Documents built through the interface, saved and loaded again, read back the same names,
// values and order. The documents are generated from a fixed seed, over the characters the
// writer can carry (16-bit units outside ASCII and surrogate pairs included).
#include "XmlTestSupport.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <random>

using xmltest::U8;

namespace {

class Generator
{
public:
    explicit Generator(uint32_t nSeed)
        : rng(nSeed)
    {
    }

    // Names: no space, "=", "/", ">", "<", quote; not starting with "!", "/" or "?".
    std::u16string Name()
    {
        static const std::u16string kFirst = u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_\u00E9\u4E2D";
        static const std::u16string kRest = kFirst + u"0123456789-.:";
        std::u16string s(1, Pick(kFirst));
        for (int i = Int(0, 8); i > 0; --i)
            s += Pick(kRest);
        return s;
    }
    // Values may hold anything but a double quote (which would end an attribute early) and
    // zero; "<" and ">" are escaped by the writer's SetValue and checked for separately.
    std::u16string Value(bool bElement)
    {
        static const std::u16string kUnits = u"abc XYZ 0123456789 &;:,.-_/=!?\t\u00E9\u03A9\u4E2D\uFFFD\U0001F600";
        std::u16string s;
        for (int i = Int(bElement ? 1 : 0, 12); i > 0; --i)
            s += Pick(kUnits);
        return s;
    }
    std::u16string CommentText()
    {
        static const std::u16string kUnits = u"abc xyz 012 <>/=\"\u00E9";
        std::u16string s(1, u'c');
        for (int i = Int(0, 10); i > 0; --i)
            s += Pick(kUnits);
        return s;
    }
    int Int(int nMin, int nMax) { return std::uniform_int_distribution<int>(nMin, nMax)(rng); }

private:
    char16_t Pick(const std::u16string& s)
    {
        // A surrogate is taken with its partner, so text stays whole.
        size_t i = size_t(Int(0, int(s.size()) - 1));
        if (s[i] >= 0xDC00 && s[i] <= 0xDFFF)
            --i;
        return s[i];
    }

    std::mt19937 rng;
};

void Fill(Generator& gen, CQKXmlNode* pNode, int nDepth)
{
    for (int i = gen.Int(0, 4); i > 0; --i)
        pNode->AddAttribute(gen.Name().c_str(), gen.Value(false).c_str());
    const int nChildren = nDepth < 4 ? gen.Int(0, 4) : 0;
    if (nChildren == 0 && gen.Int(0, 1))
        pNode->SetValue(gen.Value(true).c_str());
    for (int i = 0; i < nChildren; ++i) {
        if (gen.Int(0, 5) == 0) {
            pNode->AddChild(gen.CommentText().c_str(), CQKXmlNode::kTypeComment);
            continue;
        }
        Fill(gen, pNode->AddChild(gen.Name().c_str(), CQKXmlNode::kTypeElement), nDepth + 1);
    }
}

void ExpectSame(const CQKXmlNode& a, const CQKXmlNode& b, const std::string& where)
{
    ASSERT_EQ(a.GetType(), b.GetType()) << where;
    EXPECT_EQ(std::u16string(a.GetName()), std::u16string(b.GetName())) << where;
    EXPECT_EQ(std::u16string(a.GetValue()), std::u16string(b.GetValue())) << where;
    ASSERT_EQ(a.GetAttributeCount(), b.GetAttributeCount()) << where;
    QKXMLPOS pa, pb;
    for (CQKXmlAttribute *x = a.FirstAttribute(pa), *y = b.FirstAttribute(pb); x && y; x = a.NextAttribute(pa), y = b.NextAttribute(pb)) {
        EXPECT_EQ(std::u16string(x->GetName()), std::u16string(y->GetName())) << where;
        EXPECT_EQ(std::u16string(x->GetValue()), std::u16string(y->GetValue())) << where;
    }
    ASSERT_EQ(a.GetChildCount(), b.GetChildCount()) << where;
    int i = 0;
    for (CQKXmlNode *x = a.FirstChild(pa), *y = b.FirstChild(pb); x && y; x = a.NextChild(pa), y = b.NextChild(pb))
        ExpectSame(*x, *y, where + "/" + std::to_string(i++) + ":" + U8(x->GetName()));
}

} // namespace

TEST(XmlRoundTripTest, GeneratedDocumentsReadBackTheSame)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath("round.dat");
    const std::u16string wpath = path.toStdU16String();
    for (uint32_t nSeed = 1; nSeed <= 300; ++nSeed) {
        Generator gen(nSeed);
        CQKXmlDocument doc;
        for (int i = gen.Int(0, 5); i > 0; --i) {
            if (gen.Int(0, 6) == 0)
                doc.AddChild(gen.CommentText().c_str(), CQKXmlNode::kTypeComment);
            else
                Fill(gen, doc.AddChild(gen.Name().c_str(), CQKXmlNode::kTypeElement), 1);
        }
        ASSERT_TRUE(doc.SaveFile(wpath.c_str()));
        CQKXmlDocument back;
        ASSERT_TRUE(back.LoadFile(wpath.c_str())) << "seed " << nSeed;
        ExpectSame(doc, back, "seed " + std::to_string(nSeed));
        if (HasFatalFailure())
            return;
        // Writing what was read gives the same text again.
        std::u16string first, second;
        doc.WriteDocument(first);
        back.WriteDocument(second);
        EXPECT_EQ(first, second) << "seed " << nSeed;
    }
}
