// A layer of a composition in the host's project model.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "aehost/model/shape_contents.h"
#include "aehost/model/mask.h"
#include "aehost/model/stream.h"
#include "aehost/model/text_document.h"

namespace aehost {

// Numbered like the host's AEGP_ObjectType.
enum class LayerObjectType : int { AudioVideo = 0, Light = 1, Camera = 2, Text = 3, Shape = 4 };

// Numbered like the host's AEGP_LightType and AEGP_CameraType.
enum class LightType : int { Parallel = 0, Spot = 1, Point = 2, Ambient = 3 };
enum class CameraType : int { Perspective = 0, Orthographic = 1 };
enum class FilmSizeUnits : int { None = 0, Horizontal = 1, Vertical = 2, Diagonal = 3 };

// Auto-orientation: cameras and lights may turn towards their point of
// interest (the host's "look at point of interest" switch).
enum class AutoOrient { Off, TowardsPointOfInterest };

// A marker of a layer (time in layer time) or of a composition (composition time).
struct Marker {
  double time = 0.0;
  double duration = 0.0;
  std::string comment;
  bool operator==(const Marker&) const = default;
};

// The layer switches the host's suites report as AEGP_LayerFlags.
struct LayerSwitches {
  bool video = true;
  bool audio = false;
  bool locked = false;
  bool shy = false;
  bool solo = false;
  bool threeD = false;
  bool adjustment = false;
  bool motionBlur = false;
  bool nullLayer = false;  // a null: a solid-like source that is never drawn
  AutoOrient autoOrient = AutoOrient::Off;
  bool operator==(const LayerSwitches&) const = default;
};

struct CameraSettings {
  CameraType type = CameraType::Perspective;
  double filmSize = 36.0 * 72.0 / 25.4;  // points; 36 mm
  FilmSizeUnits filmSizeUnits = FilmSizeUnits::Horizontal;
  bool operator==(const CameraSettings&) const = default;
};

struct LightSettings {
  LightType type = LightType::Spot;
  bool operator==(const LightSettings&) const = default;
};

struct Layer {
  int id = 0;             // unique in the project, never 0
  std::string name;       // empty: the source's name is shown
  LayerObjectType objectType = LayerObjectType::AudioVideo;
  int sourceId = 0;       // item id of the source (composition or footage), 0 for none
  LayerSwitches switches;
  // Times in composition seconds: where layer time 0 lies, and the visible
  // span. Stretch is a factor: 2 plays at half speed.
  double startTime = 0.0;
  double inPoint = 0.0;
  double duration = 0.0;
  double stretch = 1.0;
  int parentId = 0;       // layer id of the parent in the same composition, 0 for none
  // Position's dimensions are separated: its three followers hold the place instead.
  bool positionSeparated = false;
  std::vector<Marker> markers;
  CameraSettings camera;  // read for camera layers only
  LightSettings light;    // read for light layers only
  SourceText text;        // read for text layers only
  TextPathOptions pathOptions;  // text layers only: the mask the text runs along
  std::vector<Mask> masks;      // not on cameras and lights
  std::vector<ShapeElement> shapes;  // the contents of shape layers, top of the list first
  // Streams given by the project description or set through the suites;
  // a stream that is legal but absent has its default (see DefaultStream).
  std::map<LayerStream, Stream> streams;
};

}  // namespace aehost
