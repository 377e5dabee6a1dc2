#include "plugin/platform/shared_file_lock.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_params.h"

SharedFileLock::SharedFileLock() {
  t_ORYOS_Fn->FilenameInit(&file_);
  Reset();
}

SharedFileLock::SharedFileLock(const Filename& file) : SharedFileLock() { SetFile(file); }

SharedFileLock::~SharedFileLock() {
  Release();
  if (sceneFile_) t_ORYOS_Hf->FreeSceneFile(sceneFile_);
  t_ORYOS_Fn->FilenameFree(&file_);
}

void SharedFileLock::ClearFile() {
  t_ORYOS_Fn->FilenameFree(&file_);
  t_ORYOS_Fn->FilenameInit(&file_);
}

void SharedFileLock::Reset() {
  if (!sceneFile_) sceneFile_ = t_ORYOS_Hf->AllocSceneFile();
  if (!sceneFile_) return;
  errorText_.clear();
  ClearFile();
  handle_ = kNoFileHandle;
  locked_ = false;
}

void SharedFileLock::SetFile(const Filename& file) {
  if (t_ORYOS_Fn->IsFilled(&file_) && !t_ORYOS_Fn->FilenameEquals(&file_, &file)) {
    Release();
    Reset();
  }
  t_ORYOS_Fn->FilenameCopy(&file, &file_);
}

std::string SharedFileLock::PathText() const {
  OwnedString text;
  t_ORYOS_Fn->GetString(text.get(), &file_);
  return ToUtf8(*text.get());
}

bool SharedFileLock::Acquire(bool write, int32_t seconds) {
  if (!t_ORYOS_Fn->IsFilled(&file_)) {
    errorText_ += "Filename is empty.\n";
    return false;
  }
  const std::string path = PathText();
  if (path.empty()) {
    errorText_ += "Memory failure in file lock.\n";
    return false;
  }
  std::string text;
  handle_ = AcquireFileLock(path, write, seconds, t_ORYOS_Ge->Sleep, &text);
  locked_ = handle_ != kNoFileHandle;
  errorText_ += text;
  return locked_;
}

SceneFile* SharedFileLock::OpenToRead(int32_t seconds) {
  errorText_.clear();
  if (!Acquire(false, seconds)) return nullptr;
  if (sceneFile_ && t_ORYOS_Hf->Open(sceneFile_, kSceneFileIdent, &file_, kSceneFileModeRead, 0))
    return GetSceneFile();
  errorText_ += " ORY Open to read from file " + PathText() + " failed\n";
  Release();
  return nullptr;
}

SceneFile* SharedFileLock::OpenToRead(const Filename& file, int32_t seconds) {
  SetFile(file);
  return OpenToRead(seconds);
}

SceneFile* SharedFileLock::OpenToWrite(int32_t /*seconds*/) {
  errorText_.clear();
  if (sceneFile_ && t_ORYOS_Hf->Open(sceneFile_, kSceneFileIdent, &file_, kSceneFileModeWrite, 0)) {
    locked_ = true;
    return sceneFile_;
  }
  errorText_ += "ORY Open to write to file " + PathText() + " failed\n";
  Release();
  return nullptr;
}

SceneFile* SharedFileLock::OpenToWrite(const Filename& file, int32_t seconds) {
  SetFile(file);
  return OpenToWrite(seconds);
}

SceneFile* SharedFileLock::GetSceneFile() {
  if (locked_) return sceneFile_;
  errorText_ += "File access not permitted, no lock in place.\n";
  return nullptr;
}

bool SharedFileLock::Release() {
  if (locked_) {
    if (handle_ == kNoFileHandle) {
      locked_ = false;
    } else if (ReleaseFileLock(handle_, &errorText_)) {
      handle_ = kNoFileHandle;
      locked_ = false;
    }
  }
  if (sceneFile_) t_ORYOS_Hf->Close(sceneFile_);
  return !locked_;
}
