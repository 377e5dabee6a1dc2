// The dynamic stream suite as far as separated dimensions go. Only Position
// separates in this host: its leader is the Position stream, its followers
// the one-dimensional X, Y and Z Position. A stream that is not separated
// makes the calls that need a leader or a follower refuse.
#include "aehost/core/stream_ref.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"

namespace aehost {

namespace {

bool IsSeparatedLeader(const ResolvedStream& rs) {
    return rs.layer && rs.ref->target == StreamTarget::Layer && rs.Id() == LayerStream::Position &&
           rs.layer->positionSeparated;
}

bool IsFollower(const ResolvedStream& rs) {
    return rs.layer && rs.ref->target == StreamTarget::Layer && IsPositionFollower(rs.Id());
}

// A new handle to another stream of the same layer.
AEGP_StreamRefH NewSiblingStream(const ResolvedStream& rs, LayerStream id) {
    StreamRef ref = *rs.ref;
    ref.streamId = static_cast<int>(id);
    return MakeHandle<AEGP_StreamRefH>(g_host.streams.Add(ref));
}

A_Err Answer(const char* call, AEGP_StreamRefH streamH, A_Boolean* answerPB, bool (*test)(const ResolvedStream&)) {
    return GuardCall(call, [&]() -> A_Err {
        AEHOST_REQUIRE_OUT(call, answerPB);
        ResolvedStream rs;
        if (A_Err err = ResolveStream(call, streamH, &rs)) return err;
        *answerPB = test(rs);
        return A_Err_NONE;
    });
}

A_Err ResolveFollower(const char* call, AEGP_StreamRefH streamH, ResolvedStream* rs) {
    if (A_Err err = ResolveStream(call, streamH, rs)) return err;
    if (!IsFollower(*rs)) return Refuse(call, "the stream is no follower of separated dimensions");
    return A_Err_NONE;
}

A_Err IsSeparationFollower(AEGP_StreamRefH streamH, A_Boolean* is_followerPB) {
    return Answer("AEGP_IsSeparationFollower", streamH, is_followerPB, IsFollower);
}

A_Err GetSeparationLeader(AEGP_StreamRefH followerH, AEGP_StreamRefH* leaderPH) {
    const char* call = "AEGP_GetSeparationLeader";
    return GuardCall(call, [&]() -> A_Err {
        AEHOST_REQUIRE_OUT(call, leaderPH);
        *leaderPH = nullptr;
        ResolvedStream rs;
        if (A_Err err = ResolveFollower(call, followerH, &rs)) return err;
        *leaderPH = NewSiblingStream(rs, LayerStream::Position);
        return A_Err_NONE;
    });
}

A_Err GetSeparationDimension(AEGP_StreamRefH followerH, A_u_short* dimensionP) {
    const char* call = "AEGP_GetSeparationDimension";
    return GuardCall(call, [&]() -> A_Err {
        AEHOST_REQUIRE_OUT(call, dimensionP);
        ResolvedStream rs;
        if (A_Err err = ResolveFollower(call, followerH, &rs)) return err;
        *dimensionP = static_cast<A_u_short>(rs.ref->streamId - static_cast<int>(LayerStream::XPosition));
        return A_Err_NONE;
    });
}

A_Err IsSeparationLeader(AEGP_StreamRefH streamH, A_Boolean* is_leaderPB) {
    return Answer("AEGP_IsSeparationLeader", streamH, is_leaderPB, IsSeparatedLeader);
}

A_Err AreDimensionsSeparated(AEGP_StreamRefH leaderH, A_Boolean* separatedPB) {
    return Answer("AEGP_AreDimensionsSeparated", leaderH, separatedPB, IsSeparatedLeader);
}

A_Err GetSeparationFollower(AEGP_StreamRefH leaderH, A_u_short dimension, AEGP_StreamRefH* followerPH) {
    const char* call = "AEGP_GetSeparationFollower";
    return GuardCall(call, [&]() -> A_Err {
        AEHOST_REQUIRE_OUT(call, followerPH);
        *followerPH = nullptr;
        ResolvedStream rs;
        if (A_Err err = ResolveStream(call, leaderH, &rs)) return err;
        if (!IsSeparatedLeader(rs)) return Refuse(call, "the stream's dimensions are not separated");
        if (dimension > 2) return Refuse(call, "dimension " + std::to_string(dimension) + " is not 0, 1 or 2");
        *followerPH = NewSiblingStream(rs, PositionFollower(dimension));
        return A_Err_NONE;
    });
}

const AEGP_DynamicStreamSuite5 g_dynamicStreamSuite = {IsSeparationFollower, GetSeparationLeader,
                                                       GetSeparationDimension, IsSeparationLeader,
                                                       AreDimensionsSeparated, GetSeparationFollower};

}  // namespace

const AEGP_DynamicStreamSuite5* DynamicStreamSuite() { return &g_dynamicStreamSuite; }

}  // namespace aehost
