#pragma once
// How the replies of the query scripts become values. A reply is the text of the script's
// last value; an empty reply means that nothing came back or that the run failed. Numbers
// are parsed as the C library parses them, so a reply that is no number gives 0.
#include <string>

// A colour as the host gives it, components as fractions, 1 being full.
struct TextColour {
  double rgb[3] = {0.0, 0.0, 0.0};
  double alpha = 1.0;
};

// True only for the exact reply "true".
bool ParseFlag(const std::string& reply);
// The leading whole number (`atoi`): "36.5" gives 36.
int ParseWhole(const std::string& reply);
// The leading number (`atof`).
double ParseNumber(const std::string& reply);
// Key counts and margins: an empty reply and exactly "undefined" give 0.
int ParseCount(const std::string& reply);
double ParseMargin(const std::string& reply);

// Whether `word` stands anywhere in the reply.
bool ReplyContains(const std::string& reply, const char* word);
// A state asked of a property: an empty reply, "undefined" and "false" give false, anything
// else true.
bool ParseIsSet(const std::string& reply);
// Whether a value came back at all: false for an empty reply and "undefined".
bool ParseHasValue(const std::string& reply);
// The largest of the whole numbers between commas ("0,4,2" gives 4); none gives 0.
int ParseLargestWhole(const std::string& reply);

// "r,g,b" or "r,g,b,a", runs of commas counting as one. Fewer than three parts write
// nothing and give false; a fourth part writes `alpha`, three leave it as it was.
bool ParseColour(const std::string& reply, TextColour* colour);

// The one-based index of the mask a text follows. `index` becomes 0 first; an empty reply,
// "undefined" and "0" (the template's answer for a layer without path options) give false.
bool ParseMaskIndex(const std::string& reply, int* index);
