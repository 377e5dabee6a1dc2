// "PF AE App Suite": the progress dialog, the user's language and personal
// information. Headless, the progress dialog is a bar on standard error when
// that is a terminal; the scripted user may press its Cancel button.
#include <algorithm>
#include <cstring>

#include "aehost/core/host.h"
#include "aehost/core/progress.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/trace.h"
#include "aehost/core/utf16.h"

namespace aehost {

namespace {

A_Err GetPersonalInfo(PF_AppPersonalTextInfo* ptiP) {
    return GuardCall("PF_GetPersonalInfo", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("PF_GetPersonalInfo", ptiP);
        *ptiP = g_host.personal;
        return A_Err_NONE;
    });
}

A_Err AppGetLanguage(A_char lang_tagZ[PF_APP_LANG_TAG_SIZE]) {
    return GuardCall("PF_AppGetLanguage", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("PF_AppGetLanguage", lang_tagZ);
        std::memset(lang_tagZ, 0, PF_APP_LANG_TAG_SIZE);
        g_host.language.copy(lang_tagZ, PF_APP_LANG_TAG_SIZE - 1);
        return A_Err_NONE;
    });
}

A_Err CreateNewAppProgressDialog(const A_UTF16Char* titleZ, const A_UTF16Char*, PF_Boolean,
                                 PF_AppProgressDialogP* dialogP) {
    return GuardCall("PF_CreateNewAppProgressDialog", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("PF_CreateNewAppProgressDialog", dialogP);
        ProgressDialog dialog;
        dialog.title = Utf16zToUtf8(titleZ);
        Trace("progress dialog " + Quoted(dialog.title) + " opened");
        *dialogP = MakeHandle<PF_AppProgressDialogP>(g_host.progress.Add(dialog));
        return A_Err_NONE;
    });
}

A_Err AppProgressDialogUpdate(PF_AppProgressDialogP dialogH, A_long countL, A_long totalL) {
    return GuardCall("PF_AppProgressDialogUpdate", [&]() -> A_Err {
        ProgressDialog* dialog = g_host.progress.Find(HandleValue(dialogH));
        if (!dialog) return Refuse("PF_AppProgressDialogUpdate", "not an open progress dialog");
        if (totalL <= 0 || countL < 0) return Refuse("PF_AppProgressDialogUpdate", "bad count or total");
        const int percent = static_cast<int>(100LL * std::min(countL, totalL) / totalL);
        if (ProgressVisible() && percent != dialog->shownPercent) DrawProgressBar(dialog->title, percent);
        dialog->shownPercent = percent;
        if (g_host.cancelProgressAt >= 0 && percent >= g_host.cancelProgressAt) {
            Trace("the user pressed Cancel in " + Quoted(dialog->title) + " at " + std::to_string(percent) + "%");
            return PF_Interrupt_CANCEL;
        }
        return A_Err_NONE;
    });
}

A_Err DisposeAppProgressDialog(PF_AppProgressDialogP dialogH) {
    return GuardCall("PF_DisposeAppProgressDialog", [&]() -> A_Err {
        ProgressDialog* dialog = g_host.progress.Find(HandleValue(dialogH));
        if (!dialog) return Refuse("PF_DisposeAppProgressDialog", "not an open progress dialog");
        EndProgressLine();
        const int shown = std::max(dialog->shownPercent, 0);
        Trace("progress dialog " + Quoted(dialog->title) + " closed at " + std::to_string(shown) + "%");
        g_host.progress.Remove(HandleValue(dialogH));
        return A_Err_NONE;
    });
}

// A headless host still has a (scripted) user, so it is not a render engine.
A_Err IsRenderEngine(PF_Boolean* render_enginePB) {
    return GuardCall("PF_IsRenderEngine", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("PF_IsRenderEngine", render_enginePB);
        *render_enginePB = false;
        return A_Err_NONE;
    });
}

const PFAppSuite7 g_appSuite = {GetPersonalInfo,         AppGetLanguage,           CreateNewAppProgressDialog,
                                AppProgressDialogUpdate, DisposeAppProgressDialog, IsRenderEngine};

}  // namespace

const PFAppSuite7* AppSuite() { return &g_appSuite; }

}  // namespace aehost
