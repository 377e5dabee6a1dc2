// The bitmap shaders of an open document pointed at the files a caller sent, and the lists
// of the document's pictures, against the engine library of the build.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/solid_plane.h"
#include "plugin/session/asset_lists.h"
#include "plugin/session/document_params.h"
#include "plugin/session/owned_container.h"
#include "plugin/session/session_commands.h"
#include "plugin/session/tests/red_plane_document.h"
#include "plugin/session/tests/test_engine.h"
#include "plugin/session/texture_files.h"
#include "plugin/session/texture_relink.h"

namespace {

std::string PathText(const Filename& file) {
  OwnedString text;
  t_ORYOS_Fn->GetString(text.get(), &file);
  return ToUtf8(*text.get());
}

// The file the bitmap shader shows.
std::string ShaderFile(BaseShader* shader) {
  const ParamLevel level{BitmapShaderParam_File, 0, 0};
  const ParamId id{&level, 1, 0};
  DataValue value{DataKind_Empty, 0, {0}};
  std::string path;
  if (t_ORYOS_At->GetParameter(shader, &id, &value, 0) && t_ORYOS_Gd->GetFilename(&value))
    path = PathText(*t_ORYOS_Gd->GetFilename(&value));
  t_ORYOS_Gd->Free(&value);
  return path;
}

void SetFileParam(SceneNode* node, int32_t id, const char* path) {
  const OwnedFilename file(path);
  const ParamLevel level{id, 0, 0};
  const ParamId param{&level, 1, 0};
  DataValue value{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetFilename(&value, &file.value);
  t_ORYOS_At->SetParameter(node, &param, &value, 0);
  t_ORYOS_Gd->Free(&value);
}

std::vector<std::string> Strings(ParamContainer& list) {
  std::vector<std::string> strings;
  for (int32_t index = 0; t_ORYOS_Bc->FindIndex(&list, index, 0) >= 0; ++index) {
    OwnedString text;
    t_ORYOS_Bc->GetString(&list, text.get(), index, nullptr);
    strings.push_back(ToUtf8(*text.get()));
  }
  return strings;
}

class TextureRelink : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
  void SetUp() override {
    ASSERT_TRUE(caller.SelectRender(1));
    render = caller.CurrentRender();
    render->FreeDocument();
    render->document = RedPlaneDocument();
    material = t_ORYOS_Bd->GetFirstMaterial(render->document);
  }

  BaseShader* Channel(int32_t channel, const char* path) {
    const OwnedFilename file(path);
    return SetChannelBitmap(material, MaterialChannel_Color + channel, file.value);
  }

  // Sends a few bytes under `name` into memory, and gives the text of the file they became.
  std::string Send(const char* name) {
    const OwnedFilename file(name);
    void* bytes = std::malloc(4);
    std::memcpy(bytes, "abc", 4);
    EXPECT_TRUE(quillon::SendFile(*render, file.value, &bytes, 4, true));
    OwnedString key(name);
    return PathText(render->textures.at(quillon::TextureKey(*key.get())));
  }

  quillon::SessionThread caller;
  quillon::RenderThread* render = nullptr;
  Material* material = nullptr;
};

TEST_F(TextureRelink, ShadersFindSentFilesByTheLastComponentOfTheirNames) {
  BaseShader* colour = Channel(0, "/scenes/maps/wood.png");
  BaseShader* reflection = Channel(kMaterialChannelReflection, "gloss.png");
  BaseShader* skipped = Channel(8, "wood.png");
  BaseShader* unsent = Channel(5, "/maps/bump.png");
  const std::string wood = Send("wood.png");
  const std::string gloss = Send("gloss.png");
  quillon::RelinkAllMaterials(*render);
  EXPECT_EQ(ShaderFile(colour), wood);
  EXPECT_EQ(ShaderFile(reflection), gloss);
  EXPECT_EQ(ShaderFile(skipped), "wood.png");
  EXPECT_EQ(ShaderFile(unsent), "/maps/bump.png");
}

TEST_F(TextureRelink, AShaderBelowAChannelsShaderIsRelinkedToo) {
  BaseShader* colour = Channel(0, "wood.png");
  BaseShader* below = t_ORYOS_Ba->AllocShader(ShaderType_Bitmap);
  t_ORYOS_At->InsertUnder(below, colour);
  SetFileParam(below, BitmapShaderParam_File, "grain.png");
  const std::string sent = Send("grain.png");
  quillon::RelinkAllMaterials(*render);
  EXPECT_EQ(ShaderFile(below), sent);
  EXPECT_EQ(ShaderFile(colour), "wood.png");
}

TEST_F(TextureRelink, ASendIntoAnOpenSessionRelinksAtOnceAndAClosedOneWaits) {
  BaseShader* colour = Channel(0, "wood.png");
  Send("wood.png");
  EXPECT_EQ(ShaderFile(colour), "wood.png");
  render->sessionOpen = true;
  const std::string sent = Send("wood.png");
  EXPECT_EQ(ShaderFile(colour), sent);
  EXPECT_FALSE(quillon::RelinkShader(nullptr, true, *render));
}

TEST_F(TextureRelink, TheListsNameThePicturesAsNamedAndAsPaths) {
  Channel(0, "wood.png");
  Channel(5, "/maps/bump.png");
  SetFileParam(render->document, DocParam_Path, "/scenes");
  OwnedContainer textures;
  EXPECT_FALSE(quillon::CollectTextures(*render, &textures.value));  // not open yet
  render->sessionOpen = true;
  ASSERT_TRUE(quillon::CollectTextures(*render, &textures.value));
  EXPECT_EQ(Strings(textures.value), (std::vector<std::string>{"wood.png", "/maps/bump.png"}));
  OwnedContainer assets;
  ASSERT_TRUE(quillon::CollectAssets(*render, &assets.value));
  EXPECT_EQ(Strings(assets.value), (std::vector<std::string>{"/scenes/wood.png", "/maps/bump.png"}));
}

TEST_F(TextureRelink, WithoutADocumentAssetsAreEmptyAndTexturesRefused) {
  render->FreeDocument();
  render->sessionOpen = true;
  OwnedContainer list;
  EXPECT_TRUE(quillon::CollectAssets(*render, &list.value));
  EXPECT_TRUE(Strings(list.value).empty());
  EXPECT_FALSE(quillon::CollectTextures(*render, &list.value));
}

}  // namespace
