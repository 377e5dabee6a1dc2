// Reading the project description: a value with the path where it stands, read with its checks,
// and the references between items and layers that are checked once everything is read. Every
// refusal names the file, the JSON path of the offending value and what is wrong.
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <json/json.h>

#include "aehost/model/description_names.h"
#include "aehost/model/project_json.h"

namespace aehost::description {

// A JSON value and where it stands in the description.
struct In {
  const Json::Value& value;
  std::string path;
  const std::string& source;
};

[[noreturn]] void Fail(const In& at, const std::string& problem);
In Member(const In& object, const std::string& key);
In Element(const In& array, Json::ArrayIndex index);
bool Has(const In& object, const char* key);
template <typename Names>
void RequireObjectWith(const In& at, const Names& allowed) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  for (const auto& key : at.value.getMemberNames()) {
    bool known = false;
    for (const auto& name : allowed) known = known || name == key;
    if (!known) Fail(Member(at, key), "unknown key");
  }
}

void RequireObject(const In& at, std::initializer_list<std::string_view> allowed);
void RequireMember(const In& object, const char* key);
const Json::Value& RequireArray(const In& at);
double Number(const In& at);
double NumberIn(const In& at, double low, double high);
double Positive(const In& at);
double CompDuration(const In& at);
double Stretch(const In& at);
double Seconds(const In& at);
double Length(const In& at);
int Integer(const In& at, int low, int high);
std::string Text(const In& at);
bool Flag(const In& at);
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

void Read(const In& object, const char* key, double& field);
void Read(const In& object, const char* key, bool& field);
void Read(const In& object, const char* key, std::string& field);
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

void ClaimId(const In& at, std::map<int, std::string>& ids, int id);

}  // namespace aehost::description
