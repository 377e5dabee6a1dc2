#pragma once
// A document as a JSON scene description (quillon/SCENE_FORMAT.md) and back: what
// `orytool dump --json` prints and `orytool build` reads. A description that the dump
// printed builds a document equal to the one dumped.
#include <json/json.h>

#include <string>

#include "quillon/model/document.h"

namespace quillon::orytool {

Json::Value DocumentToJson(const Document& document);

// Fills `document` (a new one, whose defaults remain where the description is silent).
// False and "$.objects[2].params[0].id: problem" on the first problem.
bool JsonToDocument(const Json::Value& description, Document& document, std::string* error);

}  // namespace quillon::orytool
