#include <gtest/gtest.h>

#include "plugin/host/target_file.h"
#include "plugin/script/alert.h"
#include "plugin/script/text_export_question.h"

namespace {

TEST(TextExportReply, CancelLiveAndOutlines) {
  uint8_t choice = 1;
  EXPECT_EQ(ReadTextExportReply("cancel", &choice), 517);
  EXPECT_EQ(ReadTextExportReply("ok", &choice), 0);
  EXPECT_EQ(choice, 1);  // short replies leave the choice
  EXPECT_EQ(ReadTextExportReply("not json at all", &choice), 0);
  EXPECT_EQ(choice, 1);
  EXPECT_EQ(ReadTextExportReply(R"({"settings":{"selectedTextExport":0}})", &choice), 0);
  EXPECT_EQ(choice, 0);
  EXPECT_EQ(ReadTextExportReply(R"({"settings":{"selectedTextExport":1}})", &choice), 0);
  EXPECT_EQ(choice, 1);
  EXPECT_EQ(ReadTextExportReply(R"({"settings":{"selectedTextExport":2}})", &choice), 0);
  EXPECT_EQ(choice, 0);
  choice = 1;
  EXPECT_EQ(ReadTextExportReply(R"({"settings":{}, "other": true})", &choice), 0);
  EXPECT_EQ(choice, 0);  // a missing member reads as 0
}

TEST(TextExportScript, PutsTheSettingsInTripleQuotesInFront) {
  const std::string script = WithTextExportSettings("dialog();");
  EXPECT_EQ(script.rfind("var jsonBlob = \"\"\"{", 0), 0u);
  EXPECT_NE(script.find("\"selectedTextExport\" : 0"), std::string::npos);
  EXPECT_NE(script.find("}\n\"\"\";\ndialog();"), std::string::npos);
}

TEST(AlertScript, QuotesTheMessageForItsLiteral) {
  const std::string script = AlertScript("It's a\\b\nc");
  EXPECT_NE(script.find("add('statictext', undefined,'It\\'s a\\\\b\\nc');"), std::string::npos);
  EXPECT_EQ(script.rfind("var dlg = new Window('dialog', 'Alert!');\tdlg.msgPnl", 0), 0u);
  EXPECT_EQ(script.substr(script.size() - 12), "\tdlg.show();");
}

TEST(SaveDialogScript, ProposesTheFileAndReturnsItsSystemPath) {
  EXPECT_EQ(SaveDialogScript("/C/p/Comp 1.ory"),
            "function openSaveDialog() { \tvar defaultFilename = new File(\"/C/p/Comp 1.ory\"); \tvar f = "
            "defaultFilename.saveDlg(\"ORY Exporter\", \"*.ory\"); \tif (f == null) return \"\"; \treturn f.fsName; "
            "\t} \topenSaveDialog();");
}

TEST(SaveDialogScript, ProposesAPathWithQuotesAndLineEndsAsOneLiteral) {
  const std::string script = SaveDialogScript("/p/Shot \"final\"\n.ory");
  EXPECT_NE(script.find("new File(\"/p/Shot \\\"final\\\"\\n.ory\"); \tvar f"), std::string::npos) << script;
}

}  // namespace
