#pragma once
// Texts that the plug-in puts into the scripts it builds, between the quotes of a string
// literal: composition names, paths, messages. Every such text goes through here, so that
// the script engine receives exactly that text, and no name can end the literal early
// and have the rest run as script.
#include <string>
#include <string_view>

// `text` (UTF-8) written as the content of an ExtendScript string literal delimited by
// `quote` (' or "): backslash, that quote, line feed and carriage return as \\, \", \',
// \n and \r, the tab as \t, the other control characters as \u00XX, and the line and
// paragraph separators U+2028 and U+2029, which end a line inside a literal too, as
// \u2028 and \u2029. Every other byte is kept, so a text without these characters comes
// out unchanged.
std::string ScriptLiteralText(std::string_view text, char quote);
