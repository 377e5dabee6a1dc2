// libFuzzer target for the string file reader: any bytes are parsed as a string file,
// and every text the plug-in looks up is then taken in each of its forms.
#include <cstddef>
#include <cstdint>
#include <string>

#include "plugin/text/builtin_strings.h"
#include "plugin/text/message_ids.h"
#include "plugin/text/string_table.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LoadStringTableText(std::string(reinterpret_cast<const char*>(data), size));
  for (int32_t code = 0; code <= 128; ++code) {
    const MessageKey message = MessageForCode(code);
    GetString(message);
    GetStringU16(message);
  }
  for (const MessageKey message : {kStrNameExporter, kStrTroublesExporter, kStrTroubles2Exporter,
                                   kStrTroublesImporterExporter, kStrOryImporterExporter, kStrTroublesOpenOry,
                                   kStrUndoImport}) {
    GetString(message);
    GetStringU16(message);
  }
  FreeStringTable();
  return 0;
}
