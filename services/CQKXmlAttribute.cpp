#include "CQKXmlAttribute.h"

#include "QKWideText.h"

#include <string>

const char16_t CQKXmlAttribute::s_szEmpty[1] = { 0 };

CQKXmlAttribute::~CQKXmlAttribute()
{
    FreeName();
    FreeValue();
}

void CQKXmlAttribute::FreeName()
{
    if (m_bOwnName)
        delete[] m_pszName;
    m_bOwnName = false;
}

void CQKXmlAttribute::FreeValue()
{
    if (m_bOwnValue)
        delete[] m_pszValue;
    m_bOwnValue = false;
}

void CQKXmlAttribute::SetName(const char16_t* pszName)
{
    FreeName();
    m_pszName = QKWideText::Duplicate(pszName ? pszName : s_szEmpty);
    m_bOwnName = true;
}

void CQKXmlAttribute::SetValue(const char16_t* pszValue)
{
    if (m_bOwnValue) {
        FreeValue();
        m_pszValue = nullptr;
    }
    if (!pszValue)
        return;
    std::u16string escaped;
    for (const char16_t* p = pszValue; *p; ++p) {
        if (*p == u'<')
            escaped += u"&lt;";
        else if (*p == u'>')
            escaped += u"&gt;";
        else
            escaped += *p;
    }
    m_pszValue = QKWideText::Duplicate(escaped.c_str(), escaped.size());
    m_bOwnValue = true;
}

void CQKXmlAttribute::CopyValueFrom(const char16_t* psz)
{
    FreeValue();
    if (!psz) {
        m_pszValue = nullptr;
        return;
    }
    m_pszValue = QKWideText::Duplicate(psz);
    m_bOwnValue = true;
}

void CQKXmlAttribute::PointNameAt(const char16_t* psz)
{
    FreeName();
    m_pszName = psz;
}

void CQKXmlAttribute::PointValueAt(const char16_t* psz)
{
    FreeValue();
    m_pszValue = psz;
}

void CQKXmlAttribute::SetIntValue(int32_t n)
{
    char16_t buf[QKWideText::kFormatUnits];
    SetValue(QKWideText::FormatInt(buf, n));
}

void CQKXmlAttribute::SetFloatValue(float f)
{
    SetDoubleValue(f);
}

void CQKXmlAttribute::SetDoubleValue(double d)
{
    char16_t buf[QKWideText::kFormatUnits];
    SetValue(QKWideText::FormatDouble(buf, d));
}

bool CQKXmlAttribute::GetBoolValue() const
{
    // Only these two spellings are true; "True" and "1" are not.
    return QKWideText::Equal(GetValue(), u"true") || QKWideText::Equal(GetValue(), u"TRUE");
}

int32_t CQKXmlAttribute::GetIntValue() const
{
    return QKWideText::Atoi(GetValue());
}

int32_t CQKXmlAttribute::GetHexValue() const
{
    // "%X" and "%x" read the same digits, so the second scan that the format allows for
    // when the first yields 0 can never give another result; one scan stands for both.
    return static_cast<int32_t>(QKWideText::ScanHex(GetValue()));
}

float CQKXmlAttribute::GetFloatValue() const
{
    return static_cast<float>(QKWideText::Atof(GetValue()));
}
