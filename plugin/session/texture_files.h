#pragma once
// Files and pictures that a caller sends into a render: written to the disk, or kept in
// memory under their names (`textures`) for the document's materials to find.
#include <cstdint>

#include "plugin/session/render_thread.h"

namespace quillon {

// Writes `size` bytes at `*data` as the file `name` (a name without a folder goes to the
// engine's "tex" folder), or with `toMemory` keeps them under the name; the render then
// owns the bytes, which must come from malloc, and `*data` becomes null. False for no data,
// or when the file cannot be written.
bool SendFile(RenderThread& render, const Filename& name, void** data, int64_t size, bool toMemory);

// Keeps a picture under `name` as a PNG in memory. `pixels` holds `height` lines of `width`
// pixels, `stride` bytes apart, in the channels and sizes that `format` says (see
// picture_format.h). False for a refused format, an empty picture, or what the engine refuses.
bool SendPicture(RenderThread& render, const Filename& name, const void* pixels, int32_t format, int32_t width,
                 int32_t height, int32_t stride);

// Forgets what was sent under `name` and deletes the file of that name (in the "tex" folder
// when it has no folder) if there is one. False when the file cannot be deleted.
bool RemoveFile(RenderThread& render, const Filename& name);

}  // namespace quillon
