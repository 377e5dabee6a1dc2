// Table Ge: files and general services.
#include <chrono>
#include <filesystem>
#include <thread>

#include "quillon/api/extensions.h"
#include "quillon/api/handles.h"
#include "quillon/api/render_services.h"
#include "quillon/api/scene_file.h"
#include "quillon/api/session_operations.h"
#include "quillon/api/tables.h"

namespace quillon {
namespace {

bool FileExists(const Filename* file, int32_t) {
  if (!file) return false;
  std::error_code ignored;
  return std::filesystem::exists(PathOf(*file), ignored);
}

const ExtensionRecord* FindExtension(int32_t id, int32_t, const void**) { return FindExtensionRecord(id); }

bool GetExtensionTable(const ExtensionRecord* record, const void** table, int32_t* libraryId, int32_t* tableSize) {
  return ReadExtensionRecord(record, table, libraryId, tableSize);
}

void Sleep(int32_t milliseconds) {
  if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

bool LoadFileIntoDocument(BaseDocument* document, const Filename* file, int32_t, void*, void*, EngineString* error) {
  Document* model = DocumentOfHandle(document);
  std::string message;
  bool loaded = false;
  if (!model || !file) {
    message = "no document or no file to load";
  } else {
    loaded = ReadSceneFileFrom(*file, *model, &message);
  }
  if (!loaded && error) AssignText(*error, FromUtf8(message));
  return loaded;
}

}  // namespace

const ORYOS_Ge& GeTable() {
  static const ORYOS_Ge table{.FileExists = FileExists,
                              .FindExtension = FindExtension,
                              .GetExtensionTable = GetExtensionTable,
                              .Sleep = Sleep,
                              .LoadFileIntoDocument = LoadFileIntoDocument,
                              .ConsolePrint = ConsolePrint,
                              .DeleteFile = DeleteFile,
                              .FlushCaches = FlushCaches,
                              .InvalidateTexture = InvalidateTexture,
                              .GetEngineFolder = GetEngineFolder,
                              .RenderDocument = RenderDocument,
                              .FrameCamera = FrameCamera,
                              .FreeDocument = FreeDocument,
                              .GetAssets = GetAssets};
  return table;
}

}  // namespace quillon
