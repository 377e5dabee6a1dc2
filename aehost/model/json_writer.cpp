#include "aehost/model/json_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace aehost {
namespace {

constexpr std::size_t kFlushBytes = std::size_t{1} << 20;

void AppendString(std::string_view text, std::string& out) {
  out += '"';
  for (const char c : text) {
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\t':
        out += "\\t";
        break;
      case '\r':
        out += "\\r";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          char escape[8];
          std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
          out += escape;
        } else {
          out += c;
        }
    }
  }
  out += '"';
}

bool IsNumberList(const Json::Value& array) {
  for (const auto& element : array) {
    if (!element.isNumeric() || element.isBool()) return false;
  }
  return true;
}

void AppendIndent(std::size_t depth, std::string& out) { out.append(2 * depth, ' '); }

void AppendIndex(std::size_t index, std::string& out) {
  out += '[';
  out += std::to_string(index);
  out += ']';
}

std::string_view NameOf(const Json::ValueConstIterator& member) {
  const char* end = nullptr;
  const char* begin = member.memberName(&end);
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

JsonTextWriter::JsonTextWriter(std::function<void(std::string_view)> flush) : flush_(std::move(flush)) {}

// Places the separator and the indentation before an array element; an object member's come
// with its key.
void JsonTextWriter::StartValue() {
  if (levels_.empty() || !levels_.back().array) return;
  Level& level = levels_.back();
  text_ += level.count++ == 0 ? "\n" : ",\n";
  AppendIndent(levels_.size(), text_);
}

void JsonTextWriter::Open(char bracket, bool array) {
  StartValue();
  text_ += bracket;
  levels_.push_back({array, 0, {}});
}

void JsonTextWriter::Close(char bracket) {
  const bool empty = levels_.back().count == 0;
  levels_.pop_back();
  if (!empty) {
    text_ += '\n';
    AppendIndent(levels_.size(), text_);
  }
  text_ += bracket;
  FlushIfLarge();
}

void JsonTextWriter::BeginObject() { Open('{', false); }
void JsonTextWriter::EndObject() { Close('}'); }
void JsonTextWriter::BeginArray() { Open('[', true); }
void JsonTextWriter::EndArray() { Close(']'); }

void JsonTextWriter::Key(std::string_view name) {
  Level& level = levels_.back();
  text_ += level.count++ == 0 ? "\n" : ",\n";
  level.key = name;
  AppendIndent(levels_.size(), text_);
  AppendString(name, text_);
  text_ += ": ";
}

// `element` is the place in a one-line list of numbers, or npos for a value of its own.
std::string JsonTextWriter::Place(std::size_t element) const {
  std::string place;
  for (const Level& level : levels_) {
    if (level.array) {
      AppendIndex(level.count - 1, place);
    } else {
      if (!place.empty()) place += '.';
      place += level.key;
    }
  }
  if (element != std::string::npos) AppendIndex(element, place);
  return place.empty() ? "top level" : place;
}

void JsonTextWriter::AppendNumber(double value, std::size_t element) {
  if (!std::isfinite(value)) {
    throw std::domain_error(Place(element) + ": JSON has no form for " + std::to_string(value));
  }
  // "-0" would read back as the whole number 0; a fraction keeps the sign.
  if (value == 0.0 && std::signbit(value)) {
    text_ += "-0.0";
    return;
  }
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  text_.append(buffer, result.ptr);
}

void JsonTextWriter::Number(double value) {
  StartValue();
  AppendNumber(value, std::string::npos);
}

void JsonTextWriter::Integer(std::int64_t value) {
  StartValue();
  char buffer[24];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  text_.append(buffer, result.ptr);
}

void JsonTextWriter::Bool(bool value) {
  StartValue();
  text_ += value ? "true" : "false";
}

void JsonTextWriter::Text(std::string_view text) {
  StartValue();
  AppendString(text, text_);
}

void JsonTextWriter::Numbers(std::span<const double> values) {
  StartValue();
  text_ += '[';
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) text_ += ", ";
    AppendNumber(values[i], i);
  }
  text_ += ']';
}

