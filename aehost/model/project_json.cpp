// Reading and writing the JSON project description. Every refusal names the
// JSON path of the offending value; aehost/PROJECT_FORMAT.md is the reference.
#include "aehost/model/project_json.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <map>
#include <set>
#include <span>
#include <stdexcept>
#include <sstream>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <json/json.h>

#include "aehost/model/json_text.h"
#include "files/read_file.h"
#include "files/replace_file.h"

namespace aehost {
namespace {

constexpr const char* kFormatName = "aehost-project";

// ---------------------------------------------------------------- naming

template <typename E>
struct Name {
  E value;
  const char* text;
};

constexpr Name<LayerObjectType> kLayerTypes[] = {
    {LayerObjectType::AudioVideo, "av"},
    {LayerObjectType::Light, "light"},
    {LayerObjectType::Camera, "camera"},
    {LayerObjectType::Text, "text"},
    {LayerObjectType::Shape, "shape"},
};
constexpr Name<LightType> kLightTypes[] = {
    {LightType::Parallel, "parallel"},
    {LightType::Spot, "spot"},
    {LightType::Point, "point"},
    {LightType::Ambient, "ambient"},
};
constexpr Name<CameraType> kCameraTypes[] = {
    {CameraType::Perspective, "perspective"},
    {CameraType::Orthographic, "orthographic"},
};
constexpr Name<FilmSizeUnits> kFilmSizeUnits[] = {
    {FilmSizeUnits::None, "none"},
    {FilmSizeUnits::Horizontal, "horizontal"},
    {FilmSizeUnits::Vertical, "vertical"},
    {FilmSizeUnits::Diagonal, "diagonal"},
};
constexpr Name<AutoOrient> kAutoOrient[] = {
    {AutoOrient::Off, "off"},
    {AutoOrient::TowardsPointOfInterest, "pointOfInterest"},
};
constexpr Name<Justification> kJustifications[] = {
    {Justification::Left, "left"},
    {Justification::Right, "right"},
    {Justification::Center, "center"},
    {Justification::FullLastLineLeft, "fullLastLineLeft"},
    {Justification::FullLastLineRight, "fullLastLineRight"},
    {Justification::FullLastLineCenter, "fullLastLineCenter"},
    {Justification::FullLastLineFull, "fullLastLineFull"},
};
constexpr Name<Interpolation> kInterpolations[] = {
    {Interpolation::Linear, "linear"},
    {Interpolation::Bezier, "bezier"},
    {Interpolation::Hold, "hold"},
};

// Streams by the group and key they stand under in a layer.
constexpr Name<LayerStream> kLayerTransform[] = {
    {LayerStream::AnchorPoint, "anchorPoint"}, {LayerStream::Position, "position"},
    {LayerStream::Scale, "scale"},             {LayerStream::Orientation, "orientation"},
    {LayerStream::RotationX, "rotationX"},     {LayerStream::RotationY, "rotationY"},
    {LayerStream::RotationZ, "rotationZ"},     {LayerStream::Opacity, "opacity"},
};
constexpr Name<LayerStream> kViewerTransform[] = {
    {LayerStream::AnchorPoint, "pointOfInterest"}, {LayerStream::Position, "position"},
    {LayerStream::Orientation, "orientation"},     {LayerStream::RotationX, "rotationX"},
    {LayerStream::RotationY, "rotationY"},         {LayerStream::RotationZ, "rotationZ"},
};
constexpr Name<LayerStream> kCameraOptions[] = {
    {LayerStream::Zoom, "zoom"},
    {LayerStream::DepthOfField, "depthOfField"},
    {LayerStream::FocusDistance, "focusDistance"},
    {LayerStream::Aperture, "aperture"},
    {LayerStream::BlurLevel, "blurLevel"},
};
constexpr Name<LayerStream> kLightOptions[] = {
    {LayerStream::Intensity, "intensity"},
    {LayerStream::Color, "color"},
    {LayerStream::ConeAngle, "coneAngle"},
    {LayerStream::ConeFeather, "coneFeather"},
    {LayerStream::ShadowDarkness, "shadowDarkness"},
    {LayerStream::ShadowDiffusion, "shadowDiffusion"},
    {LayerStream::CastsShadows, "castsShadows"},
    {LayerStream::FalloffKind, "falloff"},
    {LayerStream::FalloffStart, "radius"},
    {LayerStream::FalloffDistance, "falloffDistance"},
};

template <typename E, std::size_t N>
const char* TextOf(const Name<E> (&names)[N], E value) {
  for (const auto& name : names) {
    if (name.value == value) return name.text;
  }
  return names[0].text;
}

template <std::size_t N>
std::span<const Name<LayerStream>> Span(const Name<LayerStream> (&names)[N]) {
  return {names, N};
}

bool IsViewer(LayerObjectType type) {
  return type == LayerObjectType::Camera || type == LayerObjectType::Light;
}

std::span<const Name<LayerStream>> TransformNames(LayerObjectType type) {
  return IsViewer(type) ? Span(kViewerTransform) : Span(kLayerTransform);
}

AutoOrient DefaultAutoOrient(LayerObjectType type) {
  return IsViewer(type) ? AutoOrient::TowardsPointOfInterest : AutoOrient::Off;
}

// ---------------------------------------------------------------- reading

// A JSON value and where it stands in the description.
struct In {
  const Json::Value& value;
  std::string path;
  const std::string& source;
};

[[noreturn]] void Fail(const In& at, const std::string& problem) {
  throw ProjectFormatError(at.source + ": " + (at.path.empty() ? "top level" : at.path) + ": " +
                           problem);
}

In Member(const In& object, const std::string& key) {
  return {object.value[key], object.path.empty() ? key : object.path + "." + key, object.source};
}

In Element(const In& array, Json::ArrayIndex index) {
  return {array.value[index], array.path + "[" + std::to_string(index) + "]", array.source};
}

bool Has(const In& object, const char* key) { return object.value.isMember(key); }

template <typename Names>
void RequireObjectWith(const In& at, const Names& allowed) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  for (const auto& key : at.value.getMemberNames()) {
    bool known = false;
    for (const auto& name : allowed) known = known || name == key;
    if (!known) Fail(Member(at, key), "unknown key");
  }
}

void RequireObject(const In& at, std::initializer_list<std::string_view> allowed) {
  RequireObjectWith(at, allowed);
}

void RequireMember(const In& object, const char* key) {
  if (!Has(object, key)) Fail(object, std::string("missing \"") + key + "\"");
}

const Json::Value& RequireArray(const In& at) {
  if (!at.value.isArray()) Fail(at, "expected an array");
  return at.value;
}

double Number(const In& at) {
  if (!at.value.isNumeric() || at.value.isBool()) Fail(at, "expected a number");
  const double number = at.value.asDouble();
  if (!std::isfinite(number)) Fail(at, "expected a finite number");
  return number;
}

double NumberIn(const In& at, double low, double high) {
  const double number = Number(at);
  if (number < low || number > high) {
    std::ostringstream range;
    range << "must lie between " << low << " and " << high;
    Fail(at, range.str());
  }
  return number;
}

double Positive(const In& at) {
  const double number = Number(at);
  if (number <= 0.0) Fail(at, "must be above 0");
  return number;
}

// A composition's length, which the plug-in walks frame by frame: above 0 and no longer
// than the host lets a composition be.
double CompDuration(const In& at) {
  const double number = Positive(at);
  if (number > kMaxCompDuration) {
    std::ostringstream limit;
    limit << "must be at most " << kMaxCompDuration << " seconds (three hours)";
    Fail(at, limit.str());
  }
  return number;
}

// A layer's stretch: a factor, negative when it plays backwards, never 0.
double Stretch(const In& at) {
  const double stretch = Number(at);
  if (std::fabs(stretch) < kMinStretch || std::fabs(stretch) > kMaxStretch) {
    std::ostringstream range;
    range << "must lie between " << kMinStretch << " and " << kMaxStretch << " or between "
          << -kMaxStretch << " and " << -kMinStretch;
    Fail(at, range.str());
  }
  return stretch;
}

// A point in time or a length of time: within what the host's 32-bit times carry.
double Seconds(const In& at) { return NumberIn(at, -kMaxTimeSeconds, kMaxTimeSeconds); }
double Length(const In& at) { return NumberIn(at, 0.0, kMaxTimeSeconds); }

int Integer(const In& at, int low, int high) {
  if (!at.value.isInt() || at.value.isBool()) Fail(at, "expected a whole number");
  const int number = at.value.asInt();
  if (number < low || number > high) {
    Fail(at, "must lie between " + std::to_string(low) + " and " + std::to_string(high));
  }
  return number;
}

std::string Text(const In& at) {
  if (!at.value.isString()) Fail(at, "expected a string");
  return at.value.asString();
}

bool Flag(const In& at) {
  if (!at.value.isBool()) Fail(at, "expected true or false");
  return at.value.asBool();
}

template <typename E, std::size_t N>
E Choice(const In& at, const Name<E> (&names)[N]) {
  const std::string text = Text(at);
  std::string known;
  for (const auto& name : names) {
    if (text == name.text) return name.value;
    known += (known.empty() ? "\"" : ", \"") + std::string(name.text) + "\"";
  }
  Fail(at, "\"" + text + "\" is not one of " + known);
}

// Optional members: the field keeps its value when the key is absent.
void Read(const In& object, const char* key, double& field) {
  if (Has(object, key)) field = Number(Member(object, key));
}
void Read(const In& object, const char* key, bool& field) {
  if (Has(object, key)) field = Flag(Member(object, key));
}
void Read(const In& object, const char* key, std::string& field) {
  if (Has(object, key)) field = Text(Member(object, key));
}

Value ReadValue(const In& at, StreamKind kind) {
  Value value;
  const int dims = Dimensions(kind);
  if (dims == 1) {
    value[0] = Number(at);
    return value;
  }
  const Json::Value& array = RequireArray(at);
  const bool color = kind == StreamKind::Color;
  const auto size = static_cast<int>(array.size());
  if (color ? (size != 3 && size != 4) : size != dims) {
    Fail(at, color ? "expected 3 or 4 numbers (red, green, blue, alpha)"
                   : "expected " + std::to_string(dims) + " numbers");
  }
  if (color) value[3] = 1.0;
  for (int i = 0; i < size; ++i) value[i] = Number(Element(at, static_cast<Json::ArrayIndex>(i)));
  return value;
}

Value ReadColor(const In& at) { return ReadValue(at, StreamKind::Color); }

void ReadEases(const In& at, StreamKind kind, std::array<Ease, 3>& eases) {
  const Json::Value& array = RequireArray(at);
  const int dims = TemporalDimensions(kind);
  if (static_cast<int>(array.size()) != dims) {
    Fail(at, "expected " + std::to_string(dims) + " eases, one a temporal dimension");
  }
  for (int i = 0; i < dims; ++i) {
    const In ease = Element(at, static_cast<Json::ArrayIndex>(i));
    RequireObject(ease, {"speed", "influence"});
    Read(ease, "speed", eases[static_cast<std::size_t>(i)].speed);
    if (Has(ease, "influence")) {
      eases[static_cast<std::size_t>(i)].influence =
          NumberIn(Member(ease, "influence"), 0.1, 100.0);
    }
  }
}

bool IsSpatial(StreamKind kind) {
  return kind == StreamKind::TwoDSpatial || kind == StreamKind::ThreeDSpatial;
}

Keyframe ReadKey(const In& at, StreamKind kind) {
  if (IsSpatial(kind)) {
    RequireObject(at, {"time", "value", "in", "out", "easeIn", "easeOut", "inTangent",
                       "outTangent"});
  } else {
    RequireObject(at, {"time", "value", "in", "out", "easeIn", "easeOut"});
  }
  RequireMember(at, "time");
  RequireMember(at, "value");
  Keyframe key;
  key.time = Seconds(Member(at, "time"));
  key.value = ReadValue(Member(at, "value"), kind);
  if (Has(at, "in")) key.in = Choice(Member(at, "in"), kInterpolations);
  if (Has(at, "out")) key.out = Choice(Member(at, "out"), kInterpolations);
  if (Has(at, "easeIn")) ReadEases(Member(at, "easeIn"), kind, key.easeIn);
  if (Has(at, "easeOut")) ReadEases(Member(at, "easeOut"), kind, key.easeOut);
  if (Has(at, "inTangent")) key.inTangent = ReadValue(Member(at, "inTangent"), kind);
  if (Has(at, "outTangent")) key.outTangent = ReadValue(Member(at, "outTangent"), kind);
  return key;
}

std::vector<Keyframe> ReadKeys(const In& at, StreamKind kind) {
  std::vector<Keyframe> keys;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(at, i);
    keys.push_back(ReadKey(element, kind));
    if (i > 0 && keys[i].time <= keys[i - 1].time) {
      Fail(Member(element, "time"), "keys must follow each other in time");
    }
  }
  return keys;
}

