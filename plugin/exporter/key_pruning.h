#pragma once
// Which baked keys say nothing: baking writes one key a frame, and most of them lie on a
// straight run of equal values. The decision is kept apart from the engine's curves so that
// it can be checked on plain numbers.
#include <cstdint>
#include <functional>
#include <vector>

// `same(a, b)` tells whether keys a and b hold the same value. Key i (neither the first nor
// the last) is redundant when it is the same as the key before it and the key after it, both
// taken as they were before anything was removed. Indices ascend.
std::vector<int32_t> RedundantKeys(int32_t keyCount, const std::function<bool(int32_t, int32_t)>& same);

// Float keys count as equal within the single-precision value of 1e-6.
bool FloatKeysMatch(double a, double b);

// A track that is left with fewer than two keys, or with two keys of exactly equal value, says
// nothing that the object's static value does not.
bool TrackIsStatic(int32_t keysLeft, bool twoKeysExactlyEqual);
