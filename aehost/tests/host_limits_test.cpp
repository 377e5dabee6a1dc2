// The host at its limits: what it remembers between reading calls is forgotten by a call that
// changes the project, a composition that uses the next one twice over forty levels is looked
// into once each, times and ratios past 32 bits stop at the ends, and the composition suite
// refuses what the project description could not hold.
#include <cmath>
#include <string>
#include <vector>

#include "aehost/core/host_time.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

class HostLimitsTest : public HostTest {};

A_Matrix4 World(const Layer& layer) {
    A_Matrix4 m{};
    const A_Time zero{0, 2500};
    EXPECT_EQ(LayerSuite()->AEGP_GetLayerToWorldXform(LayerHandle(layer), &zero, &m), A_Err_NONE);
    return m;
}

// Inside a scope, as while a hook runs: the card's matrix is remembered with its parent's, and
// moving the parent through the stream suite must show in the card's next matrix.
TEST_F(HostLimitsTest, AMatrixRememberedInAScopeFollowsAChangeThroughTheSuites) {
    const LookupScope scope;
    const double before = World(*card).mat[3][0];
    AEGP_StreamValue2 value{};
    ASSERT_EQ(StreamSuite()->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*rig), AEGP_LayerStream_POSITION,
                                                     &value.streamH),
              A_Err_NONE);
    value.val.three_d = {1000.0, 0.0, 0.0};
    ASSERT_EQ(StreamSuite()->AEGP_SetStreamValue(kPlugin, value.streamH, &value), A_Err_NONE);
    EXPECT_EQ(StreamSuite()->AEGP_DisposeStream(value.streamH), A_Err_NONE);
    // The null stood at the middle of the 1920 pixels wide composition; it moved to 1000.
    EXPECT_DOUBLE_EQ(World(*card).mat[3][0] - before, 1000.0 - 960.0);
}

TEST_F(HostLimitsTest, OnlyCallsThatMayChangeTheProjectForgetWhatIsRemembered) {
    for (const char* reading : {"AEGP_GetLayerToWorldXform", "AEGP_IsStreamLegal", "AEGP_DisposeStream",
                                "AEGP_NewMemHandle", "AEGP_FreeMemHandle", "PF_AppProgressDialogUpdate",
                                "AEGP_ReportInfoUnicode"})
        EXPECT_TRUE(IsReadingCall(reading)) << reading;
    for (const char* changing : {"AEGP_SetStreamValue", "AEGP_DeleteLayer", "AEGP_ExecuteScript",
                                 "AEGP_CreateComp", "AEGP_InsertKeyframe", "AEGP_DuplicateLayer"})
        EXPECT_FALSE(IsReadingCall(changing)) << changing;
}

// Forty compositions, each using the next twice: 2^40 ways down, forty compositions.
TEST_F(HostLimitsTest, WhetherACompositionHoldsAnotherLooksIntoEachOnce) {
    std::vector<Item*> chain;
    for (int i = 0; i < 40; ++i) chain.push_back(&AddComp(project, "C" + std::to_string(i), 64, 48, 1.0, 1.0, 25.0));
    for (int i = 0; i + 1 < 40; ++i) {
        AddLayer(project, *chain[i], *chain[i + 1]);
        AddLayer(project, *chain[i], *chain[i + 1]);
    }
    A_Boolean valid = true;
    ASSERT_EQ(LayerSuite()->AEGP_IsAddLayerValid(ItemHandle(*chain[0]), CompHandle(*chain[39]), &valid), A_Err_NONE);
    EXPECT_FALSE(valid);  // the last composition would hold the first, which holds it
    ASSERT_EQ(LayerSuite()->AEGP_IsAddLayerValid(ItemHandle(*chain[39]), CompHandle(*comp), &valid), A_Err_NONE);
    EXPECT_TRUE(valid);
}

TEST(HostTime, TimesAndRatiosPast32BitsStopAtTheEnds) {
    EXPECT_EQ(ToATime(1e12, 100).value, 2147483647);
    EXPECT_EQ(ToATime(-1e12, 100).value, -2147483647 - 1);
    EXPECT_EQ(ToATime(std::nan(""), 100).value, -2147483647 - 1);
    EXPECT_EQ(ToATime(1.5, 100).value, 150);
    const A_Ratio huge = ToRatio(1e13);
    EXPECT_EQ(static_cast<double>(huge.num) / huge.den, 2147483647.0 / 1000000.0);
    const A_Ratio half = ToRatio(0.5);
    EXPECT_EQ(half.num, 1);
    EXPECT_EQ(half.den, 2u);
}

struct CompRefusal {
    const char* name;
    A_Ratio aspect;
    A_Ratio rate;
};

void PrintTo(const CompRefusal& c, std::ostream* out) { *out << c.name; }

class CompositionRanges : public HostLimitsTest, public ::testing::WithParamInterface<CompRefusal> {};

TEST_P(CompositionRanges, ACompositionTheProjectCouldNotHoldIsNotMade) {
    const std::u16string name = u"New";
    const A_Time duration{2500, 2500};
    AEGP_CompH made = nullptr;
    EXPECT_NE(CompSuite()->AEGP_CreateComp(nullptr, reinterpret_cast<const A_UTF16Char*>(name.c_str()), 100, 100,
                                           &GetParam().aspect, &duration, &GetParam().rate, &made),
              A_Err_NONE);
    EXPECT_EQ(made, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Cases, CompositionRanges,
                         ::testing::Values(CompRefusal{"AspectWide", {500, 1}, {25, 1}},
                                           CompRefusal{"AspectThin", {1, 1000}, {25, 1}},
                                           CompRefusal{"RateSlow", {1, 1}, {1, 1000}}));

TEST_F(HostLimitsTest, ADisplayStartBeyondWhatAProjectHoldsIsRefused) {
    const A_Time farAway{2000000000, 1};
    EXPECT_NE(CompSuite()->AEGP_SetCompDisplayStartTime(CompHandle(*comp), &farAway), A_Err_NONE);
    EXPECT_EQ(comp->comp.displayStart, 0.0);
}

}  // namespace
}  // namespace aehost
