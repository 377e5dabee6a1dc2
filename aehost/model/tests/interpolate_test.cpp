// Keyframe interpolation against values worked out by hand from the host's
// documented ease model: a temporal Bezier through (t0, v0),
// (t0 + infl * D, v0 + speed * infl * D), (t1 - infl * D, v1 - speed * infl * D), (t1, v1).
#include <gtest/gtest.h>

#include <cmath>

#include "aehost/model/evaluate.h"
#include "model_fixture.h"

namespace aehost {
namespace {

constexpr double kThird = 100.0 / 3.0;  // an influence that makes time run linearly in u

Keyframe Key(double time, const Value& value, Interpolation in = Interpolation::Linear,
             Interpolation out = Interpolation::Linear) {
  Keyframe key;
  key.time = time;
  key.value = value;
  key.in = in;
  key.out = out;
  return key;
}

Stream OneD(std::vector<Keyframe> keys) {
  Stream stream;
  stream.kind = StreamKind::OneD;
  stream.keys = std::move(keys);
  return stream;
}

void ExpectNear(const Value& actual, const Value& expected, double tolerance = 1e-9) {
  for (int i = 0; i < 4; ++i) EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

TEST(InterpolateLinear, BetweenBeforeAfterAndAtKeys) {
  const Stream stream = OneD({Key(0.0, V(0.0)), Key(2.0, V(10.0)), Key(3.0, V(4.0))});
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, 0.5)[0], 2.5);
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, 2.5)[0], 7.0);
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, -1.0)[0], 0.0);
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, 9.0)[0], 4.0);
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, 2.0)[0], 10.0);
}

TEST(InterpolateLinear, NoKeysGivesTheStaticValue) {
  Stream stream;
  stream.value = V(7.0);
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, 3.0)[0], 7.0);
}

TEST(InterpolateHold, KeepsTheValueUntilTheNextKey) {
  const Stream stream = OneD({Key(0.0, V(5.0), Interpolation::Linear, Interpolation::Hold),
                              Key(1.0, V(9.0)), Key(2.0, V(11.0))});
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, 0.999)[0], 5.0);
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, 1.0)[0], 9.0);
  EXPECT_DOUBLE_EQ(InterpolateKeys(stream, 1.5)[0], 10.0);  // the next segment is linear again
}

TEST(InterpolateEase, ZeroSpeedWithAThirdInfluenceIsSmoothstep) {
  Keyframe k0 = Key(0.0, V(0.0), Interpolation::Linear, Interpolation::Bezier);
  Keyframe k1 = Key(1.0, V(10.0), Interpolation::Bezier, Interpolation::Linear);
  k0.easeOut[0] = {0.0, kThird};
  k1.easeIn[0] = {0.0, kThird};
  const Stream stream = OneD({k0, k1});
  // u = t, value = 10 * (3u^2 - 2u^3)
  EXPECT_NEAR(InterpolateKeys(stream, 0.25)[0], 1.5625, 1e-9);
  EXPECT_NEAR(InterpolateKeys(stream, 0.5)[0], 5.0, 1e-9);
  EXPECT_NEAR(InterpolateKeys(stream, 0.75)[0], 8.4375, 1e-9);
}

TEST(InterpolateEase, OutgoingSpeedAgainstALinearSide) {
  Keyframe k0 = Key(0.0, V(0.0), Interpolation::Linear, Interpolation::Bezier);
  k0.easeOut[0] = {20.0, kThird};
  const Stream stream = OneD({k0, Key(1.0, V(10.0))});
  // P1 = (1/3, 20/3), P2 = (2/3, 20/3) on the straight line: value = 20u(1-u) + 10u^3
  EXPECT_NEAR(InterpolateKeys(stream, 0.5)[0], 6.25, 1e-9);
}

TEST(InterpolateEase, IncomingEaseAgainstALinearSide) {
  Keyframe k1 = Key(1.0, V(10.0), Interpolation::Bezier, Interpolation::Linear);
  k1.easeIn[0] = {0.0, kThird};
  const Stream stream = OneD({Key(0.0, V(0.0)), k1});
  // P1 = (1/3, 10/3), P2 = (2/3, 10): 10(1-u)^2 u + 30(1-u)u^2 + 10u^3 at u = 1/2
  EXPECT_NEAR(InterpolateKeys(stream, 0.5)[0], 6.25, 1e-9);
}

TEST(InterpolateEase, FullInfluenceStaysSymmetric) {
  Keyframe k0 = Key(0.0, V(0.0), Interpolation::Linear, Interpolation::Bezier);
  Keyframe k1 = Key(2.0, V(8.0), Interpolation::Bezier, Interpolation::Linear);
  k0.easeOut[0] = {0.0, 100.0};
  k1.easeIn[0] = {0.0, 100.0};
  // Time runs as 1 + 8 (u - 1/2)^3 here: flat in the middle, so u is found
  // only to about the cube root of the rounding error.
  EXPECT_NEAR(InterpolateKeys(OneD({k0, k1}), 1.0)[0], 4.0, 1e-4);
}

