// The JSON project description: what it loads, that it writes back what it
// read, and that broken descriptions are refused with the path of the fault.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <json/json.h>

#include "aehost/model/edit.h"
#include "aehost/model/project_json.h"
#include "model_fixture.h"

namespace aehost {
namespace {

std::string ReadFile(const std::string& name) {
  std::ifstream file(std::string(AEHOST_MODEL_TEST_DATA) + "/" + name, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

Json::Value ParseJson(const std::string& text) {
  Json::Value value;
  std::istringstream in(text);
  in >> value;
  return value;
}

TEST(ProjectJsonRoundTrip, ACanonicalDescriptionComesBackByteForByte) {
  const std::string text = ReadFile("full.json");
  const Project project = ReadProject(text, "full.json");
  EXPECT_EQ(WriteProject(project), text);
}

TEST(ProjectJsonRoundTrip, AnyLayoutComesBackAsTheSameValues) {
  const std::string text = ReadFile("compact.json");
  const std::string written = WriteProject(ReadProject(text, "compact.json"));
  EXPECT_EQ(ParseJson(written), ParseJson(text));
  EXPECT_EQ(WriteProject(ReadProject(written, "written")), written);
}

TEST(ProjectJsonRoundTrip, AProjectBuiltByTheCreationCallsReadsBackTheSame) {
  SmallProject p;
  p.project.path = "/tmp/built.aep";
  Layer& solid = p.Solid();
  solid.switches.threeD = true;
  Stream& position = EnsureStream(p.project, *p.comp, solid, LayerStream::Position);
  AddKeyframe(position, 0.0, V(1.0 / 3.0, 2, 3));
  AddKeyframe(position, 100.0 / 2997.0, V(4, 5, 6));
  AddCameraLayer(p.project, *p.comp, "Camera", 100, 50);
  const std::string written = WriteProject(p.project);
  const Project back = ReadProject(written, "written");
  EXPECT_EQ(WriteProject(back), written);
  const Item* comp = FindItem(back, p.comp->id);
  ASSERT_NE(comp, nullptr);
  ASSERT_EQ(comp->comp.layers.size(), 2u);
  const Stream& keys = comp->comp.layers[1]->streams.at(LayerStream::Position);
  EXPECT_EQ(keys.keys[1].time, 100.0 / 2997.0);  // exact, not rounded
  EXPECT_EQ(keys.keys[0].value, V(1.0 / 3.0, 2, 3));
}

TEST(ProjectJsonRoundTrip, NegativeZeroComesBackAsItWasWritten) {
  // A single key of -0 on a layer with a camera before it (found by fuzzing).
  const std::string text = R"({"format":"aehost-project","version":1,
 "comps":[{"id":1,"name":"Main","width":640,"height":360,"frameRate":24,"duration":2,
  "layers":[
    {"id":3,"type":"camera","transform":{"position":[320,1,-800],"pointOfInterest":[320,0,0]}},
    {"id":2,"source":4,"threeD":true,"transform":{"position":{"keys":[{"time":0,"value":[0,0,-.0],"in":"hold"}]}}}]}],
 "footage":[{"id":4,"name":"white","width":64,"height":64,"solid":{"color":[1,1,1]}}]})";
  const std::string written = WriteProject(ReadProject(text, "fuzz.json"));
  EXPECT_EQ(WriteProject(ReadProject(written, "written")), written);
}

TEST(ProjectJsonRoundTrip, TextKeepsEveryCharacter) {
  SmallProject p;
  Layer& solid = p.Solid();
  solid.name = "quote \" backslash \\ tab \t bell \x07 \xc3\xa9t\xc3\xa9";
  solid.markers.push_back({1.0, 0.0, "line one\nline two"});
  const Project back = ReadProject(WriteProject(p.project), "written");
  const Layer& read = *FindItem(back, p.comp->id)->comp.layers[0];
  EXPECT_EQ(read.name, solid.name);
  EXPECT_EQ(read.markers, solid.markers);
}

TEST(ProjectJsonRoundTrip, NumbersWithoutAJsonFormAreRefused) {
  SmallProject p;
  p.Set(p.Solid(), LayerStream::Opacity, std::nan(""));
  EXPECT_THROW(WriteProject(p.project), ProjectFormatError);
}

TEST(ProjectJsonContent, LeftOutKeysTakeTheirDefaultsAndStayLeftOut) {
  const std::string text = R"({
  "comps": [
    {
      "duration": 3,
      "frameRate": 24,
      "height": 10,
      "id": 1,
      "layers": [
        {
          "id": 1
        },
        {
          "id": 2,
          "type": "camera"
        }
      ],
      "width": 20
    }
  ],
  "format": "aehost-project",
  "version": 1
}
)";
  const Project project = ReadProject(text, "minimal");
  EXPECT_EQ(project.path, "");
  const Item& comp = *FindItem(project, 1);
  EXPECT_EQ(comp.folderId, kRootFolderId);
  EXPECT_DOUBLE_EQ(comp.pixelAspect, 1.0);
  EXPECT_DOUBLE_EQ(comp.comp.workAreaDuration, 3.0);
  EXPECT_EQ(comp.comp.background, V(0, 0, 0, 1));
  const Layer& av = *comp.comp.layers[0];
  EXPECT_DOUBLE_EQ(av.duration, 3.0);
  EXPECT_DOUBLE_EQ(av.stretch, 1.0);
  EXPECT_TRUE(av.switches.video);
  EXPECT_FALSE(av.switches.threeD);
  EXPECT_EQ(av.switches.autoOrient, AutoOrient::Off);
  EXPECT_TRUE(av.streams.empty());
  const Layer& camera = *comp.comp.layers[1];
  EXPECT_TRUE(camera.switches.threeD);
  EXPECT_EQ(camera.switches.autoOrient, AutoOrient::TowardsPointOfInterest);
  EXPECT_EQ(camera.camera.filmSizeUnits, FilmSizeUnits::Horizontal);
  EXPECT_EQ(WriteProject(project), text);
}

