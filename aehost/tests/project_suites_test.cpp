#include "aehost/core/exit_report.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

using ProjectSuitesTest = HostTest;

TEST_F(ProjectSuitesTest, ActiveCompositionAndItsTiming) {
    const AEGP_ItemSuite13* items = ItemSuite();
    const AEGP_CompSuite21* comps = CompSuite();
    AEGP_ItemH item = nullptr;
    ASSERT_EQ(items->AEGP_GetActiveItem(&item), A_Err_NONE);
    EXPECT_EQ(item, nullptr);
    g_host.activeItemId = comp->id;
    ASSERT_EQ(items->AEGP_GetActiveItem(&item), A_Err_NONE);
    AEGP_ItemType type = AEGP_ItemType_NONE;
    ASSERT_EQ(items->AEGP_GetItemType(item, &type), A_Err_NONE);
    EXPECT_EQ(type, AEGP_ItemType_COMP);
    AEGP_CompH compH = nullptr;
    ASSERT_EQ(comps->AEGP_GetCompFromItem(item, &compH), A_Err_NONE);
    EXPECT_EQ(compH, CompHandle(*comp));
    AEGP_MemHandle name = nullptr;
    ASSERT_EQ(items->AEGP_GetItemName(kPlugin, item, &name), A_Err_NONE);
    EXPECT_EQ(TakeText(name), "Main");
    A_long width = 0, height = 0;
    ASSERT_EQ(items->AEGP_GetItemDimensions(item, &width, &height), A_Err_NONE);
    EXPECT_EQ(width, 1920);
    EXPECT_EQ(height, 1080);
    // 25 fps: one frame is 100 units of a scale of 2500.
    A_Time duration{}, frame{};
    ASSERT_EQ(items->AEGP_GetItemDuration(item, &duration), A_Err_NONE);
    EXPECT_EQ(duration.value, 25000);
    EXPECT_EQ(duration.scale, 2500u);
    ASSERT_EQ(comps->AEGP_GetCompFrameDuration(compH, &frame), A_Err_NONE);
    EXPECT_EQ(frame.value, 100);
    EXPECT_EQ(frame.scale, 2500u);
    A_FpLong fps = 0;
    ASSERT_EQ(comps->AEGP_GetCompFramerate(compH, &fps), A_Err_NONE);
    EXPECT_EQ(fps, 25.0);

    // A solid's item is footage, not a composition: no composition, no error.
    AEGP_CompH none = CompHandle(*comp);
    ASSERT_EQ(comps->AEGP_GetCompFromItem(ItemHandle(*FindItem(project, card->sourceId)), &none), A_Err_NONE);
    EXPECT_EQ(none, nullptr);
}

TEST_F(ProjectSuitesTest, LayersInTimelineOrderWithParentsNamesAndFlags) {
    const AEGP_LayerSuite14* layers = LayerSuite();
    AEGP_CompH compH = CompHandle(*comp);
    A_long count = 0;
    ASSERT_EQ(layers->AEGP_GetCompNumLayers(compH, &count), A_Err_NONE);
    EXPECT_EQ(count, 2);
    AEGP_LayerH top = nullptr, parent = nullptr;
    ASSERT_EQ(layers->AEGP_GetCompLayerByIndex(compH, 0, &top), A_Err_NONE);
    EXPECT_EQ(top, LayerHandle(*card));
    EXPECT_NE(layers->AEGP_GetCompLayerByIndex(compH, 2, &top), A_Err_NONE);
    A_long index = -1;
    ASSERT_EQ(layers->AEGP_GetLayerIndex(LayerHandle(*rig), &index), A_Err_NONE);
    EXPECT_EQ(index, 1);
    ASSERT_EQ(layers->AEGP_GetLayerParent(LayerHandle(*card), &parent), A_Err_NONE);
    EXPECT_EQ(parent, LayerHandle(*rig));

    AEGP_MemHandle layerName = nullptr, sourceName = nullptr;
    ASSERT_EQ(layers->AEGP_GetLayerName(kPlugin, LayerHandle(*card), &layerName, &sourceName), A_Err_NONE);
    EXPECT_EQ(TakeText(layerName), "");
    EXPECT_EQ(TakeText(sourceName), "Card");

    A_Boolean is3D = false;
    layers->AEGP_IsLayer3D(LayerHandle(*card), &is3D);
    EXPECT_TRUE(is3D);
    layers->AEGP_IsLayer3D(LayerHandle(*rig), &is3D);
    EXPECT_FALSE(is3D);
    AEGP_LayerFlags flags = 0;
    ASSERT_EQ(layers->AEGP_GetLayerFlags(LayerHandle(*rig), &flags), A_Err_NONE);
    EXPECT_EQ(flags, AEGP_LayerFlag_VIDEO_ACTIVE | AEGP_LayerFlag_NULL_LAYER);
    ASSERT_EQ(layers->AEGP_SetLayerFlag(LayerHandle(*rig), AEGP_LayerFlag_LOCKED, true), A_Err_NONE);
    EXPECT_TRUE(rig->switches.locked);
    EXPECT_NE(layers->AEGP_SetLayerFlag(LayerHandle(*rig), AEGP_LayerFlag_LOCKED | AEGP_LayerFlag_SHY, true),
              A_Err_NONE);
}