// The ease curve at time t found by halving the parameter 200 times, slowly and surely, from
// the control points of the documented model.
double EasedByHalving(double v1, double speedOut, double inflOut, double speedIn, double inflIn, double t) {
  const auto cubic = [](double p0, double p1, double p2, double p3, double u) {
    const double a = 1.0 - u;
    return a * a * a * p0 + 3.0 * a * a * u * p1 + 3.0 * a * u * u * p2 + u * u * u * p3;
  };
  double lo = 0.0, hi = 1.0;
  for (int i = 0; i < 200; ++i) {
    const double mid = 0.5 * (lo + hi);
    (cubic(0.0, inflOut, 1.0 - inflIn, 1.0, mid) < t ? lo : hi) = mid;
  }
  return cubic(0.0, speedOut * inflOut, v1 - speedIn * inflIn, v1, lo);
}

struct EaseCase {
  double speedOut, influenceOut, speedIn, influenceIn;
};

class InterpolateEaseShapes : public testing::TestWithParam<EaseCase> {};

// Eases from gentle to a side that stands still for most of the segment: the value is the
// curve's own at every time, also where the time curve is flat.
TEST_P(InterpolateEaseShapes, FollowTheCurveAtEveryTime) {
  const EaseCase c = GetParam();
  Keyframe k0 = Key(0.0, V(0.0), Interpolation::Linear, Interpolation::Bezier);
  Keyframe k1 = Key(1.0, V(10.0), Interpolation::Bezier, Interpolation::Linear);
  k0.easeOut[0] = {c.speedOut, c.influenceOut};
  k1.easeIn[0] = {c.speedIn, c.influenceIn};
  const Stream stream = OneD({k0, k1});
  for (int i = 1; i < 40; ++i) {
    const double t = i / 40.0;
    const double expected =
        EasedByHalving(10.0, c.speedOut, c.influenceOut / 100.0, c.speedIn, c.influenceIn / 100.0, t);
    EXPECT_NEAR(InterpolateKeys(stream, t)[0], expected, 1e-9) << "at " << t;
  }
}

INSTANTIATE_TEST_SUITE_P(Eases, InterpolateEaseShapes,
                         testing::Values(EaseCase{0.0, kThird, 0.0, kThird}, EaseCase{0.0, 90.0, 0.0, 5.0},
                                         EaseCase{40.0, 10.0, 0.0, 100.0}, EaseCase{-30.0, 60.0, 80.0, 70.0},
                                         EaseCase{0.0, 100.0, 0.0, 0.1}));

TEST(InterpolateEase, ScaleEasesEachDimensionOnItsOwn) {
  Stream stream;
  stream.kind = StreamKind::ThreeD;
  Keyframe k0 = Key(0.0, V(0, 0, 0), Interpolation::Linear, Interpolation::Bezier);
  Keyframe k1 = Key(1.0, V(10, 10, 10), Interpolation::Bezier, Interpolation::Linear);
  k0.easeOut = {Ease{0.0, kThird}, Ease{30.0, kThird}, Ease{0.0, kThird}};
  k1.easeIn = {Ease{0.0, kThird}, Ease{0.0, kThird}, Ease{0.0, kThird}};
  stream.keys = {k0, k1};
  const Value v = InterpolateKeys(stream, 0.5);
  EXPECT_NEAR(v[0], 5.0, 1e-9);   // smoothstep
  EXPECT_NEAR(v[1], 8.75, 1e-9);  // P1 = (1/3, 10), P2 = (2/3, 10)
  EXPECT_NEAR(v[2], 5.0, 1e-9);
}

TEST(InterpolateSpatial, StraightPathAtConstantSpeed) {
  Stream stream;
  stream.kind = StreamKind::ThreeDSpatial;
  stream.keys = {Key(0.0, V(0, 0, 0)), Key(1.0, V(30, 40, 0))};
  ExpectNear(InterpolateKeys(stream, 0.5), V(15, 20, 0));
}

TEST(InterpolateSpatial, EaseWorksOnTheDistanceAlongThePath) {
  Stream stream;
  stream.kind = StreamKind::ThreeDSpatial;
  Keyframe k0 = Key(0.0, V(0, 0, 0), Interpolation::Linear, Interpolation::Bezier);
  Keyframe k1 = Key(1.0, V(30, 40, 0), Interpolation::Bezier, Interpolation::Linear);
  k0.easeOut[0] = {0.0, kThird};
  k1.easeIn[0] = {0.0, kThird};
  stream.keys = {k0, k1};
  // 50 pixels of path, smoothstep(0.25) = 0.15625 of it, along (0.6, 0.8)
  ExpectNear(InterpolateKeys(stream, 0.25), V(4.6875, 6.25, 0));
}

