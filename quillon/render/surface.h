// What a face shows: the colour of its material, or the picture of the
// material's colour channel mapped across it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "quillon/model/document.h"
#include "quillon/render/bitmap.h"

namespace quillon::render {

// An object without a material is drawn in this grey.
constexpr Vector kDefaultColour{0.8, 0.8, 0.8};

struct Surface {
  Vector colour = kDefaultColour;
  std::shared_ptr<const Bitmap> picture;  // null: the colour alone
};

// The surface of object: the material of the last texture tag on the object,
// else on the nearest object above it that has one. A picture that cannot be
// read leaves the colour and adds "<path>: <reason>" to missing, once.
// Relative picture paths are taken from assetFolder when it is not empty.
Surface SurfaceOf(const Object& object, const Document& document, const std::string& assetFolder,
                  std::vector<std::string>& missing);

// The colour and alpha of the picture at (u, v), u from the left and v from
// the top edge, both 0 to 1: the nearest texel, the edges held beyond.
void SamplePicture(const Bitmap& picture, double u, double v, float rgb[3], float* alpha);

}  // namespace quillon::render
