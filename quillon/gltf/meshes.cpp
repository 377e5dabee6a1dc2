#include "quillon/gltf/meshes.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/gltf/axes.h"
#include "quillon/gltf/gltf_buffer.h"
#include "quillon/gltf/materials.h"
#include "quillon/render/node_values.h"
#include "quillon/gltf/triangulation.h"

namespace quillon::gltf {
namespace {

// A plane of the 3D application's defaults: 400 units square, facing +y.
constexpr double kDefaultPlaneSize = 400.0;
constexpr int32_t kDefaultPlaneOrientation = 2;

// The plane's axes by its orientation: 0 faces +x, 1 -x, 2 +y, 3 -y, 4 +z, 5 -z (what the
// exporter writes: towards the viewer). Width runs along the first in-plane axis, height
// along the second.
struct PlaneAxes {
  Vector width;
  Vector height;
  Vector normal;
};

PlaneAxes AxesOfOrientation(int32_t orientation) {
  const double sign = orientation % 2 == 0 ? 1.0 : -1.0;
  if (orientation == 0 || orientation == 1) return {{0, 0, 1}, {0, 1, 0}, {sign, 0, 0}};
  if (orientation == 2 || orientation == 3) return {{1, 0, 0}, {0, 0, 1}, {0, sign, 0}};
  return {{1, 0, 0}, {0, 1, 0}, {0, 0, sign}};
}

struct MeshData {
  std::vector<float> positions;
  std::vector<float> normals;
  std::vector<float> texcoords;
  std::vector<uint32_t> indices;
};

void AddVertex(MeshData& mesh, const Vector& scenePoint, const Vector& gltfNormal) {
  const Vector p = ToGltfPoint(scenePoint);
  mesh.positions.insert(mesh.positions.end(), {GltfFloat(p.x), GltfFloat(p.y), GltfFloat(p.z)});
  mesh.normals.insert(mesh.normals.end(), {GltfFloat(gltfNormal.x), GltfFloat(gltfNormal.y), GltfFloat(gltfNormal.z)});
}

void PutMesh(Conversion& conversion, const MeshData& data, int material, const std::string& name, tinygltf::Node& node) {
  tinygltf::Primitive primitive;
  primitive.mode = TINYGLTF_MODE_TRIANGLES;
  primitive.attributes["POSITION"] = AddFloatAccessor(conversion.model, data.positions, 3, TINYGLTF_TARGET_ARRAY_BUFFER);
  primitive.attributes["NORMAL"] = AddFloatAccessor(conversion.model, data.normals, 3, TINYGLTF_TARGET_ARRAY_BUFFER);
  if (!data.texcoords.empty())
    primitive.attributes["TEXCOORD_0"] = AddFloatAccessor(conversion.model, data.texcoords, 2, TINYGLTF_TARGET_ARRAY_BUFFER);
  primitive.indices = AddIndexAccessor(conversion.model, data.indices);
  primitive.material = material;
  tinygltf::Mesh mesh;
  mesh.name = name;
  mesh.primitives.push_back(primitive);
  conversion.model.meshes.push_back(mesh);
  node.mesh = static_cast<int>(conversion.model.meshes.size() - 1);
}

}  // namespace

void AddPlaneMesh(Conversion& conversion, Object& plane, tinygltf::Node& node) {
  const int32_t orientation = render::Int32Of(plane, PlaneParam_Orientation, kDefaultPlaneOrientation);
  if (orientation < 0 || orientation > 5) {
    conversion.summary.leftOut.push_back("the surface of plane " + Quoted(plane) + " (orientation " +
                                         std::to_string(orientation) + " is none of 0 to 5)");
    return;
  }
  const PlaneAxes axes = AxesOfOrientation(orientation);
  const Vector w = axes.width * (render::FloatOf(plane, PlaneParam_Width, kDefaultPlaneSize) / 2.0);
  const Vector h = axes.height * (render::FloatOf(plane, PlaneParam_Height, kDefaultPlaneSize) / 2.0);
  const Vector normal = ToGltfPoint(axes.normal);
  MeshData mesh;
  // Corners: -w-h, +w-h, +w+h, -w+h; the picture's top row (v = 0) lies along +height.
  AddVertex(mesh, w * -1.0 - h, normal);
  AddVertex(mesh, w - h, normal);
  AddVertex(mesh, w + h, normal);
  AddVertex(mesh, h - w, normal);
  // Mirroring z turns a triangle's corner order round, so the corners run counter-clockwise
  // about glTF's normal when they run clockwise about the scene's.
  const bool forward = Dot(Cross(axes.width, axes.height), axes.normal) < 0.0;
  mesh.indices = forward ? std::vector<uint32_t>{0, 1, 2, 0, 2, 3} : std::vector<uint32_t>{0, 2, 1, 0, 3, 2};
  const int material = MaterialOfObject(conversion, plane);
  // Seen from behind, the picture reads mirrored, as a layer turned round does.
  if (material >= 0 && conversion.model.materials[material].pbrMetallicRoughness.baseColorTexture.index >= 0)
    mesh.texcoords = {0.0f, 1.0f, 1.0f, 1.0f, 1.0f, 0.0f, 0.0f, 0.0f};
  PutMesh(conversion, mesh, material, ToUtf8(plane.name), node);
  ++conversion.summary.planes;
}

void AddSplineMesh(Conversion& conversion, Object& spline, const Object& extrude, tinygltf::Node& node) {
  PoseSplineForm(spline, conversion.origin);
  const std::vector<Contour> contours = SplineContours(spline);
  if (HasFormKeys(spline))
    conversion.summary.leftOut.push_back("the form keys of spline " + Quoted(spline) +
                                         " (glTF has no point level animation; the form at the start stays)");
  // Mirroring z turns the order of a triangle's corners round as well, so triangles
  // counter-clockwise about the scene's +z are counter-clockwise about glTF's +z once
  // converted: they face the viewer, as the face of an extrusion does.
  const Triangles triangles = Triangulate(contours, Vector{0.0, 0.0, 1.0});
  if (triangles.indices.empty()) {
    conversion.summary.leftOut.push_back("the face of spline " + Quoted(spline) + " (its contours enclose no area)");
    return;
  }
  MeshData mesh;
  for (const Vector& vertex : triangles.vertices) AddVertex(mesh, vertex, Vector{0.0, 0.0, 1.0});
  mesh.indices = triangles.indices;
  PutMesh(conversion, mesh, MaterialOfObject(conversion, extrude), ToUtf8(spline.name), node);
  ++conversion.summary.splineMeshes;
}

}  // namespace quillon::gltf
