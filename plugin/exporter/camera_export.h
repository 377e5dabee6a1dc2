#pragma once
// Camera layers become scene cameras. Place, rotation and point of interest come from the
// transform like those of every object; this adds projection, film width, field of view and
// focus distance. A composition without any camera layer gets a default camera that shows it
// as After Effects' own view does.
#include "plugin/exporter/ae_to_ory.h"
#include "sdk/aegp.h"

// The camera of `layer`; the last camera layer exported becomes the scene's camera.
A_Err ExportCamera(AEToOry& exporter, AEGP_LayerH layer);

// After Effects' view of a composition without a camera: from the viewer's side, looking at
// the middle of the picture from the default distance. Its key and name have no layer part.
A_Err AddDefaultCamera(AEToOry& exporter);

// Makes `camera` the camera of the document's active view; false without both, when the
// object is no camera, or when the document has no view.
bool MakeSceneCamera(BaseDocument* document, BaseObject* camera);
