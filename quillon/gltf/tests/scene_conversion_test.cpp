// A scene built in the model, converted: what each kind of object becomes, by values worked
// out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/tests/sample_scene.h"
#include "quillon/gltf/scene_conversion.h"
#include "quillon/model/animation.h"
#include "quillon/model/evaluate.h"
#include "quillon/model/links.h"
#include "quillon/model/tag.h"

namespace quillon::gltf {
namespace {

using std::numbers::pi;

Object* AddObject(Node* parent, int32_t type, const std::u16string& name) {
  auto* object = new Object(type);
  object->name = name;
  InsertLastUnder(object, parent);
  return object;
}

void AddKeys(Object* object, int32_t parameter, int32_t component, std::initializer_list<std::pair<int, double>> keys) {
  auto* track = new Track({{parameter, DataKind_Vector, 0}, {component, DataKind_Float, 0}});
  track->curve = std::make_unique<Curve>();
  track->curve->track = track;
  InsertLastUnder(track, object->trackList());
  for (const auto& [frame, value] : keys) AddKeyAt(*track->curve, BaseTime(frame, 25))->value = value;
}

std::vector<float> AccessorFloats(const tinygltf::Model& model, int index) {
  const tinygltf::Accessor& accessor = model.accessors.at(index);
  const tinygltf::BufferView& view = model.bufferViews.at(accessor.bufferView);
  std::vector<float> values(view.byteLength / sizeof(float));
  std::memcpy(values.data(), model.buffers.at(0).data.data() + view.byteOffset, view.byteLength);
  return values;
}

const tinygltf::Node& NodeNamed(const tinygltf::Model& model, const std::string& name) {
  for (const tinygltf::Node& node : model.nodes)
    if (node.name == name) return node;
  throw std::runtime_error("no node " + name);
}

bool LeftOut(const ConversionSummary& summary, const std::string& part) {
  for (const std::string& item : summary.leftOut)
    if (item.find(part) != std::string::npos) return true;
  return false;
}

class SceneConversion : public ::testing::Test {
 protected:
  std::unique_ptr<Document> document = NewDocument();
  ConvertedScene converted;