TEST_F(ProjectSuitesTest, LayerTimesInBothModes) {
    card->startTime = 2.0;
    card->inPoint = 3.0;
    card->duration = 4.0;
    card->stretch = 2.0;
    const AEGP_LayerSuite14* layers = LayerSuite();
    A_Time t{};
    // Layer time 0 lies at composition time 2 and runs at half speed:
    // composition time 3 is layer time 0.5.
    ASSERT_EQ(layers->AEGP_GetLayerInPoint(LayerHandle(*card), AEGP_LTimeMode_LayerTime, &t), A_Err_NONE);
    EXPECT_EQ(t.value, 1250);
    EXPECT_EQ(t.scale, 2500u);
    ASSERT_EQ(layers->AEGP_GetLayerInPoint(LayerHandle(*card), AEGP_LTimeMode_CompTime, &t), A_Err_NONE);
    EXPECT_EQ(t.value, 7500);
    ASSERT_EQ(layers->AEGP_GetLayerDuration(LayerHandle(*card), AEGP_LTimeMode_LayerTime, &t), A_Err_NONE);
    EXPECT_EQ(t.value, 5000);
    EXPECT_NE(layers->AEGP_GetLayerInPoint(LayerHandle(*card), 7, &t), A_Err_NONE);
    const A_Time in{100, 25}, length{50, 25};  // composition time 4 s, 2 s long
    ASSERT_EQ(layers->AEGP_SetLayerInPointAndDuration(LayerHandle(*card), AEGP_LTimeMode_CompTime, &in, &length),
              A_Err_NONE);
    EXPECT_EQ(card->inPoint, 4.0);
    EXPECT_EQ(card->duration, 2.0);
}

TEST_F(ProjectSuitesTest, LayerToWorldAppliesAnchorScaleAndParent) {
    SetStreamValue(project, *comp, *rig, LayerStream::AnchorPoint, MakeValue(50, 50, 0));
    SetStreamValue(project, *comp, *rig, LayerStream::Position, MakeValue(100, 200, 0));
    SetStreamValue(project, *comp, *card, LayerStream::AnchorPoint, MakeValue(100, 50, 0));
    SetStreamValue(project, *comp, *card, LayerStream::Position, MakeValue(10, 20, 30));
    SetStreamValue(project, *comp, *card, LayerStream::Scale, MakeValue(200, 100, 100));
    A_Matrix4 m{};
    const A_Time zero{0, 2500};
    ASSERT_EQ(LayerSuite()->AEGP_GetLayerToWorldXform(LayerHandle(*card), &zero, &m), A_Err_NONE);
    // The card's corner (0, 0, 0): (-100, -50, 0) scaled by (2, 1, 1), moved by
    // (10, 20, 30) into the rig, then by the rig's (100, 200) - (50, 50).
    const double expected[4][4] = {{2, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-140, 120, 30, 1}};
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) EXPECT_NEAR(m.mat[r][c], expected[r][c], 1e-9) << r << "," << c;
    const A_Time noScale{0, 0};
    EXPECT_NE(LayerSuite()->AEGP_GetLayerToWorldXform(LayerHandle(*card), &noScale, &m), A_Err_NONE);
}

