// Reading and writing the JSON project description: the project's items and the checks of the
// references between them, on the readers and writers of each concept (description_reading.h,
// stream_json.h, layer_json.h, text_json.h, shape_json.h, mask_json.h). Every refusal names the
// JSON path of the offending value; aehost/PROJECT_FORMAT.md is the reference.
#include "aehost/model/project_json.h"

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <json/json.h>

#include "aehost/model/description_reading.h"
#include "aehost/model/json_writer.h"
#include "aehost/model/layer_json.h"
#include "aehost/model/stream_json.h"
#include "files/read_file.h"
#include "files/replace_file.h"

namespace aehost {
namespace {

using namespace description;

constexpr const char* kFormatName = "aehost-project";

Item& ReadItemBase(const In& at, ItemKind kind, Project& project, Pending& pending) {
  auto item = std::make_unique<Item>();
  item->kind = kind;
  RequireMember(at, "id");
  item->id = Integer(Member(at, "id"), 1, kMaxId);
  ClaimId(at, pending.itemIds, item->id);
  pending.items[item->id] = item.get();
  Read(at, "name", item->name);
  if (Has(at, "folder")) {
    const In folder = Member(at, "folder");
    item->folderId = Integer(folder, 0, kMaxId);
    pending.folders.push_back({{folder.path, item->folderId}, item.get()});
  }
  project.items.push_back(std::move(item));
  return *project.items.back();
}

void ReadFolder(const In& at, Project& project, Pending& pending) {
  RequireObject(at, {"id", "name", "folder"});
  ReadItemBase(at, ItemKind::Folder, project, pending);
}

void ReadSize(const In& at, Item& item, int low) {
  RequireMember(at, "width");
  RequireMember(at, "height");
  item.width = Integer(Member(at, "width"), low, kMaxItemSize);
  item.height = Integer(Member(at, "height"), low, kMaxItemSize);
  if (Has(at, "pixelAspect")) {
    item.pixelAspect = NumberIn(Member(at, "pixelAspect"), kMinPixelAspect, kMaxPixelAspect);
  }
}

void ReadFootageSource(const In& at, Item& item) {
  int kinds = 0;
  for (const char* key : {"file", "sequence", "solid"}) kinds += Has(at, key) ? 1 : 0;
  if (kinds != 1) Fail(at, "footage needs exactly one of \"file\", \"sequence\" and \"solid\"");
  Footage& footage = item.footage;
  if (Has(at, "file")) {
    footage.kind = FootageKind::File;
    footage.path = Text(Member(at, "file"));
  } else if (Has(at, "sequence")) {
    const In sequence = Member(at, "sequence");
    RequireObject(sequence, {"first", "count"});
    RequireMember(sequence, "first");
    RequireMember(sequence, "count");
    footage.kind = FootageKind::Sequence;
    footage.path = Text(Member(sequence, "first"));
    footage.fileCount = Integer(Member(sequence, "count"), 1, 10000000);
  } else {
    const In solid = Member(at, "solid");
    RequireObject(solid, {"color"});
    RequireMember(solid, "color");
    footage.kind = FootageKind::Solid;
    footage.color = ReadColor(Member(solid, "color"));
  }
}

void ReadFootage(const In& at, Project& project, Pending& pending) {
  RequireObject(at, {"id", "name", "folder", "width", "height", "pixelAspect", "duration",
                     "frameRate", "file", "sequence", "solid", "proxy"});
  Item& item = ReadItemBase(at, ItemKind::Footage, project, pending);
  ReadFootageSource(at, item);
  ReadSize(at, item, item.footage.kind == FootageKind::Solid ? 1 : 0);
  if (Has(at, "duration")) item.duration = Length(Member(at, "duration"));
  if (Has(at, "frameRate")) item.frameRate = NumberIn(Member(at, "frameRate"), 0, kMaxCompFrameRate);
  Read(at, "proxy", item.footage.proxyPath);
}

void ReadComp(const In& at, Project& project, Pending& pending) {
  RequireObject(at, {"id", "name", "folder", "width", "height", "pixelAspect", "frameRate",
                     "duration", "displayStart", "workArea", "background", "markers",
                     "layers"});
  Item& item = ReadItemBase(at, ItemKind::Composition, project, pending);
  ReadSize(at, item, 1);
  RequireMember(at, "frameRate");
  RequireMember(at, "duration");
  item.frameRate = NumberIn(Member(at, "frameRate"), kMinCompFrameRate, kMaxCompFrameRate);
  item.duration = CompDuration(Member(at, "duration"));
  Composition& comp = item.comp;
  if (Has(at, "displayStart")) comp.displayStart = Seconds(Member(at, "displayStart"));
  comp.workAreaDuration = item.duration;
  if (Has(at, "workArea")) {
    const In area = Member(at, "workArea");
    RequireObject(area, {"start", "duration"});
    if (Has(area, "start")) comp.workAreaStart = Seconds(Member(area, "start"));
    if (Has(area, "duration")) comp.workAreaDuration = CompDuration(Member(area, "duration"));
  }
  if (Has(at, "background")) comp.background = ReadColor(Member(at, "background"));
  if (Has(at, "markers")) comp.markers = ReadMarkers(Member(at, "markers"));
  if (Has(at, "layers")) {
    const In layers = Member(at, "layers");
    const Json::Value& array = RequireArray(layers);
    for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
      comp.layers.push_back(ReadLayer(Element(layers, i), item, pending));
    }
  }
}

// Where a walk along "holder" links (a folder's folder, a layer's parent) has been.
enum class Visit { OnPath, Done };

// Follows `next` from `start` and tells whether the walk runs into a loop. Links already known
// to end are not walked again, so that checking every item of a long chain stays linear.
template <typename T, typename Next>
bool RunsIntoLoop(const T* start, Next next, std::unordered_map<const T*, Visit>& visits) {
  std::vector<const T*> path;
  const T* at = start;
  while (at != nullptr && visits.find(at) == visits.end()) {
    visits.emplace(at, Visit::OnPath);
    path.push_back(at);
    at = next(at);
  }
  const bool loops = at != nullptr && visits.at(at) == Visit::OnPath;
  for (const T* done : path) visits[done] = Visit::Done;
  return loops;
}

void CheckFolders(const Pending& pending, const std::string& source) {
  const Json::Value none;
  const auto folderOf = [&](const Item* item) -> const Item* {
    if (item->id == kRootFolderId) return nullptr;
    const auto found = pending.items.find(item->folderId);
    return found != pending.items.end() ? found->second : nullptr;
  };
  std::unordered_map<const Item*, Visit> visits;
  for (const auto& [reference, item] : pending.folders) {
    const In at{none, reference.path, source};
    const auto folder = pending.items.find(reference.id);
    if (folder == pending.items.end() || folder->second->kind != ItemKind::Folder) {
      Fail(at, "no folder has the id " + std::to_string(reference.id));
    }
  }
  // Going up from each item must reach the root.
  for (const auto& [reference, item] : pending.folders) {
    if (RunsIntoLoop<Item>(item, folderOf, visits)) {
      Fail({none, reference.path, source}, "folders must not hold themselves");
    }
  }
}

// The compositions a composition uses, with the layer through which it uses each.
std::vector<std::pair<const Layer*, const Item*>> UsedComps(const Item& comp, const Pending& pending) {
  std::vector<std::pair<const Layer*, const Item*>> used;
  for (const auto& layer : comp.comp.layers) {
    const auto found = pending.items.find(layer->sourceId);
    if (found != pending.items.end() && found->second->kind == ItemKind::Composition) {
      used.emplace_back(layer.get(), found->second);
    }
  }
  return used;
}

// A depth-first walk over the compositions, with a stack of its own rather than recursion, so
// that a chain of thousands of precompositions neither overflows the stack nor is walked more
// than once. Returns the layer through which a composition comes to contain itself, or null.
const Layer* LayerClosingACompLoop(const Project& project, const Pending& pending) {
  std::unordered_map<const Item*, Visit> visits;
  struct Frame {
    const Item* comp;
    std::vector<std::pair<const Layer*, const Item*>> used;
    std::size_t next = 0;
  };
  for (const auto& root : project.items) {
    if (root->kind != ItemKind::Composition || visits.count(root.get()) != 0) continue;
    std::vector<Frame> stack{{root.get(), UsedComps(*root, pending)}};
    visits[root.get()] = Visit::OnPath;
    while (!stack.empty()) {
      Frame& top = stack.back();
      if (top.next == top.used.size()) {
        visits[top.comp] = Visit::Done;
        stack.pop_back();
        continue;
      }
      const auto [layer, used] = top.used[top.next++];
      const auto seen = visits.find(used);
      if (seen != visits.end()) {
        if (seen->second == Visit::OnPath) return layer;
        continue;
      }
      visits[used] = Visit::OnPath;
      stack.push_back({used, UsedComps(*used, pending)});
    }
  }
  return nullptr;
}

void CheckSources(const Project& project, const Pending& pending, const std::string& source) {
  const Json::Value none;
  for (const auto& [reference, owner] : pending.sources) {
    const auto found = pending.items.find(reference.id);
    if (found == pending.items.end() || found->second->kind == ItemKind::Folder) {
      Fail({none, reference.path, source},
           "no footage or composition has the id " + std::to_string(reference.id));
    }
  }
  const Layer* closing = LayerClosingACompLoop(project, pending);
  for (const auto& [reference, owner] : pending.sources) {
    if (owner.second == closing) {
      Fail({none, reference.path, source}, "a composition must not contain itself");
    }
  }
}

void CheckParents(const Pending& pending, const std::string& source) {
  const Json::Value none;
  std::unordered_map<const Layer*, Visit> visits;
  const auto parentOf = [&](const Layer* layer) -> const Layer* {
    const auto found = pending.layers.find(layer->parentId);
    return layer->parentId != 0 && found != pending.layers.end() ? found->second.second : nullptr;
  };
  for (const auto& [reference, owner] : pending.parents) {
    const auto parent = pending.layers.find(reference.id);
    if (parent == pending.layers.end() || parent->second.first != owner.first) {
      Fail({none, reference.path, source},
           "no layer of this composition has the id " + std::to_string(reference.id));
    }
  }
  for (const auto& [reference, owner] : pending.parents) {
    if (RunsIntoLoop<Layer>(owner.second, parentOf, visits)) {
      Fail({none, reference.path, source},
           "a layer must not be its own parent, directly or through others");
    }
  }
}

template <typename F>
void ReadList(const In& top, const char* key, F read) {
  if (!Has(top, key)) return;
  const In list = Member(top, key);
  const Json::Value& array = RequireArray(list);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) read(Element(list, i));
}

