#include "plugin/exporter/text_shape/reply_parsing.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <vector>

namespace {

bool IsNothing(const std::string& reply) { return reply.empty() || reply == "undefined"; }

// The parts between commas; commas side by side make no empty part.
std::vector<std::string> CommaParts(const std::string& reply) {
  std::vector<std::string> parts;
  std::string part;
  for (const char c : reply) {
    if (c != ',') {
      part += c;
    } else if (!part.empty()) {
      parts.push_back(part);
      part.clear();
    }
  }
  if (!part.empty()) parts.push_back(part);
  return parts;
}

}  // namespace

bool ParseFlag(const std::string& reply) { return reply == "true"; }

// As `atoi`, but a number beyond the range of an int stops at its end instead of overflowing.
int ParseWhole(const std::string& reply) {
  const long number = std::strtol(reply.c_str(), nullptr, 10);
  return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

double ParseNumber(const std::string& reply) { return std::strtod(reply.c_str(), nullptr); }

int ParseCount(const std::string& reply) { return IsNothing(reply) ? 0 : ParseWhole(reply); }

double ParseMargin(const std::string& reply) { return IsNothing(reply) ? 0.0 : ParseNumber(reply); }

bool ReplyContains(const std::string& reply, const char* word) { return reply.find(word) != std::string::npos; }

bool ParseIsSet(const std::string& reply) { return !IsNothing(reply) && reply != "false"; }

bool ParseHasValue(const std::string& reply) { return !IsNothing(reply); }

int ParseLargestWhole(const std::string& reply) {
  const std::vector<std::string> parts = CommaParts(reply);
  if (parts.empty()) return 0;
  int largest = INT_MIN;
  for (const std::string& part : parts) largest = std::max(largest, ParseWhole(part));
  return largest;
}

bool ParseColour(const std::string& reply, TextColour* colour) {
  const std::vector<std::string> parts = CommaParts(reply);
  if (parts.size() < 3) return false;
  for (int i = 0; i < 3; ++i) colour->rgb[i] = ParseNumber(parts[static_cast<std::size_t>(i)]);
  if (parts.size() > 3) colour->alpha = ParseNumber(parts[3]);
  return true;
}

bool ParseMaskIndex(const std::string& reply, int* index) {
  *index = 0;
  if (IsNothing(reply) || reply == "0") return false;
  *index = ParseWhole(reply);
  return true;
}
