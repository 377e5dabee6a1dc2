// Pictures that materials show, read once per path and kept until the caches
// are flushed or the texture is invalidated. Safe to use from several render
// threads at once.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "quillon/render/bitmap.h"

namespace quillon::render {

// The picture at path (the bytes of memory when it is not null: a file a
// caller sent), or null with the reason in error when it cannot be read. A
// failure is not kept: the next render looks again.
std::shared_ptr<const Bitmap> TextureAt(const std::string& path, const std::vector<uint8_t>* memory,
                                        std::string* error);
// Forgets every picture whose path is name or ends in "/" and name.
void ForgetTexture(const std::string& name);
void ForgetAllTextures();

}  // namespace quillon::render