// A stream is a bare value, or an object with keys and an expression.
Stream ReadStreamOfKind(const In& at, StreamKind kind) {
  Stream stream;
  stream.kind = kind;
  if (!at.value.isObject()) {
    stream.value = ReadValue(at, stream.kind);
    return stream;
  }
  RequireObject(at, {"value", "keys", "expression", "expressionEnabled"});
  if (Has(at, "keys")) stream.keys = ReadKeys(Member(at, "keys"), stream.kind);
  if (Has(at, "value")) {
    stream.value = ReadValue(Member(at, "value"), stream.kind);
  } else if (!stream.keys.empty()) {
    stream.value = stream.keys.front().value;
  } else {
    Fail(at, "a stream needs a \"value\" or \"keys\"");
  }
  Read(at, "expression", stream.expression);
  Read(at, "expressionEnabled", stream.expressionEnabled);
  return stream;
}

Stream ReadStream(const In& at, LayerStream id) { return ReadStreamOfKind(at, StreamKindOf(id)); }

void ReadStreamGroup(const In& at, std::span<const Name<LayerStream>> names, Layer& layer) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  for (const auto& key : at.value.getMemberNames()) {
    const Name<LayerStream>* found = nullptr;
    for (const auto& name : names) {
      if (key == name.text) found = &name;
    }
    if (found == nullptr) Fail(Member(at, key), "unknown key");
    layer.streams[found->value] = ReadStream(Member(at, key), found->value);
  }
}

std::vector<Marker> ReadMarkers(const In& at) {
  std::vector<Marker> markers;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(at, i);
    RequireObject(element, {"time", "duration", "comment"});
    RequireMember(element, "time");
    Marker marker;
    marker.time = Seconds(Member(element, "time"));
    if (Has(element, "duration")) marker.duration = Length(Member(element, "duration"));
    Read(element, "comment", marker.comment);
    markers.push_back(marker);
  }
  return markers;
}

// References between items and layers are checked once everything is read.
struct Reference {
  std::string path;  // where the reference stands, for the message
  int id;
};

struct Pending {
  std::vector<std::pair<Reference, Item*>> folders;                 // item -> folder
  std::vector<std::pair<Reference, std::pair<Item*, Layer*>>> sources;
  std::vector<std::pair<Reference, std::pair<Item*, Layer*>>> parents;
  std::map<int, std::string> itemIds;   // id -> path of the item
  std::map<int, std::string> layerIds;  // id -> path of the layer
  // The items and layers by id, so that checking references stays linear in their number.
  std::unordered_map<int, Item*> items;
  std::unordered_map<int, std::pair<Item*, Layer*>> layers;
};

