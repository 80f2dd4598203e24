#include "CQKXmlNode.h"

#include "QKWideText.h"

#include <utility>
#include <vector>

CQKXmlNode::CQKXmlNode(int32_t nType)
    : m_nType(nType)
{
}

CQKXmlNode::~CQKXmlNode()
{
    DeleteAllChildren();
    DeleteAllAttributes();
}

CQKXmlNode* CQKXmlNode::AddChild(const char16_t* pszName, int32_t nType)
{
    if (nType != kTypeElement && nType != kTypeComment)
        return nullptr;
    auto* pNode = new CQKXmlNode(nType);
    if (pszName)
        pNode->SetName(pszName);
    pNode->m_pParent = this;
    m_listChildren.AddTail(pNode);
    return pNode;
}

CQKXmlNode* CQKXmlNode::AttachChild(CQKXmlNode* pNode)
{
    if (!pNode || pNode == this || (pNode->m_nType != kTypeElement && pNode->m_nType != kTypeComment))
        return nullptr;
    pNode->m_pParent = this;
    m_listChildren.AddTail(pNode);
    return pNode;
}

CQKXmlNode* CQKXmlNode::Clone() const
{
    // A copy of one node's own text and attributes, without its children. Values are
    // copied raw: escaping them again would change them.
    auto CopyShallow = [](const CQKXmlNode* pSource) {
        auto* pCopy = new CQKXmlNode(pSource->GetType());
        pCopy->SetName(pSource->GetName());
        pCopy->CopyValueFrom(pSource->m_pszValue);
        QKXMLPOS pos;
        for (CQKXmlAttribute* p = pSource->FirstAttribute(pos); p; p = pSource->NextAttribute(pos)) {
            auto* pAttribute = new CQKXmlAttribute;
            pAttribute->SetName(p->GetName());
            pAttribute->CopyValueFrom(p->m_pszValue);
            pCopy->m_listAttributes.AddTail(pAttribute);
        }
        return pCopy;
    };
    // Copied with a work list rather than by recursion, so that a deeply nested document
    // cannot exhaust the stack.
    CQKXmlNode* pRoot = CopyShallow(this);
    pRoot->m_pParent = m_pParent;
    std::vector<std::pair<const CQKXmlNode*, CQKXmlNode*>> work { { this, pRoot } };
    while (!work.empty()) {
        auto [pSource, pCopy] = work.back();
        work.pop_back();
        QKXMLPOS pos;
        for (CQKXmlNode* p = pSource->FirstChild(pos); p; p = pSource->NextChild(pos)) {
            CQKXmlNode* pChild = CopyShallow(p);
            pChild->m_pParent = pCopy;
            pCopy->m_listChildren.AddTail(pChild);
            work.emplace_back(p, pChild);
        }
    }
    return pRoot;
}

void CQKXmlNode::DeleteChild(CQKXmlNode* pNode)
{
    QKXMLPOS pos = m_listChildren.Find(pNode);
    if (!pos)
        return;
    m_listChildren.RemoveAt(pos);
    delete pNode;
}

void CQKXmlNode::DeleteAllChildren()
{
    // Each node's children are taken out of it before it is destroyed, so destruction works
    // through a flat list and never recurses, however deep the document is.
    std::vector<CQKXmlNode*> pending;
    auto take = [&pending](CQKXmlNode* pParent) {
        QKXMLPOS pos = pParent->m_listChildren.GetHeadPosition();
        while (pos)
            pending.push_back(pParent->m_listChildren.GetNext(pos));
        pParent->m_listChildren.RemoveAll();
    };
    take(this);
    while (!pending.empty()) {
        CQKXmlNode* pNode = pending.back();
        pending.pop_back();
        take(pNode);
        delete pNode;
    }
}

void CQKXmlNode::Clear()
{
    DeleteAllChildren();
    DeleteAllAttributes();
}

CQKXmlNode* CQKXmlNode::FirstChild(QKXMLPOS& pos) const
{
    pos = m_listChildren.GetHeadPosition();
    return NextChild(pos);
}

CQKXmlNode* CQKXmlNode::NextChild(QKXMLPOS& pos) const
{
    return pos ? m_listChildren.GetNext(pos) : nullptr;
}

CQKXmlNode* CQKXmlNode::FindChild(const char16_t* pszName) const
{
    QKXMLPOS pos;
    return FindChild(pszName, pos);
}

CQKXmlNode* CQKXmlNode::FindChild(const char16_t* pszName, QKXMLPOS& pos) const
{
    pos = m_listChildren.GetHeadPosition();
    return FindNextChild(pszName, pos);
}

