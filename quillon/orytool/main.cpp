// orytool: looks into scene files and makes them.
//   orytool dump FILE.ory              a summary line, then the document as an indented tree
//   orytool dump --summary FILE.ory    the summary line alone (what `aehost export` prints)
//   orytool dump --json FILE.ory       the JSON scene description that `build` reads back
//   orytool validate FILE.ory          exit 0, or 2 with the byte offset and the problem, or with
//                                      the object whose caches or numbers the engine refuses
//   orytool build SCENE.json --output FILE.ory
//   orytool gltf FILE.ory --output FILE.gltf|FILE.glb [--frame-rate R]
//                                      the scene as glTF 2.0, and a summary of what was left out
//   orytool render FILE.ory --frame N --size WxH [--depth 8|16|32] --output FILE.png
//                                      a preview of one frame as the engine renders it
// Exit codes: 0 success, 1 a file could not be written or memory ran out, 2 bad input or usage.
#include <CLI/CLI.hpp>
#include <json/json.h>

#include <iostream>
#include <memory>
#include <new>

#include "files/read_file.h"
#include "quillon/format/ory_format.h"
#include "quillon/model/evaluate.h"
#include "quillon/orytool/gltf_command.h"
#include "quillon/orytool/render_command.h"
#include "quillon/orytool/scene_dump.h"
#include "quillon/orytool/scene_json.h"
#include "quillon/orytool/scene_summary.h"

namespace {

constexpr int kExitFailed = 1;
constexpr int kExitBadInput = 2;

// Generous for a description written by hand or by a script, and a bound on what a wrong
// file given as one can cost.
constexpr qae::files::ReadLimit kSceneDescriptionLimit{std::size_t{256} << 20, "a scene description"};

using quillon::Document;

int Complain(const std::string& message, int code) {
  std::cerr << "orytool: " << message << '\n';
  return code;
}

std::string JsonText(const Json::Value& value) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "  ";
  builder["emitUTF8"] = true;
  builder["useSpecialFloats"] = true;
  builder["precision"] = 17;
  return Json::writeString(builder, value) + "\n";
}

bool ParseJsonFile(const std::string& path, Json::Value& root, std::string* error) {
  std::string text;
  if (!qae::files::ReadWholeFile(path, kSceneDescriptionLimit, &text, error)) return false;
  Json::CharReaderBuilder builder;
  builder["allowSpecialFloats"] = true;
  builder["failIfExtra"] = true;
  builder["rejectDupKeys"] = true;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  std::string errors;
  try {
    if (reader->parse(text.data(), text.data() + text.size(), &root, &errors)) return true;
  } catch (const Json::Exception& e) {  // nesting beyond the parser's depth limit
    errors = e.what();
  }
  *error = path + ": not valid JSON: " + errors;
  while (!error->empty() && error->back() == '\n') error->pop_back();
  return false;
}

enum class DumpForm { Tree, Summary, Json };

std::string DumpOf(const Document& document, DumpForm form) {
  switch (form) {
    case DumpForm::Summary: return quillon::orytool::SummaryLine(quillon::orytool::Summarize(document)) + "\n";
    case DumpForm::Json: return JsonText(quillon::orytool::DocumentToJson(document));
    case DumpForm::Tree: break;
  }
  return quillon::orytool::DumpText(document);
}

int Dump(const std::string& path, DumpForm form) {
  Document document;
  std::string error;
  if (!quillon::format::ReadDocument(path, document, &error)) return Complain(error, kExitBadInput);
  std::cout << DumpOf(document, form);
  return 0;
}

int Validate(const std::string& path) {
  Document document;
  std::string error;
  if (!quillon::format::ReadDocument(path, document, &error)) return Complain(error, kExitBadInput);
  // A file that reads but that the engine refuses to evaluate is no valid scene either.
  const std::string problem = quillon::EvaluateDocumentCaches(document);
  if (!problem.empty()) return Complain(path + ": " + problem, kExitBadInput);
  std::cout << path << ": valid\n";
  return 0;
}

int Gltf(const quillon::orytool::GltfArguments& arguments) {
  std::string error;
  const int code = quillon::orytool::RunGltf(arguments, std::cout, &error);
  return code == 0 ? 0 : Complain(error, code);
}

int Render(const quillon::orytool::RenderArguments& arguments) {
  std::string error;
  const int code = quillon::orytool::RunRender(arguments, &error);
  return code == 0 ? 0 : Complain(error, code);
}

