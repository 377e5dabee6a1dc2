// Feeds arbitrary text to the JSON scene description reader of orytool. A description
// that builds must write a scene file that reads back.
#include <json/json.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "quillon/format/ory_format.h"
#include "quillon/orytool/scene_json.h"

using namespace quillon;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto* text = reinterpret_cast<const char*>(data);
  Json::CharReaderBuilder builder;
  builder["allowSpecialFloats"] = true;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value root;
  std::string error;
  try {
    if (!reader->parse(text, text + size, &root, &error)) return 0;
  } catch (const Json::Exception&) {  // nesting beyond the parser's depth limit
    return 0;
  }
  std::unique_ptr<Document> doc = NewDocument();
  if (!orytool::JsonToDocument(root, *doc, &error)) return 0;
  std::vector<std::uint8_t> bytes;
  if (!format::EncodeDocument(*doc, bytes, &error)) return 0;  // e.g. nesting beyond the file's limit
  Document copy;
  if (!format::DecodeDocument(bytes.data(), bytes.size(), copy, &error)) std::abort();
  return 0;
}