CQKXmlNode* CQKXmlNode::FindNextChild(const char16_t* pszName, QKXMLPOS& pos) const
{
    if (!pszName) {
        pos = nullptr;
        return nullptr;
    }
    while (pos) {
        CQKXmlNode* pNode = m_listChildren.GetNext(pos);
        if (QKWideText::Equal(pNode->GetName(), pszName))
            return pNode;
    }
    return nullptr;
}

CQKXmlNode* CQKXmlNode::FindLastChild(const char16_t* pszName) const
{
    if (!pszName)
        return nullptr;
    QKXMLPOS pos = m_listChildren.GetTailPosition();
    while (pos) {
        CQKXmlNode* pNode = m_listChildren.GetPrev(pos);
        if (QKWideText::Equal(pNode->GetName(), pszName))
            return pNode;
    }
    return nullptr;
}

CQKXmlNode* CQKXmlNode::GetLastChild() const
{
    return m_listChildren.GetTail();
}

int64_t CQKXmlNode::CountChildren(const char16_t* pszName) const
{
    int64_t nCount = 0;
    QKXMLPOS pos;
    for (CQKXmlNode* p = FindChild(pszName, pos); p; p = FindNextChild(pszName, pos))
        ++nCount;
    return nCount;
}

CQKXmlAttribute* CQKXmlNode::AddAttribute(const char16_t* pszName, const char16_t* pszValue)
{
    if (pszName)
        DeleteAttribute(FindAttribute(pszName));
    auto* pAttribute = new CQKXmlAttribute;
    if (pszName)
        pAttribute->SetName(pszName);
    if (pszValue)
        pAttribute->SetValue(pszValue);
    m_listAttributes.AddTail(pAttribute);
    return pAttribute;
}

CQKXmlAttribute* CQKXmlNode::AddBoolAttribute(const char16_t* pszName, bool bValue)
{
    return AddAttribute(pszName, bValue ? u"true" : u"false");
}

CQKXmlAttribute* CQKXmlNode::AddIntAttribute(const char16_t* pszName, int32_t nValue)
{
    char16_t buf[QKWideText::kFormatUnits];
    return AddAttribute(pszName, QKWideText::FormatInt(buf, nValue));
}

CQKXmlAttribute* CQKXmlNode::AddFloatAttribute(const char16_t* pszName, float fValue)
{
    char16_t buf[QKWideText::kFormatUnits];
    return AddAttribute(pszName, QKWideText::FormatDouble(buf, fValue));
}

CQKXmlAttribute* CQKXmlNode::AddVolumeScaleAttribute(double dValue)
{
    char16_t buf[QKWideText::kFormatUnits];
    return AddAttribute(u"dVolumeScale", QKWideText::FormatDouble(buf, dValue));
}

void CQKXmlNode::DeleteAttribute(CQKXmlAttribute* pAttribute)
{
    QKXMLPOS pos = pAttribute ? m_listAttributes.Find(pAttribute) : nullptr;
    if (!pos)
        return;
    m_listAttributes.RemoveAt(pos);
    delete pAttribute;
}

void CQKXmlNode::DeleteAllAttributes()
{
    QKXMLPOS pos = m_listAttributes.GetHeadPosition();
    while (pos)
        delete m_listAttributes.GetNext(pos);
    m_listAttributes.RemoveAll();
}

CQKXmlAttribute* CQKXmlNode::FirstAttribute(QKXMLPOS& pos) const
{
    pos = m_listAttributes.GetHeadPosition();
    return NextAttribute(pos);
}

CQKXmlAttribute* CQKXmlNode::NextAttribute(QKXMLPOS& pos) const
{
    return pos ? m_listAttributes.GetNext(pos) : nullptr;
}

CQKXmlAttribute* CQKXmlNode::FindAttribute(const char16_t* pszName) const
{
    if (!pszName)
        return nullptr;
    QKXMLPOS pos;
    for (CQKXmlAttribute* p = FirstAttribute(pos); p; p = NextAttribute(pos)) {
        if (QKWideText::Equal(p->GetName(), pszName))
            return p;
    }
    return nullptr;
}

const char16_t* CQKXmlNode::GetAttribute(const char16_t* pszName, const char16_t* pszDefault) const
{
    CQKXmlAttribute* p = FindAttribute(pszName);
    return p ? p->GetValue() : pszDefault;
}

bool CQKXmlNode::GetBoolAttribute(const char16_t* pszName, bool bDefault) const
{
    CQKXmlAttribute* p = FindAttribute(pszName);
    return p ? p->GetBoolValue() : bDefault;
}

int32_t CQKXmlNode::GetIntAttribute(const char16_t* pszName, int32_t nDefault) const
{
    CQKXmlAttribute* p = FindAttribute(pszName);
    return p ? p->GetIntValue() : nDefault;
}

