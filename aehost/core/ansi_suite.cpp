// "PF ANSI Suite": the C library's mathematics.
#include <cmath>

#include "aehost/core/suites.h"

namespace aehost {

namespace {

template <double (*F)(double)>
A_FpLong One(A_FpLong x) {
    return F(x);
}

template <double (*F)(double, double)>
A_FpLong Two(A_FpLong x, A_FpLong y) {
    return F(x, y);
}

const PF_ANSICallbacksSuite1 g_ansiSuite = {
    One<std::atan>, Two<std::atan2>, One<std::ceil>,  One<std::cos>, One<std::exp>,  One<std::fabs>,
    One<std::floor>, Two<std::fmod>, Two<std::hypot>, One<std::log>, One<std::log10>, Two<std::pow>,
    One<std::sin>,  One<std::sqrt>,  One<std::tan>,   One<std::asin>, One<std::acos>};

}  // namespace

const PF_ANSICallbacksSuite1* AnsiSuite() { return &g_ansiSuite; }

}  // namespace aehost
