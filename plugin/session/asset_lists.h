#pragma once
// The files a render's open document needs, for a caller in the plug-in's process: as the
// document names them, or as paths on the disk.
#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// The folder the document was loaded from, by which the engine's texture cache knows its
// pictures and relative picture names are found; empty when the session noted none.
void DocumentFolderOf(BaseDocument* document, Filename* folder);

// `list` gets the path of each file the document needs as a string under 0, 1, 2 ...,
// a relative one taken from the document's folder. True, with nothing listed, without a
// document.
bool CollectAssets(const RenderThread& render, ParamContainer* list);

// `list` gets each picture the document's materials name, as named, as a string under
// 0, 1, 2 ... False without an open document.
bool CollectTextures(const RenderThread& render, ParamContainer* list);

}  // namespace quillon
