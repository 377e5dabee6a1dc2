#include "aehost/core/host_time.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace aehost {

A_u_long CompTimeScale(const Item& comp) {
    if (comp.frameRate <= 0.0) return kDefaultTimeScale;
    return static_cast<A_u_long>(std::llround(comp.frameRate * 100.0));
}

A_Time ToATime(double seconds, A_u_long scale) {
    // A time past what 32 bits count (or not a number) ends at the nearest end rather than
    // wrapping round to the other side of zero.
    const double units = std::round(seconds * scale);
    constexpr double kLast = std::numeric_limits<A_long>::max();
    constexpr double kFirst = std::numeric_limits<A_long>::min();
    if (!(units >= kFirst)) return A_Time{std::numeric_limits<A_long>::min(), scale};
    if (units > kLast) return A_Time{std::numeric_limits<A_long>::max(), scale};
    return A_Time{static_cast<A_long>(units), scale};
}

bool ToSeconds(const A_Time& time, double* seconds) {
    if (time.scale == 0) return false;
    *seconds = static_cast<double>(time.value) / time.scale;
    return true;
}

A_Ratio ToRatio(double value) {
    constexpr long long kDen = 1000000;
    const double scaled = std::round(value * kDen);
    constexpr double kLast = std::numeric_limits<A_long>::max();
    const long long num = static_cast<long long>(std::isnan(scaled) ? 0.0 : std::clamp(scaled, -kLast, kLast));
    const long long g = std::gcd(num < 0 ? -num : num, kDen);
    return A_Ratio{static_cast<A_long>(num / (g ? g : 1)), static_cast<A_u_long>(kDen / (g ? g : 1))};
}

bool FromRatio(const A_Ratio& ratio, double* value) {
    if (ratio.den == 0) return false;
    *value = static_cast<double>(ratio.num) / ratio.den;
    return true;
}

}  // namespace aehost