Project ReadTop(const In& top) {
  RequireObject(top, {"format", "version", "path", "folders", "footage", "comps"});
  RequireMember(top, "format");
  RequireMember(top, "version");
  if (Text(Member(top, "format")) != kFormatName) {
    Fail(Member(top, "format"), std::string("expected \"") + kFormatName + "\"");
  }
  const int version = Integer(Member(top, "version"), 1, 1 << 30);
  if (version != kProjectFormatVersion) {
    Fail(Member(top, "version"), "version " + std::to_string(version) +
                                     " is not supported; this host reads version " +
                                     std::to_string(kProjectFormatVersion));
  }
  Project project = NewProject();
  Read(top, "path", project.path);
  Pending pending;
  pending.items[kRootFolderId] = project.items.front().get();
  ReadList(top, "folders", [&](const In& at) { ReadFolder(at, project, pending); });
  ReadList(top, "footage", [&](const In& at) { ReadFootage(at, project, pending); });
  ReadList(top, "comps", [&](const In& at) { ReadComp(at, project, pending); });
  CheckFolders(pending, top.source);
  CheckSources(project, pending, top.source);
  CheckParents(pending, top.source);
  if (!pending.itemIds.empty()) project.nextItemId = pending.itemIds.rbegin()->first + 1;
  if (!pending.layerIds.empty()) project.nextLayerId = pending.layerIds.rbegin()->first + 1;
  return project;
}

