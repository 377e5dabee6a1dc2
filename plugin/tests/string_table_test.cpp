#include "plugin/text/string_table.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "plugin/text/builtin_strings.h"

namespace {

namespace fs = std::filesystem;

// A plug-in folder of its own with the string files a test writes.
class StringTableTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() /
              ("qae_strings_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(folder_ / "support/res/strings");
  }
  void TearDown() override {
    FreeStringTable();
    fs::remove_all(folder_);
  }
  void WriteStrings(const std::string& language, const std::string& content) {
    std::ofstream(folder_ / "support/res/strings" / ("str_" + language + ".txt"), std::ios::binary) << content;
  }
  StringTableLoad Load(const std::string& language) { return LoadStringTableFile(folder_.string(), language); }

  fs::path folder_;
};

TEST_F(StringTableTest, UsesTheLanguagesFileAndFallsBackToEnglish) {
  WriteStrings("en_US", R"({"StrID_NameExporter": "English menu"})");
  WriteStrings("de_DE", R"({"StrID_NameExporter": "Deutsches Menü"})");
  ASSERT_EQ(Load("de_DE"), StringTableLoad::kLoaded);
  EXPECT_EQ(GetStringUtf8(kStrNameExporter), "Deutsches Menü");
  ASSERT_EQ(Load("xx_XX"), StringTableLoad::kLoaded);
  EXPECT_EQ(GetStringUtf8(kStrNameExporter), "English menu");
}

TEST_F(StringTableTest, MissingOrBrokenFilesLeaveTheBuiltInTexts) {
  EXPECT_EQ(Load("en_US"), StringTableLoad::kNoFile);
  EXPECT_FALSE(IsStringTableLoaded());
  EXPECT_EQ(GetStringUtf8(kStrNameExporter), "Vantor Orrery Studio Exporter...");
  WriteStrings("en_US", R"({"StrID_NameExporter": )");
  EXPECT_EQ(Load("en_US"), StringTableLoad::kNotJson);
  EXPECT_FALSE(IsStringTableLoaded());
  EXPECT_EQ(GetStringUtf8(MessageForCode(41)), "You must save the project before exporting.");
}

TEST_F(StringTableTest, HostileFilesAreRefusedWithoutHarm) {
  EXPECT_EQ(LoadStringTableText(std::string(100000, '[')), StringTableLoad::kNotJson);
  EXPECT_EQ(LoadStringTableText("[\"a list\", \"not an object\"]"), StringTableLoad::kNotJson);
  EXPECT_EQ(LoadStringTableText(std::string("{\"StrID_NameExporter\": \"a\0b\"}", 29)), StringTableLoad::kLoaded);
  EXPECT_EQ(GetStringUtf8(kStrNameExporter), "a_b");  // a zero byte reads as "_"
}

TEST_F(StringTableTest, AKeyMissingOrMarkedNotFoundUsesTheBuiltInRecord) {
  WriteStrings("en_US", R"({"StrID_NameExporter": "STRING NOT FOUND! really",
                            "StrID_ORYERR_NO3D_INCOMP": {"nested": 1},
                            "StrID_Troubles2Exporter": 42})");
  ASSERT_EQ(Load("en_US"), StringTableLoad::kLoaded);
  EXPECT_EQ(GetStringUtf8(kStrNameExporter), "Vantor Orrery Studio Exporter...");
  EXPECT_EQ(GetStringUtf8(MessageForCode(48)), "No 3D layers found.");
  EXPECT_EQ(GetStringUtf8(kStrTroubles2Exporter), "42");  // a number reads as its text
  EXPECT_EQ(GetStringUtf8(kStrTroublesExporter),
            "Orrery Studio Exporter: Problem encountered during file export.");
}

TEST_F(StringTableTest, TextFormsFollowTheirConsumers) {
  WriteStrings("en_US", "{\"StrID_NameExporter\": \"Caf\xC3\xA9 \xE2\x82\xAC \xD0\x96\",\n"
                        " \"StrID_TroublesExporter\": \"line\xE2\x80\x93next \\\\u00e9\"}");
  ASSERT_EQ(Load("en_US"), StringTableLoad::kLoaded);
  EXPECT_EQ(GetString(kStrNameExporter), "Caf\xE9 \x80 ?");
  EXPECT_EQ(GetStringU16(kStrNameExporter), u"Caf\u00E9 \u20AC \u0416");
  // The en dash is the files' line break; escapes in a text are decoded for the host.
  EXPECT_EQ(GetStringU16(kStrTroublesExporter), u"line\nnext \u00E9");
}

TEST(BuiltinStrings, AreFoundByPositionNotById) {
  ASSERT_NE(BuiltinStringAt(125), nullptr);
  EXPECT_EQ(BuiltinStringAt(125)->id, 126);
  EXPECT_EQ(BuiltinStringAt(126)->id, 125);
  EXPECT_STREQ(BuiltinStringAt(127)->text,
               "To use this function please update to Vantor Orrery Studio version 2024.2 or higher.");
  EXPECT_EQ(BuiltinStringAt(128), nullptr);
  EXPECT_EQ(BuiltinStringAt(-1), nullptr);
}

TEST(MessageForCode, MapsCodesToTheirRecords) {
  EXPECT_EQ(MessageForCode(41).id, 38);
  EXPECT_EQ(MessageForCode(6).id, 5);  // codes 6 and 7 use records 5 and 4
  EXPECT_EQ(MessageForCode(7).id, 4);
  EXPECT_EQ(MessageForCode(49).id, 46);
  EXPECT_EQ(MessageForCode(127).id, 127);
  for (int32_t code : {0, 1, 2, 14, 20, 36, 46, 500}) {
    EXPECT_STREQ(MessageForCode(code).key, "StrID_ORYERR_GENERALERROR") << code;
  }
  EXPECT_STREQ(BuiltinStringAt(MessageForCode(14).id)->text, "Quillon - General error");
}

}  // namespace
