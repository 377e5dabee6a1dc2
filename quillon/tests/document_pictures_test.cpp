// The picture files of a document: its texture list (table Bd) and its assets (table Ge).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plugin/exporter/scene_ids.h"
#include "quillon/tests/engine_tables.h"

namespace quillon {
namespace {

using testing::At;
using testing::Ba;
using testing::Bc;
using testing::Bd;
using testing::Bl;
using testing::Fn;
using testing::Gd;
using testing::Ge;
using testing::Mt;

class DocumentPicturesTest : public ::testing::Test {
 protected:
  BaseDocument* document = Bd()->AllocDocument();
  ParamContainer list{};

  DocumentPicturesTest() { Bc()->InitContainer(&list, 0, 0); }
  ~DocumentPicturesTest() override {
    Bc()->FreeContainer(&list);
    Ge()->FreeDocument(document);
  }

  Material* lastMaterial = nullptr;

  // A bitmap shader in the material's list, or below another shader.
  BaseShader* Bitmap(SceneNode* parent, const char* path) {
    BaseShader* shader = Ba()->AllocShader(ShaderType_Bitmap);
    if (At()->IsKindOf(parent, NodeKind_Material))
      At()->InsertShader(parent, shader, nullptr);
    else
      At()->InsertUnder(shader, parent);
    Filename file{};
    Fn()->SetFromCString(&file, path);
    Bc()->SetFilename(Bl()->GetDataInstance(shader), BitmapShaderParam_File, &file);
    Fn()->FilenameFree(&file);
    return shader;
  }

  Material* MaterialWith(int32_t channel, const char* path) {
    Material* material = Mt()->AllocMaterial(MaterialType_Standard);
    Bd()->InsertMaterial(document, material, lastMaterial, 0);
    lastMaterial = material;
    Bc()->SetLink(Bl()->GetDataInstance(material), MaterialChannel_Color + channel, Bitmap(material, path));
    return material;
  }

  // The paths under 0, 1, 2 ... and the kind each entry has.
  std::vector<std::string> Entries(int32_t kind) {
    std::vector<std::string> paths;
    for (int32_t index = 0; Bc()->FindIndex(&list, index, 0) >= 0; ++index) {
      DataValue* value = Bc()->GetData(&list, index);
      EXPECT_EQ(value->kind, kind) << "entry " << index;
      const Filename* file = Gd()->GetFilename(value);
      paths.push_back(file ? Path(*file) : std::string("(none)"));
    }
    return paths;
  }

  static std::string Path(const Filename& file) {
    testing::Text text;
    Fn()->GetString(&text.value, &file);
    return text.Utf8();
  }
};

TEST_F(DocumentPicturesTest, TheTextureListNamesEachPictureOnceAsNamed) {
  Material* wood = MaterialWith(0, "wood.png");
  MaterialWith(5, "/maps/bump.png");
  MaterialWith(0, "wood.png");
  // A picture below a channel's shader counts too.
  Bitmap(Ba()->GetChannelShader(Mt()->GetChannel(wood, 0)), "grain/fine.png");
  Bd()->GetTextureList(&list, document, 0, 0);
  EXPECT_EQ(Entries(DataKind_TextureFile),
            (std::vector<std::string>{"wood.png", "grain/fine.png", "/maps/bump.png"}));
}

TEST_F(DocumentPicturesTest, AssetsTakeRelativePathsFromTheFolder) {
  MaterialWith(0, "wood.png");
  MaterialWith(2, "/maps/bump.png");
  Filename folder{};
  Fn()->SetFromCString(&folder, "/scenes/tex");
  ASSERT_TRUE(Ge()->GetAssets(document, 0, &list, &folder, kAssetsPictures, 0));
  Fn()->FilenameFree(&folder);
  EXPECT_EQ(Entries(DataKind_Filename), (std::vector<std::string>{"/scenes/tex/wood.png", "/maps/bump.png"}));
}

TEST_F(DocumentPicturesTest, AssetsWithoutAFolderOrPicturesFlag) {
  MaterialWith(0, "wood.png");
  ASSERT_TRUE(Ge()->GetAssets(document, 0, &list, nullptr, 0, 0));
  EXPECT_TRUE(Entries(DataKind_Filename).empty());
  ASSERT_TRUE(Ge()->GetAssets(document, 0, &list, nullptr, kAssetsPictures, 0));
  EXPECT_EQ(Entries(DataKind_Filename), (std::vector<std::string>{"wood.png"}));
}

TEST_F(DocumentPicturesTest, NullArgumentsAreRefused) {
  MaterialWith(0, "wood.png");
  EXPECT_FALSE(Ge()->GetAssets(nullptr, 0, &list, nullptr, kAssetsPictures, 0));
  EXPECT_FALSE(Ge()->GetAssets(document, 0, nullptr, nullptr, kAssetsPictures, 0));
  Bd()->GetTextureList(nullptr, document, 0, 0);
  Bd()->GetTextureList(&list, nullptr, 0, 0);
  Material* foreign = Mt()->AllocMaterial(MaterialType_Standard);
  Bd()->GetTextureList(&list, reinterpret_cast<BaseDocument*>(foreign), 0, 0);
  Bl()->FreeNode(foreign);
  EXPECT_TRUE(Entries(DataKind_TextureFile).empty());
}

}  // namespace
}  // namespace quillon
