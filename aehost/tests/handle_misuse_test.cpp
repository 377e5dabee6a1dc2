// Wrong, forged and disposed handles of every kind: each call refuses them with
// an error code and leaves the host running.
#include <cstdint>
#include <vector>

#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

const A_UTF16Char kName[] = {'n', 0};

class HandleMisuseTest : public HostTest {
protected:
    // Values that are not a live handle of the kind a call expects: null,
    // untagged, the right tag on an id that does not exist, the largest
    // values, and live handles of every other kind.
    std::vector<std::uintptr_t> BadValues(HandleKind expected) {
        std::vector<std::uintptr_t> values = {0, 1, 0x10, ~std::uintptr_t{0}, ~std::uintptr_t{0xF} | 3,
                                              IdHandle(expected, 9999)};
        AEGP_StreamRefH stream = nullptr;
        StreamSuite()->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_POSITION, &stream);
        AEGP_MarkerValP marker = nullptr;
        MarkerSuite()->AEGP_NewMarker(&marker);
        AEGP_StreamRefH disposed = nullptr;
        StreamSuite()->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_SCALE, &disposed);
        StreamSuite()->AEGP_DisposeStream(disposed);
        const std::uintptr_t live[] = {HandleValue(ItemHandle(*comp)), HandleValue(CompHandle(*comp)),
                                       HandleValue(LayerHandle(*card)), HandleValue(stream), HandleValue(marker),
                                       HandleValue(disposed)};
        for (std::uintptr_t value : live)
            if (IdOfHandle(expected, value) < 0 && (value & 0xF) != static_cast<std::uintptr_t>(expected))
                values.push_back(value);
        values.push_back(HandleValue(disposed));
        return values;
    }
};

TEST_F(HandleMisuseTest, ItemsCompositionsAndFootage) {
    for (std::uintptr_t v : BadValues(HandleKind::Item)) {
        SCOPED_TRACE(v);
        AEGP_ItemType type = 0;
        A_long w = 0, h = 0;
        AEGP_CompH compH = nullptr;
        AEGP_FootageH footage = nullptr;
        EXPECT_NE(ItemSuite()->AEGP_GetItemType(MakeHandle<AEGP_ItemH>(v), &type), A_Err_NONE);
        EXPECT_NE(ItemSuite()->AEGP_GetItemDimensions(MakeHandle<AEGP_ItemH>(v), &w, &h), A_Err_NONE);
        EXPECT_NE(CompSuite()->AEGP_GetCompFromItem(MakeHandle<AEGP_ItemH>(v), &compH), A_Err_NONE);
        EXPECT_NE(FootageSuite()->AEGP_GetMainFootageFromItem(MakeHandle<AEGP_ItemH>(v), &footage), A_Err_NONE);
    }
    for (std::uintptr_t v : BadValues(HandleKind::Comp)) {
        SCOPED_TRACE(v);
        A_long n = 0;
        A_FpLong fps = 0;
        AEGP_LayerH layer = nullptr;
        EXPECT_NE(LayerSuite()->AEGP_GetCompNumLayers(MakeHandle<AEGP_CompH>(v), &n), A_Err_NONE);
        EXPECT_NE(CompSuite()->AEGP_GetCompFramerate(MakeHandle<AEGP_CompH>(v), &fps), A_Err_NONE);
        EXPECT_NE(CompSuite()->AEGP_CreateNullInComp(kName, MakeHandle<AEGP_CompH>(v), nullptr, &layer), A_Err_NONE);
        EXPECT_EQ(layer, nullptr);
    }
    for (std::uintptr_t v : BadValues(HandleKind::Footage)) {
        AEGP_FootageSignature sig = 0;
        EXPECT_NE(FootageSuite()->AEGP_GetFootageSignature(MakeHandle<AEGP_FootageH>(v), &sig), A_Err_NONE) << v;
    }
}

TEST_F(HandleMisuseTest, LayersStreamsKeysAndMarkers) {
    const A_Time zero{0, 1};
    for (std::uintptr_t v : BadValues(HandleKind::Layer)) {
        SCOPED_TRACE(v);
        A_Matrix4 m{};
        AEGP_StreamRefH stream = nullptr;
        A_Boolean legal = false;
        EXPECT_NE(LayerSuite()->AEGP_GetLayerToWorldXform(MakeHandle<AEGP_LayerH>(v), &zero, &m), A_Err_NONE);
        EXPECT_NE(LayerSuite()->AEGP_SetLayerFlag(MakeHandle<AEGP_LayerH>(v), AEGP_LayerFlag_LOCKED, true), A_Err_NONE);
        EXPECT_NE(StreamSuite()->AEGP_IsStreamLegal(MakeHandle<AEGP_LayerH>(v), 1, &legal), A_Err_NONE);
        EXPECT_NE(StreamSuite()->AEGP_GetNewLayerStream(kPlugin, MakeHandle<AEGP_LayerH>(v), 1, &stream), A_Err_NONE);
        EXPECT_EQ(stream, nullptr);
    }
    for (std::uintptr_t v : BadValues(HandleKind::Stream)) {
        SCOPED_TRACE(v);
        AEGP_StreamValue2 value{};
        A_long n = 0, index = 0;
        AEGP_AddKeyframesInfoH batch = nullptr;
        EXPECT_NE(StreamSuite()->AEGP_GetNewStreamValue(kPlugin, MakeHandle<AEGP_StreamRefH>(v), 1, &zero, false,
                                                        &value),
                  A_Err_NONE);
        EXPECT_NE(KeyframeSuite()->AEGP_GetStreamNumKFs(MakeHandle<AEGP_StreamRefH>(v), &n), A_Err_NONE);
        EXPECT_NE(KeyframeSuite()->AEGP_InsertKeyframe(MakeHandle<AEGP_StreamRefH>(v), 1, &zero, &index), A_Err_NONE);
        EXPECT_NE(KeyframeSuite()->AEGP_StartAddKeyframes(MakeHandle<AEGP_StreamRefH>(v), &batch), A_Err_NONE);
        EXPECT_NE(StreamSuite()->AEGP_DisposeStream(MakeHandle<AEGP_StreamRefH>(v)), A_Err_NONE);
    }
    for (std::uintptr_t v : BadValues(HandleKind::Marker)) {
        A_Time duration{};
        EXPECT_NE(MarkerSuite()->AEGP_GetMarkerDuration(MakeHandle<AEGP_MarkerValP>(v), &duration), A_Err_NONE) << v;
        EXPECT_NE(MarkerSuite()->AEGP_DisposeMarker(MakeHandle<AEGP_MarkerValP>(v)), A_Err_NONE) << v;
    }
    for (std::uintptr_t v : BadValues(HandleKind::AddKeyframes)) {
        EXPECT_NE(KeyframeSuite()->AEGP_EndAddKeyframes(true, MakeHandle<AEGP_AddKeyframesInfoH>(v)), A_Err_NONE) << v;
    }
}

TEST_F(HandleMisuseTest, CallsWithoutAnOpenProjectAreRefused) {
    g_host.project = nullptr;
    AEGP_ProjectH projectH = nullptr;
    AEGP_ItemH item = nullptr;
    EXPECT_NE(ProjSuite()->AEGP_GetProjectByIndex(0, &projectH), A_Err_NONE);
    EXPECT_NE(ItemSuite()->AEGP_CreateNewFolder(kName, nullptr, &item), A_Err_NONE);
    ASSERT_EQ(ItemSuite()->AEGP_GetActiveItem(&item), A_Err_NONE);
    EXPECT_EQ(item, nullptr);
}

}  // namespace
}  // namespace aehost