void JsonTextWriter::AppendTreeScalar(const Json::Value& value, std::size_t element) {
  switch (value.type()) {
    case Json::intValue:
      text_ += std::to_string(value.asLargestInt());
      break;
    case Json::uintValue:
      text_ += std::to_string(value.asLargestUInt());
      break;
    case Json::realValue:
      AppendNumber(value.asDouble(), element);
      break;
    case Json::stringValue: {
      const char* begin = nullptr;
      const char* end = nullptr;
      value.getString(&begin, &end);
      AppendString({begin, static_cast<std::size_t>(end - begin)}, text_);
      break;
    }
    case Json::booleanValue:
      text_ += value.asBool() ? "true" : "false";
      break;
    default:
      text_ += "null";
  }
}

void JsonTextWriter::Tree(const Json::Value& value) {
  if (value.isObject()) {
    BeginObject();
    for (auto member = value.begin(); member != value.end(); ++member) {
      Key(NameOf(member));
      Tree(*member);
    }
    EndObject();
  } else if (value.isArray() && !value.empty() && IsNumberList(value)) {
    StartValue();
    text_ += '[';
    for (Json::ArrayIndex i = 0; i < value.size(); ++i) {
      if (i > 0) text_ += ", ";
      AppendTreeScalar(value[i], i);
    }
    text_ += ']';
  } else if (value.isArray()) {
    BeginArray();
    for (const auto& element : value) Tree(element);
    EndArray();
  } else {
    StartValue();
    AppendTreeScalar(value, std::string::npos);
  }
}

void JsonTextWriter::Finish() {
  text_ += '\n';
  if (flush_) {
    flush_(text_);
    text_.clear();
  }
}

void JsonTextWriter::FlushIfLarge() {
  if (flush_ && text_.size() >= kFlushBytes) {
    flush_(text_);
    text_.clear();
  }
}

Json::Value& JsonValueBuilder::Slot() {
  if (open_.empty()) return root_;
  Json::Value& holder = *open_.back();
  return holder.isArray() ? holder.append(Json::Value()) : holder[key_];
}

void JsonValueBuilder::BeginObject() {
  Json::Value& slot = Slot();
  slot = Json::Value(Json::objectValue);
  open_.push_back(&slot);
}

void JsonValueBuilder::BeginArray() {
  Json::Value& slot = Slot();
  slot = Json::Value(Json::arrayValue);
  open_.push_back(&slot);
}

void JsonValueBuilder::EndObject() { open_.pop_back(); }
void JsonValueBuilder::EndArray() { open_.pop_back(); }
void JsonValueBuilder::Key(std::string_view name) { key_.assign(name); }
void JsonValueBuilder::Number(double value) { Slot() = value; }
void JsonValueBuilder::Integer(std::int64_t value) { Slot() = Json::Value(static_cast<Json::Int64>(value)); }
void JsonValueBuilder::Bool(bool value) { Slot() = value; }
void JsonValueBuilder::Text(std::string_view text) { Slot() = Json::Value(text.data(), text.data() + text.size()); }
void JsonValueBuilder::Tree(const Json::Value& value) { Slot() = value; }

void JsonValueBuilder::Numbers(std::span<const double> values) {
  Json::Value& slot = Slot();
  slot = Json::Value(Json::arrayValue);
  for (const double value : values) slot.append(value);
}

void WriteObject(JsonOut& out, const Json::Value& plain, std::vector<WrittenMember> written) {
  std::sort(written.begin(), written.end(),
            [](const WrittenMember& a, const WrittenMember& b) { return a.name < b.name; });
  out.BeginObject();
  auto member = plain.begin();
  auto next = written.begin();
  while (member != plain.end() || next != written.end()) {
    if (next == written.end() || (member != plain.end() && NameOf(member) < next->name)) {
      out.Key(NameOf(member));
      out.Tree(*member);
      ++member;
    } else {
      out.Key(next->name);
      next->write(out);
      ++next;
    }
  }
  out.EndObject();
}

}  // namespace aehost