void ClaimId(const In& at, std::map<int, std::string>& ids, int id) {
  const auto [it, fresh] = ids.emplace(id, at.path);
  if (!fresh) Fail(at, "id " + std::to_string(id) + " is used already by " + it->second);
}

void ReadLayerSwitches(const In& at, Layer& layer) {
  LayerSwitches& s = layer.switches;
  Read(at, "video", s.video);
  Read(at, "audio", s.audio);
  Read(at, "locked", s.locked);
  Read(at, "shy", s.shy);
  Read(at, "solo", s.solo);
  Read(at, "adjustment", s.adjustment);
  Read(at, "motionBlur", s.motionBlur);
  if (IsViewer(layer.objectType)) {
    s.threeD = true;
    s.autoOrient = DefaultAutoOrient(layer.objectType);
    if (Has(at, "autoOrient")) s.autoOrient = Choice(Member(at, "autoOrient"), kAutoOrient);
  } else {
    Read(at, "threeD", s.threeD);
    Read(at, "null", s.nullLayer);
  }
}

void ReadCameraGroup(const In& at, Layer& layer) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  Json::Value streams(Json::objectValue);
  for (const auto& key : at.value.getMemberNames()) {
    const In member = Member(at, key);
    if (key == "type") {
      layer.camera.type = Choice(member, kCameraTypes);
    } else if (key == "filmSize") {
      layer.camera.filmSize = Positive(member);
    } else if (key == "filmSizeUnits") {
      layer.camera.filmSizeUnits = Choice(member, kFilmSizeUnits);
    } else {
      streams[key] = at.value[key];
    }
  }
  ReadStreamGroup({streams, at.path, at.source}, kCameraOptions, layer);
}

void ReadLightGroup(const In& at, Layer& layer) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  Json::Value streams(Json::objectValue);
  for (const auto& key : at.value.getMemberNames()) {
    if (key == "type") {
      layer.light.type = Choice(Member(at, key), kLightTypes);
    } else {
      streams[key] = at.value[key];
    }
  }
  ReadStreamGroup({streams, at.path, at.source}, kLightOptions, layer);
}

// ---------------------------------------------------------------- text layers

// Fonts are named as the host names them, by PostScript name: printable ASCII
// without blanks and without the characters PostScript reserves, at most 63.
bool IsPostScriptName(const std::string& name) {
  if (name.empty() || name.size() > 63) return false;
  for (const char c : name) {
    if (c < '!' || c > '~' || std::string_view("[](){}<>/%").find(c) != std::string_view::npos) return false;
  }
  return true;
}

TextColor ReadTextColor(const In& at) {
  const Json::Value& array = RequireArray(at);
  if (array.size() != 3) Fail(at, "expected 3 numbers (red, green, blue)");
  TextColor color{};
  for (Json::ArrayIndex i = 0; i < 3; ++i) color[i] = NumberIn(Element(at, i), 0.0, 1.0);
  return color;
}

// The members given replace those of `document`; the others keep its values.
TextDocument ReadTextDocument(const In& at, TextDocument document) {
  RequireObject(at, {"text", "font", "fontSize", "tracking", "justification", "applyFill", "fillColor",
                     "applyStroke", "strokeColor", "strokeWidth", "strokeOverFill", "horizontalScale",
                     "verticalScale"});
  Read(at, "text", document.text);
  if (Has(at, "font")) {
    document.font = Text(Member(at, "font"));
    if (!IsPostScriptName(document.font)) {
      Fail(Member(at, "font"), "a PostScript name is 1 to 63 printable ASCII characters, without blanks "
                               "and without any of [](){}<>/%");
    }
  }
  if (Has(at, "fontSize")) document.fontSize = NumberIn(Member(at, "fontSize"), 0.1, 1296.0);
  if (Has(at, "tracking")) document.tracking = Integer(Member(at, "tracking"), -1000, 10000);
  if (Has(at, "justification")) document.justification = Choice(Member(at, "justification"), kJustifications);
  Read(at, "applyFill", document.applyFill);
  if (Has(at, "fillColor")) document.fillColor = ReadTextColor(Member(at, "fillColor"));
  Read(at, "applyStroke", document.applyStroke);
  if (Has(at, "strokeColor")) document.strokeColor = ReadTextColor(Member(at, "strokeColor"));
  if (Has(at, "strokeWidth")) document.strokeWidth = NumberIn(Member(at, "strokeWidth"), 0.0, 1296.0);
  Read(at, "strokeOverFill", document.strokeOverFill);
  if (Has(at, "horizontalScale")) document.horizontalScale = NumberIn(Member(at, "horizontalScale"), 0.0, 100.0);
  if (Has(at, "verticalScale")) document.verticalScale = NumberIn(Member(at, "verticalScale"), 0.0, 100.0);
  return document;
}

// A key's document starts from the layer's document, so that a key names only what changes.
TextAnimator ReadTextAnimator(const In& at) {
  RequireObject(at, {"name", "rangeStart", "rangeEnd", "position", "scale", "rotation"});
  TextAnimator animator;
  Read(at, "name", animator.name);
  if (Has(at, "rangeStart")) animator.start = NumberIn(Member(at, "rangeStart"), 0.0, 100.0);
  if (Has(at, "rangeEnd")) animator.end = NumberIn(Member(at, "rangeEnd"), 0.0, 100.0);
  if (Has(at, "position")) animator.position = ReadStreamOfKind(Member(at, "position"), StreamKind::TwoD);
  if (Has(at, "scale")) animator.scale = ReadStreamOfKind(Member(at, "scale"), StreamKind::TwoD);
  if (Has(at, "rotation")) animator.rotation = ReadStreamOfKind(Member(at, "rotation"), StreamKind::OneD);
  return animator;
}

SourceText ReadSourceText(const In& at) {
  RequireObject(at, {"document", "keys", "animators"});
  SourceText source;
  if (Has(at, "document")) source.document = ReadTextDocument(Member(at, "document"), TextDocument{});
  if (Has(at, "animators")) {
    const In animators = Member(at, "animators");
    const Json::Value& array = RequireArray(animators);
    for (Json::ArrayIndex i = 0; i < array.size(); ++i)
      source.animators.push_back(ReadTextAnimator(Element(animators, i)));
  }
  if (!Has(at, "keys")) return source;
  const In keys = Member(at, "keys");
  const Json::Value& array = RequireArray(keys);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(keys, i);
    RequireObject(element, {"time", "document"});
    RequireMember(element, "time");
    TextKey key;
    key.time = Number(Member(element, "time"));
    if (i > 0 && key.time <= source.keys.back().time) {
      Fail(Member(element, "time"), "keys must follow each other in time");
    }
    key.document = Has(element, "document") ? ReadTextDocument(Member(element, "document"), source.document)
                                            : source.document;
    source.keys.push_back(key);
  }
  return source;
}

// ---------------------------------------------------------------- shape layers

constexpr Name<ShapeKind> kShapeKinds[] = {
    {ShapeKind::Group, "group"},         {ShapeKind::Path, "path"},     {ShapeKind::Rectangle, "rectangle"},
    {ShapeKind::Ellipse, "ellipse"},     {ShapeKind::Star, "star"},     {ShapeKind::Polygon, "polygon"},
    {ShapeKind::Fill, "fill"},           {ShapeKind::Stroke, "stroke"}, {ShapeKind::GradientFill, "gradientFill"},
};
constexpr Name<bool> kComposite[] = {{true, "over"}, {false, "under"}};

std::vector<std::array<double, 2>> ReadPointList(const In& at) {
  std::vector<std::array<double, 2>> points;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const Value point = ReadValue(Element(at, i), StreamKind::TwoD);
    points.push_back({point[0], point[1]});
  }
  return points;
}

