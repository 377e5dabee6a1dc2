// The three commands and the command objects against the engine library of the build:
// results before and after the engine runs, the map each object keeps for itself, the
// record of an id the object has not seen, and a command whose last run still goes on.
#include <gtest/gtest.h>

#include <cstdlib>

#include "plugin/engine/engine_tables.h"
#include "plugin/session/session_commands.h"
#include "plugin/session/tests/test_engine.h"

namespace {

using quillon::FindRender;
using quillon::RenderThread;

// Before the engine is started the commands give 0 and make no command objects. The other
// tests of this program start the engine, which no process can stop again, so this one runs
// in a process of its own that starts the program anew for this test alone.
TEST(SessionCommandsWithoutEngine, GiveZeroAndMakeNothing) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const bool zero = StopRender(1) == 0 && CloseRender(1) == 0 && EndSession(1) == 0;
        const bool nothingMade = !StopRenderCommandObject() && !CloseCommandObject() && !SessionCommandObject();
        std::exit(zero && nothingMade ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

class SessionCommands : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
  void TearDown() override { FreeSessionThreads(); }
};

TEST_F(SessionCommands, TheIdOfNoRenderCannotBeSelected) {
  EXPECT_EQ(StopRender(quillon::kNoRender), quillon::kStopNotSelected);
  EXPECT_EQ(CloseRender(quillon::kNoRender), quillon::kCloseNotSelected);
}

TEST_F(SessionCommands, AnUnseenIdGetsAnEmptyRecordInThatObjectAlone) {
  EXPECT_EQ(StopRender(7), quillon::kCommandDone);
  ASSERT_NE(StopRenderCommandObject(), nullptr);
  const auto* entry = FindRender(StopRenderCommandObject()->renders, 7);
  ASSERT_NE(entry, nullptr);
  ASSERT_NE(entry->render, nullptr);
  EXPECT_EQ(entry->render->document, nullptr);
  // The stop left the render released again, and no other command object exists yet.
  EXPECT_EQ(StopRenderCommandObject()->currentId, quillon::kNoRender);
  EXPECT_EQ(CloseCommandObject(), nullptr);

  EXPECT_EQ(CloseRender(7), quillon::kCommandDone);
  ASSERT_NE(CloseCommandObject(), nullptr);
  EXPECT_NE(FindRender(CloseCommandObject()->renders, 7), nullptr);
  EXPECT_EQ(FindRender(CloseCommandObject()->renders, 8), nullptr);
}

// A caller's render lives in the caller's object: the commands select a record of the same id
// in their own maps and leave the caller's document where it is.
TEST_F(SessionCommands, ACommandReachesOnlyTheRendersOfItsOwnObject) {
  quillon::SessionThread caller;
  ASSERT_TRUE(caller.SelectRender(5));
  RenderThread* render = caller.CurrentRender();
  ASSERT_NE(render, nullptr);
  render->document = t_ORYOS_Bd->AllocDocument();
  render->sessionOpen = true;

  EXPECT_EQ(CloseRender(5), quillon::kCommandDone);
  EXPECT_EQ(EndSession(5), quillon::kCommandDone);
  SessionCommandObject()->Wait();
  EXPECT_EQ(SessionCommandObject()->result, quillon::kCommandDone);
  EXPECT_NE(render->document, nullptr);
  EXPECT_TRUE(render->sessionOpen);
  EXPECT_NE(FindRender(SessionCommandObject()->renders, 5)->render, render);
}

TEST_F(SessionCommands, AnEndOfSessionWhileTheLastOneStillRunsGives31) {
  EXPECT_EQ(EndSession(9), quillon::kCommandDone);
  quillon::SessionThread* session = SessionCommandObject();
  ASSERT_NE(session, nullptr);
  session->Wait();
  RenderThread* record = FindRender(session->renders, 9)->render;
  // Holding the record's stop lock keeps the next end of session inside its stop.
  record->stopLock.Lock();
  EndSession(9);
  EXPECT_EQ(EndSession(9), quillon::kCommandUnavailable);
  record->stopLock.Unlock();
  session->Wait();
  EXPECT_EQ(session->result, quillon::kCommandDone);
}

// The end of a session returns at once; its object may be freed while the command still
// starts on the object's thread.
TEST_F(SessionCommands, CommandObjectsAreFreedRightAfterAnEndOfSession) {
  for (uint32_t id = 1; id <= 20; ++id) {
    EXPECT_EQ(EndSession(id), quillon::kCommandDone);
    FreeSessionThreads();
    EXPECT_EQ(SessionCommandObject(), nullptr);
  }
}

TEST_F(SessionCommands, AfterAReleaseNothingIsCurrentUntilTheNextSelection) {
  quillon::SessionThread caller;
  ASSERT_TRUE(caller.SelectRender(3));
  EXPECT_TRUE(caller.StopCurrentRender());
  EXPECT_TRUE(caller.ReleaseRender(false));
  EXPECT_FALSE(caller.StopCurrentRender());
  EXPECT_FALSE(caller.CloseDocument());
  EXPECT_FALSE(caller.ReleaseRender(false));
  ASSERT_TRUE(caller.SelectRender(3));
  EXPECT_TRUE(caller.CloseDocument());
  // Released with `free`, the record and its document go.
  caller.CurrentRender()->document = t_ORYOS_Bd->AllocDocument();
  EXPECT_TRUE(caller.ReleaseRender(true));
  EXPECT_EQ(FindRender(caller.renders, 3), nullptr);
}

TEST_F(SessionCommands, The21stRenderOfAnObjectGrowsItsMapAndEveryRenderIsFound) {
  quillon::SessionThread caller;
  for (uint32_t id = 1; id <= 20; ++id) ASSERT_TRUE(caller.SelectRender(id));
  EXPECT_EQ(caller.renders.buckets.size(), 32u);
  ASSERT_TRUE(caller.SelectRender(21));
  EXPECT_EQ(caller.renders.buckets.size(), 64u);
  for (uint32_t id = 1; id <= 21; ++id) {
    ASSERT_TRUE(caller.SelectRender(id));
    EXPECT_EQ(caller.currentId, id);
  }
  EXPECT_EQ(caller.renders.count, 21u);
}

}  // namespace
