#include "aehost/model/json_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace aehost {
namespace {

void AppendNumber(double value, std::string& out) {
  if (!std::isfinite(value)) throw std::domain_error("JSON has no form for " + std::to_string(value));
  // "-0" would read back as the whole number 0; a fraction keeps the sign.
  if (value == 0.0 && std::signbit(value)) {
    out += "-0.0";
    return;
  }
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  out.append(buffer, result.ptr);
}

void AppendString(const std::string& text, std::string& out) {
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

void Append(const Json::Value& value, int indent, std::string& out);

void AppendArray(const Json::Value& array, int indent, std::string& out) {
  if (array.empty()) {
    out += "[]";
    return;
  }
  if (IsNumberList(array)) {
    out += '[';
    for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
      if (i > 0) out += ", ";
      Append(array[i], indent, out);
    }
    out += ']';
    return;
  }
  const std::string inner(static_cast<std::size_t>(indent + 2), ' ');
  out += "[\n";
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    out += inner;
    Append(array[i], indent + 2, out);
    out += i + 1 < array.size() ? ",\n" : "\n";
  }
  out += std::string(static_cast<std::size_t>(indent), ' ') + "]";
}

void AppendObject(const Json::Value& object, int indent, std::string& out) {
  if (object.empty()) {
    out += "{}";
    return;
  }
  const std::string inner(static_cast<std::size_t>(indent + 2), ' ');
  const auto names = object.getMemberNames();
  out += "{\n";
  for (std::size_t i = 0; i < names.size(); ++i) {
    out += inner;
    AppendString(names[i], out);
    out += ": ";
    Append(object[names[i]], indent + 2, out);
    out += i + 1 < names.size() ? ",\n" : "\n";
  }
  out += std::string(static_cast<std::size_t>(indent), ' ') + "}";
}

void Append(const Json::Value& value, int indent, std::string& out) {
  switch (value.type()) {
    case Json::nullValue:
      out += "null";
      break;
    case Json::intValue:
      out += std::to_string(value.asLargestInt());
      break;
    case Json::uintValue:
      out += std::to_string(value.asLargestUInt());
      break;
    case Json::realValue:
      AppendNumber(value.asDouble(), out);
      break;
    case Json::stringValue:
      AppendString(value.asString(), out);
      break;
    case Json::booleanValue:
      out += value.asBool() ? "true" : "false";
      break;
    case Json::arrayValue:
      AppendArray(value, indent, out);
      break;
    case Json::objectValue:
      AppendObject(value, indent, out);
      break;
  }
}

// Where the first number that is not finite stands, as the project reader names places
// ("comps[0].layers[2].transform.position[1]"); empty when every number is finite.
std::string PlaceOfNonFinite(const Json::Value& value, const std::string& place) {
  if (value.isDouble() && !std::isfinite(value.asDouble())) return place.empty() ? "top level" : place;
  if (value.isArray()) {
    for (Json::ArrayIndex i = 0; i < value.size(); ++i) {
      const std::string found = PlaceOfNonFinite(value[i], place + "[" + std::to_string(i) + "]");
      if (!found.empty()) return found;
    }
  } else if (value.isObject()) {
    for (const auto& name : value.getMemberNames()) {
      const std::string found = PlaceOfNonFinite(value[name], place.empty() ? name : place + "." + name);
      if (!found.empty()) return found;
    }
  }
  return "";
}

}  // namespace

std::string FormatJson(const Json::Value& value) {
  std::string out;
  try {
    Append(value, 0, out);
  } catch (const std::domain_error& error) {
    throw std::domain_error(PlaceOfNonFinite(value, "") + ": " + error.what());
  }
  out += '\n';
  return out;
}

}  // namespace aehost
