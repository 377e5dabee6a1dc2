// The text question against the fake host: the dialog's files are read from beside the
// plug-in, and a missing one is told once and keeps the dialog from opening.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "fake_host.h"
#include "plugin/host/cti.h"
#include "plugin/script/text_export_question.h"

namespace {

namespace fs = std::filesystem;

class TextQuestionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    app_ = fs::temp_directory_path() / ("qae_app_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    dialogs_ = app_ / "Plug-ins/Quillon by Vantor/support/res/dialogs";
    fs::create_directories(dialogs_ / "strings");
    fs::create_directories(dialogs_ / "includes");
    Write("strings/str_dlg_textexport.jsx", "var texts = 1;");
    Write("dlg_textexport.jsx", "ask();");
    host_.appFolder = app_.string();
  }
  void TearDown() override { fs::remove_all(app_); }
  void Write(const std::string& relative, const std::string& text) { std::ofstream(dialogs_ / relative) << text; }

  FakeHost host_;
  fs::path app_;
  fs::path dialogs_;
};

TEST_F(TextQuestionTest, AMissingJsonLibraryIsToldAndTheDialogDoesNotOpen) {
  FrameScope frame(host_.pica(), eQuillon_AEGP_CommandHook, 1);
  uint8_t choice = 1;
  EXPECT_EQ(AskTextExport(CurrentCTI(), &choice), 513);
  EXPECT_EQ(host_.reports, std::vector<std::u16string>{u"Quillon - File Could not be read"});
  EXPECT_TRUE(host_.scripts.empty());
  EXPECT_EQ(choice, 1);
}

TEST_F(TextQuestionTest, TheFilesAreJoinedBehindTheSettings) {
  Write("includes/JSON.jsx", "var json = 2;");
  host_.scriptReply = R"({"settings":{"selectedTextExport":0}})";
  FrameScope frame(host_.pica(), eQuillon_AEGP_CommandHook, 1);
  uint8_t choice = 1;
  EXPECT_EQ(AskTextExport(CurrentCTI(), &choice), 0);
  EXPECT_EQ(choice, 0);
  ASSERT_EQ(host_.scripts.size(), 1u);
  const std::string& script = host_.scripts[0];
  EXPECT_NE(script.find("\"\"\";\nvar texts = 1;\nvar json = 2;\nask();\n"), std::string::npos) << script;
  EXPECT_EQ(host_.liveHandles, 0);
  host_.scriptReply = "cancel";
  EXPECT_EQ(AskTextExport(CurrentCTI(), &choice), 517);
}

TEST_F(TextQuestionTest, AFailedScriptReturnsItsErrorAndFreesTheHandles) {
  Write("includes/JSON.jsx", "var json = 2;");
  host_.scriptErr = A_Err_GENERIC;
  FrameScope frame(host_.pica(), eQuillon_AEGP_CommandHook, 1);
  uint8_t choice = 1;
  EXPECT_EQ(AskTextExport(CurrentCTI(), &choice), A_Err_GENERIC);
  EXPECT_EQ(choice, 1);
  EXPECT_EQ(host_.liveHandles, 0);
}

}  // namespace
