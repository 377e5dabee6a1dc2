// Shape contents in the project description: what is read, that it is written
// back the same, and the refusals of a broken description.
#include <gtest/gtest.h>

#include "aehost/model/project_json.h"
#include "model_fixture.h"

namespace aehost {
namespace {

constexpr const char* kContents = R"({"id": 1, "type": "shape", "shapes": [
  {"kind": "group", "name": "Box", "position": [10, 20], "contents": [
    {"kind": "rectangle", "size": [40, 20], "roundness": 5},
    {"kind": "path", "name": "Path", "path": {"keys": [
      {"time": 1, "shape": {"vertices": [[0, 0], [10, 0], [10, 10]], "outTangents": [[1, 2], [0, 0], [0, 0]], "closed": false}},
      {"time": 2, "shape": {"vertices": [[0, 0], [20, 0], [10, 10]]}}]}},
    {"kind": "fill", "color": {"keys": [{"time": 0, "value": [1, 0, 0]}, {"time": 1, "value": [0, 0, 1]}]}},
    {"kind": "stroke", "width": 4, "composite": "under"}]},
  {"kind": "polygon", "points": 6},
  {"kind": "gradientFill", "startColor": [0, 1, 0, 0.5]}]})";

TEST(ShapeJson, ContentsAreReadAsTheHostHoldsThem) {
  const Project project = ReadProject(OneLayerProject(kContents), "test.json");
  const Layer& layer = *project.items.back()->comp.layers.front();
  ASSERT_EQ(layer.shapes.size(), 3u);
  const ShapeElement& group = layer.shapes[0];
  EXPECT_EQ(group.name, "Box");
  EXPECT_EQ(ShapeParamAt(group, ShapeParamIndex(ShapeKind::Group, "position"), 0), MakeValue(10, 20));
  ASSERT_EQ(group.contents.size(), 4u);
  EXPECT_EQ(group.contents[0].name, "Rectangle Path 1");
  const PathStream& path = group.contents[1].path;
  ASSERT_EQ(path.keys.size(), 2u);
  EXPECT_FALSE(path.keys[0].shape.closed);
  EXPECT_EQ(path.keys[0].shape.vertices[0], (PathVertex{0, 0, 0, 0, 1, 2}));
  EXPECT_TRUE(path.keys[1].shape.closed);
  EXPECT_EQ(group.contents[2].params[0].keys.size(), 2u);
  EXPECT_FALSE(group.contents[3].compositeOver);
  EXPECT_TRUE(group.contents[2].compositeOver);
  EXPECT_EQ(layer.shapes[1].kind, ShapeKind::Polygon);
  EXPECT_EQ(ShapeParamAt(layer.shapes[2], ShapeParamIndex(ShapeKind::GradientFill, "startColor"), 0),
            MakeValue(0, 1, 0, 0.5));
}

TEST(ShapeJson, ContentsAreWrittenBackTheSame) {
  const Project project = ReadProject(OneLayerProject(kContents), "test.json");
  const std::string written = WriteProject(project);
  const Project back = ReadProject(written, "written");
  EXPECT_EQ(back.items.back()->comp.layers.front()->shapes, project.items.back()->comp.layers.front()->shapes);
  EXPECT_EQ(WriteProject(back), written);
}

TEST(ShapeJson, BrokenContentsAreRefusedWithTheirPath) {
  const std::string at = "test.json: comps[0].layers[0].";
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "shapes": []})")), at + "shapes: only shape layers have shape contents");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "shape", "shapes": [{"kind": "circle"}]})")),
            at + "shapes[0].kind: \"circle\" is not one of \"group\", \"path\", \"rectangle\", \"ellipse\", "
                 "\"star\", \"polygon\", \"fill\", \"stroke\", \"gradientFill\"");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "shape", "shapes": [{"kind": "fill", "width": 3}]})")),
            at + "shapes[0].width: unknown key");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "shape", "shapes": [{"kind": "path"}]})")),
            at + "shapes[0]: missing \"path\"");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "shape", "shapes": [{"kind": "path", "path":
              {"vertices": [[0, 0], [1, 1]], "inTangents": [[0, 0]]}}]})")),
            at + "shapes[0].path.inTangents: expected one tangent for each vertex");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "shape", "shapes": [{"kind": "fill", "composite": "above"}]})")),
            at + "shapes[0].composite: \"above\" is not one of \"over\", \"under\"");
  EXPECT_EQ(Refusal(OneLayerProject(R"({"id": 1, "type": "shape", "shapes": [{"kind": "ellipse", "size": [1]}]})")),
            at + "shapes[0].size: expected 2 numbers");
}

}  // namespace
}  // namespace aehost
