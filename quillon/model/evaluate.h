// Evaluation of a document: generators build their caches. The instance
// object's cache is a copy of the object it refers to; the duplicator's cache
// holds copies of its children in a row; the chain generators pass their
// children through. Every node inside a cache carries the info bit 0x200.
#pragma once

#include "quillon/model/document.h"

namespace quillon {

// Parameters of the generators.
constexpr int32_t InstanceParam_Reference = 1001;
constexpr int32_t DuplicatorParam_Count = 1020;
constexpr int32_t DuplicatorParam_Offset = 1021;

void EvaluateDocumentCaches(Document& document);
// Builds the caches of one object and everything below it.
void BuildCaches(Object& object, const Document* document);

}  // namespace quillon
