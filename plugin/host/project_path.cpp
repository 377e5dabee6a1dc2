#include "plugin/host/project_path.h"

#include "plugin/host/host_text.h"

A_Err GetProjectPath(SuiteHandler& suites, std::u16string* path) {
  path->clear();
  const auto* proj = suites.Suite<AEGP_ProjSuite9>(kAEGPProjSuite, kAEGPProjSuiteVersion9);
  AEGP_ProjectH project = nullptr;
  AEGP_MemHandle handle = nullptr;
  A_Err err = proj->AEGP_GetProjectByIndex(0, &project);
  if (!err) err = proj->AEGP_GetProjectPath(project, &handle);
  if (!err) err = ReadUtf16Handle(suites, handle, path);
  return err;
}