Json::Value WriteItemBase(const Item& item) {
  Json::Value out(Json::objectValue);
  out["id"] = item.id;
  if (!item.name.empty()) out["name"] = item.name;
  if (item.folderId != kRootFolderId) out["folder"] = item.folderId;
  return out;
}

void WriteSize(const Item& item, Json::Value& out) {
  out["width"] = item.width;
  out["height"] = item.height;
  if (item.pixelAspect != 1.0) out["pixelAspect"] = item.pixelAspect;
}

Json::Value WriteFootage(const Item& item) {
  Json::Value out = WriteItemBase(item);
  WriteSize(item, out);
  if (item.duration != 0.0) out["duration"] = item.duration;
  if (item.frameRate != 0.0) out["frameRate"] = item.frameRate;
  const Footage& footage = item.footage;
  if (!footage.proxyPath.empty()) out["proxy"] = footage.proxyPath;
  switch (footage.kind) {
    case FootageKind::File:
      out["file"] = footage.path;
      break;
    case FootageKind::Sequence:
      out["sequence"]["first"] = footage.path;
      out["sequence"]["count"] = footage.fileCount;
      break;
    case FootageKind::Solid:
      out["solid"]["color"] = WriteColor(footage.color);
      break;
  }
  return out;
}

void WriteComp(JsonOut& out, const Item& item) {
  Json::Value plain = WriteItemBase(item);
  WriteSize(item, plain);
  plain["frameRate"] = item.frameRate;
  plain["duration"] = item.duration;
  const Composition& comp = item.comp;
  if (comp.displayStart != 0.0) plain["displayStart"] = comp.displayStart;
  if (comp.workAreaStart != 0.0) plain["workArea"]["start"] = comp.workAreaStart;
  if (comp.workAreaDuration != item.duration) plain["workArea"]["duration"] = comp.workAreaDuration;
  if (comp.background != Composition{}.background) plain["background"] = WriteColor(comp.background);
  if (!comp.markers.empty()) plain["markers"] = WriteMarkers(comp.markers);
  std::vector<WrittenMember> written;
  if (!comp.layers.empty()) {
    written.push_back({"layers", [&](JsonOut& layers) {
                         layers.BeginArray();
                         for (const auto& layer : comp.layers) WriteLayer(layers, *layer, item);
                         layers.EndArray();
                       }});
  }
  WriteObject(out, plain, std::move(written));
}

