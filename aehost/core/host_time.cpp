#include "aehost/core/host_time.h"

#include <cmath>
#include <numeric>

namespace aehost {

A_u_long CompTimeScale(const Item& comp) {
    if (comp.frameRate <= 0.0) return kDefaultTimeScale;
    return static_cast<A_u_long>(std::llround(comp.frameRate * 100.0));
}

A_Time ToATime(double seconds, A_u_long scale) {
    return A_Time{static_cast<A_long>(std::llround(seconds * scale)), scale};
}

bool ToSeconds(const A_Time& time, double* seconds) {
    if (time.scale == 0) return false;
    *seconds = static_cast<double>(time.value) / time.scale;
    return true;
}

A_Ratio ToRatio(double value) {
    constexpr long long kDen = 1000000;
    long long num = std::llround(value * kDen);
    const long long g = std::gcd(num < 0 ? -num : num, kDen);
    return A_Ratio{static_cast<A_long>(num / (g ? g : 1)), static_cast<A_u_long>(kDen / (g ? g : 1))};
}

bool FromRatio(const A_Ratio& ratio, double* value) {
    if (ratio.den == 0) return false;
    *value = static_cast<double>(ratio.num) / ratio.den;
    return true;
}

}  // namespace aehost
