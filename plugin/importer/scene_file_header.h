#pragma once
// Whether a file is a scene file, judged by its first eight bytes alone: a four-byte
// variant tag, then the ident "ORY6". The engine is not involved, so the host may ask
// before the engine runs.
#include <string>

bool IsSceneFile(const std::string& path);
