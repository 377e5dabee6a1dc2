#pragma once
// A document entering a render: a whole document, or an update document that changes one
// part of the open one, told apart by its name (see update_channel.h).
#include <cstdint>

#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// Applies the document named `name` to the render, whose thread must be stopped. The
// document comes from `document` when that is not null (a whole document is taken over;
// an update stays the caller's), else from the `memorySize` bytes at `memoryData` when that
// is not null, else from the file `name`. Each applied update clears the last render's
// result and progress. True when the render has a document afterwards, also when the
// update could not be loaded or changed nothing.
bool UpdateDocument(RenderThread& render, const Filename& name, const void* memoryData, int64_t memorySize,
                    BaseDocument* document);

// What a caller sends: stops the render and applies the document as UpdateDocument does;
// the render is then open when it has a document.
bool SendUpdate(RenderThread& render, const Filename& name, const void* memoryData, int64_t memorySize);

// The scene file `file` loaded as the session loads documents; null when it does not load.
BaseDocument* LoadSessionDocument(const Filename& file);

}  // namespace quillon
