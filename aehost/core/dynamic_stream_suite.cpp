// The dynamic stream suite as far as separated dimensions go. The model keeps
// every stream whole, so no stream is a leader or a follower, and the calls
// that need one refuse.
#include "aehost/core/stream_ref.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"

namespace aehost {

namespace {

A_Err AnswerNo(const char* call, AEGP_StreamRefH streamH, A_Boolean* answerPB) {
    return GuardCall(call, [&]() -> A_Err {
        AEHOST_REQUIRE_OUT(call, answerPB);
        ResolvedStream rs;
        if (A_Err err = ResolveStream(call, streamH, &rs)) return err;
        *answerPB = false;
        return A_Err_NONE;
    });
}

A_Err NotSeparated(const char* call, AEGP_StreamRefH streamH) {
    return GuardCall(call, [&]() -> A_Err {
        ResolvedStream rs;
        if (A_Err err = ResolveStream(call, streamH, &rs)) return err;
        return Refuse(call, "the stream's dimensions are not separated");
    });
}

A_Err IsSeparationFollower(AEGP_StreamRefH streamH, A_Boolean* is_followerPB) {
    return AnswerNo("AEGP_IsSeparationFollower", streamH, is_followerPB);
}

A_Err GetSeparationLeader(AEGP_StreamRefH followerH, AEGP_StreamRefH* leaderPH) {
    if (leaderPH) *leaderPH = nullptr;
    return NotSeparated("AEGP_GetSeparationLeader", followerH);
}

A_Err GetSeparationDimension(AEGP_StreamRefH followerH, A_u_short*) {
    return NotSeparated("AEGP_GetSeparationDimension", followerH);
}

A_Err IsSeparationLeader(AEGP_StreamRefH streamH, A_Boolean* is_leaderPB) {
    return AnswerNo("AEGP_IsSeparationLeader", streamH, is_leaderPB);
}

A_Err AreDimensionsSeparated(AEGP_StreamRefH leaderH, A_Boolean* separatedPB) {
    return AnswerNo("AEGP_AreDimensionsSeparated", leaderH, separatedPB);
}

A_Err GetSeparationFollower(AEGP_StreamRefH leaderH, A_u_short, AEGP_StreamRefH* followerPH) {
    if (followerPH) *followerPH = nullptr;
    return NotSeparated("AEGP_GetSeparationFollower", leaderH);
}

const AEGP_DynamicStreamSuite5 g_dynamicStreamSuite = {IsSeparationFollower, GetSeparationLeader,
                                                       GetSeparationDimension, IsSeparationLeader,
                                                       AreDimensionsSeparated, GetSeparationFollower};

}  // namespace

const AEGP_DynamicStreamSuite5* DynamicStreamSuite() { return &g_dynamicStreamSuite; }

}  // namespace aehost
