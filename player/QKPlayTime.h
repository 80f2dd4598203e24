#pragma once
// The arithmetic of the position display: the engine's position made safe, written as time,
// and turned into the seek bar's value.
#include <QString>
#include <cstdint>

namespace QKPlayTime {

// Positions beyond this many seconds (100 hours) are taken for nonsense and shown as 0.
inline constexpr double kMaxPosition = 360000.0;

// The position to show: 0 when below 0 or beyond kMaxPosition, then at most `dDuration`.
double Clamp(double p, double dDuration);
// "%02d:%02d:%02d" of `p` seconds: milliseconds cut toward zero, then whole seconds, minutes
// and hours by integer division; negative parts leave hours and minutes at 0. A position the
// display cannot hold is written as such and carries a minus sign, which callers look for.
QString Format(double p);
// The seek bar's value for position `p`: `dMax` times p over the duration. A stream of unknown
// length (duration 0 or less) leaves the bar at its start.
double ToSlider(double p, double dDuration, double dMax);
// The desktop's progress: hundredths of seconds, cut toward zero, and never below 0.
uint64_t ToHundredths(double dSeconds);

} // namespace QKPlayTime
