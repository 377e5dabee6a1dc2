#pragma once
// What the session notes in a document it loads: where the document came from (its
// folder, by which texture caches know it, and its leaf), and two markers of the engine's own.
#include <cstdint>

constexpr int32_t DocParam_Path = 1012;
constexpr int32_t DocParam_File = 1013;
constexpr int32_t kDocumentSessionParam = 1019;
constexpr int32_t kDocumentLoaderParam = 1020;
constexpr int32_t kDocumentLoaderValue = 200000088;
