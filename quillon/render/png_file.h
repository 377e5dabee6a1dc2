// PNG files of bitmaps (libpng): the bytes of a picture to save, and the
// pixels of a picture that a material shows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "quillon/render/bitmap.h"

namespace quillon::render {

// The PNG bytes of colour (grey or RGB), with alpha's channel as the PNG's
// alpha when it is given, at 8 or 16 bits a channel. False with a reason when
// libpng fails or memory runs out.
bool EncodePng(const Bitmap& colour, const Bitmap* alpha, int32_t bitsPerChannel, std::string* bytes,
               std::string* error);

// Reads a PNG file into an RGB bitmap of 8 bits a channel with an alpha
// bitmap beside it. False with "<path>: <reason>" for a missing, unreadable or
// damaged file.
bool DecodePngFile(const std::string& path, Bitmap* picture, std::string* error);
// The same for the bytes of a PNG that a caller handed over under name.
bool DecodePngBytes(const std::vector<uint8_t>& bytes, const std::string& name, Bitmap* picture, std::string* error);

}  // namespace quillon::render
