// Checked reading of the values of the project description.
#include "aehost/model/description_reading.h"

#include <cmath>
#include <cstdlib>

namespace aehost::description {

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

void ClaimId(const In& at, std::map<int, std::string>& ids, int id) {
  const auto [it, fresh] = ids.emplace(id, at.path);
  if (!fresh) Fail(at, "id " + std::to_string(id) + " is used already by " + it->second);
}

}  // namespace aehost::description
