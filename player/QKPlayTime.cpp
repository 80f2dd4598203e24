#include "player/QKPlayTime.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace QKPlayTime {

double Clamp(double p, double dDuration)
{
    if (!(p >= 0.0) || p > kMaxPosition)
        p = 0.0;
    if (p > dDuration)
        p = dDuration;
    return p;
}

QString Format(double p)
{
    // The milliseconds are a 32-bit count; a value outside it (or not a number) is shown as the
    // count that stands for "no time", which carries the minus sign callers look for.
    const double dMs = p * 1000.0;
    int32_t t = std::numeric_limits<int32_t>::min();
    if (std::isfinite(dMs) && dMs > -2147483648.0 && dMs < 2147483648.0)
        t = static_cast<int32_t>(dMs);
    const int32_t nAllSeconds = t / 1000;
    const int32_t nAllMinutes = nAllSeconds / 60;
    int32_t nHours = nAllMinutes / 60;
    int32_t nMinutes = nAllMinutes % 60;
    const int32_t nSeconds = nAllSeconds % 60;
    if (nHours < 0 || nMinutes < 0 || nSeconds < 0) {
        nHours = 0;
        nMinutes = 0;
    }
    char sz[48];
    std::snprintf(sz, sizeof(sz), "%02d:%02d:%02d", nHours, nMinutes, nSeconds);
    return QString::fromLatin1(sz);
}

double ToSlider(double p, double dDuration, double dMax)
{
    if (!(dDuration > 0.0))
        return 0.0;
    return dMax * p / dDuration;
}

uint64_t ToHundredths(double dSeconds)
{
    const double d = dSeconds * 100.0;
    if (!(d > 0.0))
        return 0;
    if (d >= 18446744073709551615.0)
        return std::numeric_limits<uint64_t>::max();
    return static_cast<uint64_t>(d);
}

} // namespace QKPlayTime
