#pragma once
// Points the bitmap shaders of a render's document at the files that callers sent into the
// render (`textures`): a shader finds a sent file by the last component of the name it holds.
#include <string>

#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// The key under which `textures` keeps what was sent under the name `text`.
std::u16string TextureKey(const EngineString& text);

// Relinks the shaders of every channel of `material` (0 to 29, but 8 and 9); of the
// reflection only on a standard material.
void RelinkTextures(Material* material, const RenderThread& render);

// Relinks `shader` and the shaders below it, and unless `single` its next siblings too.
// False for a null shader.
bool RelinkShader(BaseShader* shader, bool single, const RenderThread& render);

// RelinkTextures on each material of the document, when the render has a document and
// something was sent.
void RelinkAllMaterials(const RenderThread& render);

}  // namespace quillon