TEST(InterpolateSpatial, CurvedPathPassesItsMiddleHalfway) {
  Stream stream;
  stream.kind = StreamKind::ThreeDSpatial;
  Keyframe k0 = Key(0.0, V(0, 0, 0));
  Keyframe k1 = Key(1.0, V(10, 0, 0));
  k0.outTangent = V(0, 10, 0);
  k1.inTangent = V(0, 10, 0);
  stream.keys = {k0, k1};
  // A symmetric arc: half its length lies at u = 1/2, the point (5, 7.5).
  ExpectNear(InterpolateKeys(stream, 0.5), V(5, 7.5, 0), 1e-3);
  // Away from the middle it leaves the straight line.
  EXPECT_GT(InterpolateKeys(stream, 0.25)[1], 1.0);
}

// The point a curved path reaches at a time lies at the right distance along the curve: an
// uneven 3D arc travelled at constant speed, checked against lengths that the test measures
// for itself with Simpson's rule on 20000 intervals, to a billionth of a 1920 pixel width.
TEST(InterpolateSpatial, AnUnevenCurveIsTravelledByItsExactLength) {
  const Value p[4] = {V(0, 0, 0), V(600, 900, -300), V(1500, -200, 400), V(1800, 500, 100)};
  const auto point = [&](double u) {
    const double a = (1 - u) * (1 - u) * (1 - u), b = 3 * (1 - u) * (1 - u) * u, c = 3 * (1 - u) * u * u,
                 d = u * u * u;
    return V(a * p[0][0] + b * p[1][0] + c * p[2][0] + d * p[3][0], a * p[0][1] + b * p[1][1] + c * p[2][1] + d * p[3][1],
             a * p[0][2] + b * p[1][2] + c * p[2][2] + d * p[3][2]);
  };
  const auto lengthTo = [&](double u) {
    constexpr int kIntervals = 20000;
    const auto speed = [&](double t) {  // |B'(t)|
      double sum = 0.0;
      for (int d = 0; d < 3; ++d) {
        const double v = 3 * (1 - t) * (1 - t) * (p[1][d] - p[0][d]) + 6 * (1 - t) * t * (p[2][d] - p[1][d]) +
                         3 * t * t * (p[3][d] - p[2][d]);
        sum += v * v;
      }
      return std::sqrt(sum);
    };
    double sum = speed(0) + speed(u);
    for (int i = 1; i < kIntervals; ++i) sum += (i % 2 ? 4.0 : 2.0) * speed(u * i / kIntervals);
    return sum * u / kIntervals / 3.0;
  };
  Stream stream;
  stream.kind = StreamKind::ThreeDSpatial;
  Keyframe k0 = Key(0.0, p[0]);
  Keyframe k1 = Key(1.0, p[3]);
  k0.outTangent = V(600, 900, -300);
  k1.inTangent = V(-300, -700, 300);
  stream.keys = {k0, k1};
  const double whole = lengthTo(1.0);
  for (double t : {0.1, 0.3, 0.7}) {
    double lo = 0.0, hi = 1.0;
    for (int i = 0; i < 60; ++i) (lengthTo(0.5 * (lo + hi)) < t * whole ? lo : hi) = 0.5 * (lo + hi);
    ExpectNear(InterpolateKeys(stream, t), point(0.5 * (lo + hi)), 1920e-9);
  }
}

TEST(InterpolateOrientation, TurnsAlongTheShortestWay) {
  Stream stream;
  stream.kind = StreamKind::Orientation;
  stream.keys = {Key(0.0, V(0, 0, 0)), Key(1.0, V(0, 0, 90))};
  ExpectNear(InterpolateKeys(stream, 0.5), V(0, 0, 45), 1e-9);
  stream.keys = {Key(0.0, V(0, 0, 350)), Key(1.0, V(0, 0, 10))};
  const Value middle = InterpolateKeys(stream, 0.5);
  // Through 0, not through 180 as a component-wise mix would go.
  EXPECT_NEAR(std::min(middle[2], 360.0 - middle[2]), 0.0, 1e-9);
  EXPECT_NEAR(InterpolateKeys(stream, 0.25)[2], 355.0, 1e-9);
}

TEST(InterpolateColor, MixesAllComponentsAlongOneEase) {
  Stream stream;
  stream.kind = StreamKind::Color;
  stream.keys = {Key(0.0, V(1, 0, 0, 1)), Key(1.0, V(0, 0, 1, 1))};
  ExpectNear(InterpolateKeys(stream, 0.5), V(0.5, 0, 0.5, 1));
}

}  // namespace
}  // namespace aehost