TEST(ProjectJsonContent, ItemsLayersAndStreams) {
  const Project project = ReadProject(ReadFile("full.json"), "full.json");
  EXPECT_EQ(project.path, "/projects/shot010.aep");
  const Item* comp = FindItem(project, 6);
  ASSERT_NE(comp, nullptr);
  EXPECT_EQ(comp->kind, ItemKind::Composition);
  EXPECT_DOUBLE_EQ(comp->frameRate, 30000.0 / 1001.0);
  EXPECT_EQ(comp->comp.background, V(0.1, 0.2, 0.3, 1.0));
  ASSERT_EQ(comp->comp.layers.size(), 7u);  // the last is a text layer with source text keys

  const Layer& camera = *comp->comp.layers[0];
  EXPECT_EQ(camera.objectType, LayerObjectType::Camera);
  EXPECT_TRUE(camera.switches.threeD);
  EXPECT_EQ(camera.switches.autoOrient, AutoOrient::TowardsPointOfInterest);
  EXPECT_EQ(camera.camera.type, CameraType::Orthographic);
  EXPECT_EQ(camera.camera.filmSizeUnits, FilmSizeUnits::Vertical);
  const Stream& zoom = camera.streams.at(LayerStream::Zoom);
  ASSERT_EQ(zoom.keys.size(), 2u);
  EXPECT_EQ(zoom.keys[1].in, Interpolation::Bezier);
  EXPECT_DOUBLE_EQ(zoom.keys[1].easeIn[0].influence, 33.33);
  EXPECT_DOUBLE_EQ(zoom.value[0], 1000.0);  // taken from the first key

  const Layer& light = *comp->comp.layers[1];
  EXPECT_EQ(light.light.type, LightType::Parallel);
  EXPECT_EQ(light.switches.autoOrient, AutoOrient::Off);
  EXPECT_EQ(light.streams.at(LayerStream::Intensity).expression, "wiggle(2, 10)");

  const Layer& solid = *comp->comp.layers[2];
  EXPECT_EQ(solid.parentId, 13);
  EXPECT_DOUBLE_EQ(solid.stretch, 2.0);
  EXPECT_TRUE(solid.switches.locked);
  ASSERT_EQ(solid.markers.size(), 1u);
  EXPECT_EQ(solid.markers[0].comment, "first\nsecond");
  const Stream& position = solid.streams.at(LayerStream::Position);
  EXPECT_EQ(position.keys[0].outTangent, V(100, 0, 0));
  EXPECT_EQ(position.keys[1].out, Interpolation::Hold);
  const Stream& scale = solid.streams.at(LayerStream::Scale);
  EXPECT_DOUBLE_EQ(scale.keys[0].easeOut[0].speed, 10.0);
  EXPECT_DOUBLE_EQ(scale.keys[0].easeOut[2].influence, 50.0);
  EXPECT_FALSE(solid.streams.at(LayerStream::Opacity).expressionEnabled);

  const Item* sequence = FindItem(project, 4);
  ASSERT_NE(sequence, nullptr);
  EXPECT_EQ(sequence->footage.kind, FootageKind::Sequence);
  EXPECT_EQ(sequence->footage.fileCount, 120);
  EXPECT_EQ(sequence->folderId, 8);
  EXPECT_EQ(FindItem(project, 7)->footage.color, V(1, 1, 1, 0.5));
  EXPECT_EQ(project.nextItemId, 9);
  EXPECT_EQ(project.nextLayerId, 16);
}

