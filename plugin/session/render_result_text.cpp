#include "plugin/session/render_result_text.h"

std::string RenderResultText(int32_t code) {
  const char* reason = nullptr;
  switch (code) {
    case 1: reason = "Out Of Memory"; break;
    case 2: reason = "Missing Asset"; break;
    case 5: reason = "Saving Failed"; break;
    case 6: reason = "User Break"; break;
    case 7: reason = "GI Cache Missing"; break;
    case 9: reason = "Machine was not found"; break;
    case 1000: reason = "Project was not found"; break;
    case 1001: reason = "Loading the project failed"; break;
    case 1002: reason = "Output was not specified"; break;
    default: return "Render process was interrupted, error code " + std::to_string(code);
  }
  return std::string("Render process was interrupted - Error: ") + reason;
}
