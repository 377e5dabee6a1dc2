// End to end: projects and frames at the limits of what the host and the export can carry.
// Long parent and precomposition chains read and evaluate in a time linear in their length
// (a hang would show as the test's timeout), an export past the walk's bounds ends at once
// with a message naming the bound and the layer or composition, numbers the host's 32-bit
// times cannot carry are refused with their place, and a project saved after ids ran to the
// top reads back.
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kBadInput = 2;

class BadLimits : public testing::Test {
 protected:
  void SetUp() override { dir_ = qae_test::MakeTempDir("bad_limits"); }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string Write(const std::string& name, const Json::Value& value) {
    const std::string path = dir_ + "/" + name;
    qae_test::WriteFile(path, Json::writeString(Json::StreamWriterBuilder(), value));
    return path;
  }

  std::string dir_;
};

Json::Value Project() {
  Json::Value top;
  top["format"] = "aehost-project";
  top["version"] = 1;
  top["path"] = "/projects/limits.aep";
  Json::Value solid;
  solid["id"] = 1;
  solid["name"] = "Solid";
  solid["width"] = 10;
  solid["height"] = 10;
  for (int i = 0; i < 3; ++i) solid["solid"]["color"].append(1);
  top["footage"].append(solid);
  return top;
}

Json::Value Comp(int id, const std::string& name) {
  Json::Value comp;
  comp["id"] = id;
  comp["name"] = name;
  comp["width"] = 64;
  comp["height"] = 48;
  comp["frameRate"] = 25;
  comp["duration"] = 1;
  comp["layers"] = Json::Value(Json::arrayValue);
  return comp;
}

Json::Value Triple(double x, double y, double z) {
  Json::Value v(Json::arrayValue);
  v.append(x);
  v.append(y);
  v.append(z);
  return v;
}

// "Chain": layer L<i> hangs under L<i-1>, anchored at its origin and 1, 2, 3 from its parent.
Json::Value ParentChain(int length) {
  Json::Value top = Project();
  Json::Value comp = Comp(2, "Chain");
  for (int i = 0; i < length; ++i) {
    Json::Value layer;
    layer["id"] = 10 + i;
    layer["name"] = "L" + std::to_string(i);
    layer["source"] = 1;
    layer["threeD"] = true;
    if (i > 0) layer["parent"] = 10 + i - 1;
    layer["transform"]["anchorPoint"] = Triple(0, 0, 0);
    layer["transform"]["position"] = Triple(1, 2, 3);
    comp["layers"].append(layer);
  }
  top["comps"].append(comp);
  return top;
}

// Composition C<i> uses C<i+1> through `uses` 3D layers; the last uses the solid.
Json::Value PrecompChain(int length, int uses) {
  Json::Value top = Project();
  for (int i = 0; i < length; ++i) {
    Json::Value comp = Comp(100 + i, "C" + std::to_string(i));
    for (int u = 0; u < uses; ++u) {
      Json::Value layer;
      layer["id"] = 100000 + i * uses + u;
      layer["source"] = i + 1 < length ? 100 + i + 1 : 1;
      layer["threeD"] = true;
      comp["layers"].append(layer);
    }
    top["comps"].append(comp);
  }
  return top;
}

TEST_F(BadLimits, TheLayerAtTheFootOfAHundredThousandParentsIsPlacedByAllOfThem) {
  const std::string project = Write("chain.json", ParentChain(100000));
  const auto result = RunCommand(qae_test::AehostPath(),
                                 {"xform", project, "--comp", "Chain", "--layer", "L99999", "--frame", "0"});
  ASSERT_EQ(result.exitCode, kDone) << result.err;
  const Json::Value out = qae_test::ParseJson(result.out);
  // Every layer adds its own 1, 2, 3 and turns nothing.
  EXPECT_DOUBLE_EQ(out["matrix"][3][0].asDouble(), 100000.0);
  EXPECT_DOUBLE_EQ(out["matrix"][3][1].asDouble(), 200000.0);
  EXPECT_DOUBLE_EQ(out["matrix"][3][2].asDouble(), 300000.0);
  EXPECT_DOUBLE_EQ(out["matrix"][0][0].asDouble(), 1.0);
}

struct ExportCase {
  const char* name;
  Json::Value (*project)();
  const char* comp;
  const char* message;
};

void PrintTo(const ExportCase& c, std::ostream* out) { *out << c.name; }

class ExportBounds : public BadLimits, public testing::WithParamInterface<ExportCase> {};

TEST_P(ExportBounds, AnExportPastABoundEndsAtOnceAndNamesIt) {
  const ExportCase& c = GetParam();
  const std::string project = Write("project.json", c.project());
  const std::string target = dir_ + "/out.ory";
  const auto result = RunCommand(qae_test::AehostPath(), {"export", project, "--comp", c.comp, "--output", target});
  EXPECT_EQ(result.exitCode, kFailed) << result.err;
  EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
  EXPECT_FALSE(qae_test::FileExists(target));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExportBounds,
    testing::Values(
        ExportCase{"ParentChain", [] { return ParentChain(10000); }, "Chain",
                   "Export failed, layer \"L257\" has more than 256 parents above it; the export follows at most 256."},
        ExportCase{"PrecompChain", [] { return PrecompChain(10000, 1); }, "C0",
                   "Export failed, composition \"C257\" lies 257 precompositions deep; the export follows at most "
                   "256."},
        // 2^40 uses of the innermost solid in an 8 KB description.
        ExportCase{"EachCompositionUsesTheNextTwice", [] { return PrecompChain(40, 2); }, "C0",
                   "Export failed, the composition uses more than 100000 layers, counting the layers of a "
                   "precomposition again at each use."}));