// Vertices with tangents relative to them, as scripts see a path.
PathShape ReadPathShape(const In& at) {
  RequireObject(at, {"vertices", "inTangents", "outTangents", "closed"});
  RequireMember(at, "vertices");
  const auto vertices = ReadPointList(Member(at, "vertices"));
  PathShape shape;
  shape.vertices.resize(vertices.size());
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    shape.vertices[i].x = vertices[i][0];
    shape.vertices[i].y = vertices[i][1];
  }
  for (const char* key : {"inTangents", "outTangents"}) {
    if (!Has(at, key)) continue;
    const auto tangents = ReadPointList(Member(at, key));
    if (tangents.size() != vertices.size()) Fail(Member(at, key), "expected one tangent for each vertex");
    const bool in = std::string_view(key) == "inTangents";
    for (std::size_t i = 0; i < tangents.size(); ++i) {
      PathVertex& v = shape.vertices[i];
      (in ? v.inX : v.outX) = tangents[i][0];
      (in ? v.inY : v.outY) = tangents[i][1];
    }
  }
  Read(at, "closed", shape.closed);
  return shape;
}

PathStream ReadPathStream(const In& at) {
  PathStream path;
  if (!Has(at, "keys")) {
    path.shape = ReadPathShape(at);
    return path;
  }
  RequireObject(at, {"keys"});
  const In keys = Member(at, "keys");
  const Json::Value& array = RequireArray(keys);
  if (array.empty()) Fail(keys, "expected at least one key");
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(keys, i);
    RequireObject(element, {"time", "shape"});
    RequireMember(element, "time");
    RequireMember(element, "shape");
    PathKey key{Seconds(Member(element, "time")), ReadPathShape(Member(element, "shape"))};
    if (i > 0 && key.time <= path.keys.back().time) Fail(Member(element, "time"), "keys must follow each other in time");
    path.keys.push_back(key);
  }
  path.shape = path.keys.front().shape;
  return path;
}

std::vector<ShapeElement> ReadShapeContents(const In& at);

ShapeElement ReadShapeElement(const In& at) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  RequireMember(at, "kind");
  ShapeElement element = NewShapeElement(Choice(Member(at, "kind"), kShapeKinds));
  std::vector<std::string_view> allowed = {"kind", "name"};
  for (const ShapeParam& param : ShapeParamsOf(element.kind)) allowed.push_back(param.key);
  if (element.kind == ShapeKind::Group) allowed.push_back("contents");
  if (element.kind == ShapeKind::Path) allowed.push_back("path");
  if (IsShapePaint(element.kind)) allowed.push_back("composite");
  RequireObjectWith(at, allowed);
  Read(at, "name", element.name);
  const auto params = ShapeParamsOf(element.kind);
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (Has(at, params[i].key)) element.params[i] = ReadStreamOfKind(Member(at, params[i].key), params[i].kind);
  }
  if (element.kind == ShapeKind::Path) {
    RequireMember(at, "path");
    element.path = ReadPathStream(Member(at, "path"));
  }
  if (Has(at, "composite")) element.compositeOver = Choice(Member(at, "composite"), kComposite);
  // The reader's nesting limit of JSON bounds the depth of groups.
  if (Has(at, "contents")) element.contents = ReadShapeContents(Member(at, "contents"));
  return element;
}

std::vector<ShapeElement> ReadShapeContents(const In& at) {
  std::vector<ShapeElement> contents;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) contents.push_back(ReadShapeElement(Element(at, i)));
  return contents;
}

// ---------------------------------------------------------------- masks

std::vector<Mask> ReadMasks(const In& at) {
  std::vector<Mask> masks;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(at, i);
    RequireObject(element, {"name", "shape"});
    RequireMember(element, "shape");
    Mask mask;
    mask.name = "Mask " + std::to_string(i + 1);
    Read(element, "name", mask.name);
    mask.shape = ReadPathStream(Member(element, "shape"));
    const bool empty = mask.shape.shape.vertices.empty() ||
                       std::any_of(mask.shape.keys.begin(), mask.shape.keys.end(),
                                   [](const PathKey& key) { return key.shape.vertices.empty(); });
    if (empty) Fail(Member(element, "shape"), "a mask needs at least one vertex");
    masks.push_back(std::move(mask));
  }
  return masks;
}

// A margin is a one-dimensional stream; the host evaluates no expression on it.
Stream ReadMargin(const In& at) {
  Stream margin = ReadStreamOfKind(at, StreamKind::OneD);
  if (!margin.expression.empty()) Fail(Member(at, "expression"), "a path option takes no expression");
  return margin;
}

TextPathOptions ReadPathOptions(const In& at, std::size_t maskCount) {
  RequireObject(at, {"path", "firstMargin", "lastMargin"});
  TextPathOptions options;
  if (Has(at, "path")) {
    const In path = Member(at, "path");
    options.path = Integer(path, 0, kMaxId);
    if (static_cast<std::size_t>(options.path) > maskCount) {
      Fail(path, "the layer has no mask " + std::to_string(options.path) + " (it has " + std::to_string(maskCount) +
                     ")");
    }
  }
  if (Has(at, "firstMargin")) options.firstMargin = ReadMargin(Member(at, "firstMargin"));
  if (Has(at, "lastMargin")) options.lastMargin = ReadMargin(Member(at, "lastMargin"));
  return options;
}

// Keys that only some kinds of layer have.
void RefuseKeysOfOtherKinds(const In& at, LayerObjectType type) {
  const bool viewer = IsViewer(type);
  for (const char* key : {"threeD", "null"}) {
    if (viewer && Has(at, key)) Fail(Member(at, key), "cameras and lights have no such switch");
  }
  if (!viewer && Has(at, "autoOrient")) {
    Fail(Member(at, "autoOrient"), "only cameras and lights turn towards a point of interest");
  }
  if (type != LayerObjectType::AudioVideo && Has(at, "source")) {
    Fail(Member(at, "source"), "only audio/video layers have a source");
  }
  if (type != LayerObjectType::Camera && Has(at, "camera")) {
    Fail(Member(at, "camera"), "only camera layers have camera settings");
  }
  if (type != LayerObjectType::Light && Has(at, "light")) {
    Fail(Member(at, "light"), "only light layers have light settings");
  }
  if (type != LayerObjectType::Text && Has(at, "text")) {
    Fail(Member(at, "text"), "only text layers have a source text");
  }
  if (type != LayerObjectType::Shape && Has(at, "shapes")) {
    Fail(Member(at, "shapes"), "only shape layers have shape contents");
  }
  if (type != LayerObjectType::Text && Has(at, "pathOptions")) {
    Fail(Member(at, "pathOptions"), "only text layers have path options");
  }
  if (viewer && Has(at, "masks")) Fail(Member(at, "masks"), "cameras and lights have no masks");
}

