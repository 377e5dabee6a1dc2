// The ExtendScript dialect, brought down to the JavaScript that Duktape runs.
// After Effects' scripts use two things that plain JavaScript has not:
//   - triple-quoted strings, """...""", which may hold quotes and line ends and
//     are taken literally (a backslash in them is a backslash);
//   - preprocessor lines at the start of a line: `#include "file"` (also written
//     `//@include "file"`) puts the file's text in its place; #target,
//     #targetengine, #strict, #script and #engine are accepted and dropped.
// Everything else passes unchanged. The lexer knows ordinary strings, comments and
// regular expression literals, so a """ inside them is not taken for a string.
#pragma once

#include <functional>
#include <string>

namespace aehost {

// Reads the text of an included file by the name written in the directive;
// returns false with a message when it cannot.
using IncludeReader = std::function<bool(const std::string& name, std::string* text,
                                         std::string* error)>;

// Translates `source` into `out`. Line numbers are kept: a triple-quoted string
// that spans lines is followed by as many line ends as it held. On a malformed
// source (an unterminated triple-quoted string, an unknown directive, a failed
// include) returns false with a message that names the line.
bool TranslateDialect(const std::string& source, const IncludeReader& include,
                      std::string* out, std::string* error);

}  // namespace aehost
