// Masks and a text's path options in the project description: what is read, that it is
// written back the same, and the refusals of a broken description.
#include <gtest/gtest.h>

#include "aehost/model/project_json.h"
#include "model_fixture.h"

namespace aehost {
namespace {

constexpr const char* kPathText = R"({"id": 1, "type": "text", "text": {"document": {"text": "On a path"}},
  "masks": [{"shape": {"vertices": [[0, 0], [10, 0]], "closed": false}},
            {"name": "Arc", "shape": {"keys": [
              {"time": 0, "shape": {"vertices": [[0, 0], [10, 0]], "outTangents": [[1, 2], [0, 0]]}},
              {"time": 1, "shape": {"vertices": [[0, 0], [20, 0]]}}]}}],
  "pathOptions": {"path": 2, "firstMargin": {"keys": [{"time": 0, "value": 0}, {"time": 1, "value": 50}]},
                  "lastMargin": 5}})";

TEST(MaskJson, MasksAndPathOptionsAreReadAsTheHostHoldsThem) {
  const Project project = ReadProject(OneLayerProject(kPathText), "test.json");
  const Layer& layer = *project.items.back()->comp.layers.front();
  ASSERT_EQ(layer.masks.size(), 2u);
  EXPECT_EQ(layer.masks[0].name, "Mask 1");
  EXPECT_FALSE(layer.masks[0].shape.shape.closed);
  EXPECT_EQ(layer.masks[1].name, "Arc");
  ASSERT_EQ(layer.masks[1].shape.keys.size(), 2u);
  EXPECT_EQ(layer.masks[1].shape.keys[0].shape.vertices[0], (PathVertex{0, 0, 0, 0, 1, 2}));
  EXPECT_EQ(layer.pathOptions.path, 2);
  EXPECT_EQ(layer.pathOptions.firstMargin.keys.size(), 2u);
  EXPECT_EQ(layer.pathOptions.lastMargin.value, MakeValue(5));
}

TEST(MaskJson, MasksAndPathOptionsAreWrittenBackTheSame) {
  const Project project = ReadProject(OneLayerProject(kPathText), "test.json");
  const std::string written = WriteProject(project);
  const Project back = ReadProject(written, "written");
  const Layer& original = *project.items.back()->comp.layers.front();
  const Layer& read = *back.items.back()->comp.layers.front();
  EXPECT_EQ(read.masks, original.masks);
  EXPECT_EQ(read.pathOptions, original.pathOptions);
  EXPECT_EQ(WriteProject(back), written);
}

TEST(MaskJson, BrokenMasksAndPathOptionsAreRefusedWithTheirPath) {
  const std::string at = "test.json: comps[0].layers[0].";
  const std::string square = R"({"shape": {"vertices": [[0, 0], [1, 0], [1, 1]]}})";
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "text", "masks": [)" + square + R"(], "pathOptions": {"path": 2}})")),
            at + "pathOptions.path: the layer has no mask 2 (it has 1)");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "pathOptions": {"path": 0}})")),
            at + "pathOptions: only text layers have path options");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "camera", "masks": [)" + square + "]}")),
            at + "masks: cameras and lights have no masks");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "masks": [{"shape": {"vertices": []}}]})")),
            at + "masks[0].shape: a mask needs at least one vertex");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "masks": [{"name": "M"}]})")), at + "masks[0]: missing \"shape\"");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "text", "pathOptions": {"firstMargin":
              {"value": 1, "expression": "time"}}})")),
            at + "pathOptions.firstMargin.expression: a path option takes no expression");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "text", "pathOptions": {"reversed": true}})")),
            at + "pathOptions.reversed: unknown key");
}

}  // namespace
}  // namespace aehost
