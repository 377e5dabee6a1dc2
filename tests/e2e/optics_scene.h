#pragma once
// What the camera and light tests share: a project through `aehost export`, the scene file
// through `orytool dump --json`, and look-ups in that dump by object name and parameter name.
#include <gtest/gtest.h>
#include <json/json.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace optics_test {

// The dump of the scene exported from `project`'s composition `comp`; null on failure, with the
// failing tool's words recorded in the running test.
inline Json::Value ExportAndDump(const std::string& project, const std::string& comp, const std::string& workDir) {
  const std::string scene = workDir + "/scene.ory";
  const auto exported =
      qae_test::RunCommand(qae_test::AehostPath(), {"export", project, "--comp", comp, "--output", scene});
  EXPECT_EQ(exported.exitCode, 0) << exported.err;
  if (exported.exitCode != 0) return Json::Value();
  const auto dumped = qae_test::RunCommand(qae_test::OrytoolPath(), {"dump", "--json", scene});
  EXPECT_EQ(dumped.exitCode, 0) << dumped.err;
  if (dumped.exitCode != 0) return Json::Value();
  return qae_test::ParseJson(dumped.out);
}

// A project description written into `workDir` from its JSON text.
inline std::string WriteProject(const std::string& workDir, const std::string& text) {
  const std::string path = workDir + "/project.json";
  qae_test::WriteFile(path, text);
  return path;
}

inline void CollectObjects(const Json::Value& list, std::vector<const Json::Value*>* out) {
  for (const Json::Value& object : list) {
    out->push_back(&object);
    CollectObjects(object["children"], out);
  }
}

// Every object of the dump, depth first.
inline std::vector<const Json::Value*> AllObjects(const Json::Value& dump) {
  std::vector<const Json::Value*> out;
  CollectObjects(dump["objects"], &out);
  return out;
}

inline std::vector<const Json::Value*> ObjectsOfType(const Json::Value& dump, const std::string& type) {
  std::vector<const Json::Value*> out;
  for (const Json::Value* object : AllObjects(dump)) {
    if ((*object)["type"].asString() == type) out.push_back(object);
  }
  return out;
}

inline const Json::Value* ObjectNamed(const Json::Value& dump, const std::string& name) {
  for (const Json::Value* object : AllObjects(dump)) {
    if ((*object)["name"].asString() == name) return object;
  }
  return nullptr;
}

inline const Json::Value* Param(const Json::Value& node, const std::string& name) {
  for (const Json::Value& param : node["params"]) {
    if (param["name"].asString() == name) return &param;
  }
  return nullptr;
}

inline double FloatParam(const Json::Value& node, const std::string& name) {
  const Json::Value* param = Param(node, name);
  EXPECT_NE(param, nullptr) << name;
  return param ? (*param)["float"].asDouble() : std::nan("");
}

inline int IntParam(const Json::Value& node, const std::string& name) {
  const Json::Value* param = Param(node, name);
  EXPECT_NE(param, nullptr) << name;
  return param ? (*param)["int32"].asInt() : -99999;
}

inline std::vector<double> VectorParam(const Json::Value& node, const std::string& name) {
  std::vector<double> out;
  if (const Json::Value* param = Param(node, name)) {
    for (const Json::Value& v : (*param)["vector"]) out.push_back(v.asDouble());
  }
  return out;
}

inline const Json::Value* Track(const Json::Value& node, const std::string& name) {
  for (const Json::Value& track : node["tracks"]) {
    if (track["name"].asString() == name) return &track;
  }
  return nullptr;
}

// The value of the key at frame `frame` of `fps`, NaN when the track has no key there.
inline double KeyAt(const Json::Value& track, int frame, int fps) {
  for (const Json::Value& key : track["curve"]["keys"]) {
    const double t = key["time"][0].asDouble() / key["time"][1].asDouble();
    if (std::fabs(t * fps - frame) < 1e-9) return key["value"].asDouble();
  }
  return std::nan("");
}

// The object that the first target tag of `node` links to, by its reference.
inline std::string TargetRef(const Json::Value& node) {
  for (const Json::Value& tag : node["tags"]) {
    if (tag["type"].asString() != "TagType_Target") continue;
    for (const Json::Value& param : tag["params"]) {
      if (param["name"].asString() == "TargetTagParam_Target") return param["link"].asString();
    }
  }
  return "";
}

// A fresh folder for one test, removed after it.
class SceneTest : public ::testing::Test {
 protected:
  void SetUp() override { workDir_ = qae_test::MakeTempDir("optics"); }
  void TearDown() override { std::filesystem::remove_all(workDir_); }
  std::string workDir_;
};

}  // namespace optics_test