std::unique_ptr<Layer> ReadLayer(const In& at, Item& comp, Pending& pending) {
  RequireObject(at, {"id", "name", "type", "source", "parent", "video", "audio", "locked", "shy",
                     "solo", "threeD", "adjustment", "motionBlur", "null", "autoOrient",
                     "startTime", "inPoint", "duration", "stretch", "markers", "transform",
                     "camera", "light", "text", "shapes", "masks", "pathOptions"});
  auto layer = std::make_unique<Layer>();
  RequireMember(at, "id");
  layer->id = Integer(Member(at, "id"), 1, kMaxId);
  ClaimId(at, pending.layerIds, layer->id);
  pending.layers[layer->id] = {&comp, layer.get()};
  Read(at, "name", layer->name);
  if (Has(at, "type")) layer->objectType = Choice(Member(at, "type"), kLayerTypes);
  RefuseKeysOfOtherKinds(at, layer->objectType);
  ReadLayerSwitches(at, *layer);
  layer->duration = comp.duration;
  if (Has(at, "startTime")) layer->startTime = Seconds(Member(at, "startTime"));
  if (Has(at, "inPoint")) layer->inPoint = Seconds(Member(at, "inPoint"));
  if (Has(at, "duration")) layer->duration = Length(Member(at, "duration"));
  if (Has(at, "stretch")) layer->stretch = Stretch(Member(at, "stretch"));
  if (Has(at, "markers")) layer->markers = ReadMarkers(Member(at, "markers"));
  if (Has(at, "transform")) {
    ReadStreamGroup(Member(at, "transform"), TransformNames(layer->objectType), *layer);
  }
  if (Has(at, "camera")) ReadCameraGroup(Member(at, "camera"), *layer);
  if (Has(at, "light")) ReadLightGroup(Member(at, "light"), *layer);
  if (Has(at, "text")) layer->text = ReadSourceText(Member(at, "text"));
  if (Has(at, "shapes")) layer->shapes = ReadShapeContents(Member(at, "shapes"));
  if (Has(at, "masks")) layer->masks = ReadMasks(Member(at, "masks"));
  if (Has(at, "pathOptions")) layer->pathOptions = ReadPathOptions(Member(at, "pathOptions"), layer->masks.size());
  if (Has(at, "source")) {
    const In source = Member(at, "source");
    layer->sourceId = Integer(source, 1, kMaxId);
    pending.sources.push_back({{source.path, layer->sourceId}, {&comp, layer.get()}});
  }
  if (Has(at, "parent")) {
    const In parent = Member(at, "parent");
    layer->parentId = Integer(parent, 1, kMaxId);
    pending.parents.push_back({{parent.path, layer->parentId}, {&comp, layer.get()}});
  }
  return layer;
}

Item& ReadItemBase(const In& at, ItemKind kind, Project& project, Pending& pending) {
  auto item = std::make_unique<Item>();
  item->kind = kind;
  RequireMember(at, "id");
  item->id = Integer(Member(at, "id"), 1, kMaxId);
  ClaimId(at, pending.itemIds, item->id);
  pending.items[item->id] = item.get();
  Read(at, "name", item->name);
  if (Has(at, "folder")) {
    const In folder = Member(at, "folder");
    item->folderId = Integer(folder, 0, kMaxId);
    pending.folders.push_back({{folder.path, item->folderId}, item.get()});
  }
  project.items.push_back(std::move(item));
  return *project.items.back();
}

void ReadFolder(const In& at, Project& project, Pending& pending) {
  RequireObject(at, {"id", "name", "folder"});
  ReadItemBase(at, ItemKind::Folder, project, pending);
}

void ReadSize(const In& at, Item& item, int low) {
  RequireMember(at, "width");
  RequireMember(at, "height");
  item.width = Integer(Member(at, "width"), low, kMaxItemSize);
  item.height = Integer(Member(at, "height"), low, kMaxItemSize);
  if (Has(at, "pixelAspect")) {
    item.pixelAspect = NumberIn(Member(at, "pixelAspect"), kMinPixelAspect, kMaxPixelAspect);
  }
}

void ReadFootageSource(const In& at, Item& item) {
  int kinds = 0;
  for (const char* key : {"file", "sequence", "solid"}) kinds += Has(at, key) ? 1 : 0;
  if (kinds != 1) Fail(at, "footage needs exactly one of \"file\", \"sequence\" and \"solid\"");
  Footage& footage = item.footage;
  if (Has(at, "file")) {
    footage.kind = FootageKind::File;
    footage.path = Text(Member(at, "file"));
  } else if (Has(at, "sequence")) {
    const In sequence = Member(at, "sequence");
    RequireObject(sequence, {"first", "count"});
    RequireMember(sequence, "first");
    RequireMember(sequence, "count");
    footage.kind = FootageKind::Sequence;
    footage.path = Text(Member(sequence, "first"));
    footage.fileCount = Integer(Member(sequence, "count"), 1, 10000000);
  } else {
    const In solid = Member(at, "solid");
    RequireObject(solid, {"color"});
    RequireMember(solid, "color");
    footage.kind = FootageKind::Solid;
    footage.color = ReadColor(Member(solid, "color"));
  }
}

void ReadFootage(const In& at, Project& project, Pending& pending) {
  RequireObject(at, {"id", "name", "folder", "width", "height", "pixelAspect", "duration",
                     "frameRate", "file", "sequence", "solid", "proxy"});
  Item& item = ReadItemBase(at, ItemKind::Footage, project, pending);
  ReadFootageSource(at, item);
  ReadSize(at, item, item.footage.kind == FootageKind::Solid ? 1 : 0);
  if (Has(at, "duration")) item.duration = Length(Member(at, "duration"));
  if (Has(at, "frameRate")) item.frameRate = NumberIn(Member(at, "frameRate"), 0, kMaxCompFrameRate);
  Read(at, "proxy", item.footage.proxyPath);
}

void ReadComp(const In& at, Project& project, Pending& pending) {
  RequireObject(at, {"id", "name", "folder", "width", "height", "pixelAspect", "frameRate",
                     "duration", "displayStart", "workArea", "background", "markers",
                     "layers"});
  Item& item = ReadItemBase(at, ItemKind::Composition, project, pending);
  ReadSize(at, item, 1);
  RequireMember(at, "frameRate");
  RequireMember(at, "duration");
  item.frameRate = NumberIn(Member(at, "frameRate"), kMinCompFrameRate, kMaxCompFrameRate);
  item.duration = CompDuration(Member(at, "duration"));
  Composition& comp = item.comp;
  if (Has(at, "displayStart")) comp.displayStart = Seconds(Member(at, "displayStart"));
  comp.workAreaDuration = item.duration;
  if (Has(at, "workArea")) {
    const In area = Member(at, "workArea");
    RequireObject(area, {"start", "duration"});
    if (Has(area, "start")) comp.workAreaStart = Seconds(Member(area, "start"));
    if (Has(area, "duration")) comp.workAreaDuration = CompDuration(Member(area, "duration"));
  }
  if (Has(at, "background")) comp.background = ReadColor(Member(at, "background"));
  if (Has(at, "markers")) comp.markers = ReadMarkers(Member(at, "markers"));
  if (Has(at, "layers")) {
    const In layers = Member(at, "layers");
    const Json::Value& array = RequireArray(layers);
    for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
      comp.layers.push_back(ReadLayer(Element(layers, i), item, pending));
    }
  }
}

// Where a walk along "holder" links (a folder's folder, a layer's parent) has been.
enum class Visit { OnPath, Done };

// Follows `next` from `start` and tells whether the walk runs into a loop. Links already known
// to end are not walked again, so that checking every item of a long chain stays linear.
template <typename T, typename Next>
bool RunsIntoLoop(const T* start, Next next, std::unordered_map<const T*, Visit>& visits) {
  std::vector<const T*> path;
  const T* at = start;
  while (at != nullptr && visits.find(at) == visits.end()) {
    visits.emplace(at, Visit::OnPath);
    path.push_back(at);
    at = next(at);
  }
  const bool loops = at != nullptr && visits.at(at) == Visit::OnPath;
  for (const T* done : path) visits[done] = Visit::Done;
  return loops;
}

void CheckFolders(const Pending& pending, const std::string& source) {
  const Json::Value none;
  const auto folderOf = [&](const Item* item) -> const Item* {
    if (item->id == kRootFolderId) return nullptr;
    const auto found = pending.items.find(item->folderId);
    return found != pending.items.end() ? found->second : nullptr;
  };
  std::unordered_map<const Item*, Visit> visits;
  for (const auto& [reference, item] : pending.folders) {
    const In at{none, reference.path, source};
    const auto folder = pending.items.find(reference.id);
    if (folder == pending.items.end() || folder->second->kind != ItemKind::Folder) {
      Fail(at, "no folder has the id " + std::to_string(reference.id));
    }
  }
  // Going up from each item must reach the root.
  for (const auto& [reference, item] : pending.folders) {
    if (RunsIntoLoop<Item>(item, folderOf, visits)) {
      Fail({none, reference.path, source}, "folders must not hold themselves");
    }
  }
}

