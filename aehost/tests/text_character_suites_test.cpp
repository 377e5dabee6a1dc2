// The characters of a text layer through the text layer, text layer character and path data
// suites, as the exporter reads them. "IHI" in DejaVu Sans at 64 pixels: a font unit is 1/32
// pixel, "I" the rectangle x 201..403, y 0..1493 advancing 604, "H" advancing 1540. The layer
// sits at (100, 200) with its anchor at (10, 20) and scale (200, 50) percent, rotated by 30
// degrees, which the outlines leave to the exporter's null.
#include <algorithm>

#include "aehost/core/exit_report.h"
#include "aehost/core/text_character_suites.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

constexpr double kUnit = 1.0 / 32.0;

class TextCharacterSuitesTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        layer = &AddNullLayer(project, *comp, "Title");
        layer->objectType = LayerObjectType::Text;
        layer->text.document.text = "IHI";
        layer->text.document.font = "DejaVuSans";
        layer->text.document.fontSize = 64;
        layer->text.keys = {{0.0, layer->text.document}, {1.0, layer->text.document}};
        layer->text.keys[1].document.text = "I I";
        SetStreamValue(project, *comp, *layer, LayerStream::Position, MakeValue(100, 200));
        SetStreamValue(project, *comp, *layer, LayerStream::AnchorPoint, MakeValue(10, 20));
        SetStreamValue(project, *comp, *layer, LayerStream::Scale, MakeValue(200, 50, 100));
        SetStreamValue(project, *comp, *layer, LayerStream::RotationZ, MakeValue(30));
        handle = LayerHandle(*layer);
    }

    // The vertices of contour `j` of character `c` at `time`, with the contour count.
    std::vector<PF_PathVertex> Contour(A_long c, A_long j, const A_Time& time, A_long* contours) {
        AEGP_TextOutlinesH outlines = nullptr;
        EXPECT_EQ(TextLayerSuite()->GetCharacterOutlines(handle, &time, c, &outlines), A_Err_NONE);
        EXPECT_EQ(TextLayerSuite()->AEGP_GetNumTextOutlines(outlines, contours), A_Err_NONE);
        std::vector<PF_PathVertex> vertices;
        PF_PathOutlinePtr path = nullptr;
        if (j < *contours && TextLayerSuite()->AEGP_GetIndexedTextOutline(outlines, j, &path) == A_Err_NONE) {
            A_long n = 0;
            EXPECT_EQ(PathDataSuite()->PF_PathNumSegments(nullptr, path, &n), A_Err_NONE);
            vertices.resize(static_cast<std::size_t>(n));
            for (A_long i = 0; i < n; ++i)
                EXPECT_EQ(PathDataSuite()->PF_PathVertexInfo(nullptr, path, i, &vertices[static_cast<std::size_t>(i)]),
                          A_Err_NONE);
        }
        EXPECT_EQ(TextLayerSuite()->AEGP_DisposeTextOutlines(outlines), A_Err_NONE);
        return vertices;
    }

    Layer* layer = nullptr;
    AEGP_LayerH handle = nullptr;
    const A_Time start{0, 25};
    const A_Time later{25, 25};
};

TEST_F(TextCharacterSuitesTest, CharactersAreCountedInTheTextShownAtTheTime) {
    A_long count = 0;
    ASSERT_EQ(TextLayerSuite()->GetCharacterCount(handle, &start, &count), A_Err_NONE);
    EXPECT_EQ(count, 3);
    A_long contours = -1;
    Contour(1, 0, later, &contours);
    EXPECT_EQ(contours, 0) << "the space of \"I I\" has no contours";
}

