#include "tests/support/scene_export.h"

#include <gtest/gtest.h>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace qae_test {

Json::Value ExportSceneJson(const std::string& project, const std::string& comp, const std::string& scene,
                            const std::vector<std::string>& options) {
  std::vector<std::string> args = {"export", project, "--comp", comp, "--output", scene};
  args.insert(args.end(), options.begin(), options.end());
  const CommandResult exported = RunCommand(AehostPath(), args);
  if (exported.exitCode != 0) {
    ADD_FAILURE() << "aehost export exited with " << exported.exitCode << ": " << exported.err;
    return Json::Value();
  }
  const CommandResult dumped = RunCommand(OrytoolPath(), {"dump", "--json", scene});
  if (dumped.exitCode != 0) {
    ADD_FAILURE() << "orytool dump exited with " << dumped.exitCode << ": " << dumped.err;
    return Json::Value();
  }
  return ParseJson(dumped.out);
}

const Json::Value& SceneParam(const Json::Value& node, int id) {
  static const Json::Value none;
  for (const Json::Value& param : node["params"])
    if (param["id"].asInt() == id) return param;
  return none;
}

const Json::Value& SceneTag(const Json::Value& node, const std::string& type) {
  static const Json::Value none;
  for (const Json::Value& tag : node["tags"])
    if (tag["type"].asString() == type) return tag;
  return none;
}

const Json::Value& SceneTrack(const Json::Value& node, const std::string& name) {
  static const Json::Value none;
  for (const Json::Value& track : node["tracks"])
    if (track["name"].asString() == name) return track;
  return none;
}

}  // namespace qae_test
