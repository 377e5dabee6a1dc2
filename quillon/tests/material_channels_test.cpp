// The channels of a material (table Mt) and the shaders they link to (table Ba).
#include <gtest/gtest.h>

#include "plugin/exporter/scene_ids.h"
#include "quillon/tests/engine_tables.h"

namespace quillon {
namespace {

using testing::At;
using testing::Ba;
using testing::Bc;
using testing::Bl;
using testing::Mt;

class MaterialChannelsTest : public ::testing::Test {
 protected:
  Material* material = Mt()->AllocMaterial(MaterialType_Standard);
  NodeArray* array = At()->AllocNodeArray();

  ~MaterialChannelsTest() override {
    At()->FreeNodeArray(array);
    Bl()->FreeNode(material);
  }

  BaseShader* LinkChannel(int32_t index) {
    BaseShader* shader = Ba()->AllocShader(ShaderType_Bitmap);
    At()->InsertShader(material, shader, nullptr);
    Bc()->SetLink(Bl()->GetDataInstance(material), MaterialChannel_Color + index, shader);
    return shader;
  }
};

TEST_F(MaterialChannelsTest, AChannelGivesTheShaderItsParameterLinksTo) {
  BaseShader* colour = LinkChannel(0);
  BaseShader* bump = LinkChannel(5);
  EXPECT_EQ(Ba()->GetChannelShader(Mt()->GetChannel(material, 0)), colour);
  EXPECT_EQ(Ba()->GetChannelShader(Mt()->GetChannel(material, 5)), bump);
  EXPECT_EQ(Mt()->GetChannel(material, 1), nullptr);
}

TEST_F(MaterialChannelsTest, AChannelWhoseShaderIsFreedGivesNone) {
  BaseShader* colour = LinkChannel(0);
  Bl()->FreeNode(colour);
  EXPECT_EQ(Ba()->GetChannelShader(Mt()->GetChannel(material, 0)), nullptr);
}

TEST_F(MaterialChannelsTest, TheReflectionListsTheShaderOfItsChannel) {
  ASSERT_TRUE(Mt()->GetReflectionShaders(material, array));
  EXPECT_EQ(At()->GetNodeArrayCount(array), 0);
  BaseShader* reflection = LinkChannel(kMaterialChannelReflection);
  ASSERT_TRUE(Mt()->GetReflectionShaders(material, array));
  ASSERT_EQ(At()->GetNodeArrayCount(array), 1);
  EXPECT_EQ(At()->GetNodeArrayItem(array, 0), reflection);
}

TEST_F(MaterialChannelsTest, NullAndForeignArgumentsGiveNothing) {
  BaseShader* shader = LinkChannel(0);
  EXPECT_EQ(Mt()->GetChannel(nullptr, 0), nullptr);
  EXPECT_EQ(Mt()->GetChannel(material, -1), nullptr);
  EXPECT_EQ(Mt()->GetChannel(reinterpret_cast<Material*>(shader), 0), nullptr);
  EXPECT_EQ(Ba()->GetChannelShader(nullptr), nullptr);
  EXPECT_FALSE(Mt()->GetReflectionShaders(nullptr, array));
  EXPECT_FALSE(Mt()->GetReflectionShaders(material, nullptr));
}

}  // namespace
}  // namespace quillon
