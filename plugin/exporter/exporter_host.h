#pragma once
// The host's suites as the exporter calls them, each at the version its calls were written
// against, taken from the calling thread's frame.
#include <string>

#include "plugin/host/cti.h"
#include "sdk/aegp.h"

const AEGP_LayerSuite13* LayerSuite13();
const AEGP_LayerSuite14* LayerSuite14();
const AEGP_StreamSuite9* StreamSuite9();
const AEGP_KeyframeSuite4* KeyframeSuite4();
const AEGP_CompSuite15* CompSuite15();
const AEGP_CompSuite19* CompSuite19();
const AEGP_CompSuite21* CompSuite21();
const AEGP_ItemSuite13* ItemSuite13();
const AEGP_FootageSuite11* FootageSuite11();
const AEGP_TextDocumentSuite1* TextDocumentSuite1();
const AEGP_LayerMaskSuite7* LayerMaskSuite7();
const AEGP_MaskOutlineSuite3* MaskOutlineSuite3();
const PF_PathDataSuite1* PathDataSuite1();
const AEGP_ShapeLayerSuite2* ShapeLayerSuite2();
const AEGP_ShapeLayerSuite3* ShapeLayerSuite3();
const AEGP_AnimatedShapeSuite1* AnimatedShapeSuite1();
const AEGP_AnimatedShapeSuite2* AnimatedShapeSuite2();
const AEGP_GuidSuite2* GuidSuite2();
const AEGP_TextLayerSuite2* TextLayerSuite2();
const AEGP_TextLayerCharacterSuite1* TextLayerCharacterSuite1();

AEGP_PluginID PluginId();

// Records an error in the frame's list, shown only if the command ends in an exception.
void AddError(int32_t code, const char* text);

// The layer's object type, AEGP_ObjectType_NONE if the host does not tell.
AEGP_ObjectType LayerObjectType(AEGP_LayerH layer);

// The layer's own name and its source's name, as UTF-8; empty when there is none.
void LayerNames(AEGP_LayerH layer, std::string* layerName, std::string* sourceName);

// The UTF-8 form of a text that the host handed over in a handle; the handle is freed.
std::string TakeHandleText(AEGP_MemHandle handle);
