// What the conversion of one scene to glTF carries from step to step: the document, the model
// being filled, where each object and material went, and the account of what was converted
// and what was left out, which the summary reports.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <tiny_gltf.h>

#include "quillon/model/document.h"

namespace quillon::gltf {

struct ConversionOptions {
  // Frames a second by which marker times and the frame range are counted; 0: the document's.
  double frameRate = 0.0;
  // The folder against which relative image paths of the scene are read.
  std::string sceneFolder;
  // The name of the glTF scene and animation when the document has none.
  std::string sceneName;
};

struct ConversionSummary {
  int nodes = 0;
  int cameras = 0;
  int lights = 0;
  int planes = 0;
  int splineMeshes = 0;
  int materials = 0;
  int textures = 0;
  int animatedNodes = 0;
  int channels = 0;
  int keys = 0;
  int markers = 0;
  double frameRate = 0.0;
  int firstFrame = 0;
  int lastFrame = 0;
  // One entry a thing that glTF does not carry or that could not be read, with the reason.
  std::vector<std::string> leftOut;
};

struct Conversion {
  Document& document;
  ConversionOptions options;
  tinygltf::Model model;
  ConversionSummary summary;
  // glTF time 0: the document's first frame, or an earlier key.
  BaseTime origin;
  // The glTF node of each object, and the glTF material of each scene material.
  std::map<const Object*, int> nodeOf;
  std::map<const Node*, int> materialOf;
};

// The object's name in quotes, for the summary.
std::string Quoted(const Node& node);
// Seconds from the conversion's origin to time.
double GltfSeconds(const Conversion& conversion, const BaseTime& time);

}  // namespace quillon::gltf