std::string WithLayers(const std::string& layers) {
  return R"({"format": "aehost-project", "version": 1,
    "footage": [{"id": 1, "width": 10, "height": 10, "solid": {"color": [1, 1, 1]}},
                {"id": 3, "file": "/a.png", "width": 10, "height": 10}],
    "folders": [{"id": 4}],
    "comps": [{"id": 2, "width": 100, "height": 100, "frameRate": 25, "duration": 1,
               "layers": [)" +
         layers + "]}]}";
}

TEST(ProjectJsonErrors, NameThePathAndTheProblem) {
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1}, {"id": 2}, {"id": 3, "transform": {"position":
              {"keys": [{"time": 0, "value": [0, 0, 0]}, {"time": "1", "value": [1, 1, 1]}]}}})")),
            "test.json: comps[0].layers[2].transform.position.keys[1].time: expected a number");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "transform": {"positon": [0, 0, 0]}})")),
            "test.json: comps[0].layers[0].transform.positon: unknown key");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "transform": {"position": [0, 0]}})")),
            "test.json: comps[0].layers[0].transform.position: expected 3 numbers");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "colour": 3})")),
            "test.json: comps[0].layers[0].colour: unknown key");
  EXPECT_EQ(Refusal(WithLayers(R"({"name": "x"})")),
            "test.json: comps[0].layers[0]: missing \"id\"");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "type": "sun"})")),
            "test.json: comps[0].layers[0].type: \"sun\" is not one of \"av\", \"light\", "
            "\"camera\", \"text\", \"shape\"");
}

TEST(ProjectJsonErrors, KeysAndEases) {
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "transform": {"rotationZ": {"keys": [
              {"time": 1, "value": 0}, {"time": 1, "value": 5}]}}})")),
            "test.json: comps[0].layers[0].transform.rotationZ.keys[1].time: keys must follow "
            "each other in time");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "transform": {"scale": {"keys": [
              {"time": 0, "value": [1, 1, 1], "easeIn": [{"speed": 1}]}]}}})")),
            "test.json: comps[0].layers[0].transform.scale.keys[0].easeIn: expected 3 eases, one "
            "a temporal dimension");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "transform": {"opacity": {"keys": [
              {"time": 0, "value": 1, "outTangent": 3}]}}})")),
            "test.json: comps[0].layers[0].transform.opacity.keys[0].outTangent: unknown key");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "transform": {"opacity": {"expression": "1"}}})")),
            "test.json: comps[0].layers[0].transform.opacity: a stream needs a \"value\" or "
            "\"keys\"");
}

TEST(ProjectJsonErrors, ReferencesBetweenItemsAndLayers) {
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1}, {"id": 1})")),
            "test.json: comps[0].layers[1]: id 1 is used already by comps[0].layers[0]");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "parent": 9})")),
            "test.json: comps[0].layers[0].parent: no layer of this composition has the id 9");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "parent": 2}, {"id": 2, "parent": 1})")),
            "test.json: comps[0].layers[0].parent: a layer must not be its own parent, directly "
            "or through others");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "source": 4})")),
            "test.json: comps[0].layers[0].source: no footage or composition has the id 4");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "source": 2})")),
            "test.json: comps[0].layers[0].source: a composition must not contain itself");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "type": "camera", "source": 3})")),
            "test.json: comps[0].layers[0].source: only audio/video layers have a source");
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "light": {"type": "spot"}})")),
            "test.json: comps[0].layers[0].light: only light layers have light settings");
}

