#include "QKWideText.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale.h>

namespace QKWideText {

namespace {

bool IsSpace(char16_t c)
{
    // The C library's white space in the "C" locale.
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

// A "C" locale object, so that reading a number never depends on the locale that the
// process (or a toolkit inside it) has set for LC_NUMERIC.
locale_t CLocale()
{
    static locale_t loc = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return loc;
}

// Skips leading white space and one sign, as the C library's number readers do; true for
// a minus sign.
bool SkipSpaceAndSign(const char16_t*& psz)
{
    while (IsSpace(*psz))
        ++psz;
    if (*psz != u'+' && *psz != u'-')
        return false;
    return *psz++ == u'-';
}

char16_t* Widen(char16_t (&buf)[kFormatUnits], const char* psz, size_t n)
{
    size_t i = 0;
    for (; i < n && i + 1 < kFormatUnits; ++i)
        buf[i] = static_cast<unsigned char>(psz[i]);
    buf[i] = 0;
    return buf;
}

} // namespace

size_t Length(const char16_t* psz)
{
    if (!psz)
        return 0;
    size_t n = 0;
    while (psz[n])
        ++n;
    return n;
}

bool Equal(const char16_t* a, const char16_t* b)
{
    if (!a || !b)
        return false;
    while (*a && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

char16_t* Duplicate(const char16_t* psz, size_t nUnits)
{
    char16_t* p = new char16_t[nUnits + 1];
    if (nUnits)
        std::memcpy(p, psz, nUnits * sizeof(char16_t));
    p[nUnits] = 0;
    return p;
}

char16_t* Duplicate(const char16_t* psz)
{
    return Duplicate(psz, Length(psz));
}

int32_t Atoi(const char16_t* psz)
{
    if (!psz)
        return 0;
    const bool bNegative = SkipSpaceAndSign(psz);
    // Accumulate the magnitude with saturation; the result is clamped to the 32-bit range.
    int64_t nValue = 0;
    const int64_t nLimit = int64_t(std::numeric_limits<int32_t>::max()) + 1;
    for (; *psz >= u'0' && *psz <= u'9'; ++psz) {
        nValue = nValue * 10 + (*psz - u'0');
        if (nValue > nLimit)
            nValue = nLimit;
    }
    if (bNegative)
        nValue = -nValue;
    if (nValue > std::numeric_limits<int32_t>::max())
        nValue = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(nValue);
}

double Atof(const char16_t* psz)
{
    if (!psz)
        return 0.0;
    // Numbers are ASCII: copy the leading ASCII run (bounded) and let strtod read from it.
    // A number longer than the buffer is not a number any file of ours holds.
    char buf[kFormatUnits];
    size_t n = 0;
    while (n + 1 < sizeof(buf) && psz[n] && psz[n] < 0x80) {
        buf[n] = static_cast<char>(psz[n]);
        ++n;
    }
    buf[n] = 0;
    return strtod_l(buf, nullptr, CLocale());
}

uint32_t ScanHex(const char16_t* psz)
{
    if (!psz)
        return 0;
    const bool bNegative = SkipSpaceAndSign(psz);
    if (psz[0] == u'0' && (psz[1] == u'x' || psz[1] == u'X'))
        psz += 2;
    uint64_t nValue = 0;
    for (;; ++psz) {
        unsigned nDigit;
        if (*psz >= u'0' && *psz <= u'9')
            nDigit = *psz - u'0';
        else if (*psz >= u'a' && *psz <= u'f')
            nDigit = *psz - u'a' + 10;
        else if (*psz >= u'A' && *psz <= u'F')
            nDigit = *psz - u'A' + 10;
        else
            break;
        nValue = nValue * 16 + nDigit;
        if (nValue > 0xFFFFFFFFu)
            nValue = 0xFFFFFFFFu;
    }
    uint32_t nResult = static_cast<uint32_t>(nValue);
    return bNegative ? 0u - nResult : nResult;
}

char16_t* FormatInt(char16_t (&buf)[kFormatUnits], int32_t n)
{
    char narrow[kFormatUnits];
    auto [end, ec] = std::to_chars(narrow, narrow + sizeof(narrow), n);
    return Widen(buf, narrow, ec == std::errc() ? size_t(end - narrow) : 0);
}

char16_t* FormatDouble(char16_t (&buf)[kFormatUnits], double d)
{
    // "%g" with its default precision of 6, without the locale's decimal separator.
    if (std::isnan(d))
        return Widen(buf, std::signbit(d) ? "-nan" : "nan", std::signbit(d) ? 4 : 3);
    if (std::isinf(d))
        return Widen(buf, d < 0 ? "-inf" : "inf", d < 0 ? 4 : 3);
    char narrow[kFormatUnits];
    auto [end, ec] = std::to_chars(narrow, narrow + sizeof(narrow), d, std::chars_format::general, 6);
    return Widen(buf, narrow, ec == std::errc() ? size_t(end - narrow) : 0);
}

std::string ToUtf8(std::u16string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        uint32_t c = text[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            c = 0xFFFD;
        }
        AppendUtf8(out, c);
    }
    return out;
}

std::string ToUtf8(const char16_t* psz)
{
    return psz ? ToUtf8(std::u16string_view(psz, Length(psz))) : std::string();
}

std::u16string FromUtf8(std::string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        const auto b0 = static_cast<unsigned char>(text[i]);
        uint32_t c = 0xFFFD;
        size_t nNeed = 0;
        uint32_t nMin = 0;
        if (b0 < 0x80) {
            c = b0;
        } else if (b0 >= 0xC2 && b0 <= 0xDF) {
            c = b0 & 0x1F, nNeed = 1, nMin = 0x80;
        } else if (b0 >= 0xE0 && b0 <= 0xEF) {
            c = b0 & 0x0F, nNeed = 2, nMin = 0x800;
        } else if (b0 >= 0xF0 && b0 <= 0xF4) {
            c = b0 & 0x07, nNeed = 3, nMin = 0x10000;
        }
        ++i;
        size_t k = 0;
        for (; k < nNeed && i < text.size(); ++k, ++i) {
            const auto b = static_cast<unsigned char>(text[i]);
            if ((b & 0xC0) != 0x80)
                break;
            c = (c << 6) | (b & 0x3F);
        }
        if (k < nNeed || (nNeed && c < nMin) || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
            c = 0xFFFD;
        if (c >= 0x10000) {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            out += static_cast<char16_t>(c);
        }
    }
    return out;
}

} // namespace QKWideText
