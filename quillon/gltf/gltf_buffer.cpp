#include "quillon/gltf/gltf_buffer.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <cstring>
#include <limits>

namespace quillon::gltf {
namespace {

int AccessorType(int components) {
  switch (components) {
    case 1: return TINYGLTF_TYPE_SCALAR;
    case 2: return TINYGLTF_TYPE_VEC2;
    case 3: return TINYGLTF_TYPE_VEC3;
    default: return TINYGLTF_TYPE_VEC4;
  }
}

std::vector<unsigned char>& BufferBytes(tinygltf::Model& model) {
  if (model.buffers.empty()) model.buffers.emplace_back();
  return model.buffers.front().data;
}

}  // namespace

float GltfFloat(double value) {
  if (!(std::fabs(value) <= std::numeric_limits<float>::max()))
  {
    std::ostringstream text;
    text << "the number " << value << " lies beyond the 32-bit floats that glTF holds";
    throw BeyondFloatRange(text.str());
  }
  return static_cast<float>(value);
}

int AddBufferView(tinygltf::Model& model, std::string_view bytes, int target) {
  std::vector<unsigned char>& data = BufferBytes(model);
  data.resize((data.size() + 3) / 4 * 4, 0);
  tinygltf::BufferView view;
  view.buffer = 0;
  view.byteOffset = data.size();
  view.byteLength = bytes.size();
  view.target = target;
  data.insert(data.end(), bytes.begin(), bytes.end());
  model.bufferViews.push_back(view);
  return static_cast<int>(model.bufferViews.size() - 1);
}

int AddFloatAccessor(tinygltf::Model& model, const std::vector<float>& values, int components, int target) {
  tinygltf::Accessor accessor;
  accessor.bufferView = AddBufferView(
      model, std::string_view(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(float)), target);
  accessor.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
  accessor.type = AccessorType(components);
  accessor.count = values.size() / components;
  accessor.minValues.assign(components, std::numeric_limits<double>::max());
  accessor.maxValues.assign(components, std::numeric_limits<double>::lowest());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t c = i % components;
    accessor.minValues[c] = std::min<double>(accessor.minValues[c], values[i]);
    accessor.maxValues[c] = std::max<double>(accessor.maxValues[c], values[i]);
  }
  model.accessors.push_back(accessor);
  return static_cast<int>(model.accessors.size() - 1);
}

int AddIndexAccessor(tinygltf::Model& model, const std::vector<uint32_t>& indices) {
  tinygltf::Accessor accessor;
  accessor.bufferView =
      AddBufferView(model, std::string_view(reinterpret_cast<const char*>(indices.data()), indices.size() * sizeof(uint32_t)),
                    TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
  accessor.componentType = TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
  accessor.type = TINYGLTF_TYPE_SCALAR;
  accessor.count = indices.size();
  model.accessors.push_back(accessor);
  return static_cast<int>(model.accessors.size() - 1);
}

}  // namespace quillon::gltf