TEST_F(BadLimits, AChainWithinTheWalksBoundsButDeeperThanASceneFileHoldsSaysNoFileWasWritten) {
  const std::string project = Write("project.json", ParentChain(230));
  const std::string target = dir_ + "/out.ory";
  const auto result = RunCommand(qae_test::AehostPath(), {"export", project, "--comp", "Chain", "--output", target});
  EXPECT_EQ(result.exitCode, kFailed) << result.err;
  EXPECT_NE(result.err.find("the export wrote no scene file to " + target), std::string::npos) << result.err;
  EXPECT_FALSE(qae_test::FileExists(target));
}

struct FrameCase {
  const char* frame;
  int exitCode;
};

void PrintTo(const FrameCase& c, std::ostream* out) { *out << c.frame; }

class XformFrames : public BadLimits, public testing::WithParamInterface<FrameCase> {};

TEST_P(XformFrames, OnlyAFrameTheHostsTimeCarriesIsTakenAndTheOutputIsJson) {
  const std::string project = Write("chain.json", ParentChain(2));
  const auto result = RunCommand(qae_test::AehostPath(),
                                 {"xform", project, "--comp", "Chain", "--layer", "L1", "--frame", GetParam().frame});
  EXPECT_EQ(result.exitCode, GetParam().exitCode) << result.err;
  if (GetParam().exitCode == kDone) {
    const Json::Value out = qae_test::ParseJson(result.out);
    EXPECT_DOUBLE_EQ(out["matrix"][3][2].asDouble(), 6.0);
  } else {
    EXPECT_NE(result.err.find("--frame " + std::string(GetParam().frame == std::string("1e8") ? "1e+08" : GetParam().frame) +
                              " is not a frame the host's time carries: give a finite frame between -21474836 "
                              "and 21474836"),
              std::string::npos)
        << result.err;
    EXPECT_EQ(result.out, "");
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, XformFrames,
                         testing::Values(FrameCase{"nan", kBadInput}, FrameCase{"inf", kBadInput},
                                         FrameCase{"-inf", kBadInput}, FrameCase{"1e8", kBadInput},
                                         FrameCase{"21474836", kDone}, FrameCase{"-21474836", kDone}));

TEST_F(BadLimits, AMatrixThatOverflowsIsAnErrorNotJsonWithoutAForm) {
  Json::Value top = ParentChain(2);
  top["comps"][0]["layers"][0]["transform"]["position"] = Triple(1e308, 0, 0);
  top["comps"][0]["layers"][1]["transform"]["position"] = Triple(1e308, 0, 0);
  const std::string project = Write("huge.json", top);
  const auto result =
      RunCommand(qae_test::AehostPath(), {"xform", project, "--comp", "Chain", "--layer", "L1", "--frame", "0"});
  EXPECT_EQ(result.exitCode, kFailed) << result.err;
  EXPECT_NE(result.err.find("the matrix of layer \"L1\" at frame 0 is not finite"), std::string::npos) << result.err;
  EXPECT_EQ(result.out, "");
}

TEST_F(BadLimits, APixelAspectTheHostCannotCarryIsRefusedWithItsPlace) {
  Json::Value top = ParentChain(1);
  top["comps"][0]["pixelAspect"] = 1e13;
  const std::string project = Write("aspect.json", top);
  const auto result = RunCommand(qae_test::AehostPath(),
                                 {"export", project, "--comp", "Chain", "--output", dir_ + "/out.ory"});
  EXPECT_EQ(result.exitCode, kBadInput) << result.err;
  EXPECT_NE(result.err.find("comps[0].pixelAspect: must lie between 0.01 and 100"), std::string::npos) << result.err;
}

TEST_F(BadLimits, AProjectWhoseIdsRanToTheTopReadsBackAfterAnImport) {
  Json::Value top = ParentChain(1);
  top["comps"][0]["id"] = 1 << 30;
  top["comps"][0]["layers"][0]["id"] = 1 << 30;
  const std::string project = Write("high.json", top);
  const std::string scene = dir_ + "/keys.ory";
  const auto built = RunCommand(qae_test::OrytoolPath(),
                                {"build", std::string(QAE_EXAMPLES_DIR) + "/scenes/import_keys.json", "--output", scene});
  ASSERT_EQ(built.exitCode, kDone) << built.err;
  const std::string saved = dir_ + "/saved.json";
  const auto imported = RunCommand(qae_test::AehostPath(), {"import", scene, "--project", project, "--output", saved});
  ASSERT_EQ(imported.exitCode, kDone) << imported.err;
  // The saved project is read again by a second import into it.
  const auto again =
      RunCommand(qae_test::AehostPath(), {"import", scene, "--project", saved, "--output", dir_ + "/again.json"});
  EXPECT_EQ(again.exitCode, kDone) << again.err;
  EXPECT_NE(imported.out.find("imported " + scene + ": folder"), std::string::npos) << imported.out;
}

}  // namespace
