#include "quillon/gltf/conversion.h"

namespace quillon::gltf {

std::string Quoted(const Node& node) { return "\"" + ToUtf8(node.name) + "\""; }

double GltfSeconds(const Conversion& conversion, const BaseTime& time) {
  return Seconds(time) - Seconds(conversion.origin);
}

}  // namespace quillon::gltf
