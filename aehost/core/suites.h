// The function tables of every suite the host serves.
#pragma once

#include "sdk/aegp.h"

namespace aehost {

const AEGP_RegisterSuite7* RegisterSuite();
const AEGP_CommandSuite1* CommandSuite();
const AEGP_FileImportManagerSuite3* FileImportManagerSuite();
const AEGP_UtilitySuite13* UtilitySuite();
const AEGP_PersistentDataSuite3* PersistentDataSuite();
const PFAppSuite7* AppSuite();
const PF_ANSICallbacksSuite1* AnsiSuite();
const AEGP_ProjSuite9* ProjSuite();
const AEGP_ItemSuite13* ItemSuite();
const AEGP_CompSuite21* CompSuite();
const AEGP_FootageSuite11* FootageSuite();
const AEGP_LayerSuite14* LayerSuite();
const AEGP_CameraSuite2* CameraSuite();
const AEGP_LightSuite2* LightSuite();
const AEGP_StreamSuite9* StreamSuite();
const AEGP_DynamicStreamSuite5* DynamicStreamSuite();
const AEGP_KeyframeSuite4* KeyframeSuite();
const AEGP_MarkerSuite2* MarkerSuite();
const AEGP_TextDocumentSuite1* TextDocumentSuite();
const AEGP_LayerMaskSuite7* LayerMaskSuite();
const AEGP_MaskOutlineSuite3* MaskOutlineSuite();
const PF_PathDataSuite1* PathDataSuite();
const AEGP_ShapeLayerSuite3* ShapeLayerSuite();
const AEGP_AnimatedShapeSuite2* AnimatedShapeSuite();
const AEGP_GuidSuite2* GuidSuite();
const AEGP_TextLayerSuite2* TextLayerSuite();

}  // namespace aehost
