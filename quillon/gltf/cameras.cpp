#include "quillon/gltf/cameras.h"

#include <cmath>
#include <numbers>

#include "plugin/exporter/scene_ids.h"
#include "quillon/gltf/scene_params.h"
#include "quillon/render/node_values.h"

namespace quillon::gltf {
namespace {

// glTF asks for a near plane above 0; a tenth of a pixel keeps whatever stands in front.
constexpr double kNearPlane = 0.1;
// glTF's writer always writes a far plane, and 0 is none a reader accepts: ten million pixels
// lie beyond any composition.
constexpr double kFarPlane = 1.0e7;
// Film width and focal length of a camera that gives neither its field of view nor these.
constexpr double kDefaultAperture = 36.0;
constexpr double kDefaultFocalLength = 36.0;

// The horizontal field of view: the parameter, else from focal length and film width.
double HorizontalFieldOfView(const Object& camera) {
  if (camera.type == ObjectType_KvCamera) {
    const double fov = render::FloatOf(camera, KvCameraParam_FieldOfView, -1.0);
    if (fov > 0.0) return fov;
    const Vector fovs = render::VectorOf(camera, KvCameraParam_FieldOfView, Vector{-1.0, 0.0, 0.0});
    if (fovs.x > 0.0) return fovs.x;
  } else {
    const double fov = render::FloatOf(camera, CameraParam_FieldOfView, -1.0);
    if (fov > 0.0) return fov;
  }
  const double aperture = render::FloatOf(camera, CameraParam_Aperture, kDefaultAperture);
  const double focal = render::FloatOf(camera, CameraParam_FocalLength, kDefaultFocalLength);
  return 2.0 * std::atan(aperture / (2.0 * focal));
}

}  // namespace

double FilmAspect(const Document& document) {
  double width = 1280.0, height = 720.0, pixelAspect = 1.0, film = 0.0;
  if (const Node* settings = document.activeSettings) {
    width = render::FloatOf(*settings, RenderParam_Width, width);
    height = render::FloatOf(*settings, RenderParam_Height, height);
    pixelAspect = render::FloatOf(*settings, RenderParam_PixelAspect, pixelAspect);
    film = render::FloatOf(*settings, RenderParam_FilmAspect, 0.0);
  }
  if (std::isfinite(film) && film > 0.0) return film;
  const double aspect = width * pixelAspect / height;
  return std::isfinite(aspect) && aspect > 0.0 ? aspect : 1280.0 / 720.0;
}

double VerticalFieldOfView(double horizontal, double aspect) {
  return 2.0 * std::atan(std::tan(horizontal / 2.0) / aspect);
}

void AddCamera(Conversion& conversion, Object& camera, tinygltf::Node& node) {
  const double aspect = FilmAspect(conversion.document);
  tinygltf::Camera gltfCamera;
  gltfCamera.name = ToUtf8(camera.name);
  if (render::Int32Of(camera, CameraParam_Projection, 0) != 0) {
    // A parallel view shows the picture at its size in pixels, whatever the distance.
    const Node* settings = conversion.document.activeSettings;
    const double height = settings ? render::FloatOf(*settings, RenderParam_Height, 720.0) : 720.0;
    gltfCamera.type = "orthographic";
    gltfCamera.orthographic.ymag = height / 2.0;
    gltfCamera.orthographic.xmag = height / 2.0 * aspect;
    gltfCamera.orthographic.znear = kNearPlane;
    gltfCamera.orthographic.zfar = kFarPlane;
  } else {
    double horizontal = HorizontalFieldOfView(camera);
    // glTF wants a field of view strictly between 0 and a half turn.
    if (!std::isfinite(horizontal) || horizontal <= 0.0 || horizontal >= std::numbers::pi)
      horizontal = 2.0 * std::atan(kDefaultAperture / (2.0 * kDefaultFocalLength));
    gltfCamera.type = "perspective";
    gltfCamera.perspective.yfov = VerticalFieldOfView(horizontal, aspect);
    gltfCamera.perspective.aspectRatio = aspect;
    gltfCamera.perspective.znear = kNearPlane;
    gltfCamera.perspective.zfar = kFarPlane;
  }
  if (HasKeyedTrack(camera, CameraParam_FieldOfView) || HasKeyedTrack(camera, KvCameraParam_FieldOfView) ||
      HasKeyedTrack(camera, CameraParam_FocalLength))
    conversion.summary.leftOut.push_back("the field of view keys of camera " + Quoted(camera) +
                                         " (glTF does not animate a camera's view; the parameter's value stays)");
  conversion.model.cameras.push_back(gltfCamera);
  node.camera = static_cast<int>(conversion.model.cameras.size() - 1);
  ++conversion.summary.cameras;
}

}  // namespace quillon::gltf
