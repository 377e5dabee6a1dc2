// End to end: the solids, footage and null layers of the fly-through example as planes,
// materials and null objects. Expected values come from the example's own description: a
// solid's size and colour, a still's single file, a sequence's file count, a movie that plays
// over the composition's 100 frames (4 s at 25 fps).
#include "tests/e2e/optics_scene.h"

namespace {

using namespace optics_test;

class PlaneExport : public SceneTest {
 protected:
  void SetUp() override {
    SceneTest::SetUp();
    dump_ = ExportAndDump(std::string(QAE_EXAMPLES_DIR) + "/flythrough.json", "Flythrough", workDir_);
  }

  // The material that the object's texture tag links to.
  const Json::Value* MaterialOf(const Json::Value& object) {
    for (const Json::Value& tag : object["tags"]) {
      if (tag["type"].asString() != "TagType_Texture") continue;
      EXPECT_EQ(IntParam(tag, "TextureTagParam_Projection"), 6);
      const Json::Value* link = Param(tag, "TextureTagParam_Material");
      if (!link) return nullptr;
      for (const Json::Value& material : dump_["materials"]) {
        if (material["ref"] == (*link)["link"]) return &material;
      }
    }
    return nullptr;
  }

  // The bitmap shader that the material's colour channel links to.
  const Json::Value* ColourShaderOf(const Json::Value& material) {
    const Json::Value* link = Param(material, "MaterialChannel_Color");
    if (!link) return nullptr;
    for (const Json::Value& shader : material["shaders"]) {
      if (shader["ref"] == (*link)["link"]) return &shader;
    }
    return nullptr;
  }

  void ExpectPicture(const std::string& layer, double width, double height, const std::string& file, int lastFrame) {
    SCOPED_TRACE(layer);
    const Json::Value* plane = ObjectNamed(dump_, layer);
    ASSERT_NE(plane, nullptr);
    EXPECT_EQ((*plane)["type"].asString(), "ObjectType_Plane");
    EXPECT_DOUBLE_EQ(FloatParam(*plane, "PlaneParam_Width"), width);
    EXPECT_DOUBLE_EQ(FloatParam(*plane, "PlaneParam_Height"), height);
    EXPECT_EQ(IntParam(*plane, "PlaneParam_SegmentsW"), 1);
    EXPECT_EQ(IntParam(*plane, "PlaneParam_SegmentsH"), 1);
    EXPECT_EQ(IntParam(*plane, "PlaneParam_Orientation"), 5);
    const Json::Value* material = MaterialOf(*plane);
    ASSERT_NE(material, nullptr);
    EXPECT_EQ((*material)["name"].asString(), layer);
    const Json::Value* shader = ColourShaderOf(*material);
    ASSERT_NE(shader, nullptr);
    EXPECT_EQ((*shader)["type"].asString(), "ShaderType_Bitmap");
    const Json::Value* path = Param(*shader, "BitmapShaderParam_File");
    ASSERT_NE(path, nullptr);
    EXPECT_EQ((*path)["filename"].asString(), file);
    EXPECT_EQ(IntParam(*shader, "BitmapShaderParam_LastFrame"), lastFrame);
  }

  Json::Value dump_;
};

TEST_F(PlaneExport, SolidIsAFinelyDividedPlaneWithItsColour) {
  const Json::Value* wall = ObjectNamed(dump_, "Wall");
  ASSERT_NE(wall, nullptr);
  EXPECT_EQ((*wall)["type"].asString(), "ObjectType_Plane");
  EXPECT_DOUBLE_EQ(FloatParam(*wall, "PlaneParam_Width"), 1000.0);
  EXPECT_DOUBLE_EQ(FloatParam(*wall, "PlaneParam_Height"), 500.0);
  EXPECT_EQ(IntParam(*wall, "PlaneParam_SegmentsW"), 20);
  EXPECT_EQ(IntParam(*wall, "PlaneParam_SegmentsH"), 20);
  EXPECT_EQ(IntParam(*wall, "PlaneParam_Orientation"), 5);
  const Json::Value* material = MaterialOf(*wall);
  ASSERT_NE(material, nullptr);
  EXPECT_EQ((*material)["name"].asString(), "Wall");
  EXPECT_EQ((*material)["type"].asString(), "MaterialType_Standard");
  EXPECT_EQ(VectorParam(*material, "MaterialParam_Color"), (std::vector<double>{1.0, 0.0, 0.0}));
  // A plane's material is found by its tag, not by a key.
  EXPECT_EQ(Param(*material, "ParamKey_OriginKey"), nullptr);
}

TEST_F(PlaneExport, StillSequenceAndMovieShowTheirLastFrame) {
  ExpectPicture("Sky", 1920.0, 1080.0, "/footage/sky.png", 0);
  ExpectPicture("Clouds", 1280.0, 720.0, "/footage/clouds/clouds_0001.png", 119);
  ExpectPicture("Plate", 1920.0, 1080.0, "/footage/plate.mov", 99);
}

TEST_F(PlaneExport, NullLayerIsANullObjectWithoutMaterial) {
  const Json::Value* rig = ObjectNamed(dump_, "Rig");
  ASSERT_NE(rig, nullptr);
  EXPECT_EQ((*rig)["type"].asString(), "ObjectType_Null");
  EXPECT_TRUE((*rig)["tags"].empty());
  for (const Json::Value& material : dump_["materials"]) EXPECT_NE(material["name"].asString(), "Rig");
  // One material for each of the four planes, none for the camera or the null.
  EXPECT_EQ(dump_["materials"].size(), 4u);
}

}  // namespace
