// A scene document as a glTF model: the object tree as nodes with their names and parents,
// cameras, lights, the surfaces of planes and extruded splines with their materials, the
// baked motion and the markers.
#pragma once

#include <string>

#include "quillon/gltf/conversion.h"

namespace quillon::gltf {

struct ConvertedScene {
  tinygltf::Model model;
  ConversionSummary summary;
};

// Converts the document, which is posed at the key times on the way; the copies of its
// generators come along when it has been evaluated (EvaluateDocumentCaches). False with the reason
// when there is nothing to convert (a document without objects) or a number of a surface or
// a key lies beyond what glTF's 32-bit floats hold.
bool ConvertScene(Document& document, const ConversionOptions& options, ConvertedScene& result, std::string* problem);

}  // namespace quillon::gltf