int32_t CQKXmlNode::GetHexAttribute(const char16_t* pszName, int32_t nDefault) const
{
    CQKXmlAttribute* p = FindAttribute(pszName);
    return p ? p->GetHexValue() : nDefault;
}

float CQKXmlNode::GetFloatAttribute(const char16_t* pszName, float fDefault) const
{
    CQKXmlAttribute* p = FindAttribute(pszName);
    return p ? p->GetFloatValue() : fDefault;
}

double CQKXmlNode::GetVolumeScaleAttribute(double dDefault) const
{
    CQKXmlAttribute* p = FindAttribute(u"dVolumeScale");
    return p ? QKWideText::Atof(p->GetValue()) : dDefault;
}

void CQKXmlNode::GetIntArrayAttribute(const char16_t* pszName, int32_t* pValues, int32_t nCount, int32_t nDefault) const
{
    if (!pValues || nCount <= 0)
        return;
    CQKXmlAttribute* p = FindAttribute(pszName);
    int32_t i = 0;
    if (p) {
        // Each comma-separated piece is read like atoi reads it; the copy is cut at the commas.
        std::u16string copy = p->GetValue();
        size_t nStart = 0;
        for (; i < nCount; ++i) {
            size_t nComma = copy.find(u',', nStart);
            if (nComma != std::u16string::npos)
                copy[nComma] = 0;
            pValues[i] = QKWideText::Atoi(copy.c_str() + nStart);
            if (nComma == std::u16string::npos) {
                ++i;
                break;
            }
            nStart = nComma + 1;
        }
    }
    for (; i < nCount; ++i)
        pValues[i] = nDefault;
}

int32_t CQKXmlNode::GetEnumAttribute(const char16_t* pszName, const char16_t* const* ppszTable, int32_t nCount, int32_t nDefault) const
{
    CQKXmlAttribute* p = FindAttribute(pszName);
    if (!p || !ppszTable)
        return nDefault;
    for (int32_t i = 0; i < nCount; ++i) {
        if (QKWideText::Equal(ppszTable[i], p->GetValue()))
            return i;
    }
    return nDefault;
}

void CQKXmlNode::WriteChildren(std::u16string& out, int32_t nDepth) const
{
    QKXMLPOS pos;
    for (CQKXmlNode* p = FirstChild(pos); p; p = NextChild(pos))
        p->WriteNode(out, nDepth + 1);
}

void CQKXmlNode::WriteNode(std::u16string& out, int32_t nDepth) const
{
    // The tree is written with an explicit stack rather than by recursion, so that a deeply
    // nested document that was loaded can be written back without exhausting the stack.
    struct Frame
    {
        const CQKXmlNode* pNode;
        int32_t nDepth;
        QKXMLPOS posNext;
        bool bOpened;
    };
    std::vector<Frame> stack { { this, nDepth, nullptr, false } };
    while (!stack.empty()) {
        Frame& f = stack.back();
        const CQKXmlNode* pNode = f.pNode;
        const int32_t nHere = f.nDepth;
        if (!f.bOpened) {
            f.bOpened = true;
            f.posNext = pNode->m_listChildren.GetHeadPosition();
            if (nHere < 0)
                continue;
            out.append(size_t(nHere), u'\t');
            if (pNode->m_nType == kTypeComment) {
                out += u"<!--";
                out += pNode->GetName();
                out += u"-->\r\n";
                stack.pop_back();
                continue;
            }
            out += u'<';
            out += pNode->GetName();
            QKXMLPOS pos;
            for (CQKXmlAttribute* p = pNode->FirstAttribute(pos); p; p = pNode->NextAttribute(pos)) {
                out += u' ';
                out += p->GetName();
                out += u"=\"";
                out += p->GetValue();
                out += u'"';
            }
            const bool bHasChildren = !pNode->m_listChildren.IsEmpty();
            if (!bHasChildren && !*pNode->GetValue()) {
                out += u"/>\r\n";
                stack.pop_back();
                continue;
            }
            out += u'>';
            if (bHasChildren) {
                out += u"\r\n";
                continue;
            }
            out += pNode->GetValue();
            out += u"</";
            out += pNode->GetName();
            out += u">\r\n";
            stack.pop_back();
            continue;
        }
        if (f.posNext) {
            const CQKXmlNode* pChild = pNode->m_listChildren.GetNext(f.posNext);
            stack.push_back({ pChild, nHere + 1, nullptr, false }); // f is invalid from here
            continue;
        }
        if (nHere >= 0) {
            out.append(size_t(nHere), u'\t');
            out += u"</";
            out += pNode->GetName();
            out += u">\r\n";
        }
        stack.pop_back();
    }
}
