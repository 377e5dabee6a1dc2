// The natives under app.project: the project model read by item id, layer id and
// stream number. The object model that scripts see is built over them in
// JavaScript (project_objects.cpp). Every handle a script holds is an id, so an
// item or layer that is gone gives an error naming it, never a dangling pointer.
#include "aehost/script/project_natives.h"

#include "aehost/model/edit.h"
#include "aehost/model/evaluate.h"
#include "aehost/model/project.h"
#include "aehost/model/transform.h"
#include "aehost/script/script_heap.h"

#include <stdexcept>

namespace aehost {
namespace {

// A stream of a layer as scripts name it. `attribute` is the member name that
// reaches it from its group (transform.position).
struct StreamName {
    LayerStream id;
    const char* matchName;
    const char* name;
    const char* attribute;
};

constexpr StreamName kTransform[] = {
    {LayerStream::AnchorPoint, "ADBE Anchor Point", "Anchor Point", "anchorPoint"},
    {LayerStream::Position, "ADBE Position", "Position", "position"},
    {LayerStream::Scale, "ADBE Scale", "Scale", "scale"},
    {LayerStream::Orientation, "ADBE Orientation", "Orientation", "orientation"},
    {LayerStream::RotationX, "ADBE Rotate X", "X Rotation", "xRotation"},
    {LayerStream::RotationY, "ADBE Rotate Y", "Y Rotation", "yRotation"},
    {LayerStream::RotationZ, "ADBE Rotate Z", "Z Rotation", "zRotation"},
    {LayerStream::Opacity, "ADBE Opacity", "Opacity", "opacity"},
};

constexpr StreamName kCameraOptions[] = {
    {LayerStream::Zoom, "ADBE Camera Zoom", "Zoom", "zoom"},
    {LayerStream::DepthOfField, "ADBE Camera Depth of Field", "Depth of Field", "depthOfField"},
    {LayerStream::FocusDistance, "ADBE Camera Focus Distance", "Focus Distance", "focusDistance"},
    {LayerStream::Aperture, "ADBE Camera Aperture", "Aperture", "aperture"},
    {LayerStream::BlurLevel, "ADBE Camera Blur Level", "Blur Level", "blurLevel"},
};

constexpr StreamName kLightOptions[] = {
    {LayerStream::Intensity, "ADBE Light Intensity", "Intensity", "intensity"},
    {LayerStream::Color, "ADBE Light Color", "Color", "color"},
    {LayerStream::ConeAngle, "ADBE Light Cone Angle", "Cone Angle", "coneAngle"},
    {LayerStream::ConeFeather, "ADBE Light Cone Feather 2", "Cone Feather", "coneFeather"},
    {LayerStream::FalloffKind, "ADBE Light Falloff Type", "Falloff", "falloff"},
    {LayerStream::FalloffStart, "ADBE Light Falloff Start", "Radius", "radius"},
    {LayerStream::FalloffDistance, "ADBE Light Falloff Distance", "Falloff Distance", "falloffDistance"},
    {LayerStream::CastsShadows, "ADBE Light Casts Shadows", "Casts Shadows", "castsShadows"},
    {LayerStream::ShadowDarkness, "ADBE Light Shadow Darkness", "Shadow Darkness", "shadowDarkness"},
    {LayerStream::ShadowDiffusion, "ADBE Light Shadow Diffusion", "Shadow Diffusion", "shadowDiffusion"},
};

Project& ProjectOf(duk_context* ctx) {
    Project* project = ContextOf(ctx).project;
    if (!project) throw std::runtime_error("the host has no project");
    return *project;
}

Item& CompArg(duk_context* ctx, duk_idx_t index) {
    const int id = duk_get_int(ctx, index);
    Item* item = FindItem(ProjectOf(ctx), id);
    if (!item || item->kind != ItemKind::Composition) {
        throw std::runtime_error("the composition with id " + std::to_string(id) + " no longer exists");
    }
    return *item;
}

Layer& LayerArg(duk_context* ctx, const Item& comp, duk_idx_t index) {
    const int id = duk_get_int(ctx, index);
    Layer* layer = FindLayer(comp, id);
    if (!layer) {
        throw std::runtime_error("the layer with id " + std::to_string(id) + " is no longer in \"" +
                                 comp.name + "\"");
    }
    return *layer;
}

LayerStream StreamArg(duk_context* ctx, const Layer& layer, duk_idx_t index) {
    const auto id = static_cast<LayerStream>(duk_get_int(ctx, index));
    if (!IsStreamLegal(layer, id)) {
        throw std::runtime_error("the property " + std::to_string(static_cast<int>(id)) +
                                 " is not on layer \"" + layer.name + "\"");
    }
    return id;
}

// The name the timeline shows: the layer's own, else its source's.
std::string ShownName(const Project& project, const Layer& layer) {
    if (!layer.name.empty()) return layer.name;
    const Item* source = FindItem(project, layer.sourceId);
    return source && layer.sourceId != kRootFolderId ? source->name : std::string();
}

bool LooksThreeD(const Layer& layer) {
    return layer.switches.threeD || layer.objectType == LayerObjectType::Camera ||
           layer.objectType == LayerObjectType::Light;
}

void PushNumberProp(duk_context* ctx, const char* key, double value) {
    duk_push_number(ctx, value);
    duk_put_prop_string(ctx, -2, key);
}

void PushTextProp(duk_context* ctx, const char* key, const std::string& value) {
    PushText(ctx, value);
    duk_put_prop_string(ctx, -2, key);
}

void PushBoolProp(duk_context* ctx, const char* key, bool value) {
    duk_push_boolean(ctx, value);
    duk_put_prop_string(ctx, -2, key);
}

const Stream* OwnStream(const Layer& layer, LayerStream id) {
    const auto found = layer.streams.find(id);
    return found == layer.streams.end() ? nullptr : &found->second;
}

const Keyframe& KeyArg(duk_context* ctx, const Layer& layer, LayerStream id, duk_idx_t index) {
    const Stream* stream = OwnStream(layer, id);
    const int k = duk_get_int(ctx, index);
    if (!stream || k < 1 || k > static_cast<int>(stream->keys.size())) {
        throw std::runtime_error("key " + std::to_string(k) + " is out of range");
    }
    return stream->keys[static_cast<std::size_t>(k - 1)];
}

void CheckWritable(duk_context* ctx) {
    if (ContextOf(ctx).readOnly) throw std::runtime_error("the project cannot be changed here");
}

// --- items -----------------------------------------------------------------

duk_ret_t ActiveItem(duk_context* ctx) {
    const ScriptContext& context = ContextOf(ctx);
    const int id = context.activeItem ? context.activeItem() : -1;
    duk_push_int(ctx, context.project && FindItem(*context.project, id) ? id : -1);
    return 1;
}

duk_ret_t ProjectPath(duk_context* ctx) {
    const Project* project = ContextOf(ctx).project;
    if (project && !project->path.empty()) PushText(ctx, project->path);
    else duk_push_null(ctx);
    return 1;
}

// itemIds(folder id or -1) -> the ids of the items in a folder, or of all items.
duk_ret_t ItemIds(duk_context* ctx) {
    const int folder = duk_get_int(ctx, 0);
    duk_push_array(ctx);
    const Project* project = ContextOf(ctx).project;
    if (!project) return 1;
    duk_uarridx_t n = 0;
    for (const auto& item : project->items) {
        if (item->id == kRootFolderId || (folder >= 0 && item->folderId != folder)) continue;
        duk_push_int(ctx, item->id);
        duk_put_prop_index(ctx, -2, n++);
    }
    return 1;
}

const char* KindName(ItemKind kind) {
    switch (kind) {
        case ItemKind::Folder: return "Folder";
        case ItemKind::Composition: return "Composition";
        case ItemKind::Footage: return "Footage";
    }
    return "Folder";
}

duk_ret_t ItemInfo(duk_context* ctx) {
    const int id = duk_get_int(ctx, 0);
    const Item* item = FindItem(ProjectOf(ctx), id);
    if (!item) throw std::runtime_error("the item with id " + std::to_string(id) + " no longer exists");
    duk_push_object(ctx);
    PushNumberProp(ctx, "id", item->id);
    PushTextProp(ctx, "kind", KindName(item->kind));
    PushTextProp(ctx, "name", item->name);
    PushNumberProp(ctx, "folderId", item->folderId);
    PushNumberProp(ctx, "width", item->width);
    PushNumberProp(ctx, "height", item->height);
    PushNumberProp(ctx, "pixelAspect", item->pixelAspect);
    PushNumberProp(ctx, "duration", item->duration);
    PushNumberProp(ctx, "frameRate", item->frameRate);
    PushNumberProp(ctx, "numLayers", static_cast<double>(item->comp.layers.size()));
    PushNumberProp(ctx, "displayStartTime", item->comp.displayStart);
    PushNumberProp(ctx, "workAreaStart", item->comp.workAreaStart);
    PushNumberProp(ctx, "workAreaDuration", item->comp.workAreaDuration);
    PushBoolProp(ctx, "solid", item->kind == ItemKind::Footage && item->footage.kind == FootageKind::Solid);
    PushTextProp(ctx, "file", item->kind == ItemKind::Footage ? item->footage.path : "");
    const Value& color = item->kind == ItemKind::Composition ? item->comp.background : item->footage.color;
    duk_push_array(ctx);
    for (int i = 0; i < 3; ++i) {
        duk_push_number(ctx, color[i]);
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
    duk_put_prop_string(ctx, -2, "color");
    return 1;
}

// --- layers ----------------------------------------------------------------

// layerId(comp id, one-based index or name) -> the layer's id, 0 for none.
duk_ret_t LayerId(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const auto& layers = comp.comp.layers;
    int id = 0;
    if (duk_is_number(ctx, 1)) {
        const int index = duk_get_int(ctx, 1);
        if (index >= 1 && index <= static_cast<int>(layers.size())) id = layers[static_cast<std::size_t>(index - 1)]->id;
    } else {
        const std::string name = ArgText(ctx, 1);
        for (const auto& layer : layers) {
            if (!id && ShownName(ProjectOf(ctx), *layer) == name) id = layer->id;
        }
    }
    duk_push_int(ctx, id);
    return 1;
}

const char* ObjectTypeName(LayerObjectType type) {
    switch (type) {
        case LayerObjectType::AudioVideo: return "av";
        case LayerObjectType::Light: return "light";
        case LayerObjectType::Camera: return "camera";
        case LayerObjectType::Text: return "text";
        case LayerObjectType::Shape: return "shape";
    }
    return "av";
}

duk_ret_t LayerInfo(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    int index = 0;
    for (std::size_t i = 0; i < comp.comp.layers.size(); ++i) {
        if (comp.comp.layers[i].get() == &layer) index = static_cast<int>(i) + 1;
    }
    duk_push_object(ctx);
    PushNumberProp(ctx, "id", layer.id);
    PushNumberProp(ctx, "index", index);
    PushTextProp(ctx, "name", ShownName(ProjectOf(ctx), layer));
    PushTextProp(ctx, "objectType", ObjectTypeName(layer.objectType));
    PushNumberProp(ctx, "sourceId", layer.sourceId);
    PushNumberProp(ctx, "parentId", layer.parentId);
    PushBoolProp(ctx, "threeDLayer", layer.switches.threeD);
    PushBoolProp(ctx, "nullLayer", layer.switches.nullLayer);
    PushBoolProp(ctx, "enabled", layer.switches.video);
    PushBoolProp(ctx, "locked", layer.switches.locked);
    PushBoolProp(ctx, "shy", layer.switches.shy);
    PushNumberProp(ctx, "startTime", layer.startTime);
    PushNumberProp(ctx, "inPoint", layer.inPoint);
    PushNumberProp(ctx, "outPoint", layer.inPoint + layer.duration);
    PushNumberProp(ctx, "stretch", layer.stretch * 100.0);
    return 1;
}

void PushStreamGroup(duk_context* ctx, const Layer& layer, const char* matchName, const char* name,
                     const char* attribute, const StreamName* streams, std::size_t count) {
    duk_push_object(ctx);
    PushTextProp(ctx, "matchName", matchName);
    PushTextProp(ctx, "name", name);
    PushTextProp(ctx, "attribute", attribute);
    duk_push_array(ctx);
    duk_uarridx_t n = 0;
    const bool lookAt = layer.objectType == LayerObjectType::Camera || layer.objectType == LayerObjectType::Light;
    for (std::size_t i = 0; i < count; ++i) {
        const StreamName& stream = streams[i];
        if (!IsStreamLegal(layer, stream.id)) continue;
        const bool pointOfInterest = lookAt && stream.id == LayerStream::AnchorPoint;
        const bool flatRotation = !LooksThreeD(layer) && stream.id == LayerStream::RotationZ;
        duk_push_object(ctx);
        PushTextProp(ctx, "matchName", stream.matchName);
        PushTextProp(ctx, "name", pointOfInterest ? "Point of Interest" : flatRotation ? "Rotation" : stream.name);
        PushTextProp(ctx, "attribute", pointOfInterest ? "pointOfInterest" : flatRotation ? "rotation" : stream.attribute);
        PushNumberProp(ctx, "stream", static_cast<int>(stream.id));
        duk_put_prop_index(ctx, -2, n++);
    }
    duk_put_prop_string(ctx, -2, "children");
    duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(duk_get_length(ctx, -2)));
}

void PushEmptyGroup(duk_context* ctx, const char* matchName, const char* name, const char* attribute) {
    PushStreamGroup(ctx, Layer{}, matchName, name, attribute, nullptr, 0);
}

// The host's number of the Source Text stream (AEGP_LayerStream_SOURCE_TEXT).
constexpr int kSourceTextStream = 31;

void PushPathOptionsGroup(duk_context* ctx);

// The Text group of a text layer, with its Source Text and Path Options.
void PushTextGroup(duk_context* ctx) {
    PushEmptyGroup(ctx, "ADBE Text Properties", "Text", "text");
    duk_get_prop_index(ctx, -1, static_cast<duk_uarridx_t>(duk_get_length(ctx, -1) - 1));
    duk_get_prop_string(ctx, -1, "children");
    duk_push_object(ctx);
    PushTextProp(ctx, "matchName", "ADBE Text Document");
    PushTextProp(ctx, "name", "Source Text");
    PushTextProp(ctx, "attribute", "sourceText");
    PushNumberProp(ctx, "stream", kSourceTextStream);
    duk_put_prop_index(ctx, -2, 0);
    PushPathOptionsGroup(ctx);
    duk_pop_2(ctx);
}

// --- shape contents ----------------------------------------------------------
// The tree under "ADBE Root Vectors Group" as the host shows it. A value that
// scripts read through the natives below is addressed by the indices of its
// element from the layer's contents down, then the index of its stream in the
// element's table (kShapePath: the path of a free path). Values that are fixed
// for an element (direction, blend mode, composite, star type) are given as
// constants in the tree.

constexpr int kShapePath = -1;

void BeginNode(duk_context* ctx, const char* matchName, const std::string& name, const char* attribute) {
    duk_push_object(ctx);
    PushTextProp(ctx, "matchName", matchName);
    PushTextProp(ctx, "name", name);
    PushTextProp(ctx, "attribute", attribute);
}

// Puts the children array on the top into the node below it, and appends that
// node to the array below the node.
void EndNode(duk_context* ctx) {
    duk_put_prop_string(ctx, -2, "children");
    duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(duk_get_length(ctx, -2)));
}

void AppendNode(duk_context* ctx) {
    duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(duk_get_length(ctx, -2)));
}

