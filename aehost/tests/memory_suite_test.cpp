#include <cstring>

#include "aehost/core/exit_report.h"
#include "aehost/tests/host_fixture.h"

namespace aehost {
namespace {

using MemoryTest = HostTest;

TEST_F(MemoryTest, HandleLivesFromNewToFree) {
    const AEGP_MemorySuite1* mem = MemorySuite();
    AEGP_MemHandle handle = nullptr;
    ASSERT_EQ(mem->AEGP_NewMemHandle(kPlugin, "buffer", 16, AEGP_MemFlag_CLEAR, &handle), A_Err_NONE);
    void* data = nullptr;
    ASSERT_EQ(mem->AEGP_LockMemHandle(handle, &data), A_Err_NONE);
    EXPECT_EQ(static_cast<const char*>(data)[15], 0);
    std::memcpy(data, "hello", 6);
    EXPECT_EQ(mem->AEGP_UnlockMemHandle(handle), A_Err_NONE);
    AEGP_MemSize size = 0;
    EXPECT_EQ(mem->AEGP_GetMemHandleSize(handle, &size), A_Err_NONE);
    EXPECT_EQ(size, 16u);
    A_long count = 0, bytes = 0;
    EXPECT_EQ(mem->AEGP_GetMemStats(kPlugin, &count, &bytes), A_Err_NONE);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(bytes, 16);
    EXPECT_EQ(mem->AEGP_FreeMemHandle(handle), A_Err_NONE);
    EXPECT_TRUE(ExitProblems().empty());
}

TEST_F(MemoryTest, MisuseIsRefusedAndReported) {
    const AEGP_MemorySuite1* mem = MemorySuite();
    AEGP_MemHandle handle = nullptr;
    ASSERT_EQ(mem->AEGP_NewMemHandle(kPlugin, "twice", 4, AEGP_MemFlag_NONE, &handle), A_Err_NONE);
    EXPECT_NE(mem->AEGP_UnlockMemHandle(handle), A_Err_NONE);  // not locked
    ASSERT_EQ(mem->AEGP_FreeMemHandle(handle), A_Err_NONE);
    EXPECT_NE(mem->AEGP_FreeMemHandle(handle), A_Err_NONE);    // double free
    void* data = nullptr;
    EXPECT_NE(mem->AEGP_LockMemHandle(handle, &data), A_Err_NONE);  // freed
    EXPECT_EQ(data, nullptr);
    ASSERT_EQ(g_host.misuse.size(), 3u);
    EXPECT_NE(g_host.misuse[1].find("already freed"), std::string::npos);
    // A made-up handle is not a memory handle at all.
    EXPECT_NE(mem->AEGP_LockMemHandle(MakeHandle<AEGP_MemHandle>(0x12345), &data), A_Err_NONE);
    EXPECT_NE(g_host.misuse.back().find("not a memory handle"), std::string::npos);
}

TEST_F(MemoryTest, LeakedAndLockedHandlesAreReportedAtExit) {
    const AEGP_MemorySuite1* mem = MemorySuite();
    AEGP_MemHandle leaked = nullptr, locked = nullptr;
    mem->AEGP_NewMemHandle(kPlugin, "leaked", 8, AEGP_MemFlag_NONE, &leaked);
    mem->AEGP_NewMemHandle(kPlugin, "locked", 8, AEGP_MemFlag_NONE, &locked);
    void* data = nullptr;
    mem->AEGP_LockMemHandle(locked, &data);
    const std::vector<std::string> problems = ExitProblems();
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_NE(problems[0].find("\"leaked\""), std::string::npos);
    EXPECT_EQ(problems[0].find("still locked"), std::string::npos);
    EXPECT_NE(problems[1].find("\"locked\""), std::string::npos);
    EXPECT_NE(problems[1].find("still locked"), std::string::npos);
}

TEST_F(MemoryTest, FreeingALockedHandleIsReported) {
    const AEGP_MemorySuite1* mem = MemorySuite();
    AEGP_MemHandle handle = nullptr;
    mem->AEGP_NewMemHandle(kPlugin, "busy", 8, AEGP_MemFlag_NONE, &handle);
    void* data = nullptr;
    mem->AEGP_LockMemHandle(handle, &data);
    EXPECT_NE(mem->AEGP_ResizeMemHandle("busy", 32, handle), A_Err_NONE);
    EXPECT_EQ(mem->AEGP_FreeMemHandle(handle), A_Err_NONE);
    ASSERT_EQ(g_host.misuse.size(), 2u);
    EXPECT_NE(g_host.misuse[1].find("freed while locked"), std::string::npos);
}

TEST_F(MemoryTest, TextHandlesHoldZeroTerminatedUtf16) {
    AEGP_MemHandle handle = NewTextHandle(kPlugin, u"Caf\u00e9 \U0001F600");
    AEGP_MemSize size = 0;
    MemorySuite()->AEGP_GetMemHandleSize(handle, &size);
    EXPECT_EQ(size, (7u + 1u) * 2u);  // "Café " is 5 units, the emoji 2, then the zero
    EXPECT_EQ(TakeText(handle), "Caf\xC3\xA9 \xF0\x9F\x98\x80");
}

TEST_F(MemoryTest, ReportingTellsEveryAllocationAndRelease) {
    const AEGP_MemorySuite1* mem = MemorySuite();
    ASSERT_EQ(mem->AEGP_SetMemReportingOn(true), A_Err_NONE);
    testing::internal::CaptureStderr();
    AEGP_MemHandle handle = nullptr;
    mem->AEGP_NewMemHandle(kPlugin, "names", 12, AEGP_MemFlag_NONE, &handle);
    mem->AEGP_FreeMemHandle(handle);
    mem->AEGP_SetMemReportingOn(false);
    mem->AEGP_NewMemHandle(kPlugin, "quiet", 4, AEGP_MemFlag_NONE, &handle);
    mem->AEGP_FreeMemHandle(handle);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "aehost: memory: new \"names\" of plug-in 7, 12 bytes\n"
              "aehost: memory: free \"names\" of plug-in 7, 12 bytes\n");
}

}  // namespace
}  // namespace aehost
