#pragma once
// What the host called: the event of a frame, and the display names of events, host error
// codes and effect selectors as reports and the debug log show them.
#include <cstdint>

enum QuillonEvent : int32_t {
  eQuillon_AEGP_NotSet = 0,
  eQuillon_AEGP_DeathHook = 1,
  eQuillon_AEGP_VerifyFileImportable = 9,
  eQuillon_AEGP_InitInSpecFromFile = 10,
  eQuillon_AEGP_InflateOptions = 15,
  eQuillon_AEGP_UpdateMenuHook = 44,
  eQuillon_AEGP_CommandHook = 45,
  eQuillon_AEGP_ImportFile = 46,
};

// "eQuillon_AEGP_..." for the events 0 to 48, else "Unkown AEGP Cmd type".
const char* EventName(int32_t event);
// "None", "A_Err_GENERIC", ... for the host's error codes, else "Unkown Error Type".
const char* ErrorName(int32_t code);
// "PF_Cmd_ABOUT", ... for effect selectors 0 to 27, else "Unkown AE Cmd type".
const char* EffectCommandName(int32_t selector);
