#pragma once
// Texts the user sees, by id (the place of the built-in record) and by key (the member
// of the string file). Failures are numbered separately; `MessageForCode` maps a
// failure code to the text that describes it.
#include <cstdint>

struct MessageKey {
  int32_t id;
  const char* key;
};

inline constexpr MessageKey kStrFileRead{1, "StrID_ORYERR_FILEREAD"};
inline constexpr MessageKey kStrUndoImport{53, "StrID_UNDOIMPORT"};
inline constexpr MessageKey kStrNameExporter{54, "StrID_NameExporter"};
inline constexpr MessageKey kStrTroublesExporter{55, "StrID_TroublesExporter"};
inline constexpr MessageKey kStrTroubles2Exporter{56, "StrID_Troubles2Exporter"};
inline constexpr MessageKey kStrTroublesImporterExporter{57, "StrID_TroublesImporterExporter"};
inline constexpr MessageKey kStrOryImporterExporter{58, "StrID_ORYImporterExporter"};
inline constexpr MessageKey kStrTroublesOpenOry{59, "StrID_TroublesOpenORY"};

// Failure codes that the export command raises.
inline constexpr int32_t kCodeSaveBeforeExport = 41;
inline constexpr int32_t kCodeNo3dLayers = 48;
inline constexpr int32_t kCode2dLayersFound = 49;

// The text of a failure code; unknown codes give the general error.
MessageKey MessageForCode(int32_t code);
