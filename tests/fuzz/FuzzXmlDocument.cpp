// Loads any bytes as a settings file, walks and reads the whole tree, copies it and writes it
// back, and checks that what the writer gives loads again with the same shape.
#include "services/CQKXmlDocument.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

// Reads every name, value and attribute through the typed readers, and counts the nodes.
int64_t Walk(const CQKXmlNode& node)
{
    int64_t nNodes = 1;
    QKXMLPOS pos;
    for (CQKXmlAttribute* p = node.FirstAttribute(pos); p; p = node.NextAttribute(pos)) {
        (void)p->GetBoolValue();
        (void)p->GetHexValue();
        (void)p->GetFloatValue();
        int32_t values[4];
        node.GetIntArrayAttribute(p->GetName(), values, 4, -1);
    }
    (void)node.GetIntAttribute(u"dr", 0);
    (void)node.GetVolumeScaleAttribute(1.0);
    (void)node.FindLastChild(node.GetName());
    (void)node.CountChildren(u"file");
    for (CQKXmlNode* p = node.FirstChild(pos); p; p = node.NextChild(pos))
        nNodes += Walk(*p);
    return nNodes;
}

bool HasAny(const char16_t* psz, std::u16string_view units)
{
    for (; *psz; ++psz) {
        if (units.find(*psz) != std::u16string_view::npos)
            return true;
    }
    return false;
}

// True when every text of the tree is one that the writer's layout carries unchanged: the
// writer escapes nothing, so a quote in a value or a space in a name would read back
// differently, as it does in any hand-written file.
bool Writable(const CQKXmlNode& node)
{
    const char16_t* pszName = node.GetName();
    if (node.GetType() == CQKXmlNode::kTypeComment) {
        const size_t n = std::char_traits<char16_t>::length(pszName);
        if (std::u16string_view(pszName).find(u"--") != std::u16string_view::npos || (n && pszName[n - 1] == u'-'))
            return false;
    } else if (node.GetType() == CQKXmlNode::kTypeElement) {
        if (!*pszName || *pszName == u'!' || *pszName == u'?' || HasAny(pszName, u" \t\r\n/<>=\"") || HasAny(node.GetValue(), u"<"))
            return false;
    }
    QKXMLPOS pos;
    for (CQKXmlAttribute* p = node.FirstAttribute(pos); p; p = node.NextAttribute(pos)) {
        if (!*p->GetName() || HasAny(p->GetName(), u" \t\r\n/<>=\"") || HasAny(p->GetValue(), u"<>\""))
            return false;
    }
    for (CQKXmlNode* p = node.FirstChild(pos); p; p = node.NextChild(pos)) {
        if (!Writable(*p))
            return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    // The document takes an exact-size copy, so that any read past the end is caught.
    auto* pCopy = new uint8_t[nSize ? nSize : 1];
    if (nSize)
        std::memcpy(pCopy, pData, nSize);
    CQKXmlDocument doc;
    if (!doc.LoadBuffer(pCopy, nSize, true)) {
        if (doc.GetChildCount() != 0)
            std::abort(); // A failed load must leave an empty document.
        return 0;
    }
    const int64_t nNodes = Walk(doc);

    std::u16string text;
    doc.WriteDocument(text);
    std::u16string copyText;
    {
        CQKXmlNode* pClone = doc.Clone();
        CQKXmlDocument other;
        QKXMLPOS pos;
        for (CQKXmlNode* p = pClone->FirstChild(pos); p; p = pClone->NextChild(pos))
            other.AttachChild(p->Clone());
        delete pClone;
        other.WriteDocument(copyText);
    }
    if (copyText != text)
        std::abort(); // A copy writes exactly as its source.

    // What the program writes loads again as the same tree and writes the same text.
    if (Writable(doc)) {
        std::string bytes("\xFF\xFE", 2);
        for (char16_t c : text) {
            bytes += static_cast<char>(c & 0xFF);
            bytes += static_cast<char>(c >> 8);
        }
        CQKXmlDocument again;
        if (!again.LoadBuffer(reinterpret_cast<uint8_t*>(bytes.data()), bytes.size(), false) || Walk(again) != nNodes)
            std::abort();
        std::u16string textAgain;
        again.WriteDocument(textAgain);
        if (textAgain != text)
            std::abort();
    }
    return 0;
}
