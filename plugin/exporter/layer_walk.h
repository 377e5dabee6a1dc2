#pragma once
// The walk over the layers of the composition on top of the export object's stack. It runs
// three times: a scan that only counts and classifies, a create walk that makes every scene
// object, and a link walk that puts each object under its parent once all of them exist
// (a parent layer may stand below its child in the timeline).
#include "plugin/exporter/ae_to_ory.h"

enum class WalkMode { scan = 0, create = 1, link = 2 };

// `layerInParent` is the precomposition layer through which this composition was entered,
// null at the top; `node` receives the layers in the link walk and is null otherwise.
bool Walk(AEToOry& exporter, AEGP_LayerH layerInParent, BaseObject* node, WalkMode mode);

// Three-dimensional, parented to an exportable layer, or inside a precomposition that a
// three-dimensional layer uses.
bool IsLayerExportable(AEToOry& exporter, AEGP_LayerH layer);

// Places the object of `layer` (and its target) under the object of its parent layer, or under
// `defaultParent`, and makes its keys relative to that parent.
A_Err LinkLayer(AEToOry& exporter, AEGP_LayerH layer, BaseObject* defaultParent, SceneLayer* docLayer);

// How much a layer pushes the following layers of its composition away from the viewer:
// `step` for one that lies exactly in the plane of depth 0 and has no position animation.
double StackingStep(double depth, int32_t positionKeyCount, double step);
