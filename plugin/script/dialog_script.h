#pragma once
// The dialogs that the plug-in shows through scripts, read from the files beside it:
//   support/res/dialogs/<name>                 the dialog
//   support/res/dialogs/strings/str_<name>     its texts
//   support/res/dialogs/includes/JSON.jsx      the JSON library the dialogs use
#include <string>

#include "plugin/host/cti.h"

// Codes of ReadTextFile besides the host's own.
inline constexpr A_Err kReadTextFileNoMemory = 4;
inline constexpr A_Err kReadTextFileFailed = 513;

// Reads a UTF-8 text file. A missing or unreadable file is shown to the user with the
// text of record 1 and gives 513.
A_Err ReadTextFile(CTI* cti, const std::string& path, std::string* text);

// The texts, the JSON library and the dialog `name`, joined into one script. The first
// file that cannot be read ends it with its code; 512 without a frame.
A_Err LoadDialogScript(CTI* cti, AEGP_PluginID pluginId, const std::string& name, std::string* script);
