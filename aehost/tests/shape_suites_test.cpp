// A shape layer through the shape layer, animated shape, guid, text layer and path data
// suites, as the exporter reads it: items with their contours and colours, identities that
// follow the form, items that go with their shape, and handles left open named at exit.
#include "aehost/core/exit_report.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

class ShapeSuitesTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        layer = &AddNullLayer(project, *comp, "Shapes");
        layer->objectType = LayerObjectType::Shape;
        ShapeElement path = NewShapeElement(ShapeKind::Path);
        path.path.keys = {{0.0, {{{0, 0, 0, 0, 5, 0}, {10, 0, 0, 0, 0, 0}}, true}},
                          {1.0, {{{0, 0, 0, 0, 5, 0}, {20, 0, 0, 0, 0, 0}}, true}}};
        ShapeElement fill = NewShapeElement(ShapeKind::Fill);
        fill.params[0].value = MakeValue(0.25, 0.5, 0.75, 1.0);
        fill.params[1].value = MakeValue(50);
        layer->shapes = {path, fill, NewShapeElement(ShapeKind::Rectangle), NewShapeElement(ShapeKind::Stroke)};
        handle = MakeHandle<AEGP_LayerH>(IdHandle(HandleKind::Layer, layer->id));
    }

    AEGP_ShapeH ShapeAt(A_long frames) {
        const A_Time time{frames, 25};
        AEGP_ShapeH shape = nullptr;
        EXPECT_EQ(ShapeLayerSuite()->GetShapeAtTime(handle, &time, 0, &shape), A_Err_NONE);
        return shape;
    }

    bool SameForm(AEGP_ShapeH a, AEGP_ShapeH b) {
        AEGP_GuidH first = nullptr, second = nullptr;
        A_Boolean equal = false;
        EXPECT_EQ(ShapeLayerSuite()->GetShapeIdentity(a, &first), A_Err_NONE);
        EXPECT_EQ(ShapeLayerSuite()->GetShapeIdentity(b, &second), A_Err_NONE);
        EXPECT_EQ(GuidSuite()->CompareIdentity(first, second, &equal), A_Err_NONE);
        EXPECT_EQ(GuidSuite()->DisposeIdentity(first), A_Err_NONE);
        EXPECT_EQ(GuidSuite()->DisposeIdentity(second), A_Err_NONE);
        return equal;
    }

    Layer* layer = nullptr;
    AEGP_LayerH handle = nullptr;
};

TEST_F(ShapeSuitesTest, ItemsGiveTheirContoursAsPathsWithAbsoluteHandles) {
    AEGP_ShapeH shape = ShapeAt(0);
    A_long count = 0;
    ASSERT_EQ(ShapeLayerSuite()->GetShapeItemCount(shape, &count), A_Err_NONE);
    EXPECT_EQ(count, 2);
    AEGP_ShapeItemH stroke = nullptr;
    ASSERT_EQ(ShapeLayerSuite()->GetShapeItem(shape, 1, &stroke), A_Err_NONE);
    AEGP_TextOutlinesH outlines = nullptr;
    ASSERT_EQ(AnimatedShapeSuite()->GetItemOutlines(stroke, &outlines), A_Err_NONE);
    A_long contours = 0;
    ASSERT_EQ(TextLayerSuite()->AEGP_GetNumTextOutlines(outlines, &contours), A_Err_NONE);
    EXPECT_EQ(contours, 2);
    PF_PathOutlinePtr path = nullptr;
    ASSERT_EQ(TextLayerSuite()->AEGP_GetIndexedTextOutline(outlines, 0, &path), A_Err_NONE);
    A_long segments = 0;
    ASSERT_EQ(PathDataSuite()->PF_PathNumSegments(nullptr, path, &segments), A_Err_NONE);
    EXPECT_EQ(segments, 2);
    PF_PathVertex vertex{};
    ASSERT_EQ(PathDataSuite()->PF_PathVertexInfo(nullptr, path, 0, &vertex), A_Err_NONE);
    EXPECT_EQ(vertex.tan_out_x, 5.0);
    EXPECT_NE(TextLayerSuite()->AEGP_GetIndexedTextOutline(outlines, 2, &path), A_Err_NONE);
    EXPECT_EQ(AnimatedShapeSuite()->DisposeItemOutlines(outlines), A_Err_NONE);
    AEGP_ShapeItemH none = stroke;
    EXPECT_EQ(ShapeLayerSuite()->GetShapeItem(shape, 2, &none), A_Err_NONE);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(ShapeLayerSuite()->DisposeShape(shape), A_Err_NONE);
    // The item went with its shape.
    EXPECT_NE(AnimatedShapeSuite()->GetItemOutlines(stroke, &outlines), A_Err_NONE);
    g_host.misuse.clear();
    EXPECT_TRUE(ExitProblems().empty());
}

TEST_F(ShapeSuitesTest, TheColourComesAlphaFirstWithTheOpacity) {
    AEGP_ShapeH shape = ShapeAt(0);
    AEGP_ShapeItemH fill = nullptr;
    ASSERT_EQ(ShapeLayerSuite()->GetShapeItem(shape, 0, &fill), A_Err_NONE);
    AEGP_ShapeColour colour{};
    ASSERT_EQ(AnimatedShapeSuite()->GetItemColour(fill, &colour), A_Err_NONE);
    EXPECT_EQ(colour.alpha, 0.5);
    EXPECT_EQ(colour.red, 0.25);
    EXPECT_EQ(colour.green, 0.5);
    EXPECT_EQ(colour.blue, 0.75);
    EXPECT_EQ(ShapeLayerSuite()->DisposeShape(shape), A_Err_NONE);
}

TEST_F(ShapeSuitesTest, IdentitiesAreEqualExactlyWhileTheFormStays) {
    AEGP_ShapeH before = ShapeAt(-5), start = ShapeAt(0), middle = ShapeAt(12), end = ShapeAt(25), after = ShapeAt(50);
    EXPECT_TRUE(SameForm(before, start));
    EXPECT_FALSE(SameForm(start, middle));
    EXPECT_FALSE(SameForm(middle, end));
    EXPECT_TRUE(SameForm(end, after));
    for (AEGP_ShapeH shape : {before, start, middle, end, after}) EXPECT_EQ(ShapeLayerSuite()->DisposeShape(shape), A_Err_NONE);
}

TEST_F(ShapeSuitesTest, NoShapeWithoutItemsAndWhatIsLeftOpenIsNamed) {
    AEGP_ShapeH shape = nullptr;
    const A_Time time{0, 25};
    const AEGP_LayerH rigHandle = MakeHandle<AEGP_LayerH>(IdHandle(HandleKind::Layer, rig->id));
    EXPECT_EQ(ShapeLayerSuite()->GetShapeAtTime(rigHandle, &time, 0, &shape), A_Err_NONE);
    EXPECT_EQ(shape, nullptr);
    shape = ShapeAt(0);
    AEGP_GuidH identity = nullptr;
    EXPECT_EQ(ShapeLayerSuite()->GetShapeIdentity(shape, &identity), A_Err_NONE);
    const auto problems = ExitProblems();
    EXPECT_NE(std::find(problems.begin(), problems.end(), "1 shape(s) never disposed"), problems.end());
    EXPECT_NE(std::find(problems.begin(), problems.end(), "1 shape identity(ies) never disposed"), problems.end());
}

}  // namespace
}  // namespace aehost
