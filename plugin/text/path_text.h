#pragma once
// Paths and pieces of text as UTF-16, the form in which the host hands them over.
#include <string>
#include <string_view>
#include <vector>

// The separator of local paths on this system.
inline constexpr char16_t kPathSeparator = u'/';

// True when `path` names an entry of the host's preset library ("preset://...").
bool IsPresetPath(std::u16string_view path);

// A path as the plug-in keeps it: without a trailing separator ("/" for presets, the
// local separator otherwise) and without trailing blanks.
std::u16string NormalizeLocalPath(std::u16string_view path);

// The path in the form ExtendScript's File wants: backslashes (but a last one) become
// slashes, and a drive-letter path "C:..." becomes "/C...". A colon is taken to stand at
// index 1; a path without one is only re-slashed.
std::u16string ToScriptPath(std::u16string_view path);

// The last component of a path (after the last "/" or "\").
std::u16string LastPathComponent(std::u16string_view path);

// Pieces of `text` between runs of any of `separators`; no empty pieces.
std::vector<std::u16string> SplitAtChars(std::u16string_view text, std::u16string_view separators);

std::u16string ReplaceChar(std::u16string text, char16_t from, char16_t to);
