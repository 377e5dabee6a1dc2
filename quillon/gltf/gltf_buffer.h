// The one binary buffer of a glTF model and the views and accessors into it. Every view
// starts on a 4-byte boundary, as accessors of floats and 32-bit indices need.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <tiny_gltf.h>

namespace quillon::gltf {

// A number of the scene that a 32-bit float of a glTF accessor cannot hold.
struct BeyondFloatRange : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The value as the 32-bit float that accessors hold; throws BeyondFloatRange for one beyond
// their range, which a conversion would otherwise turn into an infinity no reader accepts.
float GltfFloat(double value);

// Appends bytes as a buffer view of their own; `target` is the view's GL target or 0.
int AddBufferView(tinygltf::Model& model, std::string_view bytes, int target);
// An accessor of `components` floats an element (1 scalar, 2, 3 or 4 a vector) over
// `values`, with its minimum and maximum, which positions and animation times must carry.
int AddFloatAccessor(tinygltf::Model& model, const std::vector<float>& values, int components, int target);
// An accessor of triangle indices.
int AddIndexAccessor(tinygltf::Model& model, const std::vector<uint32_t>& indices);

}  // namespace quillon::gltf