// The compositions a composition uses, with the layer through which it uses each.
std::vector<std::pair<const Layer*, const Item*>> UsedComps(const Item& comp, const Pending& pending) {
  std::vector<std::pair<const Layer*, const Item*>> used;
  for (const auto& layer : comp.comp.layers) {
    const auto found = pending.items.find(layer->sourceId);
    if (found != pending.items.end() && found->second->kind == ItemKind::Composition) {
      used.emplace_back(layer.get(), found->second);
    }
  }
  return used;
}

// A depth-first walk over the compositions, with a stack of its own rather than recursion, so
// that a chain of thousands of precompositions neither overflows the stack nor is walked more
// than once. Returns the layer through which a composition comes to contain itself, or null.
const Layer* LayerClosingACompLoop(const Project& project, const Pending& pending) {
  std::unordered_map<const Item*, Visit> visits;
  struct Frame {
    const Item* comp;
    std::vector<std::pair<const Layer*, const Item*>> used;
    std::size_t next = 0;
  };
  for (const auto& root : project.items) {
    if (root->kind != ItemKind::Composition || visits.count(root.get()) != 0) continue;
    std::vector<Frame> stack{{root.get(), UsedComps(*root, pending)}};
    visits[root.get()] = Visit::OnPath;
    while (!stack.empty()) {
      Frame& top = stack.back();
      if (top.next == top.used.size()) {
        visits[top.comp] = Visit::Done;
        stack.pop_back();
        continue;
      }
      const auto [layer, used] = top.used[top.next++];
      const auto seen = visits.find(used);
      if (seen != visits.end()) {
        if (seen->second == Visit::OnPath) return layer;
        continue;
      }
      visits[used] = Visit::OnPath;
      stack.push_back({used, UsedComps(*used, pending)});
    }
  }
  return nullptr;
}

void CheckSources(const Project& project, const Pending& pending, const std::string& source) {
  const Json::Value none;
  for (const auto& [reference, owner] : pending.sources) {
    const auto found = pending.items.find(reference.id);
    if (found == pending.items.end() || found->second->kind == ItemKind::Folder) {
      Fail({none, reference.path, source},
           "no footage or composition has the id " + std::to_string(reference.id));
    }
  }
  const Layer* closing = LayerClosingACompLoop(project, pending);
  for (const auto& [reference, owner] : pending.sources) {
    if (owner.second == closing) {
      Fail({none, reference.path, source}, "a composition must not contain itself");
    }
  }
}

void CheckParents(const Pending& pending, const std::string& source) {
  const Json::Value none;
  std::unordered_map<const Layer*, Visit> visits;
  const auto parentOf = [&](const Layer* layer) -> const Layer* {
    const auto found = pending.layers.find(layer->parentId);
    return layer->parentId != 0 && found != pending.layers.end() ? found->second.second : nullptr;
  };
  for (const auto& [reference, owner] : pending.parents) {
    const auto parent = pending.layers.find(reference.id);
    if (parent == pending.layers.end() || parent->second.first != owner.first) {
      Fail({none, reference.path, source},
           "no layer of this composition has the id " + std::to_string(reference.id));
    }
  }
  for (const auto& [reference, owner] : pending.parents) {
    if (RunsIntoLoop<Layer>(owner.second, parentOf, visits)) {
      Fail({none, reference.path, source},
           "a layer must not be its own parent, directly or through others");
    }
  }
}

template <typename F>
void ReadList(const In& top, const char* key, F read) {
  if (!Has(top, key)) return;
  const In list = Member(top, key);
  const Json::Value& array = RequireArray(list);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) read(Element(list, i));
}

Project ReadTop(const In& top) {
  RequireObject(top, {"format", "version", "path", "folders", "footage", "comps"});
  RequireMember(top, "format");
  RequireMember(top, "version");
  if (Text(Member(top, "format")) != kFormatName) {
    Fail(Member(top, "format"), std::string("expected \"") + kFormatName + "\"");
  }
  const int version = Integer(Member(top, "version"), 1, 1 << 30);
  if (version != kProjectFormatVersion) {
    Fail(Member(top, "version"), "version " + std::to_string(version) +
                                     " is not supported; this host reads version " +
                                     std::to_string(kProjectFormatVersion));
  }
  Project project = NewProject();
  Read(top, "path", project.path);
  Pending pending;
  pending.items[kRootFolderId] = project.items.front().get();
  ReadList(top, "folders", [&](const In& at) { ReadFolder(at, project, pending); });
  ReadList(top, "footage", [&](const In& at) { ReadFootage(at, project, pending); });
  ReadList(top, "comps", [&](const In& at) { ReadComp(at, project, pending); });
  CheckFolders(pending, top.source);
  CheckSources(project, pending, top.source);
  CheckParents(pending, top.source);
  if (!pending.itemIds.empty()) project.nextItemId = pending.itemIds.rbegin()->first + 1;
  if (!pending.layerIds.empty()) project.nextLayerId = pending.layerIds.rbegin()->first + 1;
  return project;
}

// ---------------------------------------------------------------- writing

Json::Value WriteValue(const Value& value, StreamKind kind) {
  const int dims = Dimensions(kind);
  if (dims == 1) return value[0];
  Json::Value array(Json::arrayValue);
  const int count = kind == StreamKind::Color && value[3] == 1.0 ? 3 : dims;
  for (int i = 0; i < count; ++i) array.append(value[i]);
  return array;
}

Json::Value WriteColor(const Value& value) { return WriteValue(value, StreamKind::Color); }

void WriteEases(Json::Value& key, const char* name, const std::array<Ease, 3>& eases,
                StreamKind kind) {
  const int dims = TemporalDimensions(kind);
  bool plain = true;
  for (int i = 0; i < dims; ++i) plain = plain && eases[static_cast<std::size_t>(i)] == Ease{};
  if (plain) return;
  Json::Value array(Json::arrayValue);
  for (int i = 0; i < dims; ++i) {
    const Ease& ease = eases[static_cast<std::size_t>(i)];
    Json::Value entry(Json::objectValue);
    if (ease.speed != Ease{}.speed) entry["speed"] = ease.speed;
    if (ease.influence != Ease{}.influence) entry["influence"] = ease.influence;
    array.append(std::move(entry));
  }
  key[name] = std::move(array);
}

Json::Value WriteKey(const Keyframe& key, StreamKind kind) {
  Json::Value out(Json::objectValue);
  out["time"] = key.time;
  out["value"] = WriteValue(key.value, kind);
  if (key.in != Interpolation::Linear) out["in"] = TextOf(kInterpolations, key.in);
  if (key.out != Interpolation::Linear) out["out"] = TextOf(kInterpolations, key.out);
  WriteEases(out, "easeIn", key.easeIn, kind);
  WriteEases(out, "easeOut", key.easeOut, kind);
  if (key.inTangent != Value{}) out["inTangent"] = WriteValue(key.inTangent, kind);
  if (key.outTangent != Value{}) out["outTangent"] = WriteValue(key.outTangent, kind);
  return out;
}

Json::Value WriteStream(const Stream& stream) {
  if (stream.keys.empty() && stream.expression.empty() && stream.expressionEnabled) {
    return WriteValue(stream.value, stream.kind);
  }
  Json::Value out(Json::objectValue);
  if (stream.keys.empty() || stream.value != stream.keys.front().value) {
    out["value"] = WriteValue(stream.value, stream.kind);
  }
  if (!stream.keys.empty()) {
    Json::Value keys(Json::arrayValue);
    for (const auto& key : stream.keys) keys.append(WriteKey(key, stream.kind));
    out["keys"] = std::move(keys);
  }
  if (!stream.expression.empty()) out["expression"] = stream.expression;
  if (!stream.expressionEnabled) out["expressionEnabled"] = false;
  return out;
}

