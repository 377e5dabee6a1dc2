#include "plugin/log/host_log_info.h"

#include <cstring>

#include "plugin/host/cti.h"

std::optional<HostLogInfo> QueryHostLogInfo() {
  if (HasNoCTI()) return std::nullopt;
  HostLogInfo info;
  try {
    CTI* cti = CurrentCTI();
    const auto* app = cti->Suite<PFAppSuite1>(kPFAppSuite, kPFAppSuiteVersion1);
    PF_Boolean renderOnly = false;
    if (app->PF_IsRenderEngine && app->PF_IsRenderEngine(&renderOnly) == A_Err_NONE) info.renderOnly = renderOnly != 0;
    PF_AppPersonalTextInfo personal{};
    if (app->PF_GetPersonalInfo(&personal) == A_Err_NONE) {
      info.user = std::string(personal.name, strnlen(personal.name, sizeof personal.name));
      info.company = std::string(personal.org, strnlen(personal.org, sizeof personal.org));
    }
    A_char language[PF_APP_LANG_TAG_SIZE] = {};
    if (app->PF_AppGetLanguage(language) == A_Err_NONE) {
      info.language = std::string(language, strnlen(language, sizeof language));
    }
  } catch (A_Err) {
    // A host without the application suite gets a header without its blocks.
  }
  return info;
}