void PushShapeConstant(duk_context* ctx, const char* matchName, const char* name, const char* attribute,
                       double value) {
    BeginNode(ctx, matchName, name, attribute);
    PushNumberProp(ctx, "constant", value);
    AppendNode(ctx);
}

void PushShapeLeaf(duk_context* ctx, const char* matchName, const char* name, const char* attribute,
                   const std::vector<int>& element, int value) {
    BeginNode(ctx, matchName, name, attribute);
    duk_push_array(ctx);
    for (std::size_t i = 0; i <= element.size(); ++i) {
        duk_push_int(ctx, i < element.size() ? element[i] : value);
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
    duk_put_prop_string(ctx, -2, "shape");
    AppendNode(ctx);
}

void PushShapeParams(duk_context* ctx, const ShapeElement& element, const std::vector<int>& address) {
    const auto params = ShapeParamsOf(element.kind);
    for (std::size_t i = 0; i < params.size(); ++i) {
        if (params[i].matchName == nullptr) continue;
        PushShapeLeaf(ctx, params[i].matchName, params[i].name, params[i].key, address, static_cast<int>(i));
    }
}

void PushShapeElements(duk_context* ctx, const std::vector<ShapeElement>& contents, std::vector<int>& address);

void PushShapeElement(duk_context* ctx, const ShapeElement& element, std::vector<int>& address) {
    BeginNode(ctx, ShapeMatchName(element.kind), element.name, "");
    duk_push_array(ctx);
    switch (element.kind) {
        case ShapeKind::Group:
            PushShapeConstant(ctx, "ADBE Vector Blend Mode", "Blend Mode", "blendMode", 1);
            BeginNode(ctx, "ADBE Vectors Group", "Contents", "content");
            duk_push_array(ctx);
            PushShapeElements(ctx, element.contents, address);
            EndNode(ctx);
            BeginNode(ctx, "ADBE Vector Transform Group", "Transform", "transform");
            duk_push_array(ctx);
            PushShapeParams(ctx, element, address);
            EndNode(ctx);
            break;
        case ShapeKind::Path:
            PushShapeConstant(ctx, "ADBE Vector Shape Direction", "Path Direction", "direction", 1);
            PushShapeLeaf(ctx, "ADBE Vector Shape", "Path", "path", address, kShapePath);
            break;
        case ShapeKind::Star:
        case ShapeKind::Polygon:
            PushShapeConstant(ctx, "ADBE Vector Shape Direction", "Path Direction", "direction", 1);
            PushShapeConstant(ctx, "ADBE Vector Star Type", "Type", "type", element.kind == ShapeKind::Star ? 1 : 2);
            PushShapeParams(ctx, element, address);
            break;
        case ShapeKind::Rectangle:
        case ShapeKind::Ellipse:
            PushShapeConstant(ctx, "ADBE Vector Shape Direction", "Path Direction", "direction", 1);
            PushShapeParams(ctx, element, address);
            break;
        case ShapeKind::Fill:
        case ShapeKind::Stroke:
        case ShapeKind::GradientFill:
            // Composite reads 1 when the paint lies over what precedes it, 0 under.
            PushShapeConstant(ctx, "ADBE Vector Composite Order", "Composite", "composite", element.compositeOver ? 1 : 0);
            PushShapeParams(ctx, element, address);
            break;
    }
    EndNode(ctx);
}

void PushShapeElements(duk_context* ctx, const std::vector<ShapeElement>& contents, std::vector<int>& address) {
    for (std::size_t i = 0; i < contents.size(); ++i) {
        address.push_back(static_cast<int>(i));
        PushShapeElement(ctx, contents[i], address);
        address.pop_back();
    }
}

void PushShapeContents(duk_context* ctx, const Layer& layer) {
    BeginNode(ctx, "ADBE Root Vectors Group", "Contents", "content");
    duk_push_array(ctx);
    std::vector<int> address;
    PushShapeElements(ctx, layer.shapes, address);
    EndNode(ctx);
}

// --- masks and path options ----------------------------------------------------
// Values a layer keeps outside its streams and its shape tree are addressed for the natives
// below by a kind and an index: ["mask", i] the path of the layer's mask i (from 0),
// ["pathOption", 0 to 2] the "Path", "First Margin" and "Last Margin" of a text layer.

void PushModelLeaf(duk_context* ctx, const char* matchName, const std::string& name, const char* attribute,
                   const char* kind, int index) {
    BeginNode(ctx, matchName, name, attribute);
    duk_push_array(ctx);
    duk_push_string(ctx, kind);
    duk_put_prop_index(ctx, -2, 0);
    duk_push_int(ctx, index);
    duk_put_prop_index(ctx, -2, 1);
    duk_put_prop_string(ctx, -2, "model");
    AppendNode(ctx);
}

// "Masks": a group a mask, named as the mask, holding its "Mask Path".
void PushMaskGroup(duk_context* ctx, const Layer& layer) {
    BeginNode(ctx, "ADBE Mask Parade", "Masks", "mask");
    duk_push_array(ctx);
    for (std::size_t i = 0; i < layer.masks.size(); ++i) {
        BeginNode(ctx, "ADBE Mask Atom", layer.masks[i].name, "");
        duk_push_array(ctx);
        PushModelLeaf(ctx, "ADBE Mask Shape", "Mask Path", "maskPath", "mask", static_cast<int>(i));
        EndNode(ctx);
    }
    EndNode(ctx);
}

// "Path Options" of the Text group, appended to the children array on the top of the stack.
void PushPathOptionsGroup(duk_context* ctx) {
    BeginNode(ctx, "ADBE Text Path Options", "Path Options", "pathOption");
    duk_push_array(ctx);
    PushModelLeaf(ctx, "ADBE Text Path", "Path", "path", "pathOption", 0);
    PushModelLeaf(ctx, "ADBE Text First Margin", "First Margin", "firstMargin", "pathOption", 1);
    PushModelLeaf(ctx, "ADBE Text Last Margin", "Last Margin", "lastMargin", "pathOption", 2);
    EndNode(ctx);
}

// layerTree(comp id, layer id) -> the layer's top-level groups in the host's
// order, each {matchName, name, attribute, children: [{..., stream}]}.
duk_ret_t LayerTree(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    duk_push_array(ctx);
    PushEmptyGroup(ctx, "ADBE Marker", "Marker", "marker");
    const bool lookAt = layer.objectType == LayerObjectType::Camera || layer.objectType == LayerObjectType::Light;
    if (layer.objectType == LayerObjectType::Text) PushTextGroup(ctx);
    if (layer.objectType == LayerObjectType::Shape) PushShapeContents(ctx, layer);
    if (!lookAt) {
        PushMaskGroup(ctx, layer);
        PushEmptyGroup(ctx, "ADBE Effect Parade", "Effects", "effect");
    }
    PushStreamGroup(ctx, layer, "ADBE Transform Group", "Transform", "transform", kTransform, std::size(kTransform));
    if (layer.objectType == LayerObjectType::Camera) {
        PushStreamGroup(ctx, layer, "ADBE Camera Options Group", "Camera Options", "cameraOption", kCameraOptions,
                        std::size(kCameraOptions));
    }
    if (layer.objectType == LayerObjectType::Light) {
        PushStreamGroup(ctx, layer, "ADBE Light Options Group", "Light Options", "lightOption", kLightOptions,
                        std::size(kLightOptions));
    }
    return 1;
}

// markerTimes(comp id, layer id or 0) -> the marker times in composition seconds.
duk_ret_t MarkerTimes(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer* layer = duk_get_int(ctx, 1) != 0 ? &LayerArg(ctx, comp, 1) : nullptr;
    const std::vector<Marker>& markers = layer ? layer->markers : comp.comp.markers;
    duk_push_array(ctx);
    for (std::size_t i = 0; i < markers.size(); ++i) {
        duk_push_number(ctx, layer ? LayerTimeToCompTime(*layer, markers[i].time) : markers[i].time);
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
    return 1;
}

// --- streams ---------------------------------------------------------------

duk_ret_t StreamInfo(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const LayerStream id = StreamArg(ctx, layer, 2);
    const Stream* own = OwnStream(layer, id);
    duk_push_object(ctx);
    PushNumberProp(ctx, "numKeys", own ? static_cast<double>(own->keys.size()) : 0.0);
    PushBoolProp(ctx, "timeVarying", own && IsTimeVarying(*own));
    PushTextProp(ctx, "expression", own ? own->expression : "");
    PushBoolProp(ctx, "expressionEnabled", own && own->expressionEnabled);
    PushNumberProp(ctx, "dimensions", ScriptDimensions(layer, id));
    PushBoolProp(ctx, "separated", id == LayerStream::Position && layer.positionSeparated);
    PushTextProp(ctx, "kind", [&] {
        switch (StreamKindOf(id)) {
            case StreamKind::OneD: return "OneD";
            case StreamKind::TwoD: return "TwoD";
            case StreamKind::ThreeD: return ScriptDimensions(layer, id) == 3 ? "ThreeD" : "TwoD";
            case StreamKind::TwoDSpatial: return "TwoD_SPATIAL";
            case StreamKind::ThreeDSpatial: return ScriptDimensions(layer, id) == 3 ? "ThreeD_SPATIAL" : "TwoD_SPATIAL";
            case StreamKind::Orientation: return "ThreeD";
            case StreamKind::Color: return "COLOR";
        }
        return "OneD";
    }());
    return 1;
}

void PushValue(duk_context* ctx, const Value& value, int dimensions) {
    if (dimensions == 1) {
        duk_push_number(ctx, value[0]);
        return;
    }
    duk_push_array(ctx);
    for (int i = 0; i < dimensions; ++i) {
        duk_push_number(ctx, value[i]);
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
}

// valueAt(comp id, layer id, stream, composition seconds, before expression)
duk_ret_t ValueAt(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const LayerStream id = StreamArg(ctx, layer, 2);
    std::string error;
    const Value value = EvaluateStream(ProjectOf(ctx), comp, layer, id, duk_get_number(ctx, 3),
                                       duk_to_boolean(ctx, 4), &error);
    // A script sees the value before a failing expression, as in the host; an
    // expression that reads it fails too, so that a cycle of expressions ends.
    if (!error.empty() && ContextOf(ctx).readOnly) {
        throw std::runtime_error("the expression of \"" + ShownName(ProjectOf(ctx), layer) + "\" failed: " + error);
    }
    PushValue(ctx, value, ScriptDimensions(layer, id));
    return 1;
}

// keyTime(comp id, layer id, stream, key from 1) -> composition seconds
duk_ret_t KeyTime(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const Keyframe& key = KeyArg(ctx, layer, StreamArg(ctx, layer, 2), 3);
    duk_push_number(ctx, LayerTimeToCompTime(layer, key.time));
    return 1;
}

duk_ret_t KeyValue(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const LayerStream id = StreamArg(ctx, layer, 2);
    PushValue(ctx, KeyArg(ctx, layer, id, 3).value, ScriptDimensions(layer, id));
    return 1;
}

// Reads [[speed, influence], ...] for each temporal dimension of the stream.
void ReadEases(duk_context* ctx, duk_idx_t index, int count, std::array<Ease, 3>* eases) {
    if (!duk_is_array(ctx, index) || static_cast<int>(duk_get_length(ctx, index)) != count) {
        throw std::runtime_error("the ease needs " + std::to_string(count) + " KeyframeEase objects");
    }
    for (int i = 0; i < count; ++i) {
        duk_get_prop_index(ctx, index, static_cast<duk_uarridx_t>(i));
        duk_get_prop_index(ctx, -1, 0);
        duk_get_prop_index(ctx, -2, 1);
        const double speed = duk_get_number_default(ctx, -2, 0.0);
        const double influence = duk_get_number_default(ctx, -1, 0.0);
        duk_pop_3(ctx);
        if (!(influence >= 0.1 && influence <= 100.0)) {
            throw std::runtime_error("influence must lie between 0.1 and 100, not " + std::to_string(influence));
        }
        (*eases)[static_cast<std::size_t>(i)] = Ease{speed, influence};
    }
}

// setTemporalEase(comp id, layer id, stream, key from 1, in eases, out eases):
// the key becomes a Bezier key with these eases, as it does in the host.
duk_ret_t SetTemporalEase(duk_context* ctx) {
    CheckWritable(ctx);
    Item& comp = CompArg(ctx, 0);
    Layer& layer = LayerArg(ctx, comp, 1);
    const LayerStream id = StreamArg(ctx, layer, 2);
    KeyArg(ctx, layer, id, 3);
    Keyframe& key = EnsureStream(ProjectOf(ctx), comp, layer, id).keys[static_cast<std::size_t>(duk_get_int(ctx, 3) - 1)];
    const int count = TemporalDimensions(StreamKindOf(id));
    std::array<Ease, 3> in = key.easeIn;
    std::array<Ease, 3> out = key.easeOut;
    ReadEases(ctx, 4, count, &in);
    ReadEases(ctx, 5, count, &out);
    key.easeIn = in;
    key.easeOut = out;
    key.in = Interpolation::Bezier;
    key.out = Interpolation::Bezier;
    duk_push_undefined(ctx);
    return 1;
}

// --- source text -----------------------------------------------------------

const Layer& TextLayerArg(duk_context* ctx, const Item& comp, duk_idx_t index) {
    const Layer& layer = LayerArg(ctx, comp, index);
    if (layer.objectType != LayerObjectType::Text) {
        throw std::runtime_error("layer \"" + ShownName(ProjectOf(ctx), layer) + "\" is no text layer");
    }
    return layer;
}

void PushColorProp(duk_context* ctx, const char* key, const TextColor& color) {
    duk_push_array(ctx);
    for (std::size_t i = 0; i < color.size(); ++i) {
        duk_push_number(ctx, color[i]);
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
    duk_put_prop_string(ctx, -2, key);
}

// textDocument(comp id, layer id, composition seconds) -> the members of the
// text document shown then, as the host's TextDocument has them.
duk_ret_t TextDocumentAtTime(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = TextLayerArg(ctx, comp, 1);
    const TextDocument& document = TextDocumentAt(layer.text, CompTimeToLayerTime(layer, duk_get_number(ctx, 2)));
    duk_push_object(ctx);
    PushTextProp(ctx, "text", document.text);
    PushTextProp(ctx, "font", document.font);
    PushNumberProp(ctx, "fontSize", document.fontSize);
    PushNumberProp(ctx, "tracking", document.tracking);
    PushNumberProp(ctx, "justification", static_cast<int>(document.justification));
    PushBoolProp(ctx, "applyFill", document.applyFill);
    PushColorProp(ctx, "fillColor", document.fillColor);
    PushBoolProp(ctx, "applyStroke", document.applyStroke);
    PushColorProp(ctx, "strokeColor", document.strokeColor);
    PushNumberProp(ctx, "strokeWidth", document.strokeWidth);
    PushBoolProp(ctx, "strokeOverFill", document.strokeOverFill);
    PushNumberProp(ctx, "horizontalScale", document.horizontalScale);
    PushNumberProp(ctx, "verticalScale", document.verticalScale);
    return 1;
}

// sourceTextKeys(comp id, layer id) -> the times of the Source Text keys in composition seconds.
duk_ret_t SourceTextKeys(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = TextLayerArg(ctx, comp, 1);
    duk_push_array(ctx);
    for (std::size_t i = 0; i < layer.text.keys.size(); ++i) {
        duk_push_number(ctx, LayerTimeToCompTime(layer, layer.text.keys[i].time));
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
    return 1;
}

// --- shape values --------------------------------------------------------------

struct ShapeValueRef {
    const ShapeElement* element = nullptr;
    int value = kShapePath;  // the index in the element's stream table, or kShapePath
};

// The value at the address of a shape leaf (see PushShapeLeaf).
ShapeValueRef ShapeValueArg(duk_context* ctx, const Layer& layer, duk_idx_t index) {
    const auto fail = [&]() -> ShapeValueRef {
        throw std::runtime_error("the shape property is no longer on layer \"" + layer.name + "\"");
    };
    if (!duk_is_array(ctx, index) || duk_get_length(ctx, index) < 2) return fail();
    const auto length = static_cast<duk_uarridx_t>(duk_get_length(ctx, index));
    const std::vector<ShapeElement>* contents = &layer.shapes;
    ShapeValueRef ref;
    for (duk_uarridx_t i = 0; i < length; ++i) {
        duk_get_prop_index(ctx, index, i);
        const int n = duk_get_int(ctx, -1);
        duk_pop(ctx);
        if (i + 1 == length) {
            ref.value = n;
        } else {
            if (n < 0 || static_cast<std::size_t>(n) >= contents->size()) return fail();
            ref.element = &(*contents)[static_cast<std::size_t>(n)];
            contents = &ref.element->contents;
        }
    }
    const bool isPath = ref.value == kShapePath && ref.element->kind == ShapeKind::Path;
    const bool isParam = ref.value >= 0 && static_cast<std::size_t>(ref.value) < ref.element->params.size();
    if (!isPath && !isParam) return fail();
    return ref;
}

const Stream& ShapeStreamOf(const ShapeValueRef& ref) {
    return ref.element->params[static_cast<std::size_t>(ref.value)];
}

// Key times in layer seconds, of a stream or of a path.
std::vector<double> ShapeKeyTimes(const ShapeValueRef& ref) {
    std::vector<double> times;
    if (ref.value == kShapePath) {
        for (const PathKey& key : ref.element->path.keys) times.push_back(key.time);
    } else {
        for (const Keyframe& key : ShapeStreamOf(ref).keys) times.push_back(key.time);
    }
    return times;
}

// shapeStream(comp id, layer id, address) -> {numKeys, timeVarying, kind}
duk_ret_t ShapeStreamInfo(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const ShapeValueRef ref = ShapeValueArg(ctx, layer, 2);
    const bool path = ref.value == kShapePath;
    duk_push_object(ctx);
    PushNumberProp(ctx, "numKeys", static_cast<double>(ShapeKeyTimes(ref).size()));
    PushBoolProp(ctx, "timeVarying", path ? IsPathTimeVarying(ref.element->path) : IsTimeVarying(ShapeStreamOf(ref)));
    PushTextProp(ctx, "kind", [&] {
        if (path) return "SHAPE";
        switch (ShapeStreamOf(ref).kind) {
            case StreamKind::Color: return "COLOR";
            case StreamKind::OneD: return "OneD";
            default: return "TwoD";
        }
    }());
    return 1;
}

void PushPointList(duk_context* ctx, const PathShape& shape, double PathVertex::*x, double PathVertex::*y,
                   const char* key) {
    duk_push_array(ctx);
    for (std::size_t i = 0; i < shape.vertices.size(); ++i) {
        PushValue(ctx, MakeValue(shape.vertices[i].*x, shape.vertices[i].*y), 2);
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
    duk_put_prop_string(ctx, -2, key);
}

// The members of a Shape: vertices, tangents relative to them, closed.
void PushShapeValue(duk_context* ctx, const PathShape& shape) {
    duk_push_object(ctx);
    PushPointList(ctx, shape, &PathVertex::x, &PathVertex::y, "vertices");
    PushPointList(ctx, shape, &PathVertex::inX, &PathVertex::inY, "inTangents");
    PushPointList(ctx, shape, &PathVertex::outX, &PathVertex::outY, "outTangents");
    PushBoolProp(ctx, "closed", shape.closed);
}

// shapeValueAt(comp id, layer id, address, composition seconds) -> a number, an
// array, or the members of a Shape
duk_ret_t ShapeValueAt(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const ShapeValueRef ref = ShapeValueArg(ctx, layer, 2);
    const double time = CompTimeToLayerTime(layer, duk_get_number(ctx, 3));
    if (ref.value != kShapePath) {
        PushValue(ctx, ShapeParamAt(*ref.element, ref.value, time), Dimensions(ShapeStreamOf(ref).kind));
        return 1;
    }
    PushShapeValue(ctx, PathAt(ref.element->path, time));
    return 1;
}

// shapeKeyTime(comp id, layer id, address, key from 1) -> composition seconds
duk_ret_t ShapeKeyTime(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const std::vector<double> times = ShapeKeyTimes(ShapeValueArg(ctx, layer, 2));
    const int k = duk_get_int(ctx, 3);
    if (k < 1 || k > static_cast<int>(times.size())) throw std::runtime_error("key " + std::to_string(k) + " is out of range");
    duk_push_number(ctx, LayerTimeToCompTime(layer, times[static_cast<std::size_t>(k - 1)]));
    return 1;
}

// --- mask paths and path options --------------------------------------------------

// The value behind a model address (see PushModelLeaf): one of the three is set.
struct ModelValueRef {
    const PathStream* maskPath = nullptr;
    const Stream* margin = nullptr;
    const TextPathOptions* pathChoice = nullptr;  // the "Path" option: which mask
};

ModelValueRef ModelValueArg(duk_context* ctx, const Layer& layer, duk_idx_t index) {
    const auto fail = [&]() -> ModelValueRef {
        throw std::runtime_error("the property is no longer on layer \"" + layer.name + "\"");
    };
    if (!duk_is_array(ctx, index) || duk_get_length(ctx, index) != 2) return fail();
    duk_get_prop_index(ctx, index, 0);
    duk_get_prop_index(ctx, index, 1);
    const std::string kind = duk_is_string(ctx, -2) ? duk_get_string(ctx, -2) : "";
    const int n = duk_get_int(ctx, -1);
    duk_pop_2(ctx);
    ModelValueRef ref;
    if (kind == "mask" && n >= 0 && static_cast<std::size_t>(n) < layer.masks.size()) {
        ref.maskPath = &layer.masks[static_cast<std::size_t>(n)].shape;
    } else if (kind == "pathOption" && layer.objectType == LayerObjectType::Text && n >= 0 && n <= 2) {
        if (n == 0) ref.pathChoice = &layer.pathOptions;
        else ref.margin = n == 1 ? &layer.pathOptions.firstMargin : &layer.pathOptions.lastMargin;
    } else {
        return fail();
    }
    return ref;
}

// modelStream(comp id, layer id, address) -> {numKeys, timeVarying, kind, times}, the key
// times in composition seconds
duk_ret_t ModelStreamInfo(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const ModelValueRef ref = ModelValueArg(ctx, layer, 2);
    std::vector<double> times;
    if (ref.maskPath) {
        for (const PathKey& key : ref.maskPath->keys) times.push_back(key.time);
    } else if (ref.margin) {
        for (const Keyframe& key : ref.margin->keys) times.push_back(key.time);
    }
    duk_push_object(ctx);
    PushNumberProp(ctx, "numKeys", static_cast<double>(times.size()));
    PushBoolProp(ctx, "timeVarying", times.size() > 1);
    PushTextProp(ctx, "kind", ref.maskPath ? "SHAPE" : ref.margin ? "OneD" : "MASK_INDEX");
    duk_push_array(ctx);
    for (std::size_t i = 0; i < times.size(); ++i) {
        duk_push_number(ctx, LayerTimeToCompTime(layer, times[i]));
        duk_put_prop_index(ctx, -2, static_cast<duk_uarridx_t>(i));
    }
    duk_put_prop_string(ctx, -2, "times");
    return 1;
}

// modelValueAt(comp id, layer id, address, composition seconds) -> the members of a Shape, a
// margin in pixels, or the one-based index of the mask a text follows (0: none)
duk_ret_t ModelValueAt(duk_context* ctx) {
    const Item& comp = CompArg(ctx, 0);
    const Layer& layer = LayerArg(ctx, comp, 1);
    const ModelValueRef ref = ModelValueArg(ctx, layer, 2);
    const double time = CompTimeToLayerTime(layer, duk_get_number(ctx, 3));
    if (ref.maskPath) PushShapeValue(ctx, PathAt(*ref.maskPath, time));
    else if (ref.margin) duk_push_number(ctx, InterpolateKeys(*ref.margin, time)[0]);
    else duk_push_int(ctx, ref.pathChoice->path);
    return 1;
}

duk_ret_t CurrentTime(duk_context* ctx) {
    duk_push_number(ctx, ContextOf(ctx).currentTime);
    return 1;
}

}  // namespace

// How many numbers a script sees: a 2D layer's vectors have two, a 3D layer's
// three, colours four; one-dimensional values are plain numbers.
int ScriptDimensions(const Layer& layer, LayerStream id) {
    switch (StreamKindOf(id)) {
        case StreamKind::OneD: return 1;
        case StreamKind::Color: return 4;
        case StreamKind::Orientation: return 3;
        case StreamKind::TwoD:
        case StreamKind::TwoDSpatial: return 2;
        case StreamKind::ThreeD:
        case StreamKind::ThreeDSpatial: return LooksThreeD(layer) ? 3 : 2;
    }
    return 1;
}

std::vector<NativeEntry> ProjectNatives() {
    return {
        {"activeItem", Native<ActiveItem>, 0},    {"projectPath", Native<ProjectPath>, 0},
        {"itemIds", Native<ItemIds>, 1},          {"item", Native<ItemInfo>, 1},
        {"layerId", Native<LayerId>, 2},          {"layer", Native<LayerInfo>, 2},
        {"layerTree", Native<LayerTree>, 2},      {"markerTimes", Native<MarkerTimes>, 2},
        {"stream", Native<StreamInfo>, 3},        {"valueAt", Native<ValueAt>, 5},
        {"keyTime", Native<KeyTime>, 4},          {"keyValue", Native<KeyValue>, 4},
        {"setTemporalEase", Native<SetTemporalEase>, 6}, {"currentTime", Native<CurrentTime>, 0},
        {"textDocument", Native<TextDocumentAtTime>, 3}, {"sourceTextKeys", Native<SourceTextKeys>, 2},
        {"shapeStream", Native<ShapeStreamInfo>, 3},     {"shapeValueAt", Native<ShapeValueAt>, 4},
        {"shapeKeyTime", Native<ShapeKeyTime>, 4},
        {"modelStream", Native<ModelStreamInfo>, 3},     {"modelValueAt", Native<ModelValueAt>, 4},
    };
}

}  // namespace aehost
