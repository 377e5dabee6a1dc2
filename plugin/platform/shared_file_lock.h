#pragma once
// A lock on a scene file that other processes respect (see shared_file_lock_handle.h), held
// for as long as the object lives or until Release. SharedFileLock also holds the engine's SceneFile for the locked path, opened with the scene
// ident after the lock is had.
#include <cstdint>
#include <string>

#include "plugin/engine/engine_ops.h"
#include "plugin/platform/shared_file_lock_handle.h"

class SharedFileLock {
 public:
  SharedFileLock();
  explicit SharedFileLock(const Filename& file);
  ~SharedFileLock();
  SharedFileLock(const SharedFileLock&) = delete;
  SharedFileLock& operator=(const SharedFileLock&) = delete;

  SceneFile* OpenToRead(int32_t seconds);
  SceneFile* OpenToRead(const Filename& file, int32_t seconds);
  // Opens the scene file for writing; the engine's open is the exclusion on this path.
  SceneFile* OpenToWrite(int32_t seconds);
  SceneFile* OpenToWrite(const Filename& file, int32_t seconds);
  // Another file than the one set releases and resets first.
  void SetFile(const Filename& file);
  // True when no lock is held afterwards.
  bool Release();
  SceneFile* GetSceneFile();
  const Filename& GetFile() const { return file_; }
  const std::string& GetErrorText() const { return errorText_; }

 private:
  void Reset();
  void ClearFile();
  bool Acquire(bool write, int32_t seconds);
  std::string PathText() const;

  SceneFile* sceneFile_ = nullptr;
  Filename file_{nullptr};
  int handle_ = kNoFileHandle;
  bool locked_ = false;
  std::string errorText_;
};
