// The general services of the render session in table Ge: the console, files
// and folders of the engine, caches, and the render itself.
#pragma once

#include "plugin/engine/engine_ops.h"

namespace quillon {

void ConsolePrint(const char* text);
bool DeleteFile(const Filename* file, int32_t reserved);
void FlushCaches();
void InvalidateTexture(const Filename* documentPath, const EngineString* textureName, const Filename* reserved);
void GetEngineFolder(Filename* out, int32_t kind);
int32_t RenderDocument(BaseDocument* document, int32_t reserved1, RenderProgress progress, void* object,
                       Bitmap* bitmap, const ParamContainer* settings, int32_t flags, EngineThread* thread,
                       int32_t reserved2);
void FrameCamera(BaseDocument* document, int32_t mode);

}  // namespace quillon
