#pragma once
// A composition exported by aehost and read back as orytool's JSON dump, for tests that
// compare a scene with values worked out by hand.
#include <json/json.h>

#include <string>
#include <vector>

namespace qae_test {

// Exports `comp` of `project` to `scene` (with the further export options `options`) and
// gives the scene's JSON dump; a failure of either tool fails the running test with the
// tool's words and gives a null value.
Json::Value ExportSceneJson(const std::string& project, const std::string& comp, const std::string& scene,
                            const std::vector<std::string>& options);

// The parameter `id` of a node of the dump; a null value when the node has none.
const Json::Value& SceneParam(const Json::Value& node, int id);
// The tag of that type, and the track of that name, of a node of the dump; a null value when
// the node has none.
const Json::Value& SceneTag(const Json::Value& node, const std::string& type);
const Json::Value& SceneTrack(const Json::Value& node, const std::string& name);

}  // namespace qae_test