int Build(const std::string& scenePath, const std::string& outputPath) {
  Json::Value root;
  std::string error;
  if (!ParseJsonFile(scenePath, root, &error)) return Complain(error, kExitBadInput);
  std::unique_ptr<Document> document = quillon::NewDocument();
  if (!quillon::orytool::JsonToDocument(root, *document, &error)) return Complain(scenePath + ": " + error, kExitBadInput);
  if (!quillon::format::WriteDocument(*document, outputPath, &error)) return Complain(error, kExitFailed);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Looks into scene files (.ory) and makes them from JSON scene descriptions."};
  app.require_subcommand(1);
  std::string file, scene, output;
  bool asJson = false;
  bool summaryOnly = false;

  CLI::App* dump = app.add_subcommand("dump",
                                      "Print a scene file: a summary line and the indented tree; the line alone "
                                      "with --summary; JSON with --json.");
  CLI::Option* json = dump->add_flag("--json", asJson, "Print the JSON scene description that `build` reads back.");
  dump->add_flag("--summary", summaryOnly, "Print only the summary line: objects, cameras, lights, tracks, keys, "
                                           "markers and the frame range.")
      ->excludes(json);
  dump->add_option("FILE", file, "The scene file.")->required();
  CLI::App* validate = app.add_subcommand("validate", "Check a scene file: exit 0, or 2 with the offset and the problem.");
  validate->add_option("FILE", file, "The scene file.")->required();
  CLI::App* build = app.add_subcommand("build", "Write a scene file from a JSON scene description.");
  build->add_option("SCENE", scene, "The JSON scene description.")->required();
  build->add_option("--output,-o", output, "The scene file to write.")->required();
  quillon::orytool::GltfArguments gltfArguments;
  CLI::App* gltf = app.add_subcommand("gltf", "Write a scene file as glTF 2.0 (.gltf or .glb) and print what was "
                                              "converted and what was left out.");
  gltf->add_option("SCENE", gltfArguments.scene, "The scene file.")->required();
  gltf->add_option("--output,-o", gltfArguments.output, "The glTF file to write: .gltf (JSON) or .glb (binary).")
      ->required();
  gltf->add_option("--frame-rate", gltfArguments.frameRate,
                   "Frames a second by which marker frames and the frame range are counted (default: the scene's).");
  quillon::orytool::RenderArguments renderArguments;
  CLI::App* render = app.add_subcommand("render", "Render one frame of a scene file through its render view's "
                                                  "camera and write it as a PNG picture.");
  render->add_option("SCENE", renderArguments.scene, "The scene file.")->required();
  render->add_option("--frame", renderArguments.frame, "The frame to render, counted at the scene's frame rate.")
      ->required();
  render->add_option("--size", renderArguments.size, "The picture's size, WIDTHxHEIGHT in pixels.")->required();
  render->add_option("--depth", renderArguments.depth, "Bits a channel of the render: 8, 16 or 32 (float; the PNG "
                                                        "gets 16).")
      ->check(CLI::IsMember({8, 16, 32}));
  render->add_option("--output,-o", renderArguments.output, "The PNG file to write.")->required();

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    // A mistyped command is left over as an extra word; name it rather than only
    // saying that a command is missing.
    if (app.get_subcommands().empty() && !app.remaining().empty())
      return Complain("unknown command \"" + app.remaining().front() + "\"; the commands are dump, validate, build, gltf and render",
                      kExitBadInput);
    app.exit(e);
    return kExitBadInput;
  }
  // Out of memory is no fault of the input: the same command may succeed with more.
  try {
    if (dump->parsed()) return Dump(file, asJson ? DumpForm::Json : summaryOnly ? DumpForm::Summary : DumpForm::Tree);
    if (validate->parsed()) return Validate(file);
    if (gltf->parsed()) return Gltf(gltfArguments);
    if (render->parsed()) return Render(renderArguments);
    return Build(scene, output);
  } catch (const std::bad_alloc&) {
    if (gltf->parsed())
      return Complain("out of memory while converting " + gltfArguments.scene + " to " + gltfArguments.output, kExitFailed);
    if (render->parsed()) return Complain("out of memory while rendering " + renderArguments.scene, kExitFailed);
    return Complain("out of memory while " + (build->parsed() ? "building " + output + " from " + scene : "reading " + file),
                    kExitFailed);
  }
}