  void Convert() {
    std::string problem;
    ASSERT_TRUE(ConvertScene(*document, ConversionOptions{}, converted, &problem)) << problem;
  }
  Object* Light(const std::u16string& name, int32_t type) {
    Object* light = AddObject(document->objects.get(), ObjectType_Light, name);
    SetInt32(light->params[LightParam_Type].raw, type);
    return light;
  }
};

TEST_F(SceneConversion, NothingToConvertIsRefused) {
  std::string problem;
  EXPECT_FALSE(ConvertScene(*document, ConversionOptions{}, converted, &problem));
  EXPECT_EQ(problem, "the scene holds no object, so there is nothing to convert");
}

TEST_F(SceneConversion, ANumberBeyondFloatsIsRefused) {
  Object* plane = AddObject(document->objects.get(), ObjectType_Plane, u"Huge");
  SetFloat(plane->params[PlaneParam_Width].raw, 1e300);
  std::string problem;
  EXPECT_FALSE(ConvertScene(*document, ConversionOptions{}, converted, &problem));
  EXPECT_NE(problem.find(" lies beyond the 32-bit floats that glTF holds"), std::string::npos) << problem;
}

TEST_F(SceneConversion, TheTreeKeepsNamesAndParents) {
  Object* parent = AddObject(document->objects.get(), ObjectType_Null, u"Parent \u00E9");
  AddObject(parent, ObjectType_Null, u"Child");
  AddObject(document->objects.get(), ObjectType_Null, u"Second");
  Convert();
  const tinygltf::Model& m = converted.model;
  ASSERT_EQ(m.nodes.size(), 3u);
  EXPECT_EQ(m.scenes.at(0).nodes, (std::vector<int>{0, 2}));
  EXPECT_EQ(m.nodes[0].name, "Parent \xC3\xA9");
  EXPECT_EQ(m.nodes[0].children, (std::vector<int>{1}));
  EXPECT_EQ(m.nodes[1].name, "Child");
}

struct Cone {
  double outer, inner;          // the scene's full angles
  double gltfOuter, gltfInner;  // glTF's half angles
};

class SpotCone : public SceneConversion, public ::testing::WithParamInterface<Cone> {};

TEST_P(SpotCone, HalvesTheFullAnglesAndKeepsInnerBelowOuter) {
  Object* spot = Light(u"Spot", 1);
  SetFloat(spot->params[LightParam_OuterAngle].raw, GetParam().outer);
  SetFloat(spot->params[LightParam_InnerAngle].raw, GetParam().inner);
  Convert();
  const tinygltf::Light& light = converted.model.lights.at(0);
  EXPECT_EQ(light.type, "spot");
  EXPECT_DOUBLE_EQ(light.spot.outerConeAngle, GetParam().gltfOuter);
  EXPECT_NEAR(light.spot.innerConeAngle, GetParam().gltfInner, 1e-12);
  EXPECT_LT(light.spot.innerConeAngle, light.spot.outerConeAngle);
}

INSTANTIATE_TEST_SUITE_P(Cones, SpotCone,
                         ::testing::Values(Cone{pi / 2, pi / 4, pi / 4, pi / 8},  // cone 90, feather 50
                                           Cone{pi / 2, 0.0, pi / 4, 0.0},       // feather 100
                                           Cone{pi / 2, pi / 2, pi / 4, pi / 4},  // feather 0: just below
                                           Cone{pi, pi / 2, pi / 2, pi / 4}));    // the widest cone

TEST_F(SceneConversion, LightKindsColourAndIntensity) {
  Object* point = Light(u"Point", 0);
  SetVector(point->params[LightParam_Color].raw, {1.0, 0.5, 0.25});
  SetFloat(point->params[LightParam_Intensity].raw, 0.75);
  Light(u"Parallel", 4);
  Light(u"Ambient", 3);
  Convert();
  const auto& lights = converted.model.lights;
  ASSERT_EQ(lights.size(), 2u);
  EXPECT_EQ(lights[0].type, "point");
  EXPECT_EQ(lights[0].color, (std::vector<double>{1.0, 0.5, 0.25}));
  EXPECT_EQ(lights[0].intensity, 0.75);
  EXPECT_EQ(lights[1].type, "directional");
  EXPECT_TRUE(LeftOut(converted.summary, "ambient light \"Ambient\" (glTF has no ambient light)"));
  EXPECT_EQ(converted.model.nodes[0].extensions.count("KHR_lights_punctual"), 1u);
  EXPECT_EQ(converted.model.nodes[2].extensions.count("KHR_lights_punctual"), 0u);
}

TEST_F(SceneConversion, CameraFieldOfViewBecomesVertical) {
  Object* camera = AddObject(document->objects.get(), ObjectType_Camera, u"Cam");
  SetFloat(camera->params[CameraParam_FieldOfView].raw, pi / 2);
  SetFloat(document->activeSettings->params[RenderParam_FilmAspect].raw, 2.0);
  Convert();
  const tinygltf::Camera& c = converted.model.cameras.at(0);
  EXPECT_EQ(c.type, "perspective");
  // tan(yfov / 2) = tan(xfov / 2) / aspect = 1 / 2.
  EXPECT_NEAR(c.perspective.yfov, 2.0 * std::atan(0.5), 1e-12);
  EXPECT_EQ(c.perspective.aspectRatio, 2.0);
}

TEST_F(SceneConversion, AnOrthographicCameraIsAsLargeAsThePicture) {
  Object* camera = AddObject(document->objects.get(), ObjectType_Camera, u"Cam");
  SetInt32(camera->params[CameraParam_Projection].raw, 4);
  Convert();
  const tinygltf::Camera& c = converted.model.cameras.at(0);
  EXPECT_EQ(c.type, "orthographic");
  EXPECT_NEAR(c.orthographic.ymag, 360.0, 1e-12);  // a new document renders 1280 x 720
  EXPECT_NEAR(c.orthographic.xmag, 640.0, 1e-9);
}

TEST_F(SceneConversion, APlaneIsTwoTrianglesOfItsSizeFacingTheViewer) {
  Object* plane = AddObject(document->objects.get(), ObjectType_Plane, u"Solid");
  SetFloat(plane->params[PlaneParam_Width].raw, 1000);
  SetFloat(plane->params[PlaneParam_Height].raw, 500);
  SetInt32(plane->params[PlaneParam_Orientation].raw, 5);
  Node* material = NewMaterial(MaterialType_Standard).release();
  InsertLastUnder(material, document->materials.get());
  SetVector(material->params[MaterialParam_Color].raw, {1, 0, 0});
  Tag* tag = new Tag(TagType_Texture);
  InsertLastUnder(tag, plane->tagRoot.get());
  SetLinkId(tag->params[TextureTagParam_Material].raw, LinkIdOf(material));
  Convert();
  const tinygltf::Model& m = converted.model;
  const tinygltf::Primitive& p = m.meshes.at(0).primitives.at(0);
  EXPECT_EQ(m.accessors[p.attributes.at("POSITION")].minValues, (std::vector<double>{-500, -250, 0}));
  EXPECT_EQ(m.accessors[p.attributes.at("POSITION")].maxValues, (std::vector<double>{500, 250, 0}));
  EXPECT_EQ(AccessorFloats(m, p.attributes.at("NORMAL")), (std::vector<float>{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}));
  EXPECT_EQ(m.accessors[p.indices].count, 6u);
  EXPECT_EQ(m.materials.at(p.material).pbrMetallicRoughness.baseColorFactor, (std::vector<double>{1, 0, 0, 1}));
}

struct Facing {
  int32_t orientation;
  std::vector<float> normal;  // in glTF's axes
  std::vector<double> max;    // the corner of +width, +height, in glTF's axes
};

class PlaneFacing : public SceneConversion, public ::testing::WithParamInterface<Facing> {};

// Width 40 and height 20 along the orientation's axes; the triangles turn their front (their
// corners counter-clockwise) to the normal.
TEST_P(PlaneFacing, SpansItsAxesAndFacesItsNormal) {
  Object* plane = AddObject(document->objects.get(), ObjectType_Plane, u"P");
  SetFloat(plane->params[PlaneParam_Width].raw, 40);
  SetFloat(plane->params[PlaneParam_Height].raw, 20);
  SetInt32(plane->params[PlaneParam_Orientation].raw, GetParam().orientation);
  Convert();
  const tinygltf::Model& m = converted.model;
  const tinygltf::Primitive& p = m.meshes.at(0).primitives.at(0);
  const std::vector<float> normals = AccessorFloats(m, p.attributes.at("NORMAL"));
  EXPECT_EQ(std::vector<float>(normals.begin(), normals.begin() + 3), GetParam().normal);
  EXPECT_EQ(m.accessors[p.attributes.at("POSITION")].maxValues, GetParam().max);
  const std::vector<float> xyz = AccessorFloats(m, p.attributes.at("POSITION"));
  std::vector<uint32_t> indices(6);
  const tinygltf::BufferView& view = m.bufferViews.at(m.accessors[p.indices].bufferView);
  std::memcpy(indices.data(), m.buffers[0].data.data() + view.byteOffset, view.byteLength);
  for (int t = 0; t < 2; ++t) {
    auto corner = [&](int k) { return Vector{xyz[3 * indices[3 * t + k]], xyz[3 * indices[3 * t + k] + 1], xyz[3 * indices[3 * t + k] + 2]}; };
    const Vector front = Cross(corner(1) - corner(0), corner(2) - corner(0));
    EXPECT_GT(Dot(front, Vector{normals[0], normals[1], normals[2]}), 0.0) << "triangle " << t;
  }
}

INSTANTIATE_TEST_SUITE_P(Orientations, PlaneFacing,
                         ::testing::Values(Facing{0, {1, 0, 0}, {0, 10, 20}}, Facing{1, {-1, 0, 0}, {0, 10, 20}},
                                           Facing{2, {0, 1, 0}, {20, 0, 10}}, Facing{3, {0, -1, 0}, {20, 0, 10}},
                                           Facing{4, {0, 0, -1}, {20, 10, 0}}, Facing{5, {0, 0, 1}, {20, 10, 0}}));

TEST_F(SceneConversion, KeysBecomeChannelsAtTheirTimesInGltfAxes) {
  Object* mover = AddObject(document->objects.get(), ObjectType_Null, u"Mover");
  AddKeys(mover, ObjectParam_Position, VectorComponent_Z, {{0, 100.0}, {25, 300.0}, {50, 300.0}});
  AddKeys(mover, ObjectParam_Rotation, VectorComponent_X, {{25, 0.0}, {50, pi / 2}});
  mover->rotationOrder = 6;
  Convert();
  const tinygltf::Model& m = converted.model;
  ASSERT_EQ(m.animations.size(), 1u);
  const tinygltf::Animation& a = m.animations[0];
  ASSERT_EQ(a.channels.size(), 2u);
  EXPECT_EQ(a.channels[0].target_path, "translation");
  EXPECT_EQ(a.channels[1].target_path, "rotation");
  EXPECT_EQ(AccessorFloats(m, a.samplers[0].input), (std::vector<float>{0.0f, 1.0f, 2.0f}));
  EXPECT_EQ(AccessorFloats(m, a.samplers[0].output), (std::vector<float>{0, 0, -100, 0, 0, -300, 0, 0, -300}));
  // A heading of a quarter turn is Ry(-pi/2) in the scene (see the rotation orders); mirroring
  // z turns the sense of a turn about y round: Ry(pi/2), q = (0, sin(pi/4), 0, cos(pi/4)).
  const std::vector<float> q = AccessorFloats(m, a.samplers[1].output);
  EXPECT_NEAR(q[9], std::sin(pi / 4), 1e-7);
  EXPECT_NEAR(q[11], std::cos(pi / 4), 1e-7);
  EXPECT_EQ(NodeNamed(m, "Mover").translation, (std::vector<double>{0, 0, -100}));
  EXPECT_EQ(converted.summary.keys, 6);
}

TEST_F(SceneConversion, ATargetTagTurnsTheCameraTowardsItsTarget) {
  Object* camera = AddObject(document->objects.get(), ObjectType_Camera, u"Cam");
  Object* target = AddObject(document->objects.get(), ObjectType_Null, u"Aim");
  SetVector(target->params[ObjectParam_Position].raw, {100, 0, 0});
  Tag* tag = new Tag(TagType_Target);
  InsertLastUnder(tag, camera->tagRoot.get());
  SetLinkId(tag->params[TargetTagParam_Target].raw, LinkIdOf(target));
  AddKeys(target, ObjectParam_Position, VectorComponent_Z, {{0, 0.0}, {25, 100.0}});
  Convert();
  const tinygltf::Model& m = converted.model;
  // At frame 0 the target lies along +x: glTF's -z of the camera turns to +x, a quarter turn
  // about y: q = (0, -sin(pi/4), 0, cos(pi/4)) or its negation.
  const std::vector<double>& r = NodeNamed(m, "Cam").rotation;
  EXPECT_NEAR(std::fabs(r[1]), std::sin(pi / 4), 1e-12);
  EXPECT_NEAR(std::fabs(r[3]), std::cos(pi / 4), 1e-12);
  EXPECT_LT(r[1] * r[3], 0.0);
  // The target's keys give the camera a rotation channel; at frame 25 it looks along (1, 0, 1).
  const tinygltf::Animation& a = m.animations.at(0);
  const auto camChannel = std::find_if(a.channels.begin(), a.channels.end(),
                                       [&](const auto& c) { return m.nodes[c.target_node].name == "Cam"; });
  ASSERT_NE(camChannel, a.channels.end());
  EXPECT_EQ(camChannel->target_path, "rotation");
  const std::vector<float> q = AccessorFloats(m, a.samplers[camChannel->sampler].output);
  EXPECT_NEAR(std::fabs(q[5]), std::sin(pi / 8), 1e-7);
}

TEST_F(SceneConversion, MarkersAreNamedEventsInTheExtras) {
  AddObject(document->objects.get(), ObjectType_Null, u"Still");
  Node* marker = NewMarker().release();
  marker->name = u"cut";
  SetTime(marker->params[MarkerParam_Time].raw, BaseTime(50, 25));
  SetText(marker->params[MarkerParam_Note].raw, u"note");
  InsertLastUnder(marker, document->markers.get());
  Convert();
  const tinygltf::Value& markers = converted.model.scenes.at(0).extras.Get("markers");
  ASSERT_EQ(markers.ArrayLen(), 1u);
  EXPECT_EQ(markers.Get(0).Get("name").Get<std::string>(), "cut");
  EXPECT_EQ(markers.Get(0).Get("time").GetNumberAsDouble(), 2.0);
  EXPECT_EQ(markers.Get(0).Get("frame").GetNumberAsInt(), 60);  // a new document counts 30 frames a second
  EXPECT_EQ(markers.Get(0).Get("note").Get<std::string>(), "note");
  EXPECT_EQ(converted.summary.markers, 1);
}

TEST_F(SceneConversion, AClosedSplineInAnExtrudeGetsAFaceWithItsHole) {
  Object* extrude = AddObject(document->objects.get(), ObjectType_Extrude, u"O");
  Object* spline = AddObject(extrude, ObjectType_Spline, u"O Spline");
  ResizeSplineArrays(*spline, 8, 2);
  auto* points = static_cast<Vector*>(FindTag(*spline, TagType_Points, 0)->Address());
  const Vector corners[8] = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {3, 3, 0}, {3, 7, 0}, {7, 7, 0}, {7, 3, 0}};
  std::copy(std::begin(corners), std::end(corners), points);
  auto* segments = static_cast<SplineSegment*>(FindTag(*spline, TagType_Segments, 0)->Address());
  segments[0] = {4, 1, {}};
  segments[1] = {4, 1, {}};
  Convert();
  const tinygltf::Model& m = converted.model;
  const tinygltf::Primitive& p = m.meshes.at(NodeNamed(m, "O Spline").mesh).primitives.at(0);
  // A square ring: 8 triangles between the outer square and the hole.
  EXPECT_EQ(m.accessors[p.indices].count, 24u);
  EXPECT_EQ(converted.summary.splineMeshes, 1);
}

TEST_F(SceneConversion, AContourRepeatedToPadAFormIsFilledOnce) {
  // The exporter gives a letter of one contour a second one that repeats it when another key
  // of the spline has two; under the even-odd rule the two would cancel out.
  Object* extrude = AddObject(document->objects.get(), ObjectType_Extrude, u"H");
  Object* spline = AddObject(extrude, ObjectType_Spline, u"H Spline");
  ResizeSplineArrays(*spline, 8, 2);
  auto* points = static_cast<Vector*>(FindTag(*spline, TagType_Points, 0)->Address());
  const Vector square[4] = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
  std::copy(std::begin(square), std::end(square), points);
  std::copy(std::begin(square), std::end(square), points + 4);
  auto* segments = static_cast<SplineSegment*>(FindTag(*spline, TagType_Segments, 0)->Address());
  segments[0] = {4, 1, {}};
  segments[1] = {4, 1, {}};
  Convert();
  const tinygltf::Model& m = converted.model;
  const tinygltf::Primitive& p = m.meshes.at(NodeNamed(m, "H Spline").mesh).primitives.at(0);
  EXPECT_EQ(m.accessors[p.indices].count, 6u);
}

TEST_F(SceneConversion, ASplineWithFormKeysTakesTheFormOfItsFirstKey) {
  Object* extrude = AddObject(document->objects.get(), ObjectType_Extrude, u"Wave");
  Object* spline = AddObject(extrude, ObjectType_Spline, u"Wave Spline");
  ResizeSplineArrays(*spline, 3, 1);  // its own arrays hold no form: all points at the origin
  static_cast<SplineSegment*>(FindTag(*spline, TagType_Segments, 0)->Address())[0] = {3, 1, {}};
  auto* track = new Track({{SplineKeyTrack_Id, DataKind_SplineKey, 0}});
  track->kind = SplineKeyTrack_Id;
  track->curve = std::make_unique<Curve>();
  track->curve->track = track;
  InsertLastUnder(track, spline->trackList());
  for (int frame : {30, 31}) {
    Key* key = AddKeyAt(*track->curve, BaseTime(frame, 30));
    InitCustom(key->data.raw, DataKind_SplineKey);
    SplineKeyData& form = *AsSplineKey(key->data.raw);
    form.points->Resize(3);
    form.tangents->Resize(3);
    const double size = frame == 30 ? 10.0 : 20.0;
    const Vector triangle[3] = {{0, 0, 0}, {size, 0, 0}, {0, size, 0}};
    std::copy(std::begin(triangle), std::end(triangle), static_cast<Vector*>(form.points->Address()));
  }
  Convert();
  const tinygltf::Model& m = converted.model;
  const tinygltf::Primitive& p = m.meshes.at(NodeNamed(m, "Wave Spline").mesh).primitives.at(0);
  EXPECT_EQ(m.accessors[p.attributes.at("POSITION")].maxValues, (std::vector<double>{10, 10, 0}));
  EXPECT_TRUE(LeftOut(converted.summary, "the form keys of spline \"Wave Spline\""));
}

TEST_F(SceneConversion, ASweepIsNamedOnceWithWhatItHolds) {
  Object* sweep = AddObject(document->objects.get(), ObjectType_Sweep, u"H-Stroke");
  AddObject(sweep, ObjectType_TextOutline, u"L-H-StrokeTextOutline");
  AddObject(sweep, ObjectType_Instance, u"H Spline");
  AddObject(document->objects.get(), ObjectType_Instance, u"Copy");
  Convert();
  EXPECT_EQ(converted.summary.leftOut,
            (std::vector<std::string>{"the stroke of sweep \"H-Stroke\" (only filled faces are converted)",
                                      "the copy that instance \"Copy\" shows (it refers to nothing)"}));
  EXPECT_EQ(converted.summary.nodes, 4);
}

TEST_F(SceneConversion, ADuplicatorShowsItsCopiesAndASwitchedOffObjectNothing) {
  Object* duplicator = AddObject(document->objects.get(), ObjectType_Duplicator, u"Row");
  SetInt32(duplicator->params[DuplicatorParam_Count].raw, 2);
  Object* card = AddObject(duplicator, ObjectType_Plane, u"Card");
  SetInt32(card->params[PlaneParam_Orientation].raw, 5);
  Object* off = AddObject(document->objects.get(), ObjectType_Null, u"Off");
  SetBool(off->params[ObjectParam_Enabled].raw, false);
  AddObject(off, ObjectType_Light, u"Hidden Lamp");
  ASSERT_EQ(EvaluateDocumentCaches(*document), "");
  Convert();
  const tinygltf::Model& m = converted.model;
  // Row holds its input Card, without a surface, and the cache of two copies of it.
  const tinygltf::Node& row = m.nodes[0];
  ASSERT_EQ(row.children.size(), 2u);
  EXPECT_EQ(m.nodes[row.children[0]].name, "Card");
  EXPECT_EQ(m.nodes[row.children[0]].mesh, -1);
  EXPECT_EQ(converted.summary.planes, 2);
  EXPECT_EQ(NodeNamed(m, "Hidden Lamp").extensions.size(), 0u);
  EXPECT_EQ(converted.summary.lights, 0);
  EXPECT_TRUE(LeftOut(converted.summary, "what object \"Off\" and all below it show (switched off)"));
}

TEST_F(SceneConversion, TexturesOnlyOfStillImagesThatCanBeRead) {
  // Every kind of content: its bitmap is a sequence of 100 frames, its text is live text.
  document = format::testing::MakeSampleScene();
  Convert();
  EXPECT_EQ(converted.summary.textures, 0);
  EXPECT_TRUE(LeftOut(converted.summary, "a movie or an image sequence"));
}

}  // namespace
}  // namespace quillon::gltf
