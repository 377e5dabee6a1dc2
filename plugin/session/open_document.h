#pragma once
// A scene file entering a render as its whole document.
#include "plugin/session/render_thread.h"

namespace quillon {

// Stops the render and makes the scene in `file` the render's document, in place of the
// one it had. True when the render has a document afterwards; the render is then open and
// its picture out of date. False when the file does not exist.
bool OpenDocument(RenderThread& render, const Filename& file);

}  // namespace quillon