TEST(ProjectJsonErrors, TheDocumentAsAWhole) {
  EXPECT_EQ(Refusal(R"({"format": "aehost-project", "version": 2})"),
            "test.json: version: version 2 is not supported; this host reads version 1");
  EXPECT_EQ(Refusal(R"({"format": "other", "version": 1})"),
            "test.json: format: expected \"aehost-project\"");
  EXPECT_EQ(Refusal(R"({"version": 1})"), "test.json: top level: missing \"format\"");
  EXPECT_EQ(Refusal(R"({"format": "aehost-project", "version": 1, "folders": [
              {"id": 1, "folder": 2}, {"id": 2, "folder": 1}]})"),
            "test.json: folders[0].folder: folders must not hold themselves");
  EXPECT_EQ(Refusal(R"({"format": "aehost-project", "version": 1, "comps": [
              {"id": 1, "width": 0, "height": 10, "frameRate": 25, "duration": 1}]})"),
            "test.json: comps[0].width: must lie between 1 and 30000");
  // Three hours and one second: longer than any composition the host makes.
  EXPECT_EQ(Refusal(R"({"format": "aehost-project", "version": 1, "comps": [
              {"id": 1, "width": 10, "height": 10, "frameRate": 25, "duration": 10801}]})"),
            "test.json: comps[0].duration: must be at most 10800 seconds (three hours)");
  EXPECT_EQ(Refusal(R"({"format": "aehost-project", "version": 1, "comps": [
              {"id": 1, "width": 10, "height": 10, "frameRate": 25, "duration": 10800}]})"),
            "");
  EXPECT_NE(Refusal(R"({"format": "aehost-project", "version": 1,})").find("not valid JSON"),
            std::string::npos);
  EXPECT_NE(Refusal(R"({"format": "aehost-project", "format": "x", "version": 1})")
                .find("not valid JSON"),
            std::string::npos);
  const std::string deep = std::string(5000, '[') + std::string(5000, ']');
  EXPECT_NE(Refusal(deep).find("not valid JSON"), std::string::npos);
  EXPECT_EQ(Refusal(R"({"format": "aehost-project", "version": 1})"), "");
}

TEST(ProjectJsonFiles, SaveAndLoad) {
  const std::string path = ::testing::TempDir() + "/aehost_model_project.json";
  const Project project = ReadProject(ReadFile("full.json"), "full.json");
  SaveProjectFile(project, path);
  EXPECT_EQ(WriteProject(LoadProjectFile(path)), ReadFile("full.json"));
  EXPECT_THROW(LoadProjectFile(path + ".missing"), ProjectFormatError);
}

// What is in the way of a save is named, and the file that was there stays as it was.
TEST(ProjectJsonFiles, AFailedSaveLeavesTheOldFile) {
  const std::string dir = ::testing::TempDir() + "/aehost_model_failed_save";
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir + "/folder.json");
  const std::string path = dir + "/kept.json";
  { std::ofstream(path) << "before"; }

  SmallProject p;
  p.Set(p.Solid(), LayerStream::Opacity, std::nan(""));
  EXPECT_THROW(SaveProjectFile(p.project, path), ProjectFormatError);
  std::ifstream kept(path);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "before");

  const SmallProject fine;
  for (const std::string& target : {dir + "/missing/out.json", dir + "/kept.json/out.json", dir + "/folder.json"}) {
    try {
      SaveProjectFile(fine.project, target);
      ADD_FAILURE() << "saved to " << target;
    } catch (const ProjectFormatError& error) {
      EXPECT_EQ(std::string(error.what()).rfind(target + ": cannot write: ", 0), 0u) << error.what();
    }
  }
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(dir)) files += entry.is_regular_file();
  EXPECT_EQ(files, 1u) << "a temporary file was left behind";
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace aehost

