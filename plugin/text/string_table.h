#pragma once
// The localised texts of the plug-in: a JSON object of key and text read from the
// string file of the host's language beside the plug-in, with the built-in English
// records behind it. The table stays loaded for the life of the process.
#include <optional>
#include <string>

#include "plugin/text/message_ids.h"

enum class StringTableLoad {
  kLoaded,
  kNoFile,      // neither the language's file nor the English one exists
  kUnreadable,  // the file exists but could not be read
  kNotJson,     // the file is not a JSON object
};

// The string file for `language` (such as "en_US") in `<pluginFolder>/support/res/strings/`,
// or the English one when that language has none.
std::string StringFilePath(const std::string& pluginFolder, const std::string& language);

// Replaces the table with the file's content; on failure the table is empty.
StringTableLoad LoadStringTableFile(const std::string& pluginFolder, const std::string& language);

// Replaces the table with the content of a string file held in memory.
StringTableLoad LoadStringTableText(const std::string& bytes);

bool IsStringTableLoaded();
void FreeStringTable();

// The text of `message` as UTF-8: the file's member, else the built-in record.
std::string GetStringUtf8(MessageKey message);

// The text in code page 1252, for menu entries and names; empty when there is none.
std::string GetString(MessageKey message);

// The text in UTF-16 with its \uXXXX escapes decoded; nothing when there is none.
std::optional<std::u16string> GetStringU16(MessageKey message);
