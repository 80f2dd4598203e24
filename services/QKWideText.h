#pragma once
// Helpers for 16-bit wide text, the text type of the settings files.
//
// The settings files count their text in 16-bit units on every platform, so the document
// classes keep their text as `char16_t` and cannot use the C library's wide functions (whose
// wchar_t is 32 bits wide here). These are the few conversions they need, written to behave
// like the C library's `atoi`, `atof` and `scanf("%X")` on 16-bit text: a leading number is
// read, anything behind it is ignored, and text that holds no number gives 0. None of them
// depends on the process locale.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace QKWideText {

// Size of the buffers through which every number is formatted.
inline constexpr size_t kFormatUnits = 256;

// Number of units before the terminating zero. A null text has length 0.
size_t Length(const char16_t* psz);
// True when both texts hold the same units (case matters). A null text equals nothing.
bool Equal(const char16_t* a, const char16_t* b);
// A private heap copy (`new char16_t[]`) of a text, with its terminating zero.
char16_t* Duplicate(const char16_t* psz);
char16_t* Duplicate(const char16_t* psz, size_t nUnits);

// Leading decimal integer after white space and an optional sign, clamped to the 32-bit range.
int32_t Atoi(const char16_t* psz);
// Leading floating-point number (decimal or hexadecimal, "inf", "nan"); 0 when there is none.
double Atof(const char16_t* psz);
// Leading hexadecimal number after white space, an optional sign and an optional "0x", as the
// "%X" and "%x" conversions of scanf read it (both accept either letter case). 0 when there is
// none; a minus sign negates it in unsigned arithmetic, values past 32 bits saturate.
uint32_t ScanHex(const char16_t* psz);

// "%d" and "%g" formatting into a buffer of kFormatUnits units; returns the buffer.
char16_t* FormatInt(char16_t (&buf)[kFormatUnits], int32_t n);
char16_t* FormatDouble(char16_t (&buf)[kFormatUnits], double d);

// Appends one code point (at most U+10FFFF) in UTF-8. Inline, so that the playback library,
// which links nothing of this folder, encodes paths the same way.
inline void AppendUtf8(std::string& out, char32_t c)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Conversions between 16-bit text and UTF-8 (the encoding of paths on this system). Unpaired
// surrogates become U+FFFD; invalid UTF-8 bytes become U+FFFD.
std::string ToUtf8(const char16_t* psz);
std::string ToUtf8(std::u16string_view text);
std::u16string FromUtf8(std::string_view text);

} // namespace QKWideText
