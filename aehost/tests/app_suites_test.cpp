#include <cstring>

#include "aehost/core/exit_report.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

using AppSuitesTest = HostTest;

const A_UTF16Char* Units(const std::u16string& s) { return reinterpret_cast<const A_UTF16Char*>(s.c_str()); }

TEST_F(AppSuitesTest, ProgressDialogCancelsWhereTheUserPressesCancel) {
    const PFAppSuite7* app = AppSuite();
    g_host.cancelProgressAt = 50;
    const std::u16string title = u"Processing...";
    PF_AppProgressDialogP dialog = nullptr;
    ASSERT_EQ(app->PF_CreateNewAppProgressDialog(Units(title), nullptr, false, &dialog), A_Err_NONE);
    EXPECT_EQ(app->PF_AppProgressDialogUpdate(dialog, 49, 100), A_Err_NONE);
    EXPECT_EQ(app->PF_AppProgressDialogUpdate(dialog, 1, 2), PF_Interrupt_CANCEL);
    EXPECT_NE(app->PF_AppProgressDialogUpdate(dialog, 1, 0), A_Err_NONE);
    EXPECT_EQ(app->PF_DisposeAppProgressDialog(dialog), A_Err_NONE);
    EXPECT_NE(app->PF_DisposeAppProgressDialog(dialog), A_Err_NONE);
    EXPECT_NE(app->PF_AppProgressDialogUpdate(dialog, 1, 2), A_Err_NONE);
}

TEST_F(AppSuitesTest, LanguageAndPersonalInformation) {
    g_host.language = "de_DE";
    std::strcpy(g_host.personal.name, "Ada");
    A_char tag[PF_APP_LANG_TAG_SIZE] = "xxxxx";
    ASSERT_EQ(AppSuite()->PF_AppGetLanguage(tag), A_Err_NONE);
    EXPECT_STREQ(tag, "de_DE");
    PF_AppPersonalTextInfo info{};
    ASSERT_EQ(AppSuite()->PF_GetPersonalInfo(&info), A_Err_NONE);
    EXPECT_STREQ(info.name, "Ada");
    PF_Boolean renderEngine = true;
    ASSERT_EQ(AppSuite()->PF_IsRenderEngine(&renderEngine), A_Err_NONE);
    EXPECT_FALSE(renderEngine);
}

TEST_F(AppSuitesTest, PreferencesKeepStringsAndNumbers) {
    const AEGP_PersistentDataSuite3* prefs = PersistentDataSuite();
    AEGP_PersistentBlobH blob = nullptr;
    ASSERT_EQ(prefs->AEGP_GetApplicationBlob(&blob), A_Err_NONE);
    char buffer[8];
    A_u_long needed = 0;
    ASSERT_EQ(prefs->AEGP_GetString(blob, "Orrery Studio", "ORY_LITEPATH", "none", sizeof buffer, buffer, &needed),
              A_Err_NONE);
    EXPECT_STREQ(buffer, "none");
    EXPECT_EQ(needed, 5u);
    ASSERT_EQ(prefs->AEGP_SetString(blob, "Orrery Studio", "ORY_LITEPATH", "/opt/orrery/studio"), A_Err_NONE);
    A_Boolean exists = false;
    prefs->AEGP_DoesKeyExist(blob, "Orrery Studio", "ORY_LITEPATH", &exists);
    EXPECT_TRUE(exists);
    // The buffer holds 7 characters and the zero; the size needed is told.
    ASSERT_EQ(prefs->AEGP_GetString(blob, "Orrery Studio", "ORY_LITEPATH", "", sizeof buffer, buffer, &needed),
              A_Err_NONE);
    EXPECT_STREQ(buffer, "/opt/or");
    EXPECT_EQ(needed, 19u);
    A_long number = 0;
    prefs->AEGP_GetLong(blob, "Orrery Studio", "count", 3, &number);
    EXPECT_EQ(number, 3);
    prefs->AEGP_SetLong(blob, "Orrery Studio", "count", -12);
    prefs->AEGP_GetLong(blob, "Orrery Studio", "count", 3, &number);
    EXPECT_EQ(number, -12);
    // A number a preferences file holds as text that is none, or too large, is refused whole.
    for (const char* text : {"12abc", "", "2147483648"}) {
        prefs->AEGP_SetString(blob, "Orrery Studio", "count", text);
        number = 5;
        EXPECT_NE(prefs->AEGP_GetLong(blob, "Orrery Studio", "count", 3, &number), A_Err_NONE) << text;
        EXPECT_EQ(number, 5) << text;
    }
    prefs->AEGP_DeleteEntry(blob, "Orrery Studio", "ORY_LITEPATH");
    prefs->AEGP_DoesKeyExist(blob, "Orrery Studio", "ORY_LITEPATH", &exists);
    EXPECT_FALSE(exists);
    EXPECT_NE(prefs->AEGP_SetString(MakeHandle<AEGP_PersistentBlobH>(0x40), "s", "k", "v"), A_Err_NONE);
}

TEST_F(AppSuitesTest, WhatIsLeftOpenIsReportedAtExit) {
    const std::u16string title = u"Work";
    PF_AppProgressDialogP dialog = nullptr;
    AppSuite()->PF_CreateNewAppProgressDialog(Units(title), nullptr, false, &dialog);
    AEGP_StreamRefH stream = nullptr;
    StreamSuite()->AEGP_GetNewLayerStream(kPlugin, LayerHandle(*card), AEGP_LayerStream_POSITION, &stream);
    AEGP_AddKeyframesInfoH batch = nullptr;
    KeyframeSuite()->AEGP_StartAddKeyframes(stream, &batch);
    UtilitySuite()->AEGP_StartUndoGroup("Open");
    const std::vector<std::string> problems = ExitProblems();
    ASSERT_EQ(problems.size(), 4u);
    EXPECT_EQ(problems[0], "1 stream handle(s) never disposed");
    EXPECT_EQ(problems[1], "1 keyframe batch(es) never ended");
    EXPECT_EQ(problems[2], "1 progress dialog(s) never disposed");
    EXPECT_EQ(problems[3], "1 undo group(s) never ended");
}

TEST(Utf16Test, ConvertsBothWaysAndReplacesMalformedInput) {
    EXPECT_EQ(Utf8ToUtf16("A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), std::u16string(u"A\u00e9\u20ac\U0001F600"));
    EXPECT_EQ(Utf16ToUtf8(u"A\u00e9\u20ac\U0001F600"), "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    // A stray continuation byte, a truncated sequence, an encoded surrogate.
    EXPECT_EQ(Utf8ToUtf16("\x80x"), std::u16string(u"\uFFFDx"));
    EXPECT_EQ(Utf8ToUtf16("x\xE2\x82"), std::u16string(u"x\uFFFD\uFFFD"));
    EXPECT_EQ(Utf8ToUtf16("\xED\xA0\x80"), std::u16string(u"\uFFFD"));
    // A lone high surrogate in UTF-16.
    EXPECT_EQ(Utf16ToUtf8(std::u16string(1, u'\xD800')), "\xEF\xBF\xBD");
    EXPECT_EQ(Cp1252ToUtf8("\x80\xFF\x81"), "\xE2\x82\xAC\xC3\xBF\xEF\xBF\xBD");
}

}  // namespace
}  // namespace aehost
