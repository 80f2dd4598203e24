#pragma once
// One node of the wide XML document: an element, a comment or the document itself.
//
// An element's name is its tag name and its value is its text content, which it has only
// when it has no children. A comment keeps its text in the name. A node owns its attributes
// and children; destroying a node destroys its subtree. Pointers returned by the read
// operations stay valid while the node lives and, for loaded text, while the document keeps
// its buffer. Every read has a default, so no read ever fails.
//
// Walks use a position (QKXMLPOS) that moves on past the entry just returned:
//
//     QKXMLPOS pos;
//     for (CQKXmlNode* p = node.FirstChild(pos); p; p = node.NextChild(pos)) ...
#include "CQKXmlAttribute.h"
#include "CQKXmlList.h"

#include <cstdint>
#include <string>

class CQKXmlNode : public CQKXmlAttribute
{
public:
    enum : int32_t {
        kTypeDocument = 0,
        kTypeElement = 1,
        kTypeComment = 2,
    };

    explicit CQKXmlNode(int32_t nType = kTypeElement);
    CQKXmlNode(const CQKXmlNode&) = delete;
    CQKXmlNode& operator=(const CQKXmlNode&) = delete;
    ~CQKXmlNode();

    int32_t GetType() const { return m_nType; }
    CQKXmlNode* GetParent() const { return m_pParent; }
    int64_t GetChildCount() const { return m_listChildren.GetCount(); }
    int64_t GetAttributeCount() const { return m_listAttributes.GetCount(); }

    // Children.
    // A new last child of type 1 (element) or 2 (comment) with the given name; null for any
    // other type.
    CQKXmlNode* AddChild(const char16_t* pszName, int32_t nType);
    // Appends an existing element or comment as the last child and becomes its parent. It is
    // not taken out of a former parent's list: the caller must not leave it in two. A node
    // cannot be its own child.
    CQKXmlNode* AttachChild(CQKXmlNode* pNode);
    // A deep copy with private text. It has this node's type and parent, but it is in no
    // list: the caller owns it (to delete, or to attach).
    CQKXmlNode* Clone() const;
    // Destroys the node if it is a child of this one; otherwise nothing.
    void DeleteChild(CQKXmlNode* pNode);
    void DeleteAllChildren();
    // All children, then all attributes.
    void Clear();
    CQKXmlNode* FirstChild(QKXMLPOS& pos) const;
    CQKXmlNode* NextChild(QKXMLPOS& pos) const;
    // First child whose name equals the text exactly (case matters); null for a null name.
    CQKXmlNode* FindChild(const char16_t* pszName) const;
    // The same, leaving pos behind the match for FindNextChild.
    CQKXmlNode* FindChild(const char16_t* pszName, QKXMLPOS& pos) const;
    CQKXmlNode* FindNextChild(const char16_t* pszName, QKXMLPOS& pos) const;
    CQKXmlNode* FindLastChild(const char16_t* pszName) const;
    CQKXmlNode* GetLastChild() const;
    int64_t CountChildren(const char16_t* pszName) const;

    // Attributes.
    // Replaces the first attribute of that name, if any, by a new one at the end of the list:
    // a file's attribute order is the order of last writing.
    CQKXmlAttribute* AddAttribute(const char16_t* pszName, const char16_t* pszValue);
    CQKXmlAttribute* AddBoolAttribute(const char16_t* pszName, bool bValue);
    CQKXmlAttribute* AddIntAttribute(const char16_t* pszName, int32_t nValue);
    CQKXmlAttribute* AddFloatAttribute(const char16_t* pszName, float fValue);
    // The attribute "dVolumeScale".
    CQKXmlAttribute* AddVolumeScaleAttribute(double dValue);
    void DeleteAttribute(CQKXmlAttribute* pAttribute);
    void DeleteAllAttributes();
    CQKXmlAttribute* FirstAttribute(QKXMLPOS& pos) const;
    CQKXmlAttribute* NextAttribute(QKXMLPOS& pos) const;
    CQKXmlAttribute* FindAttribute(const char16_t* pszName) const;
    const char16_t* GetAttribute(const char16_t* pszName, const char16_t* pszDefault) const;
    // True only for "true" and "TRUE".
    bool GetBoolAttribute(const char16_t* pszName, bool bDefault) const;
    int32_t GetIntAttribute(const char16_t* pszName, int32_t nDefault) const;
    int32_t GetHexAttribute(const char16_t* pszName, int32_t nDefault) const;
    float GetFloatAttribute(const char16_t* pszName, float fDefault) const;
    double GetVolumeScaleAttribute(double dDefault) const;
    // Fills nCount entries from a comma-separated value; entries the value does not reach
    // get the default, an empty piece gives 0.
    void GetIntArrayAttribute(const char16_t* pszName, int32_t* pValues, int32_t nCount, int32_t nDefault) const;
    // Index of the first table entry equal to the value, or the default.
    int32_t GetEnumAttribute(const char16_t* pszName, const char16_t* const* ppszTable, int32_t nCount, int32_t nDefault) const;

    // Output: this node at the given depth of tabs, in the one layout the program writes.
    // A negative depth writes only the children, at depth + 1.
    void WriteNode(std::u16string& out, int32_t nDepth) const;
    void WriteChildren(std::u16string& out, int32_t nDepth) const;

private:
    // The loader builds the tree with text that points into its buffer.
    friend class CQKXmlDocument;

    int32_t m_nType { kTypeElement };
    CQKXmlList<CQKXmlAttribute> m_listAttributes;
    CQKXmlNode* m_pParent { nullptr };
    CQKXmlList<CQKXmlNode> m_listChildren;
};
