// Evaluation of a document: generators build their caches. The instance
// object's cache is a copy of the object it refers to; the duplicator's cache
// holds copies of its children in a row; the chain generators pass their
// children through. Every node inside a cache carries the info bit 0x200.
#pragma once

#include <string>

#include "quillon/model/document.h"

namespace quillon {

// Parameters of the generators.
constexpr int32_t InstanceParam_Reference = 1001;
constexpr int32_t DuplicatorParam_Count = 1020;
constexpr int32_t DuplicatorParam_Offset = 1021;

// What caches may hold: a duplicator's copies, caches within caches, and all objects that one
// evaluation generates (so that instances of instances, each three times over, cannot fill the
// memory).
constexpr int32_t kMaxDuplicates = 10000;
// Caches inside the copies that other caches hold.
constexpr int32_t kMaxCacheDepth = 16;
constexpr int64_t kMaxGeneratedObjects = 100000;

// Animates the document at its current time and builds every cache. A document past a limit,
// with an instance that would hold itself, or with a number that is not finite gets no caches,
// and the answer names the object and what is wrong; empty when all went well.
std::string EvaluateDocumentCaches(Document& document);
// Builds the caches of one object and everything below it, under the same limits.
std::string BuildCaches(Object& object);

}  // namespace quillon
