#include "plugin/session/open_document.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/session/document_update.h"
#include "plugin/session/texture_relink.h"

namespace quillon {

bool OpenDocument(RenderThread& render, const Filename& file) {
  if (!t_ORYOS_Ge->FileExists(&file, 0)) return false;
  render.StopThread();
  if (!UpdateDocument(render, file, nullptr, 0, nullptr)) return false;
  render.sessionOpen = true;
  RelinkAllMaterials(render);
  return true;
}

}  // namespace quillon
