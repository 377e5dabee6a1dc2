// A layer's masks through the layer mask, stream, mask outline and path data suites, as the
// exporter reads a text's path: the host counts one point more than segments, so that the
// point after a closed outline's last vertex is its first again; mask tangents are relative
// to their vertex, path data handles absolute; segment lengths are measured on the curve
// (a 100 x 100 square is 400 round, a quarter circle of radius 100 with the ellipse handles is
// 157.08561799038796, computed apart by Simpson's rule). Keys of a mask's shape are keys of
// its stream, in composition time with the layer's start.
#include "aehost/core/exit_report.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

PathShape SquareShape(double size, bool closed) {
  PathShape shape;
  shape.vertices = {{0, 0}, {size, 0}, {size, size}, {0, size}};
  shape.closed = closed;
  return shape;
}

class MaskSuitesTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    card->startTime = 1.0;
    Mask square{"Square", {}};
    square.shape.shape = SquareShape(100, true);
    Mask arc{"Arc", {}};
    arc.shape.shape.vertices = {{100, 0, 0, 0, 0, 55.19150244935106}, {0, 100, 55.19150244935106, 0, 0, 0}};
    arc.shape.shape.closed = false;
    Mask growing{"Growing", {}};
    growing.shape.keys = {{0.0, SquareShape(100, true)}, {1.0, SquareShape(200, true)}};
    growing.shape.shape = growing.shape.keys.front().shape;
    card->masks = {square, arc, growing};
  }
  void TearDown() override {
    EXPECT_TRUE(ExitProblems().empty());
    HostTest::TearDown();
  }

  AEGP_StreamRefH OutlineStream(A_long maskIndex) {
    AEGP_MaskRefH mask = nullptr;
    EXPECT_EQ(LayerMaskSuite()->AEGP_GetLayerMaskByIndex(LayerHandle(*card), maskIndex, &mask), A_Err_NONE);
    AEGP_StreamRefH stream = nullptr;
    EXPECT_EQ(StreamSuite()->AEGP_GetNewMaskStream(kPlugin, mask, AEGP_MaskStream_OUTLINE, &stream), A_Err_NONE);
    EXPECT_EQ(LayerMaskSuite()->AEGP_DisposeMask(mask), A_Err_NONE);
    return stream;
  }

  // The outline at a composition time in hundredths of a second; disposed by the caller.
  AEGP_StreamValue2 OutlineAt(AEGP_StreamRefH stream, A_long compHundredths) {
    const A_Time time{compHundredths, 100};
    AEGP_StreamValue2 value{};
    EXPECT_EQ(StreamSuite()->AEGP_GetNewStreamValue(kPlugin, stream, AEGP_LTimeMode_CompTime, &time, false, &value),
              A_Err_NONE);
    return value;
  }

  double PathLength(AEGP_MaskOutlineValH outline) {
    auto* path = reinterpret_cast<PF_PathOutlinePtr>(outline);
    A_long segments = 0;
    EXPECT_EQ(PathDataSuite()->PF_PathNumSegments(nullptr, path, &segments), A_Err_NONE);
    double sum = 0.0;
    for (A_long i = 0; i < segments; ++i) {
      PF_PathSegPrepPtr prep = nullptr;
      EXPECT_EQ(PathDataSuite()->PF_PathPrepareSegLength(nullptr, path, i, 100, &prep), A_Err_NONE);
      double length = 0.0;
      EXPECT_EQ(PathDataSuite()->PF_PathGetSegLength(nullptr, path, i, &prep, &length), A_Err_NONE);
      sum += length;
    }
    return sum;
  }
};

TEST_F(MaskSuitesTest, AClosedOutlineCountsItsFirstVertexAgainAtTheEnd) {
  A_long count = 0;
  EXPECT_EQ(LayerMaskSuite()->AEGP_GetLayerNumMasks(LayerHandle(*card), &count), A_Err_NONE);
  EXPECT_EQ(count, 3);
  AEGP_StreamRefH stream = OutlineStream(0);
  AEGP_StreamType type = 0;
  StreamSuite()->AEGP_GetStreamType(stream, &type);
  EXPECT_EQ(type, AEGP_StreamType_MASK);
  AEGP_StreamValue2 value = OutlineAt(stream, 0);
  A_Boolean open = true;
  A_long segments = 0;
  EXPECT_EQ(MaskOutlineSuite()->AEGP_IsMaskOutlineOpen(value.val.mask, &open), A_Err_NONE);
  EXPECT_FALSE(open);
  EXPECT_EQ(MaskOutlineSuite()->AEGP_GetMaskOutlineNumSegments(value.val.mask, &segments), A_Err_NONE);
  EXPECT_EQ(segments, 4);
  AEGP_MaskVertex vertex{};
  EXPECT_EQ(MaskOutlineSuite()->AEGP_GetMaskOutlineVertexInfo(value.val.mask, 4, &vertex), A_Err_NONE);
  EXPECT_EQ(vertex.x, 0.0);
  EXPECT_EQ(vertex.y, 0.0);
  EXPECT_NE(MaskOutlineSuite()->AEGP_GetMaskOutlineVertexInfo(value.val.mask, 5, &vertex), A_Err_NONE);
  EXPECT_DOUBLE_EQ(PathLength(value.val.mask), 400.0);
  // The prepared lengths go with their outline.
  EXPECT_EQ(StreamSuite()->AEGP_DisposeStreamValue(&value), A_Err_NONE);
  EXPECT_TRUE(g_host.segmentPreps.Entries().empty());
  EXPECT_EQ(StreamSuite()->AEGP_DisposeStream(stream), A_Err_NONE);
  g_host.misuse.clear();
}

