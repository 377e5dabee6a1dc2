#include "quillon/render/scene_faces.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/layer_record.h"
#include "quillon/model/links.h"
#include "quillon/render/node_values.h"
#include "quillon/render/spline_contours.h"

namespace quillon::render {
namespace {

// Plane defaults of the 3D application: 400 units square, facing +Y.
constexpr double kDefaultPlaneSize = 400.0;
constexpr int32_t kDefaultPlaneOrientation = 2;
constexpr int32_t kModeRender = 1;
constexpr int32_t kModeOff = 1;

struct Collector {
  const Document& document;
  const std::string& assetFolder;
  std::vector<std::string>& missing;
  std::vector<Face> faces;
};

// The plane's two in-plane axes by its orientation: 0 and 1 face along x,
// 2 and 3 along y, 4 and 5 along z. Width runs along the first, height along the second.
void PlaneAxes(int32_t orientation, Vector* widthAxis, Vector* heightAxis) {
  if (orientation == 0 || orientation == 1) {
    *widthAxis = {0, 0, 1};
    *heightAxis = {0, 1, 0};
  } else if (orientation == 2 || orientation == 3) {
    *widthAxis = {1, 0, 0};
    *heightAxis = {0, 0, 1};
  } else {
    *widthAxis = {1, 0, 0};
    *heightAxis = {0, 1, 0};
  }
}

void AddPlane(Collector& collector, const Object& plane) {
  const double width = FloatOf(plane, PlaneParam_Width, kDefaultPlaneSize);
  const double height = FloatOf(plane, PlaneParam_Height, kDefaultPlaneSize);
  if (!(width > 0.0) || !(height > 0.0)) return;
  Vector a;
  Vector b;
  PlaneAxes(Int32Of(plane, PlaneParam_Orientation, kDefaultPlaneOrientation), &a, &b);
  const Matrix global = GlobalMatrixOf(plane);
  Face face;
  std::vector<Vector> corners;
  for (const auto& [sa, sb] : {std::pair{-1, 1}, {1, 1}, {1, -1}, {-1, -1}})
    corners.push_back(TransformPoint(global, a * (sa * width * 0.5) + b * (sb * height * 0.5)));
  face.contours.push_back(std::move(corners));
  // The picture's left edge at -width/2, its top edge at +height/2.
  Matrix toPicture;
  toPicture.axisX = {a.x / width, -b.x / height, 0};
  toPicture.axisY = {a.y / width, -b.y / height, 0};
  toPicture.axisZ = {a.z / width, -b.z / height, 0};
  toPicture.off = {0.5, 0.5, 0};
  face.worldToPicture = Multiply(toPicture, Invert(global));
  face.surface = SurfaceOf(plane, collector.document, collector.assetFolder, collector.missing);
  collector.faces.push_back(std::move(face));
}

// An extrude's face: the closed contours of its spline children, where each lies.
void AddExtrude(Collector& collector, const Object& extrude) {
  Face face;
  for (const Node* child : ChildrenOf(&extrude)) {
    const Object* spline = AsObject(child);
    if (!spline || spline->type != ObjectType_Spline || SwitchedOff(*spline)) continue;
    const Matrix global = GlobalMatrixOf(*spline);
    for (std::vector<Vector>& contour : ClosedContoursOf(*spline)) {
      for (Vector& point : contour) point = TransformPoint(global, point);
      face.contours.push_back(std::move(contour));
    }
  }
  if (face.contours.empty()) return;
  face.surface = SurfaceOf(extrude, collector.document, collector.assetFolder, collector.missing);
  collector.faces.push_back(std::move(face));
}

void Collect(Collector& collector, const Object& object) {
  if (SwitchedOff(object)) return;
  if (object.generatorCache) {
    Collect(collector, *object.generatorCache);
  } else if (object.deformCache) {
    Collect(collector, *object.deformCache);
  } else if (object.type == ObjectType_Plane) {
    AddPlane(collector, object);
  } else if (object.type == ObjectType_Extrude) {
    AddExtrude(collector, object);
  }
  if (ConsumesChildren(object.type) && object.generatorCache) return;
  for (const Node* child : ChildrenOf(&object)) {
    const Object* below = AsObject(child);
    if (!below || (object.type == ObjectType_Extrude && below->type == ObjectType_Spline)) continue;
    Collect(collector, *below);
  }
}

}  // namespace

// An object on a scene layer whose render switch is off is left out as well, so that a
// client switching layers sees its objects go; an object on no layer follows its own mode.
bool SwitchedOff(const Object& object) {
  if (object.modes[kModeRender] == kModeOff || !BoolOf(object, ObjectParam_Enabled, true)) return true;
  const Node* layer = object.layerId != 0 ? ResolveLink(object.layerId) : nullptr;
  return layer && layer->nodeClass == NodeClass::Layer && LayerRecordOf(*layer).render == 0;
}

bool ConsumesChildren(int32_t type) {
  return type == ObjectType_Duplicator || type == ObjectType_ChainGeneratorA || type == ObjectType_ChainGeneratorB;
}

std::vector<Face> SceneFaces(const Document& document, const std::string& assetFolder,
                             std::vector<std::string>& missing) {
  Collector collector{document, assetFolder, missing, {}};
  for (const Node* top : ChildrenOf(document.objects.get()))
    if (const Object* object = AsObject(top)) Collect(collector, *object);
  return std::move(collector.faces);
}

}  // namespace quillon::render
