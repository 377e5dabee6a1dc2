#pragma once
// A document that holds every kind of content a scene file carries, built through the
// model directly, for round trips of the file format and of orytool.
#include <memory>

#include "quillon/model/document.h"

namespace quillon::format::testing {

std::unique_ptr<Document> MakeSampleScene();

// The first object of the document with this name, searched depth first.
Object* FindObjectNamed(const Document& document, const std::u16string& name);

}  // namespace quillon::format::testing
