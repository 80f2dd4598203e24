#pragma once
// A name and value pair of the wide XML document, and the base of its nodes.
//
// Name and value point either into the buffer of a loaded document (ended there by a zero
// unit written over the delimiter), to private heap copies (the own flags are set), or to a
// shared static empty text. Text is 16-bit units; see QKWideText.h.
#include <cstdint>

class CQKXmlAttribute
{
public:
    CQKXmlAttribute() = default;
    CQKXmlAttribute(const CQKXmlAttribute&) = delete;
    CQKXmlAttribute& operator=(const CQKXmlAttribute&) = delete;
    ~CQKXmlAttribute();

    // Never null: an attribute without a name or value gives the empty text.
    const char16_t* GetName() const { return m_pszName ? m_pszName : s_szEmpty; }
    const char16_t* GetValue() const { return m_pszValue ? m_pszValue : s_szEmpty; }

    // Stores a private copy of the name, as it stands (no escaping). A null name sets "".
    void SetName(const char16_t* pszName);
    // Frees an owned value first. A text is stored as a private copy with every "<" replaced
    // by "&lt;" and every ">" by "&gt;"; the reading side never turns them back. A null text
    // leaves a value that was not owned as it is, and an owned one null.
    void SetValue(const char16_t* pszValue);
    void SetIntValue(int32_t n);
    void SetFloatValue(float f);
    void SetDoubleValue(double d);

    bool GetBoolValue() const;
    int32_t GetIntValue() const;
    int32_t GetHexValue() const;
    float GetFloatValue() const;

    // True when name or value is a private copy rather than text of a loaded buffer.
    bool OwnsName() const { return m_bOwnName; }
    bool OwnsValue() const { return m_bOwnValue; }

    // The empty text that fresh names and values point to.
    static const char16_t s_szEmpty[1];

private:
    // The node and the loader point names and values into a loaded buffer.
    friend class CQKXmlNode;
    friend class CQKXmlDocument;

    // Points name or value into a loaded buffer (not owned), freeing an owned one first.
    void PointNameAt(const char16_t* psz);
    void PointValueAt(const char16_t* psz);
    // Stores a raw private copy without escaping, as a copy of a node does.
    void CopyValueFrom(const char16_t* psz);
    void FreeName();
    void FreeValue();

    const char16_t* m_pszName { s_szEmpty };
    const char16_t* m_pszValue { s_szEmpty };
    bool m_bOwnName { false };
    bool m_bOwnValue { false };
};