TEST_F(ProjectSuitesTest, WrongKindsAndVanishedObjectsAreRefused) {
    const AEGP_LayerSuite14* layers = LayerSuite();
    A_long count = 0;
    // A layer handle where an item or composition handle belongs.
    EXPECT_NE(layers->AEGP_GetCompNumLayers(MakeHandle<AEGP_CompH>(HandleValue(LayerHandle(*card))), &count),
              A_Err_NONE);
    AEGP_ItemType type = 0;
    EXPECT_NE(ItemSuite()->AEGP_GetItemType(MakeHandle<AEGP_ItemH>(HandleValue(CompHandle(*comp))), &type), A_Err_NONE);
    // A composition handle of a footage item.
    EXPECT_NE(layers->AEGP_GetCompNumLayers(CompHandle(*FindItem(project, card->sourceId)), &count), A_Err_NONE);
    EXPECT_NE(layers->AEGP_GetCompNumLayers(nullptr, &count), A_Err_NONE);
    // A layer that was deleted.
    AEGP_LayerH gone = LayerHandle(*card);
    comp->comp.layers.erase(comp->comp.layers.begin());
    AEGP_LayerIDVal id = 0;
    EXPECT_NE(layers->AEGP_GetLayerID(gone, &id), A_Err_NONE);
    EXPECT_EQ(g_host.misuse.size(), 5u);
    // Null outputs are refused, not written through.
    EXPECT_NE(layers->AEGP_GetCompNumLayers(CompHandle(*comp), nullptr), A_Err_NONE);
}

TEST_F(ProjectSuitesTest, CreationCallsBuildFoldersCompositionsAndLayers) {
    const AEGP_CompSuite21* comps = CompSuite();
    AEGP_ItemH folder = nullptr;
    const std::u16string scenes = u"Scenes", shot = u"Shot", sun = u"Sun", cam = u"Cam", null = u"Null";
    auto u = [](const std::u16string& s) { return reinterpret_cast<const A_UTF16Char*>(s.c_str()); };
    ASSERT_EQ(ItemSuite()->AEGP_CreateNewFolder(u(scenes), nullptr, &folder), A_Err_NONE);
    const A_Ratio square{100, 100}, ntsc{2997, 100};
    const A_Time tenSeconds{299700, 29970};
    AEGP_CompH shotH = nullptr;
    ASSERT_EQ(comps->AEGP_CreateComp(folder, u(shot), 640, 480, &square, &tenSeconds, &ntsc, &shotH), A_Err_NONE);
    Item* created = nullptr;
    ASSERT_EQ(ResolveComp("test", shotH, &created), A_Err_NONE);
    EXPECT_EQ(created->name, "Shot");
    EXPECT_DOUBLE_EQ(created->frameRate, 29.97);
    EXPECT_DOUBLE_EQ(created->duration, 10.0);
    Item* folderItem = nullptr;
    ASSERT_EQ(ResolveItem("test", folder, &folderItem), A_Err_NONE);
    EXPECT_EQ(created->folderId, folderItem->id);
    // 29.97 fps: a frame is 100 units of 2997.
    A_Time frame{};
    comps->AEGP_GetCompFrameDuration(shotH, &frame);
    EXPECT_EQ(frame.scale, 2997u);

    AEGP_LayerH solid = nullptr, camera = nullptr, nullLayer = nullptr;
    const AEGP_ColorVal orange{1.0, 1.0, 0.5, 0.0};
    ASSERT_EQ(comps->AEGP_CreateSolidInComp(u(sun), 64, 32, &orange, shotH, nullptr, &solid), A_Err_NONE);
    AEGP_ItemH source = nullptr;
    LayerSuite()->AEGP_GetLayerSourceItem(solid, &source);
    AEGP_ColorVal back{};
    ASSERT_EQ(FootageSuite()->AEGP_GetSolidFootageColor(source, false, &back), A_Err_NONE);
    EXPECT_EQ(back.alpha, 1.0);
    EXPECT_EQ(back.red, 1.0);
    EXPECT_EQ(back.green, 0.5);
    EXPECT_EQ(back.blue, 0.0);
    ASSERT_EQ(comps->AEGP_CreateCameraInComp(u(cam), A_FloatPoint{320, 240}, shotH, &camera), A_Err_NONE);
    AEGP_ObjectType type = AEGP_ObjectType_NONE;
    LayerSuite()->AEGP_GetLayerObjectType(camera, &type);
    EXPECT_EQ(type, AEGP_ObjectType_CAMERA);
    const A_Time twoSeconds{2, 1};
    ASSERT_EQ(comps->AEGP_CreateNullInComp(u(null), shotH, &twoSeconds, &nullLayer), A_Err_NONE);
    AEGP_LayerFlags flags = 0;
    LayerSuite()->AEGP_GetLayerFlags(nullLayer, &flags);
    EXPECT_TRUE(flags & AEGP_LayerFlag_NULL_LAYER);
    A_long layerCount = 0;
    LayerSuite()->AEGP_GetCompNumLayers(shotH, &layerCount);
    EXPECT_EQ(layerCount, 3);

    AEGP_CompH bad = nullptr;
    EXPECT_NE(comps->AEGP_CreateComp(nullptr, u(shot), 0, 480, &square, &tenSeconds, &ntsc, &bad), A_Err_NONE);
    const A_Ratio zeroRate{0, 1};
    EXPECT_NE(comps->AEGP_CreateComp(nullptr, u(shot), 640, 480, &square, &tenSeconds, &zeroRate, &bad), A_Err_NONE);
    EXPECT_EQ(bad, nullptr);
}

