#include "plugin/host/events.h"

#include <iterator>

namespace {

constexpr const char* kEventNames[] = {
    "eQuillon_AEGP_NotSet",
    "eQuillon_AEGP_DeathHook",
    "eQuillon_AEGP_DisposeInSpec",
    "eQuillon_AEGP_GetInSpecInfo",
    "eQuillon_AEGP_DrawSparseFrame",
    "eQuillon_AEGP_RenderFrameWithTrace",
    "eQuillon_AEGP_GetSourceContentGuid",
    "eQuillon_AEGP_CloseSourceFiles",
    "eQuillon_AEGP_InqNextFrameTime",
    "eQuillon_AEGP_VerifyFileImportable",
    "eQuillon_AEGP_InitInSpecFromFile",
    "eQuillon_AEGP_NumAuxFiles",
    "eQuillon_AEGP_GetNthAuxFileSpec",
    "eQuillon_AEGP_EditOriginal",
    "eQuillon_AEGP_FlattenOptions",
    "eQuillon_AEGP_InflateOptions",
    "eQuillon_AEGP_SeqOptionsDlg",
    "eQuillon_AEGP_DisposeOutputOptions",
    "eQuillon_AEGP_Flush",
    "eQuillon_AEGP_UserOptionsDialog",
    "eQuillon_AEGP_AddFrame",
    "eQuillon_AEGP_CountUserData",
    "eQuillon_AEGP_SetUserData",
    "eQuillon_AEGP_GetUserData",
    "eQuillon_AEGP_EndAdding",
    "eQuillon_AEGP_GetActiveExtent",
    "eQuillon_AEGP_GetDepths",
    "eQuillon_AEGP_GetDimensions",
    "eQuillon_AEGP_GetDuration",
    "eQuillon_AEGP_GetSound",
    "eQuillon_AEGP_GetOutputInfo",
    "eQuillon_AEGP_GetOutputSuffix",
    "eQuillon_AEGP_GetSizes",
    "eQuillon_AEGP_GetTime",
    "eQuillon_AEGP_OutputFrame",
    "eQuillon_AEGP_SetOutputFile",
    "eQuillon_AEGP_StartAdding",
    "eQuillon_AEGP_SynchInSpec",
    "eQuillon_AEGP_WriteLabels",
    "eQuillon_AEGP_InitOutputSpec",
    "eQuillon_AEGP_GetFlatOutputOptions",
    "eQuillon_AEGP_OutputInfoChanged",
    "eQuillon_AEGP_AddMarker",
    "eQuillon_AEGP_Idle",
    "eQuillon_AEGP_UpdateMenuHook",
    "eQuillon_AEGP_CommandHook",
    "eQuillon_AEGP_ImportFile",
    "eQuillon_AEGP_BitBlitHook",
    "eQuillon_AEGP_BitBlitThreadHook",
};

struct ErrorNameEntry {
  int32_t code;
  const char* name;
};

constexpr ErrorNameEntry kErrorNames[] = {
    {0, "None"},
    {1, "A_Err_GENERIC"},
    {2, "A_Err_STRUCT"},
    {3, "A_Err_PARAMETER"},
    {4, "PF_Err_OUT_OF_MEMORY"},
    {13, "A_Err_MISSING_SUITE"},
    {512, "PF_Err_INTERNAL_STRUCT_DAMAGED"},
    {514, "PF_Err_UNRECOGNIZED_PARAM_TYPE"},
    {515, "PF_Err_INVALID_CALLBACK"},
    {516, "PF_Err_BAD_CALLBACK_PARAM"},
    {517, "PF_Interrupt_CANCEL"},
    {518, "PF_Err_CANNOT_PARSE_KEYFRAME_TEXT"},
    {9985, "AEIO_Err_UNSUPPORTED_CALLBACK"},
    {9986, "AEIO_Err_UNIMPLEMENTED"},
    {9987, "AEIO_Err_UNSUPPORTED_FILETYPE"},
    {9988, "AEIO_Err_INAPPROPRIATE_ACTION"},
    {9989, "AEIO_Err_BAD_BMWORLD"},
    {9990, "AEIO_Err_INCONSISTENT_PARAMETERS"},
    {9991, "AEIO_Err_INVALID_TIME"},
    {9992, "AEIO_Err_USE_DFLT_CALLBACK"},
    {9993, "AEIO_Err_USER_CANCEL"},
    {9994, "AEIO_Err_DISK_FULL"},
    {9995, "AEIO_Err_INITIALIZE_FAILED"},
    {9996, "AEIO_Err_BAD_FILENAME"},
    {9997, "AEIO_Err_PARSING"},
    {9998, "AEIO_Err_NOT_SEQUENCE"},
    {9999, "AEIO_Err_USE_DFLT_GETSIZES_FREESPACE"},
};

constexpr const char* kEffectCommandNames[] = {
    "PF_Cmd_ABOUT",
    "PF_Cmd_GLOBAL_SETUP",
    "PF_Cmd_UNUSED_0",
    "PF_Cmd_GLOBAL_SETDOWN",
    "PF_Cmd_PARAMS_SETUP",
    "PF_Cmd_SEQUENCE_SETUP",
    "PF_Cmd_SEQUENCE_RESETUP",
    "PF_Cmd_SEQUENCE_FLATTEN",
    "PF_Cmd_SEQUENCE_SETDOWN",
    "PF_Cmd_DO_DIALOG",
    "PF_Cmd_FRAME_SETUP",
    "PF_Cmd_RENDER",
    "PF_Cmd_FRAME_SETDOWN",
    "PF_Cmd_USER_CHANGED_PARAM",
    "PF_Cmd_UPDATE_PARAMS_UI",
    "PF_Cmd_EVENT",
    "PF_Cmd_GET_EXTERNAL_DEPENDENCIES",
    "PF_Cmd_COMPLETELY_GENERAL",
    "PF_Cmd_QUERY_DYNAMIC_FLAGS",
    "PF_Cmd_AUDIO_RENDER",
    "PF_Cmd_AUDIO_SETUP",
    "PF_Cmd_AUDIO_SETDOWN",
    "PF_Cmd_ARBITRARY_CALLBACK",
    "PF_Cmd_SMART_PRE_RENDER",
    "PF_Cmd_SMART_RENDER",
    "PF_Cmd_RESERVED1",
    "PF_Cmd_RESERVED2",
    "PF_Cmd_RESERVED3",
};

}  // namespace

const char* EventName(int32_t event) {
  if (event < 0 || event >= static_cast<int32_t>(std::size(kEventNames))) return "Unkown AEGP Cmd type";
  return kEventNames[event];
}

const char* ErrorName(int32_t code) {
  for (const ErrorNameEntry& entry : kErrorNames) {
    if (entry.code == code) return entry.name;
  }
  return "Unkown Error Type";
}

const char* EffectCommandName(int32_t selector) {
  if (selector < 0 || selector >= static_cast<int32_t>(std::size(kEffectCommandNames))) return "Unkown AE Cmd type";
  return kEffectCommandNames[selector];
}
