#include "plugin/text/path_text.h"

bool IsPresetPath(std::u16string_view path) { return path.starts_with(u"preset://"); }

std::u16string NormalizeLocalPath(std::u16string_view path) {
  std::u16string out(path);
  const char16_t separator = IsPresetPath(path) ? u'/' : kPathSeparator;
  if (!out.empty() && out.back() == separator) out.pop_back();
  while (!out.empty() && out.back() == u' ') out.pop_back();
  return out;
}

std::u16string ToScriptPath(std::u16string_view path) {
  std::u16string out(path);
  for (size_t i = 0; i + 1 < out.size(); ++i) {
    if (out[i] == u'\\') out[i] = u'/';
  }
  if (out.find(u':') == std::u16string::npos) return out;
  return u"/" + out.substr(0, 1) + (out.size() > 2 ? out.substr(2) : std::u16string());
}

std::u16string LastPathComponent(std::u16string_view path) {
  const size_t slash = path.find_last_of(u"/\\");
  return std::u16string(slash == std::u16string_view::npos ? path : path.substr(slash + 1));
}

std::vector<std::u16string> SplitAtChars(std::u16string_view text, std::u16string_view separators) {
  std::vector<std::u16string> pieces;
  size_t pos = text.find_first_not_of(separators);
  while (pos != std::u16string_view::npos) {
    const size_t end = text.find_first_of(separators, pos);
    pieces.emplace_back(text.substr(pos, end == std::u16string_view::npos ? end : end - pos));
    pos = text.find_first_not_of(separators, end);
  }
  return pieces;
}

std::u16string ReplaceChar(std::u16string text, char16_t from, char16_t to) {
  for (char16_t& unit : text) {
    if (unit == from) unit = to;
  }
  return text;
}
