#pragma once
// Operations of a caller in the plug-in's process directly on a render's open document.
// Each needs a document, SetLayerStates also an open session; all but the setters of
// single objects and the queries stop the render first. The setters of single objects
// leave both a running render and `dirty` to the caller, who must know that no render
// runs or stop it.
#include <cstdint>
#include <string>
#include <vector>

#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// As an update of the camera; false for anything but a camera.
bool SetCamera(RenderThread& render, BaseObject* camera, bool insert);
// As an update of the view; a document without a render or an active view gives true.
// `dirty` is set.
bool CopyView(RenderThread& render, BaseView* view);
// As an update of the render settings with a copy of `settings`, without comparing them
// first. `dirty` is set.
bool ReplaceRenderSettingsWith(RenderThread& render, const RenderData* settings, bool keepChildren);
// `dirty` is set.
bool SetTime(RenderThread& render, const BaseTime& time);
// Whether renders keep their caches; turning it off drops them and the texture files.
bool SetKeepCaches(RenderThread& render, bool keep);
// As an update of the active camera with the unique id `id`; true when a camera was found.
bool SelectCamera(RenderThread& render, int32_t applicationId, const std::string& id);
// As an update of the layers with the list of `indices`; the render is then open. `dirty`
// is set.
bool SendLayerList(RenderThread& render, const std::vector<int32_t>& indices, bool objectsWithoutLayerVisible);
// As an update of the layers, the layers given by their markers; `dirty` is set when a
// layer was switched on.
bool SetLayerStates(RenderThread& render, const std::vector<NodeMarker>& markers, bool objectsWithoutLayerVisible);

// Makes the element with unique id `id` of application `applicationId` active in `mode`
// (see SetActiveObject); false without such an element. The picture is out of date when
// the render settings draw active objects apart (300001061 under 5300).
bool SelectObject(RenderThread& render, int32_t applicationId, const std::string& id, int32_t mode);

// The first active object takes `position` as the offset of its local matrix, a rotation
// (in `order`) or a scale. False without an active object.
bool SetActivePosition(RenderThread& render, const Vector& position);
bool SetActiveRotation(RenderThread& render, const Vector& rotation, int32_t order);
bool SetActiveScale(RenderThread& render, const Vector& scale);

// The object with `marker` takes a world position, rotation (in `order`) or scale, or a
// parameter. False without such an object.
bool SetObjectPosition(RenderThread& render, const NodeMarker& marker, const Vector& position);
bool SetObjectRotation(RenderThread& render, const NodeMarker& marker, const Vector& rotation, int32_t order);
bool SetObjectScale(RenderThread& render, const NodeMarker& marker, const Vector& scale);
bool SetObjectParameter(RenderThread& render, const NodeMarker& marker, const ParamId& id, const DataValue& value);

// The camera the active view looks through; null without one.
BaseObject* GetCamera(RenderThread& render);
// Whether a render or a copy of the document is under way.
bool IsBusy(const RenderThread& render);

}  // namespace quillon