TEST_F(ProjectSuitesTest, FootageFilesAndSignatures) {
    Item& clip = AddFolder(project, "clip");  // made footage by hand: the model has no footage creation call
    clip.kind = ItemKind::Footage;
    clip.footage.kind = FootageKind::Sequence;
    clip.footage.path = "/shots/shot_0009.png";
    clip.footage.fileCount = 3;
    const AEGP_FootageSuite11* footage = FootageSuite();
    AEGP_FootageH handle = nullptr;
    ASSERT_EQ(footage->AEGP_GetMainFootageFromItem(ItemHandle(clip), &handle), A_Err_NONE);
    A_long files = 0, perFrame = 0;
    footage->AEGP_GetFootageNumFiles(handle, &files, &perFrame);
    EXPECT_EQ(files, 3);
    EXPECT_EQ(perFrame, 1);
    AEGP_MemHandle path = nullptr;
    ASSERT_EQ(footage->AEGP_GetFootagePath(kPlugin, handle, 2, 0, &path), A_Err_NONE);
    EXPECT_EQ(TakeText(path), "/shots/shot_0011.png");
    EXPECT_NE(footage->AEGP_GetFootagePath(kPlugin, handle, 3, 0, &path), A_Err_NONE);
    AEGP_FootageSignature sig = 0;
    footage->AEGP_GetFootageSignature(handle, &sig);
    EXPECT_EQ(sig, 0x504E4720u);  // "PNG "
    AEGP_FootageH solid = nullptr;
    footage->AEGP_GetMainFootageFromItem(ItemHandle(*FindItem(project, card->sourceId)), &solid);
    footage->AEGP_GetFootageSignature(solid, &sig);
    EXPECT_EQ(sig, AEGP_FootageSignature_SOLID);
    EXPECT_NE(footage->AEGP_GetFootagePath(kPlugin, solid, 0, 0, &path), A_Err_NONE);
    EXPECT_NE(footage->AEGP_GetMainFootageFromItem(ItemHandle(*comp), &handle), A_Err_NONE);
}

}  // namespace
}  // namespace aehost
