#include "plugin/exporter/text_shape/shape_styles.h"

#include "plugin/exporter/text_shape/reply_parsing.h"

namespace {

std::vector<std::string> SplitAt(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}


}  // namespace

std::vector<ShapeStyleEntry> ParseShapeStyles(const std::string& reply, int32_t group,
                                              const std::function<bool()>& isGroupPathClosed) {
  std::vector<ShapeStyleEntry> entries;
  if (!ParseHasValue(reply)) return entries;
  std::vector<std::string> lines = SplitAt(reply, '\n');
  // The last line ends with its line feed.
  if (lines.back().empty()) lines.pop_back();
  for (std::size_t n = 0; n < lines.size(); ++n) {
    const std::vector<std::string> tokens = SplitAt(lines[n], '\t');
    const std::string& flags = tokens.front();
    ShapeStyleEntry entry;
    entry.isGradient = ReplyContains(flags, "Grad");
    entry.isAnimated = ReplyContains(flags, "Anim");
    entry.isOver = ReplyContains(flags, "Over");
    entry.include = ReplyContains(flags, "Stroke") || !ReplyContains(flags, "Bezier") || isGroupPathClosed();
    for (std::size_t t = tokens.size() - 1; t >= 1; --t) {
      entry.path += tokens[t];
      if (t > 1) entry.path += "-";
    }
    entry.group = group;
    entry.shapeNumber = static_cast<int32_t>(n);
    if (entry.include) entries.push_back(entry);
  }
  return entries;
}

