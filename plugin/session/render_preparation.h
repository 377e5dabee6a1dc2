#pragma once
// The preparation steps a client may ask for before a render: messages to the objects and
// the scene hook that want to get ready, and one copy of the document made and dropped.
// Both stop the render first and give false whatever happened, so a caller cannot tell a
// step that ran from one that had nothing to do.
#include "plugin/session/render_thread.h"

namespace quillon {

// Object kind, scene hook and message of the objects that prepare themselves for a render.
constexpr int32_t kPreparingObjectKind = 1057221;
constexpr int32_t kPreparingSceneHook = 1057220;
constexpr int32_t kPrepareMessage = 1058675;

// Sends the prepare message to every object of that kind whose display mode 2 is set
// (depth-first), then to the document's scene hook when it has one.
bool RunHookMessages(RenderThread& render);

// Copies the open document whole and frees the copy at once; the document is left as it
// was.
bool CopyDocumentOnce(RenderThread& render);

}  // namespace quillon