TEST_F(MaskSuitesTest, MaskTangentsAreRelativePathHandlesAbsolute) {
  AEGP_StreamRefH stream = OutlineStream(1);
  AEGP_StreamValue2 value = OutlineAt(stream, 0);
  A_Boolean open = false;
  A_long segments = 0;
  MaskOutlineSuite()->AEGP_IsMaskOutlineOpen(value.val.mask, &open);
  MaskOutlineSuite()->AEGP_GetMaskOutlineNumSegments(value.val.mask, &segments);
  EXPECT_TRUE(open);
  EXPECT_EQ(segments, 1);
  AEGP_MaskVertex mask{};
  EXPECT_EQ(MaskOutlineSuite()->AEGP_GetMaskOutlineVertexInfo(value.val.mask, 0, &mask), A_Err_NONE);
  EXPECT_EQ(mask.tan_out_y, 55.19150244935106);
  PF_PathVertex path{};
  EXPECT_EQ(PathDataSuite()->PF_PathVertexInfo(nullptr, reinterpret_cast<PF_PathOutlinePtr>(value.val.mask), 1, &path),
            A_Err_NONE);
  EXPECT_EQ(path.tan_in_x, 55.19150244935106);
  EXPECT_EQ(path.tan_in_y, 100.0);
  EXPECT_NEAR(PathLength(value.val.mask), 157.08561799038796, 1e-9);
  EXPECT_EQ(StreamSuite()->AEGP_DisposeStreamValue(&value), A_Err_NONE);
  EXPECT_EQ(StreamSuite()->AEGP_DisposeStream(stream), A_Err_NONE);
}

// The layer starts at 1 s: the keys at layer times 0 and 1 stand at 1 s and 2 s; halfway the
// square is 150 wide, 600 round.
TEST_F(MaskSuitesTest, KeyedShapesAreKeysOfTheStreamAndInterpolate) {
  AEGP_StreamRefH stream = OutlineStream(2);
  A_Boolean varying = false, expression = true;
  EXPECT_EQ(StreamSuite()->AEGP_IsStreamTimevarying(stream, &varying), A_Err_NONE);
  EXPECT_TRUE(varying);
  EXPECT_EQ(StreamSuite()->AEGP_GetExpressionState(kPlugin, stream, &expression), A_Err_NONE);
  EXPECT_FALSE(expression);
  A_long keys = 0;
  EXPECT_EQ(KeyframeSuite()->AEGP_GetStreamNumKFs(stream, &keys), A_Err_NONE);
  EXPECT_EQ(keys, 2);
  A_Time second{};
  EXPECT_EQ(KeyframeSuite()->AEGP_GetKeyframeTime(stream, 1, AEGP_LTimeMode_CompTime, &second), A_Err_NONE);
  EXPECT_DOUBLE_EQ(static_cast<double>(second.value) / second.scale, 2.0);
  for (const auto& [hundredths, length] : {std::pair{100, 400.0}, std::pair{150, 600.0}, std::pair{300, 800.0}}) {
    AEGP_StreamValue2 value = OutlineAt(stream, hundredths);
    EXPECT_NEAR(PathLength(value.val.mask), length, 1e-9) << hundredths;
    EXPECT_EQ(StreamSuite()->AEGP_DisposeStreamValue(&value), A_Err_NONE);
  }
  EXPECT_EQ(StreamSuite()->AEGP_DisposeStream(stream), A_Err_NONE);
}

TEST_F(MaskSuitesTest, RefusesWhatIsNotThere) {
  AEGP_MaskRefH mask = nullptr;
  EXPECT_NE(LayerMaskSuite()->AEGP_GetLayerMaskByIndex(LayerHandle(*card), 3, &mask), A_Err_NONE);
  EXPECT_EQ(mask, nullptr);
  AEGP_StreamRefH stream = OutlineStream(0);
  // An outline holds no numbers; a segment beyond the outline and a frequency of 0 are refused.
  AEGP_StreamValue2 number{};
  EXPECT_NE(StreamSuite()->AEGP_SetStreamValue(kPlugin, stream, &number), A_Err_NONE);
  AEGP_StreamValue2 value = OutlineAt(stream, 0);
  auto* path = reinterpret_cast<PF_PathOutlinePtr>(value.val.mask);
  PF_PathSegPrepPtr prep = nullptr;
  EXPECT_NE(PathDataSuite()->PF_PathPrepareSegLength(nullptr, path, 4, 100, &prep), A_Err_NONE);
  EXPECT_NE(PathDataSuite()->PF_PathPrepareSegLength(nullptr, path, 0, 0, &prep), A_Err_NONE);
  EXPECT_EQ(PathDataSuite()->PF_PathPrepareSegLength(nullptr, path, 0, 100, &prep), A_Err_NONE);
  double length = 0.0;
  EXPECT_NE(PathDataSuite()->PF_PathGetSegLength(nullptr, path, 1, &prep, &length), A_Err_NONE);
  EXPECT_EQ(PathDataSuite()->PF_PathCleanup(nullptr, &prep), A_Err_NONE);
  EXPECT_EQ(StreamSuite()->AEGP_DisposeStreamValue(&value), A_Err_NONE);
  EXPECT_NE(MaskOutlineSuite()->AEGP_GetMaskOutlineNumSegments(value.val.mask, nullptr), A_Err_NONE);
  EXPECT_EQ(StreamSuite()->AEGP_DisposeStream(stream), A_Err_NONE);
  EXPECT_FALSE(g_host.misuse.empty());
  g_host.misuse.clear();
}

}  // namespace
}  // namespace aehost
