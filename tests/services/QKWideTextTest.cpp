// The 16-bit text conversions behave like the C library's on narrow text, whatever the
// process locale says.
#include "services/QKWideText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

using namespace QKWideText;

namespace {

std::u16string Wide(const char* psz)
{
    std::u16string s;
    for (; *psz; ++psz)
        s += static_cast<char16_t>(static_cast<unsigned char>(*psz));
    return s;
}

} // namespace

TEST(QKWideTextTest, IntegerReadsMatchTheCLibrary)
{
    for (const char* psz : { "0", "42", "-17", "+5", "  \t\n12x", "7.9", "abc", "", "-", "--3", "0x10", " - 3", "2147483647", "-2147483648" })
        EXPECT_EQ(Atoi(Wide(psz).c_str()), std::atoi(psz)) << psz;
    EXPECT_EQ(Atoi(u"99999999999999999999"), 2147483647) << "clamped, not wrapped";
    EXPECT_EQ(Atoi(u"-99999999999999999999"), -2147483647 - 1);
    EXPECT_EQ(Atoi(nullptr), 0);
    EXPECT_EQ(Atoi(u"\u0663"), 0) << "only ASCII digits count";
}

TEST(QKWideTextTest, AtofMatchesTheCLibraryAndIgnoresTheLocale)
{
    const char* samples[] = { "0.35", "-1e3", "  2.5kg", "1,5", ".5", "inf", "-nan", "0x1p4", "abc", "", "1e400", "3." };
    for (const char* psz : samples) {
        const double dExpected = std::strtod(psz, nullptr);
        const double dGot = Atof(Wide(psz).c_str());
        if (std::isnan(dExpected))
            EXPECT_TRUE(std::isnan(dGot)) << psz;
        else
            EXPECT_EQ(dGot, dExpected) << psz;
    }
    // A locale with a decimal comma must not change what a file means.
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") || std::setlocale(LC_NUMERIC, "fr_FR.UTF-8")) {
        EXPECT_EQ(Atof(u"0.35"), 0.35);
        char16_t buf[kFormatUnits];
        EXPECT_EQ(std::u16string(FormatDouble(buf, 0.35)), u"0.35");
        std::setlocale(LC_NUMERIC, "C");
    }
    EXPECT_EQ(Atof(nullptr), 0.0);
    const std::pair<const char16_t*, uint32_t> cases[] = { { u"FF8800", 0xFF8800u }, { u"ff8800", 0xFF8800u }, { u"0XaB", 0xABu }, { u"  12g4", 0x12u },
        { u"-1", 0xFFFFFFFFu }, { u"123456789", 0xFFFFFFFFu }, { u"xyz", 0u }, { nullptr, 0u } };
    for (const auto& [psz, n] : cases)
        EXPECT_EQ(ScanHex(psz), n) << (psz ? ToUtf8(psz) : "null");
}

TEST(QKWideTextTest, FormattingMatchesPercentDAndPercentG)
{
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> mant(-10.0, 10.0);
    std::uniform_int_distribution<int> exp(-12, 12);
    std::uniform_int_distribution<int32_t> ints(INT32_MIN, INT32_MAX);
    char16_t buf[kFormatUnits];
    char narrow[64];
    for (int i = 0; i < 2000; ++i) {
        const double d = mant(rng) * std::pow(10.0, exp(rng));
        std::snprintf(narrow, sizeof(narrow), "%g", d);
        ASSERT_EQ(std::u16string(FormatDouble(buf, d)), Wide(narrow)) << narrow;
        const int32_t n = ints(rng);
        std::snprintf(narrow, sizeof(narrow), "%d", n);
        ASSERT_EQ(std::u16string(FormatInt(buf, n)), Wide(narrow)) << narrow;
    }
    for (double d : { 0.0, -0.0, 1.0, 100000.0, 1000000.0, 0.0001, 0.00001, 1.0 / 3.0, 1e300, HUGE_VAL, -HUGE_VAL }) {
        std::snprintf(narrow, sizeof(narrow), "%g", d);
        EXPECT_EQ(std::u16string(FormatDouble(buf, d)), Wide(narrow)) << narrow;
    }
}

TEST(QKWideTextTest, Utf8ConversionKeepsEveryCharacterAndRepairsBrokenText)
{
    const std::u16string text = u"a\u00E9\u4E2D\U0001F600z";
    EXPECT_EQ(ToUtf8(text), "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80z");
    EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
    const char16_t lone[] = { u'a', 0xD800, u'b', 0xDC00, 0 };
    EXPECT_EQ(ToUtf8(lone), "a\xEF\xBF\xBD"
                            "b\xEF\xBF\xBD");
    EXPECT_EQ(FromUtf8("x\xC3"), u"x\uFFFD");
    EXPECT_EQ(FromUtf8("\xC0\x80"), u"\uFFFD\uFFFD") << "overlong forms are refused, byte by byte";
    EXPECT_EQ(FromUtf8("\xED\xA0\x80"), u"\uFFFD") << "encoded surrogates are refused";
    EXPECT_EQ(ToUtf8(static_cast<const char16_t*>(nullptr)), "");
}