void WriteStreamGroup(const Layer& layer, std::span<const Name<LayerStream>> names,
                      Json::Value& group) {
  for (const auto& name : names) {
    const auto found = layer.streams.find(name.value);
    if (found != layer.streams.end()) group[name.text] = WriteStream(found->second);
  }
}

Json::Value WriteMarkers(const std::vector<Marker>& markers) {
  Json::Value out(Json::arrayValue);
  for (const auto& marker : markers) {
    Json::Value entry(Json::objectValue);
    entry["time"] = marker.time;
    if (marker.duration != 0.0) entry["duration"] = marker.duration;
    if (!marker.comment.empty()) entry["comment"] = marker.comment;
    out.append(std::move(entry));
  }
  return out;
}

void WriteSwitches(const Layer& layer, Json::Value& out) {
  const LayerSwitches& s = layer.switches;
  const LayerSwitches plain;
  if (s.video != plain.video) out["video"] = s.video;
  if (s.audio != plain.audio) out["audio"] = s.audio;
  if (s.locked) out["locked"] = true;
  if (s.shy) out["shy"] = true;
  if (s.solo) out["solo"] = true;
  if (s.adjustment) out["adjustment"] = true;
  if (s.motionBlur) out["motionBlur"] = true;
  if (IsViewer(layer.objectType)) {
    if (s.autoOrient != DefaultAutoOrient(layer.objectType)) {
      out["autoOrient"] = TextOf(kAutoOrient, s.autoOrient);
    }
  } else {
    if (s.threeD) out["threeD"] = true;
    if (s.nullLayer) out["null"] = true;
  }
}

void WriteViewerGroups(const Layer& layer, Json::Value& out) {
  if (layer.objectType == LayerObjectType::Camera) {
    Json::Value camera(Json::objectValue);
    const CameraSettings plain;
    if (layer.camera.type != plain.type) camera["type"] = TextOf(kCameraTypes, layer.camera.type);
    if (layer.camera.filmSize != plain.filmSize) camera["filmSize"] = layer.camera.filmSize;
    if (layer.camera.filmSizeUnits != plain.filmSizeUnits) {
      camera["filmSizeUnits"] = TextOf(kFilmSizeUnits, layer.camera.filmSizeUnits);
    }
    WriteStreamGroup(layer, kCameraOptions, camera);
    if (!camera.empty()) out["camera"] = std::move(camera);
  } else if (layer.objectType == LayerObjectType::Light) {
    Json::Value light(Json::objectValue);
    if (layer.light.type != LightSettings{}.type) {
      light["type"] = TextOf(kLightTypes, layer.light.type);
    }
    WriteStreamGroup(layer, kLightOptions, light);
    if (!light.empty()) out["light"] = std::move(light);
  }
}

Json::Value WriteTextColor(const TextColor& color) {
  Json::Value array(Json::arrayValue);
  for (const double component : color) array.append(component);
  return array;
}

// The members of `document` that differ from `base`.
Json::Value WriteTextDocument(const TextDocument& document, const TextDocument& base) {
  Json::Value out(Json::objectValue);
  if (document.text != base.text) out["text"] = document.text;
  if (document.font != base.font) out["font"] = document.font;
  if (document.fontSize != base.fontSize) out["fontSize"] = document.fontSize;
  if (document.tracking != base.tracking) out["tracking"] = document.tracking;
  if (document.justification != base.justification) {
    out["justification"] = TextOf(kJustifications, document.justification);
  }
  if (document.applyFill != base.applyFill) out["applyFill"] = document.applyFill;
  if (document.fillColor != base.fillColor) out["fillColor"] = WriteTextColor(document.fillColor);
  if (document.applyStroke != base.applyStroke) out["applyStroke"] = document.applyStroke;
  if (document.strokeColor != base.strokeColor) out["strokeColor"] = WriteTextColor(document.strokeColor);
  if (document.strokeWidth != base.strokeWidth) out["strokeWidth"] = document.strokeWidth;
  if (document.strokeOverFill != base.strokeOverFill) out["strokeOverFill"] = document.strokeOverFill;
  if (document.horizontalScale != base.horizontalScale) out["horizontalScale"] = document.horizontalScale;
  if (document.verticalScale != base.verticalScale) out["verticalScale"] = document.verticalScale;
  return out;
}

Json::Value WriteTextAnimators(const std::vector<TextAnimator>& animators) {
  const TextAnimator plain;
  Json::Value out(Json::arrayValue);
  for (const TextAnimator& animator : animators) {
    Json::Value entry(Json::objectValue);
    if (animator.name != plain.name) entry["name"] = animator.name;
    if (animator.start != plain.start) entry["rangeStart"] = animator.start;
    if (animator.end != plain.end) entry["rangeEnd"] = animator.end;
    if (animator.position != plain.position) entry["position"] = WriteStream(animator.position);
    if (animator.scale != plain.scale) entry["scale"] = WriteStream(animator.scale);
    if (animator.rotation != plain.rotation) entry["rotation"] = WriteStream(animator.rotation);
    out.append(std::move(entry));
  }
  return out;
}

Json::Value WriteSourceText(const SourceText& source) {
  Json::Value out(Json::objectValue);
  Json::Value document = WriteTextDocument(source.document, TextDocument{});
  if (!document.empty()) out["document"] = std::move(document);
  if (!source.animators.empty()) out["animators"] = WriteTextAnimators(source.animators);
  if (source.keys.empty()) return out;
  Json::Value keys(Json::arrayValue);
  for (const TextKey& key : source.keys) {
    Json::Value entry(Json::objectValue);
    entry["time"] = key.time;
    Json::Value changed = WriteTextDocument(key.document, source.document);
    if (!changed.empty()) entry["document"] = std::move(changed);
    keys.append(std::move(entry));
  }
  out["keys"] = std::move(keys);
  return out;
}

Json::Value WritePointList(const std::vector<PathVertex>& vertices, double PathVertex::*x, double PathVertex::*y) {
  Json::Value list(Json::arrayValue);
  for (const PathVertex& v : vertices) list.append(WriteValue(MakeValue(v.*x, v.*y), StreamKind::TwoD));
  return list;
}

bool HasTangents(const PathShape& shape, double PathVertex::*x, double PathVertex::*y) {
  for (const PathVertex& v : shape.vertices) {
    if (v.*x != 0.0 || v.*y != 0.0) return true;
  }
  return false;
}

Json::Value WritePathShape(const PathShape& shape) {
  Json::Value out(Json::objectValue);
  out["vertices"] = WritePointList(shape.vertices, &PathVertex::x, &PathVertex::y);
  if (HasTangents(shape, &PathVertex::inX, &PathVertex::inY)) {
    out["inTangents"] = WritePointList(shape.vertices, &PathVertex::inX, &PathVertex::inY);
  }
  if (HasTangents(shape, &PathVertex::outX, &PathVertex::outY)) {
    out["outTangents"] = WritePointList(shape.vertices, &PathVertex::outX, &PathVertex::outY);
  }
  if (!shape.closed) out["closed"] = false;
  return out;
}

Json::Value WritePathStream(const PathStream& path) {
  if (path.keys.empty()) return WritePathShape(path.shape);
  Json::Value keys(Json::arrayValue);
  for (const PathKey& key : path.keys) {
    Json::Value entry(Json::objectValue);
    entry["time"] = key.time;
    entry["shape"] = WritePathShape(key.shape);
    keys.append(std::move(entry));
  }
  Json::Value out(Json::objectValue);
  out["keys"] = std::move(keys);
  return out;
}

