#pragma once
// One render of the session: the thread that renders, and the record of everything that
// belongs to that render (document, bitmap, read buffers, textures and flags). The record
// is made by SelectRender with the start values below and owned by the command object's
// map of renders.
#include <atomic>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "plugin/engine/engine_ops.h"
#include "plugin/session/ory_thread.h"
#include "plugin/session/spin_lock.h"

namespace quillon {

class RenderThread : public ORYThread {
 public:
  RenderThread() = default;
  ~RenderThread() override;

  // The render into `bitmap`, with the document's active render settings.
  void Main() override;
  const char* GetThreadName() override { return "Render Session Thread"; }

  // Ends a running render and returns when it has; one stopper at a time.
  void StopThread();
  // Frees the bitmap, the document, the read buffers and the textures.
  void DestroyContents();
  // Frees the document alone with the engine's FreeDocument on the engine's main thread
  // (through its job queue, or directly on it), and returns when it is freed: a release of
  // the render does so.
  void FreeDocument();
  // The same without waiting for it: the replacement of the document hands the old one over.
  void FreeDocumentLater();

  Bitmap* bitmap = nullptr;
  SpinLock stateLock;  // guards readers and the flags closePending to destroyPending
  SpinLock stopLock;
  std::atomic<int32_t> renderResult{0};  // written by the render, read by any caller
  BaseDocument* document = nullptr;
  uint8_t* previousFrame = nullptr;  // the last frame handed out, width x height pixels
  uint8_t* lineBuffer = nullptr;     // one line of pixels
  int32_t width = 0;
  int32_t height = 0;
  std::atomic<int32_t> renderStage{0};
  std::atomic<double> progress{0.0};
  int32_t bytesPerChannel = 1;
  int32_t readers = 0;
  bool closePending = false;
  bool cloning = false;
  bool busy = false;
  bool destroyPending = false;
  // Texture files that the caller sent, by the text of their names.
  std::unordered_map<std::u16string, Filename> textures;
  std::atomic<bool> dirty{true};
  bool keepCaches = false;
  bool sessionOpen = false;
};

}  // namespace quillon
