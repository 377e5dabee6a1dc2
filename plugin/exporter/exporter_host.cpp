#include "plugin/exporter/exporter_host.h"

#include "plugin/host/host_text.h"
#include "plugin/text/encodings.h"

namespace {

template <class Table>
const Table* FrameSuite(const char* name, int32_t version) {
  return CurrentCTI()->Suite<Table>(name, version);
}

}  // namespace

std::string TakeHandleText(AEGP_MemHandle handle) {
  std::u16string text;
  if (handle) ReadUtf16Handle(*CurrentCTI(), handle, &text);
  return EncodeUtf8(text);
}

const AEGP_LayerSuite13* LayerSuite13() {
  return FrameSuite<AEGP_LayerSuite13>(kAEGPLayerSuite, kAEGPLayerSuiteVersion13);
}
const AEGP_LayerSuite14* LayerSuite14() {
  return FrameSuite<AEGP_LayerSuite14>(kAEGPLayerSuite, kAEGPLayerSuiteVersion14);
}
const AEGP_StreamSuite9* StreamSuite9() {
  return FrameSuite<AEGP_StreamSuite9>(kAEGPStreamSuite, kAEGPStreamSuiteVersion9);
}
const AEGP_KeyframeSuite4* KeyframeSuite4() {
  return FrameSuite<AEGP_KeyframeSuite4>(kAEGPKeyframeSuite, kAEGPKeyframeSuiteVersion4);
}
const AEGP_CompSuite15* CompSuite15() { return FrameSuite<AEGP_CompSuite15>(kAEGPCompSuite, kAEGPCompSuiteVersion15); }
const AEGP_CompSuite19* CompSuite19() { return FrameSuite<AEGP_CompSuite19>(kAEGPCompSuite, kAEGPCompSuiteVersion19); }
const AEGP_CompSuite21* CompSuite21() { return FrameSuite<AEGP_CompSuite21>(kAEGPCompSuite, kAEGPCompSuiteVersion21); }
const AEGP_ItemSuite13* ItemSuite13() { return FrameSuite<AEGP_ItemSuite13>(kAEGPItemSuite, kAEGPItemSuiteVersion13); }
const AEGP_FootageSuite11* FootageSuite11() {
  return FrameSuite<AEGP_FootageSuite11>(kAEGPFootageSuite, kAEGPFootageSuiteVersion11);
}

const AEGP_TextDocumentSuite1* TextDocumentSuite1() {
  return FrameSuite<AEGP_TextDocumentSuite1>(kAEGPTextDocumentSuite, kAEGPTextDocumentSuiteVersion1);
}

const AEGP_LayerMaskSuite7* LayerMaskSuite7() {
  return FrameSuite<AEGP_LayerMaskSuite7>(kAEGPLayerMaskSuite, kAEGPLayerMaskSuiteVersion7);
}
const AEGP_MaskOutlineSuite3* MaskOutlineSuite3() {
  return FrameSuite<AEGP_MaskOutlineSuite3>(kAEGPMaskOutlineSuite, kAEGPMaskOutlineSuiteVersion3);
}
const PF_PathDataSuite1* PathDataSuite1() { return FrameSuite<PF_PathDataSuite1>(kPFPathDataSuite, kPFPathDataSuiteVersion1); }
const AEGP_ShapeLayerSuite2* ShapeLayerSuite2() {
  return FrameSuite<AEGP_ShapeLayerSuite2>(kAEGPShapeLayerSuite, kAEGPShapeLayerSuiteVersion2);
}
const AEGP_ShapeLayerSuite3* ShapeLayerSuite3() {
  return FrameSuite<AEGP_ShapeLayerSuite3>(kAEGPShapeLayerSuite, kAEGPShapeLayerSuiteVersion3);
}
const AEGP_AnimatedShapeSuite1* AnimatedShapeSuite1() {
  return FrameSuite<AEGP_AnimatedShapeSuite1>(kAEGPAnimatedShapeSuite, kAEGPAnimatedShapeSuiteVersion1);
}
const AEGP_AnimatedShapeSuite2* AnimatedShapeSuite2() {
  return FrameSuite<AEGP_AnimatedShapeSuite2>(kAEGPAnimatedShapeSuite, kAEGPAnimatedShapeSuiteVersion2);
}
const AEGP_GuidSuite2* GuidSuite2() { return FrameSuite<AEGP_GuidSuite2>(kAEGPGuidSuite, kAEGPGuidSuiteVersion2); }
const AEGP_TextLayerSuite2* TextLayerSuite2() {
  return FrameSuite<AEGP_TextLayerSuite2>(kAEGPTextLayerSuite, kAEGPTextLayerSuiteVersion2);
}
const AEGP_TextLayerCharacterSuite1* TextLayerCharacterSuite1() {
  return FrameSuite<AEGP_TextLayerCharacterSuite1>(kAEGPTextLayerCharacterSuite, kAEGPTextLayerCharacterSuiteVersion1);
}

AEGP_PluginID PluginId() { return CurrentCTI()->pluginId; }

void AddError(int32_t code, const char* text) { CurrentCTI()->AddError(code, text); }

AEGP_ObjectType LayerObjectType(AEGP_LayerH layer) {
  AEGP_ObjectType type = AEGP_ObjectType_NONE;
  LayerSuite13()->AEGP_GetLayerObjectType(layer, &type);
  return type;
}

void LayerNames(AEGP_LayerH layer, std::string* layerName, std::string* sourceName) {
  AEGP_MemHandle layerHandle = nullptr, sourceHandle = nullptr;
  LayerSuite13()->AEGP_GetLayerName(PluginId(), layer, &layerHandle, &sourceHandle);
  *layerName = TakeHandleText(layerHandle);
  *sourceName = TakeHandleText(sourceHandle);
}
