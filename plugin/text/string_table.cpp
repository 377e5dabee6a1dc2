#include "plugin/text/string_table.h"

#include <json/json.h>

#include <memory>
#include <mutex>

#include "plugin/platform/file_system.h"
#include "plugin/text/builtin_strings.h"
#include "plugin/text/encodings.h"

namespace {

constexpr char kNotFound[] = "STRING NOT FOUND!";
constexpr size_t kNotFoundLength = sizeof(kNotFound) - 1;

std::mutex g_stringTableMutex;
std::unique_ptr<Json::Value> g_stringRoot;

// The file's text for `key`, if it has a usable one.
std::optional<std::string> LookUpFile(const char* key) {
  std::lock_guard<std::mutex> lock(g_stringTableMutex);
  if (!g_stringRoot || !g_stringRoot->isObject()) return std::nullopt;
  const Json::Value value = g_stringRoot->get(key, kNotFound);
  if (value.isNull() || value.isObject() || value.isArray()) return std::nullopt;
  std::string text = value.asString();
  if (text.compare(0, kNotFoundLength, kNotFound) == 0) return std::nullopt;
  return text;
}

std::optional<std::string> LookUp(MessageKey message) {
  if (auto text = LookUpFile(message.key)) return text;
  const BuiltinString* record = BuiltinStringAt(message.id);
  if (!record || record->text[0] == '\0') return std::nullopt;
  return std::string(record->text);
}

}  // namespace

std::string StringFilePath(const std::string& pluginFolder, const std::string& language) {
  const std::string folder = JoinPath(pluginFolder, "support/res/strings");
  const std::string localised = JoinPath(folder, "str_" + language + ".txt");
  if (FileExists(localised, false)) return localised;
  return JoinPath(folder, "str_en_US.txt");
}

StringTableLoad LoadStringTableFile(const std::string& pluginFolder, const std::string& language) {
  FreeStringTable();
  const std::string path = StringFilePath(pluginFolder, language);
  if (!FileExists(path, false)) return StringTableLoad::kNoFile;
  const std::optional<std::string> bytes = ReadFileBytes(path);
  if (!bytes) return StringTableLoad::kUnreadable;
  return LoadStringTableText(*bytes);
}

StringTableLoad LoadStringTableText(const std::string& bytes) {
  FreeStringTable();
  // A round trip through UTF-16 applies the plug-in's own reading of UTF-8: en dashes
  // become line feeds and what cannot be decoded becomes "_".
  const std::string text = EncodeUtf8(DecodeUtf8(bytes));
  auto root = std::make_unique<Json::Value>();
  Json::Reader reader;
  try {
    if (!reader.parse(text, *root, true) || !root->isObject()) return StringTableLoad::kNotJson;
  } catch (const std::exception&) {
    return StringTableLoad::kNotJson;  // the reader refuses nesting beyond its depth limit by throwing
  }
  std::lock_guard<std::mutex> lock(g_stringTableMutex);
  g_stringRoot = std::move(root);
  return StringTableLoad::kLoaded;
}

bool IsStringTableLoaded() {
  std::lock_guard<std::mutex> lock(g_stringTableMutex);
  return g_stringRoot != nullptr;
}

void FreeStringTable() {
  std::lock_guard<std::mutex> lock(g_stringTableMutex);
  g_stringRoot.reset();
}

std::string GetStringUtf8(MessageKey message) { return LookUp(message).value_or(std::string()); }

std::string GetString(MessageKey message) {
  return ToCodePage1252(DecodeUtf8(GetStringUtf8(message)));
}

std::optional<std::u16string> GetStringU16(MessageKey message) {
  const std::optional<std::string> text = LookUp(message);
  if (!text) return std::nullopt;
  return DecodeEscapes(EncodeText(DecodeUtf8(*text), kEncodingEscapes));
}
