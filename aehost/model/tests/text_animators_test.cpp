// Range selectors by hand: of n characters, character c owns the slice [c / n, (c + 1) / n]
// and is selected by the share of it that the range covers.
#include <gtest/gtest.h>

#include "aehost/model/edit.h"
#include "aehost/model/project_json.h"
#include "aehost/model/text_animators.h"
#include "model_fixture.h"

namespace aehost {
namespace {

TEST(TextAnimators, ACharacterIsSelectedByTheShareOfItsSliceInTheRange) {
  struct Case {
    double start, end;
    std::size_t index, count;
    double share;
  };
  const Case cases[] = {{0, 50, 0, 2, 1.0},   {0, 50, 1, 2, 0.0},    {25, 75, 0, 2, 0.5},
                        {75, 25, 1, 2, 0.5},  {0, 100, 3, 4, 1.0},   {10, 20, 0, 4, 0.4},
                        {0, 0, 0, 1, 0.0}};
  for (const Case& c : cases) {
    TextAnimator animator;
    animator.start = c.start;
    animator.end = c.end;
    EXPECT_DOUBLE_EQ(SelectedShare(animator, c.index, c.count), c.share)
        << c.start << ".." << c.end << " character " << c.index << " of " << c.count;
  }
}

TEST(TextAnimators, AHalfSelectedCharacterTakesHalfOfEachProperty) {
  TextAnimator animator;
  animator.start = 25;
  animator.end = 75;
  AddKeyframe(animator.position, 0.0, MakeValue(0, 0));
  AddKeyframe(animator.position, 1.0, MakeValue(20, -40));
  animator.scale.value = MakeValue(300, 100);
  animator.rotation.value = MakeValue(180);
  // At 0.5 s the offset is (10, -20), half of it (5, -10); scale x 1 + (3 - 1) / 2 = 2;
  // rotation 90 degrees: glyph x goes to layer y.
  const Matrix4 m = CharacterTransform({animator}, 0, 2, 0.5, 100, 200);
  EXPECT_NEAR(m.m[0][0], 0.0, 1e-12);
  EXPECT_NEAR(m.m[0][1], 2.0, 1e-12);
  EXPECT_NEAR(m.m[1][0], -1.0, 1e-12);
  EXPECT_NEAR(m.m[3][0], 105.0, 1e-12);
  EXPECT_NEAR(m.m[3][1], 190.0, 1e-12);
  EXPECT_EQ(m.m[3][2], 0.0);
}

TEST(TextAnimators, AnimatorsAreReadWrittenBackTheSameAndRefusedWithTheirPath) {
  const std::string layer = R"({"id": 1, "type": "text", "text": {"document": {"text": "Hi"}, "animators": [
    {"name": "Lift", "rangeEnd": 50, "position": {"keys": [{"time": 0, "value": [0, 0]}, {"time": 1, "value": [0, -4]}]},
     "rotation": 90}]}})";
  const Project project = ReadProject(OneLayerProject(layer), "test.json");
  const std::vector<TextAnimator>& animators = project.items.back()->comp.layers.front()->text.animators;
  ASSERT_EQ(animators.size(), 1u);
  EXPECT_EQ(animators[0].name, "Lift");
  EXPECT_EQ(animators[0].start, 0.0);
  EXPECT_EQ(animators[0].end, 50.0);
  EXPECT_EQ(animators[0].position.keys.size(), 2u);
  EXPECT_EQ(animators[0].scale.value, MakeValue(100, 100));
  EXPECT_EQ(animators[0].rotation.value, MakeValue(90));
  const std::string written = WriteProject(project);
  EXPECT_EQ(WriteProject(ReadProject(written, "written")), written);
  EXPECT_EQ(ReadProject(written, "written").items.back()->comp.layers.front()->text.animators, animators);
  const std::string at = "test.json: comps[0].layers[0].text.animators[0].";
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "text", "text": {"animators": [{"rangeEnd": 150}]}})")),
            at + "rangeEnd: must lie between 0 and 100");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "text", "text": {"animators": [{"opacity": 0}]}})")),
            at + "opacity: unknown key");
}

}  // namespace
}  // namespace aehost
