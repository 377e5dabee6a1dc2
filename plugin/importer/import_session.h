#pragma once
// What one import shares between the composition it builds and the conversion of the scene
// objects into layers. Filled when the composition exists, emptied when the import ends;
// the conversion does nothing while `pica` or `document` is null, nor while there is no
// composition: one that failed to be made leaves the session filled, and the passes that run
// whatever the result must then not hand the host a null composition.
#include "plugin/engine/engine_ops.h"
#include "sdk/aegp.h"

struct ImportSession {
  AEGP_PluginID pluginId = 0;
  const SPBasicSuite* pica = nullptr;
  AEGP_CompH composition = nullptr;
  BaseDocument* document = nullptr;
  bool activeCameraFound = false;  // a converted camera is the one the document looks through
};

extern ImportSession g_importSession;

inline bool IsImportRunning() {
  return g_importSession.pica && g_importSession.document && g_importSession.composition;
}
