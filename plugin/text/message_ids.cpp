#include "plugin/text/message_ids.h"

namespace {

struct CodeMessage {
  int32_t code;
  MessageKey message;
};

constexpr MessageKey kGeneralError{17, "StrID_ORYERR_GENERALERROR"};

constexpr CodeMessage kCodeMessages[] = {
    {3, {1, "StrID_ORYERR_FILEREAD"}},
    {4, {2, "StrID_ORYERR_DOCREAD"}},
    {5, {3, "StrID_ORYERR_DOCOLD"}},
    {6, {5, "StrID_ORYERR_DOCOPEN"}},
    {7, {4, "StrID_ORYERR_DOCCREATION"}},
    {8, {6, "StrID_ORYERR_BITMAPCREATION"}},
    {9, {7, "StrID_ORYERR_CREATEORYSCENE"}},
    {10, {8, "StrID_ORYERR_RENDERWRONGIMAGE"}},
    {11, {9, "StrID_ORYERR_RENDERNOTRANSFER"}},
    {12, {10, "StrID_ORYERR_RENDERTHREADOPEN"}},
    {13, {11, "StrID_ORYERR_RENDERSENDSCENE"}},
    {15, {12, "StrID_ORYERR_RENDERCONNECTION"}},
    {16, {13, "StrID_ORYERR_RENDERCONNECTION2"}},
    {17, {14, "StrID_ORYERR_RENDERCONNECTIONMP"}},
    {18, {15, "StrID_ORYERR_RENDERCONNECTIONEXECUTE"}},
    {19, {16, "StrID_ORYERR_RENDERCLOSE"}},
    {21, {18, "StrID_ORYERR_STOPTHREADOPEN"}},
    {22, {19, "StrID_ORYERR_STOPTHREADSTOP"}},
    {23, {20, "StrID_ORYERR_CLOSETHREADOPEN"}},
    {24, {21, "StrID_ORYERR_CLOSETHREASTOP"}},
    {25, {22, "StrID_ORYERR_CLOSETHREASCLOSE"}},
    {26, {23, "StrID_ORYERR_ALIVETHREADIP"}},
    {27, {24, "StrID_ORYERR_ALIVEALLOC"}},
    {28, {25, "StrID_ORYERR_ALIVEEXECUTE"}},
    {29, {26, "StrID_ORYERR_DORENDERCONTENT"}},
    {30, {27, "StrID_ORYERR_DORENDERALLOC"}},
    {31, {28, "StrID_ORYERR_CLOSERENDERALLOC"}},
    {32, {29, "StrID_ORYERR_CANCELRENDERALLOC"}},
    {33, {30, "StrID_ORYERR_ID"}},
    {34, {31, "StrID_ORYERR_ID21"}},
    {35, {32, "StrID_ORYERR_WRONGDEPTH"}},
    {37, {34, "StrID_ORYERR_STARTORY"}},
    {38, {35, "StrID_ORYERR_STARTORY_NOSYNCBRIDGE"}},
    {39, {36, "StrID_ORYERR_ORYNOINSTALL"}},
    {40, {37, "StrID_ORYERR_PORT_IN_USE"}},
    {41, {38, "StrID_ORYERR_SAVE_BEFORE_EXPORT"}},
    {42, {39, "StrID_ORYERR_SAVE_BEFORE_CAMMERGE"}},
    {43, {40, "StrID_ORYERR_ONLYONEEFFECT"}},
    {44, {41, "StrID_ORYERR_FILEOPEN_FAILURE"}},
    {45, {42, "StrID_ORYERR_INDATACREATE_FAILURE"}},
    {47, {44, "StrID_ORYERR_SAVE_AS_COMP"}},
    {48, {45, "StrID_ORYERR_NO3D_INCOMP"}},
    {49, {46, "StrID_ORYERR_2D_INCOMP_EXPORT"}},
    {127, {127, "StrID_Warning_Install_2024200"}},
};

}  // namespace

MessageKey MessageForCode(int32_t code) {
  for (const CodeMessage& entry : kCodeMessages) {
    if (entry.code == code) return entry.message;
  }
  return kGeneralError;
}