namespace aehost {
namespace {

std::string WithTextLayer(const std::string& text) {
  return WithLayers(R"({"id": 1, "type": "text", "threeD": true, "text": )" + text + "}");
}

TEST(ProjectJsonText, ADocumentAndItsKeysReadAndWriteBack) {
  const std::string text = WithTextLayer(R"({
      "document": {"text": "Title", "font": "DejaVuSans-Bold", "fontSize": 36.5, "tracking": 25,
                   "justification": "fullLastLineFull", "applyStroke": true, "strokeColor": [0, 0, 1],
                   "strokeWidth": 3, "strokeOverFill": true, "horizontalScale": 1.5, "verticalScale": 0},
      "keys": [{"time": 0}, {"time": 1, "document": {"text": "Next", "fillColor": [1, 0, 0]}}]})");
  const Project project = ReadProject(text, "test.json");
  const SourceText& source = FindItem(project, 2)->comp.layers[0]->text;
  TextDocument document;
  document.text = "Title";
  document.font = "DejaVuSans-Bold";
  document.fontSize = 36.5;
  document.tracking = 25;
  document.justification = Justification::FullLastLineFull;
  document.applyStroke = true;
  document.strokeColor = {0, 0, 1};
  document.strokeWidth = 3;
  document.strokeOverFill = true;
  document.horizontalScale = 1.5;
  document.verticalScale = 0;
  EXPECT_EQ(source.document, document);
  // A key names only what changes; the rest is the layer's document.
  ASSERT_EQ(source.keys.size(), 2u);
  EXPECT_EQ(source.keys[0].document, document);
  document.text = "Next";
  document.fillColor = {1, 0, 0};
  EXPECT_EQ(source.keys[1].document, document);
  // Source text holds: before the first key the first, between keys the earlier one.
  EXPECT_EQ(TextDocumentAt(source, -1.0).text, "Title");
  EXPECT_EQ(TextDocumentAt(source, 0.999).text, "Title");
  EXPECT_EQ(TextDocumentAt(source, 1.0).text, "Next");
  const std::string written = WriteProject(project);
  const Project back = ReadProject(written, "written");
  EXPECT_EQ(FindItem(back, 2)->comp.layers[0]->text, source);
  EXPECT_EQ(WriteProject(back), written);
}

TEST(ProjectJsonErrors, TextDocuments) {
  const std::string at = "test.json: comps[0].layers[0].text.";
  EXPECT_EQ(Refusal(WithLayers(R"({"id": 1, "text": {}})")),
            "test.json: comps[0].layers[0].text: only text layers have a source text");
  EXPECT_EQ(Refusal(WithTextLayer(R"({"document": {"font": "DejaVu Sans"}})")),
            at + "document.font: a PostScript name is 1 to 63 printable ASCII characters, without blanks and "
                 "without any of [](){}<>/%");
  EXPECT_EQ(Refusal(WithTextLayer(R"({"document": {"fontSize": 0}})")),
            at + "document.fontSize: must lie between 0.1 and 1296");
  EXPECT_EQ(Refusal(WithTextLayer(R"({"document": {"fillColor": [1, 0]}})")),
            at + "document.fillColor: expected 3 numbers (red, green, blue)");
  EXPECT_EQ(Refusal(WithTextLayer(R"({"document": {"strokeColor": [0, 2, 0]}})")),
            at + "document.strokeColor[1]: must lie between 0 and 1");
  EXPECT_EQ(Refusal(WithTextLayer(R"({"document": {"tracking": 2.5}})")),
            at + "document.tracking: expected a whole number");
  EXPECT_EQ(Refusal(WithTextLayer(R"({"document": {"justification": "middle"}})")),
            at + "document.justification: \"middle\" is not one of \"left\", \"right\", \"center\", "
                 "\"fullLastLineLeft\", \"fullLastLineRight\", \"fullLastLineCenter\", \"fullLastLineFull\"");
  EXPECT_EQ(Refusal(WithTextLayer(R"({"keys": [{"time": 1}, {"time": 1}]})")),
            at + "keys[1].time: keys must follow each other in time");
  EXPECT_EQ(Refusal(WithTextLayer(R"({"keys": [{"time": 1, "document": {"size": 3}}]})")),
            at + "keys[0].document.size: unknown key");
}

}  // namespace
}  // namespace aehost
