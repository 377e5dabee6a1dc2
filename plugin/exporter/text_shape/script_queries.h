#pragma once
// The query scripts by which the exporter reads what the host's suites do not give: the
// properties of a text document and the path options of a text layer. Each is a template in
// the host's script language that ends in "getLayerData(%d);"; the layer's zero-based index
// is the one value put in. The texts are a wire format with the host's script engine: their
// wording, blanks and line ends are fixed.
#include <string>
#include <vector>

#include "plugin/exporter/ae_to_ory.h"

// The text behind the property object: `value`, then "AtTime(seconds,false)" when a time is
// given, then "." and `member` when there is one. Seconds are printed as a default text
// stream prints a double (six significant digits), 0 when the time has no denominator.
std::string BuildPropertyPath(const std::string& member, const BaseTime* time);

// "layer(n).source." for each composition of the stack after the exported one, n being the
// one-based index of the precomposition layer through which it was entered.
std::string BuildCompAddress(const std::vector<CompStackEntry>& compStack);

// Reads `path` of the layer's text document; a layer that is no text layer returns nothing.
std::string BuildTextDocumentQuery(const std::string& path, const std::vector<CompStackEntry>& compStack);

// Reads `path` of the text layer's path option `optionName`; "0" when the layer has none.
std::string BuildPathOptionQuery(const std::string& optionName, const std::string& path,
                                 const std::vector<CompStackEntry>& compStack);

// The script of a template for the layer at `layerIndex`. The host's classic buffer holds
// 2048 bytes with the terminating zero; a script that would not fit (a layer nested in very
// many precompositions) is not cut, since a cut script is a syntax error whose empty reply
// would pass for a default value: it is formatted whole, as a growing buffer would hold it.
std::string FillLayerIndex(const std::string& scriptTemplate, int32_t layerIndex);
