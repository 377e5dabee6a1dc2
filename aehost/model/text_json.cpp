// Text layers of the project description, read and written.
#include "aehost/model/text_json.h"

#include <utility>

#include "aehost/model/stream_json.h"

namespace aehost::description {
namespace {

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

}  // namespace

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

}  // namespace aehost::description
