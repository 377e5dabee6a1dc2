#pragma once
// The readable dump of a document: a summary line, then an indented tree of the document,
// its objects with tags and tracks, materials, layers, render settings, markers and views.
#include <string>

#include "quillon/model/document.h"

namespace quillon::orytool {

std::string DumpText(const Document& document);

}  // namespace quillon::orytool
