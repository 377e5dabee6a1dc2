#include "plugin/session/texture_files.h"

#include <new>
#include <string>

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/asset_lists.h"
#include "plugin/session/picture_format.h"
#include "plugin/session/texture_relink.h"

namespace quillon {

namespace {

// What the engine is told of a file it writes for a session.
constexpr int32_t kTextureFileType = 0x4F525943;     // "ORYC"
constexpr int32_t kTextureFileCreator = 0x4F525931;  // "ORY1"
constexpr int32_t kAlphaWriteFormat[] = {0, 2, 18, 0, 34};  // by bytes a channel

// The name as the path of a file: one without a folder lies in the engine's "tex" folder.
void DiskPathOf(const Filename& name, Filename* file) {
  OwnedFilename folder;
  t_ORYOS_Fn->GetDirectory(&folder.value, &name);
  if (t_ORYOS_Fn->IsFilled(&folder.value)) {
    t_ORYOS_Fn->FilenameCopy(&name, file);
    return;
  }
  OwnedFilename engineFolder;
  t_ORYOS_Ge->GetEngineFolder(&engineFolder.value, kEngineFolderUser);
  OwnedString folderText;
  OwnedString leafText;
  t_ORYOS_Fn->GetString(folderText.get(), &engineFolder.value);
  t_ORYOS_Fn->GetString(leafText.get(), &name);
  t_ORYOS_Fn->SetFromCString(file, (ToUtf8(*folderText.get()) + "/tex/" + ToUtf8(*leafText.get())).c_str());
}

// The engine forgets the picture it read under the name, and the render what it kept.
void ForgetTexture(RenderThread& render, const EngineString& text) {
  if (render.document) {
    OwnedFilename folder;
    OwnedFilename none;
    DocumentFolderOf(render.document, &folder.value);
    t_ORYOS_Ge->InvalidateTexture(&folder.value, &text, &none.value);
  }
  const auto kept = render.textures.find(TextureKey(text));
  if (kept == render.textures.end()) return;
  t_ORYOS_Fn->FilenameFree(&kept->second);
  render.textures.erase(kept);
}

// Keeps `file` under the name in place of what was kept before; the render owns it then.
// An open document's materials show it at once.
bool KeepTexture(RenderThread& render, const Filename& name, Filename file) {
  OwnedString text;
  t_ORYOS_Fn->GetString(text.get(), &name);
  ForgetTexture(render, *text.get());
  try {
    render.textures.emplace(TextureKey(*text.get()), file);
  } catch (const std::bad_alloc&) {
    t_ORYOS_Fn->FilenameFree(&file);
    return false;
  }
  if (render.sessionOpen) RelinkAllMaterials(render);
  return true;
}

// A memory file that reads a copy of `size` bytes, or takes them over.
Filename MemoryFileOf(const void* data, int64_t size, bool takesOwnership) {
  Filename file{nullptr};
  t_ORYOS_Fn->FilenameInit(&file);
  t_ORYOS_Fn->SetMemoryRead(&file, data, size, takesOwnership);
  return file;
}

bool WriteDiskFile(const Filename& name, const void* data, int64_t size) {
  OwnedFilename path;
  DiskPathOf(name, &path.value);
  DiskFile* file = t_ORYOS_Fl->AllocFile();
  if (!file) return false;
  const bool written = t_ORYOS_Fl->OpenFile(file, &path.value, kDiskFileWrite, 0, 1, kTextureFileType,
                                            kTextureFileCreator) &&
                       t_ORYOS_Fl->WriteFile(file, data, size);
  t_ORYOS_Fl->FreeFile(file);
  return written;
}

// The caller's picture in a bitmap of its own, with an alpha channel when the pixels have one.
Bitmap* PictureBitmap(const void* pixels, int32_t format, const PictureFormat& picture, int32_t width,
                      int32_t height, int32_t stride) {
  Bitmap* bitmap = t_ORYOS_Bm->AllocBitmap();
  if (!bitmap) return nullptr;
  if (t_ORYOS_Bm->InitBitmap(bitmap, width, height, picture.bytes * picture.bitmapChannels * 8, 0) != 1) {
    t_ORYOS_Bm->FreeBitmap(bitmap);
    return nullptr;
  }
  const bool hasAlpha = (format & 1) != 0;
  Bitmap* alpha = hasAlpha ? t_ORYOS_Bm->GetAlphaChannel(bitmap) : nullptr;
  if (hasAlpha && !alpha) alpha = t_ORYOS_Bm->AddAlphaChannel(bitmap, 1, true);
  const int32_t pixelBytes = picture.bytes * picture.sourceChannels;
  const int32_t colourOffset = hasAlpha ? picture.bytes : 0;
  bool written = !hasAlpha || alpha;
  for (int32_t y = 0; written && y < height; ++y) {
    const auto* line = static_cast<const uint8_t*>(pixels) + static_cast<int64_t>(y) * stride;
    written = t_ORYOS_Bm->WriteBitmapLine(bitmap, 0, y, width, line + colourOffset, pixelBytes, format & ~1, 0) &&
              (!alpha || t_ORYOS_Bm->WriteBitmapLine(alpha, 0, y, width, line, pixelBytes,
                                                     kAlphaWriteFormat[picture.bytes], 0));
  }
  if (written) return bitmap;
  t_ORYOS_Bm->FreeBitmap(bitmap);
  return nullptr;
}

// The bitmap as the bytes of a PNG in a memory file that reads them.
bool SavePicture(const Bitmap* bitmap, int32_t format, Filename* file) {
  const int32_t channelSize = format & 0x30;
  int32_t flags = channelSize == 0x10 ? kBitmapSave16 : channelSize == 0x20 ? kBitmapSave32 : 0;
  if (t_ORYOS_Bm->GetAlphaChannel(bitmap)) flags |= kBitmapSaveAlpha;
  MemoryFile* memory = t_ORYOS_Fn->AllocMemoryFile();
  if (!memory) return false;
  OwnedFilename target;
  t_ORYOS_Fn->SetMemoryWrite(&target.value, memory);
  ParamContainer settings{nullptr, 0, 0};
  t_ORYOS_Bc->InitContainer(&settings, -1, 0);
  const bool saved = t_ORYOS_Bm->SaveBitmap(bitmap, &target.value, kBitmapSavePng, &settings, flags) == 1;
  t_ORYOS_Bc->FreeContainer(&settings);
  if (saved) {
    const void* bytes = nullptr;
    int64_t size = 0;
    t_ORYOS_Fn->GetMemoryFileData(memory, &bytes, &size);
    *file = MemoryFileOf(bytes, size, false);
  }
  t_ORYOS_Fn->FreeMemoryFile(memory);
  return saved;
}

}  // namespace

bool SendFile(RenderThread& render, const Filename& name, void** data, int64_t size, bool toMemory) {
  if (!data || !*data || size < 0) return false;
  render.StopThread();
  if (!toMemory) return WriteDiskFile(name, *data, size);
  const Filename file = MemoryFileOf(*data, size, true);
  *data = nullptr;
  return KeepTexture(render, name, file);
}

bool SendPicture(RenderThread& render, const Filename& name, const void* pixels, int32_t format, int32_t width,
                 int32_t height, int32_t stride) {
  PictureFormat picture{};
  if (!pixels || width < 1 || height < 1 || stride == 0 || !PictureFormatOf(format, &picture)) return false;
  render.StopThread();
  Bitmap* bitmap = PictureBitmap(pixels, format, picture, width, height, stride);
  if (!bitmap) return false;
  Filename file{nullptr};
  const bool saved = SavePicture(bitmap, format, &file);
  t_ORYOS_Bm->FreeBitmap(bitmap);
  return saved && KeepTexture(render, name, file);
}

bool RemoveFile(RenderThread& render, const Filename& name) {
  render.StopThread();
  OwnedString text;
  t_ORYOS_Fn->GetString(text.get(), &name);
  ForgetTexture(render, *text.get());
  OwnedFilename path;
  DiskPathOf(name, &path.value);
  if (!t_ORYOS_Ge->FileExists(&path.value, 0)) return true;
  return t_ORYOS_Ge->DeleteFile(&path.value, 0);
}

}  // namespace quillon