TEST_F(TextCharacterSuitesTest, AnOutlineIsTheGlyphThroughAnchorScaleAndPositionButNotRotation) {
    A_long contours = 0;
    const std::vector<PF_PathVertex> rectangle = Contour(2, 0, start, &contours);
    EXPECT_EQ(contours, 1);
    ASSERT_EQ(rectangle.size(), 4u);
    const double originX = (604 + 1540) * kUnit;
    const double expected[4][2] = {{201, -1493}, {403, -1493}, {403, 0}, {201, 0}};
    for (std::size_t i = 0; i < 4; ++i) {
        SCOPED_TRACE("vertex " + std::to_string(i));
        const double x = (originX + expected[i][0] * kUnit - 10) * 2.0 + 100;
        const double y = (expected[i][1] * kUnit - 20) * 0.5 + 200;
        EXPECT_DOUBLE_EQ(rectangle[i].x, x);
        EXPECT_DOUBLE_EQ(rectangle[i].y, y);
        EXPECT_DOUBLE_EQ(rectangle[i].tan_in_x, x) << "a straight edge has its handles on the vertex";
        EXPECT_DOUBLE_EQ(rectangle[i].tan_out_y, y);
    }
}

TEST_F(TextCharacterSuitesTest, ACharacterMatrixPlacesItsGlyphOnTheLine) {
    AEGP_TextCharacterH character = nullptr;
    ASSERT_EQ(TextLayerSuite()->GetCharacterAt(handle, &start, 1, &character), A_Err_NONE);
    A_Matrix4 whole{};
    A_Matrix3 plane{};
    ASSERT_EQ(TextLayerCharacterSuite()->GetCharacterMatrix4(character, &whole), A_Err_NONE);
    ASSERT_EQ(TextLayerCharacterSuite()->GetCharacterMatrix3(character, &plane), A_Err_NONE);
    EXPECT_EQ(whole.mat[3][0], 604 * kUnit);
    EXPECT_EQ(whole.mat[3][2], 0.0) << "the depth";
    EXPECT_EQ(plane.mat[2][0], 604 * kUnit);
    EXPECT_EQ(plane.mat[0][0], 1.0);
    EXPECT_EQ(TextLayerSuite()->DisposeCharacter(character), A_Err_NONE);
    EXPECT_NE(TextLayerSuite()->DisposeCharacter(character), A_Err_NONE) << "disposed twice";
    g_host.misuse.clear();
}

TEST_F(TextCharacterSuitesTest, CharactersPastTheTextAndLayersWithoutTextAreRefused) {
    AEGP_TextCharacterH character = nullptr;
    EXPECT_EQ(TextLayerSuite()->GetCharacterAt(handle, &start, 3, &character), A_Err_PARAMETER);
    A_long count = 0;
    EXPECT_EQ(TextLayerSuite()->GetCharacterCount(LayerHandle(*rig), &start, &count), A_Err_PARAMETER);
    ASSERT_EQ(g_host.misuse.size(), 2u);
    EXPECT_NE(g_host.misuse[0].find("character 3 out of range (there are 3)"), std::string::npos) << g_host.misuse[0];
    EXPECT_NE(g_host.misuse[1].find("layer \"Rig\" is no text layer"), std::string::npos) << g_host.misuse[1];
    g_host.misuse.clear();
}

TEST_F(TextCharacterSuitesTest, CharactersAndOutlinesLeftOpenAreNamedAtExit) {
    AEGP_TextCharacterH character = nullptr;
    AEGP_TextOutlinesH outlines = nullptr;
    ASSERT_EQ(TextLayerSuite()->GetCharacterAt(handle, &start, 0, &character), A_Err_NONE);
    ASSERT_EQ(TextLayerSuite()->AEGP_GetNewTextOutlines(handle, &start, &outlines), A_Err_NONE);
    A_long contours = 0;
    ASSERT_EQ(TextLayerSuite()->AEGP_GetNumTextOutlines(outlines, &contours), A_Err_NONE);
    EXPECT_EQ(contours, 3) << "one rectangle each for I, H, I";
    const std::vector<std::string> problems = ExitProblems();
    EXPECT_NE(std::find(problems.begin(), problems.end(), "1 text character(s) never disposed"), problems.end());
    EXPECT_NE(std::find(problems.begin(), problems.end(), "1 shape item outline list(s) never disposed"),
              problems.end());
}

}  // namespace
}  // namespace aehost
