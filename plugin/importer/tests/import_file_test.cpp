// The whole import of a scene file against the headless host in this process and the real
// engine library, where what the import leaves behind is seen before the process ends.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "aehost/core/basic_suite.h"
#include "aehost/core/host.h"
#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/host/cti.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/importer/import_file.h"
#include "plugin/importer/tests/in_process_host.h"

namespace {

class ImportFile : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qae_test::StartTestEngine(); }

  void SetUp() override {
    qae_test::ResetHostWithPlugin(project);
    g_pluginId = qae_test::kInProcessPlugin;
    path = (std::filesystem::temp_directory_path() / ("import_file_" + std::to_string(getpid()) + ".ory")).string();
    OpenFrame(aehost::BasicSuite(), 0, qae_test::kInProcessPlugin);
  }

  void TearDown() override {
    CloseFrame();
    aehost::ResetHost();
    std::filesystem::remove(path);
  }

  // An empty document written as a scene file at `path`.
  void WriteEmptyScene() const {
    BaseDocument* document = t_ORYOS_Bd->AllocDocument();
    const OwnedFilename target(path);
    SceneFile* file = t_ORYOS_Hf->AllocSceneFile();
    ASSERT_TRUE(t_ORYOS_Hf->Open(file, kSceneFileIdent, &target.value, kSceneFileModeWrite, 0));
    EXPECT_TRUE(t_ORYOS_Bl->WriteNode(document, file));
    EXPECT_TRUE(t_ORYOS_Hf->Close(file));
    t_ORYOS_Hf->FreeSceneFile(file);
    t_ORYOS_Bl->FreeNode(document);
  }

  aehost::Project project;
  std::string path;
};

// The shared lock on the file is given back when the import ends, not only when the process
// does: a writer in this same process gets the file at once afterwards. (A document without
// render settings makes no composition, but it is read under the lock all the same.)
TEST_F(ImportFile, TheLockIsGivenBackWhenTheImportEnds) {
  WriteEmptyScene();
  const OwnedFilename file(path);
  ImportSceneFile(CurrentCTI(), file.value);
  const int writer = open(path.c_str(), O_RDWR);
  ASSERT_GE(writer, 0);
  EXPECT_EQ(flock(writer, LOCK_EX | LOCK_NB), 0);
  close(writer);
}

}  // namespace