// An element names only what differs from a new element of its kind.
Json::Value WriteShapeElement(const ShapeElement& element) {
  const ShapeElement fresh = NewShapeElement(element.kind);
  Json::Value out(Json::objectValue);
  out["kind"] = TextOf(kShapeKinds, element.kind);
  if (element.name != fresh.name) out["name"] = element.name;
  const auto params = ShapeParamsOf(element.kind);
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (element.params[i] != fresh.params[i]) out[params[i].key] = WriteStream(element.params[i]);
  }
  if (element.kind == ShapeKind::Path) out["path"] = WritePathStream(element.path);
  if (!element.compositeOver) out["composite"] = TextOf(kComposite, false);
  if (!element.contents.empty()) {
    Json::Value contents(Json::arrayValue);
    for (const ShapeElement& child : element.contents) contents.append(WriteShapeElement(child));
    out["contents"] = std::move(contents);
  }
  return out;
}

Json::Value WriteMasks(const std::vector<Mask>& masks) {
  Json::Value out(Json::arrayValue);
  for (std::size_t i = 0; i < masks.size(); ++i) {
    Json::Value mask(Json::objectValue);
    if (masks[i].name != "Mask " + std::to_string(i + 1)) mask["name"] = masks[i].name;
    mask["shape"] = WritePathStream(masks[i].shape);
    out.append(std::move(mask));
  }
  return out;
}

Json::Value WritePathOptions(const TextPathOptions& options) {
  Json::Value out(Json::objectValue);
  if (options.path != 0) out["path"] = options.path;
  if (options.firstMargin != Stream{}) out["firstMargin"] = WriteStream(options.firstMargin);
  if (options.lastMargin != Stream{}) out["lastMargin"] = WriteStream(options.lastMargin);
  return out;
}

Json::Value WriteLayer(const Layer& layer, const Item& comp) {
  Json::Value out(Json::objectValue);
  out["id"] = layer.id;
  if (!layer.name.empty()) out["name"] = layer.name;
  if (layer.objectType != LayerObjectType::AudioVideo) {
    out["type"] = TextOf(kLayerTypes, layer.objectType);
  }
  if (layer.sourceId != 0) out["source"] = layer.sourceId;
  if (layer.parentId != 0) out["parent"] = layer.parentId;
  WriteSwitches(layer, out);
  if (layer.startTime != 0.0) out["startTime"] = layer.startTime;
  if (layer.inPoint != 0.0) out["inPoint"] = layer.inPoint;
  if (layer.duration != comp.duration) out["duration"] = layer.duration;
  if (layer.stretch != 1.0) out["stretch"] = layer.stretch;
  if (!layer.markers.empty()) out["markers"] = WriteMarkers(layer.markers);
  Json::Value transform(Json::objectValue);
  WriteStreamGroup(layer, TransformNames(layer.objectType), transform);
  if (!transform.empty()) out["transform"] = std::move(transform);
  WriteViewerGroups(layer, out);
  if (layer.objectType == LayerObjectType::Text) {
    Json::Value text = WriteSourceText(layer.text);
    if (!text.empty()) out["text"] = std::move(text);
  }
  if (!layer.shapes.empty()) {
    Json::Value shapes(Json::arrayValue);
    for (const ShapeElement& element : layer.shapes) shapes.append(WriteShapeElement(element));
    out["shapes"] = std::move(shapes);
  }
  if (!layer.masks.empty()) out["masks"] = WriteMasks(layer.masks);
  if (layer.pathOptions != TextPathOptions{}) out["pathOptions"] = WritePathOptions(layer.pathOptions);
  return out;
}

Json::Value WriteItemBase(const Item& item) {
  Json::Value out(Json::objectValue);
  out["id"] = item.id;
  if (!item.name.empty()) out["name"] = item.name;
  if (item.folderId != kRootFolderId) out["folder"] = item.folderId;
  return out;
}

void WriteSize(const Item& item, Json::Value& out) {
  out["width"] = item.width;
  out["height"] = item.height;
  if (item.pixelAspect != 1.0) out["pixelAspect"] = item.pixelAspect;
}

Json::Value WriteFootage(const Item& item) {
  Json::Value out = WriteItemBase(item);
  WriteSize(item, out);
  if (item.duration != 0.0) out["duration"] = item.duration;
  if (item.frameRate != 0.0) out["frameRate"] = item.frameRate;
  const Footage& footage = item.footage;
  if (!footage.proxyPath.empty()) out["proxy"] = footage.proxyPath;
  switch (footage.kind) {
    case FootageKind::File:
      out["file"] = footage.path;
      break;
    case FootageKind::Sequence:
      out["sequence"]["first"] = footage.path;
      out["sequence"]["count"] = footage.fileCount;
      break;
    case FootageKind::Solid:
      out["solid"]["color"] = WriteColor(footage.color);
      break;
  }
  return out;
}

Json::Value WriteComp(const Item& item) {
  Json::Value out = WriteItemBase(item);
  WriteSize(item, out);
  out["frameRate"] = item.frameRate;
  out["duration"] = item.duration;
  const Composition& comp = item.comp;
  if (comp.displayStart != 0.0) out["displayStart"] = comp.displayStart;
  if (comp.workAreaStart != 0.0) out["workArea"]["start"] = comp.workAreaStart;
  if (comp.workAreaDuration != item.duration) out["workArea"]["duration"] = comp.workAreaDuration;
  if (comp.background != Composition{}.background) out["background"] = WriteColor(comp.background);
  if (!comp.markers.empty()) out["markers"] = WriteMarkers(comp.markers);
  if (!comp.layers.empty()) {
    Json::Value layers(Json::arrayValue);
    for (const auto& layer : comp.layers) layers.append(WriteLayer(*layer, item));
    out["layers"] = std::move(layers);
  }
  return out;
}

}  // namespace

Project ReadProject(const std::string& jsonText, const std::string& sourceName) {
  Json::CharReaderBuilder builder;
  Json::CharReaderBuilder::strictMode(&builder.settings_);
  // A description nests a dozen levels deep; the bound keeps hostile input
  // from exhausting the stack in the parser.
  builder.settings_["stackLimit"] = 64;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value root;
  std::string errors;
  bool parsed = false;
  try {
    parsed = reader->parse(jsonText.data(), jsonText.data() + jsonText.size(), &root, &errors);
  } catch (const Json::Exception& error) {  // the parser throws past its nesting bound
    errors = error.what();
  }
  if (!parsed) throw ProjectFormatError(sourceName + ": not valid JSON: " + errors);
  return ReadTop({root, "", sourceName});
}

Project LoadProjectFile(const std::string& path) {
  std::string text, error;
  if (!qae::files::ReadWholeFile(path, {kMaxProjectFileBytes, "a project description"}, &text, &error))
    throw ProjectFormatError(error);
  return ReadProject(text, path);
}

std::string WriteProject(const Project& project) {
  Json::Value top(Json::objectValue);
  top["format"] = kFormatName;
  top["version"] = kProjectFormatVersion;
  if (!project.path.empty()) top["path"] = project.path;
  Json::Value folders(Json::arrayValue), footage(Json::arrayValue), comps(Json::arrayValue);
  for (const auto& item : project.items) {
    if (item->id == kRootFolderId) continue;
    switch (item->kind) {
      case ItemKind::Folder:
        folders.append(WriteItemBase(*item));
        break;
      case ItemKind::Footage:
        footage.append(WriteFootage(*item));
        break;
      case ItemKind::Composition:
        comps.append(WriteComp(*item));
        break;
    }
  }
  if (!folders.empty()) top["folders"] = std::move(folders);
  if (!footage.empty()) top["footage"] = std::move(footage);
  if (!comps.empty()) top["comps"] = std::move(comps);
  try {
    return FormatJson(top);
  } catch (const std::domain_error& error) {
    throw ProjectFormatError(std::string("the project cannot be written: ") + error.what());
  }
}

// Written whole beside the target and renamed over it: a project that cannot be written, or
// a write that fails half way, leaves the file that was there.
void SaveProjectFile(const Project& project, const std::string& path) {
  std::string error;
  if (!qae::files::ReplaceFileContent(path, WriteProject(project), &error)) throw ProjectFormatError(error);
}

}  // namespace aehost
