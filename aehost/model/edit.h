// Changes to a project the way the host's creation calls make them.
#pragma once

#include <string>

#include "aehost/model/project.h"

namespace aehost {

Item& AddFolder(Project& project, const std::string& name, int folderId = kRootFolderId);

Item& AddComp(Project& project, const std::string& name, int width, int height,
              double pixelAspect, double duration, double frameRate,
              int folderId = kRootFolderId);

// A solid footage item, kept in the "Solids" folder like the host does.
Item& AddSolid(Project& project, const std::string& name, int width, int height,
               const Value& color);

// A new layer of `source` at the top of the composition, over the whole
// composition, at the middle of it.
Layer& AddLayer(Project& project, Item& comp, const Item& source);
Layer& AddSolidLayer(Project& project, Item& comp, const std::string& name, int width,
                     int height, const Value& color);
Layer& AddNullLayer(Project& project, Item& comp, const std::string& name);
// Cameras and lights look at `center` (x, y in composition pixels) and stand
// in front of it at the default camera distance (DefaultCameraZoom).
Layer& AddCameraLayer(Project& project, Item& comp, const std::string& name, double centerX,
                      double centerY);
Layer& AddLightLayer(Project& project, Item& comp, const std::string& name, double centerX,
                     double centerY);

// The layer's own stream for `id`, made from the default if it has none.
Stream& EnsureStream(Project& project, Item& comp, Layer& layer, LayerStream id);

// Sets the static value of a stream (the host's AEGP_SetStreamValue).
void SetStreamValue(Project& project, Item& comp, Layer& layer, LayerStream id,
                    const Value& value);

// Separates the dimensions of the layer's Position as the host's "Separate Dimensions" does:
// each follower takes its component of the value and of every key.
void SeparatePosition(Project& project, Item& comp, Layer& layer);

// Adds a key at `time` in stream time, or gives the key already there a new
// value; returns the key's index. A new key between others is linear.
int AddKeyframe(Stream& stream, double time, const Value& value);

}  // namespace aehost