// The whole text into `writer`, ended; a number that is not finite is refused by name.
void WriteProjectText(JsonTextWriter& writer, const Project& project) {
  try {
    WriteProject(writer, project);
  } catch (const std::domain_error& error) {
    throw ProjectFormatError(std::string("the project cannot be written: ") + error.what());
  }
  writer.Finish();
}

}  // namespace

Project ReadProject(const std::string& jsonText, const std::string& sourceName) {
  Json::CharReaderBuilder builder;
  Json::CharReaderBuilder::strictMode(&builder.settings_);
  // A description nests a dozen levels deep; the bound keeps hostile input
  // from exhausting the stack in the parser.
  builder.settings_["stackLimit"] = 64;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value root;
  std::string errors;
  bool parsed = false;
  try {
    parsed = reader->parse(jsonText.data(), jsonText.data() + jsonText.size(), &root, &errors);
  } catch (const Json::Exception& error) {  // the parser throws past its nesting bound
    errors = error.what();
  }
  if (!parsed) throw ProjectFormatError(sourceName + ": not valid JSON: " + errors);
  return ReadTop({root, "", sourceName});
}

Project LoadProjectFile(const std::string& path) {
  std::string text, error;
  if (!qae::files::ReadWholeFile(path, {kMaxProjectFileBytes, "a project description"}, &text, &error))
    throw ProjectFormatError(error);
  return ReadProject(text, path);
}

void WriteProject(JsonOut& out, const Project& project) {
  Json::Value top(Json::objectValue);
  top["format"] = kFormatName;
  top["version"] = kProjectFormatVersion;
  if (!project.path.empty()) top["path"] = project.path;
  Json::Value folders(Json::arrayValue), footage(Json::arrayValue);
  std::vector<const Item*> comps;
  for (const auto& item : project.items) {
    if (item->id == kRootFolderId) continue;
    switch (item->kind) {
      case ItemKind::Folder:
        folders.append(WriteItemBase(*item));
        break;
      case ItemKind::Footage:
        footage.append(WriteFootage(*item));
        break;
      case ItemKind::Composition:
        comps.push_back(item.get());
        break;
    }
  }
  if (!folders.empty()) top["folders"] = std::move(folders);
  if (!footage.empty()) top["footage"] = std::move(footage);
  std::vector<WrittenMember> written;
  if (!comps.empty()) {
    written.push_back({"comps", [&](JsonOut& list) {
                         list.BeginArray();
                         for (const Item* comp : comps) WriteComp(list, *comp);
                         list.EndArray();
                       }});
  }
  WriteObject(out, top, std::move(written));
}

std::string WriteProject(const Project& project) {
  JsonTextWriter writer;
  WriteProjectText(writer, project);
  return writer.Take();
}

// Written piece by piece beside the target and renamed over it: a project that cannot be
// written, or a write that fails half way, leaves the file that was there.
void SaveProjectFile(const Project& project, const std::string& path) {
  std::string error;
  qae::files::FileReplacement file;
  if (!file.Begin(path, &error)) throw ProjectFormatError(error);
  JsonTextWriter writer([&file](std::string_view piece) { file.Append(piece); });
  WriteProjectText(writer, project);
  if (!file.Commit(&error)) throw ProjectFormatError(error);
}

}  // namespace aehost
