// The scene file lock between processes: readers share, a writer is alone, a killed holder
// leaves no lock behind, and the retry loop counts its tries and words its failure. Other
// processes are made with fork; each reports through its exit status.
#include "plugin/platform/shared_file_lock_handle.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

constexpr int kChildLocked = 0;
constexpr int kChildRefused = 1;

class SharedFileLockTest : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = (std::filesystem::temp_directory_path() / ("lock_test_" + std::to_string(getpid()) + ".ory")).string();
    std::ofstream(path_, std::ios::binary) << "XORYORY6";
  }
  void TearDown() override { std::remove(path_.c_str()); }

  // Another process tries once; kChildLocked or kChildRefused.
  int TryInOtherProcess(bool write) const {
    const pid_t child = fork();
    if (child == 0) {
      std::string text;
      _exit(TryLockFile(path_, write, &text) == kNoFileHandle ? kChildRefused : kChildLocked);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  std::string path_;
};

TEST_F(SharedFileLockTest, ReadersShareTheFile) {
  std::string text;
  const int reader = TryLockFile(path_, false, &text);
  ASSERT_NE(reader, kNoFileHandle) << text;
  EXPECT_EQ(TryInOtherProcess(false), kChildLocked);
  EXPECT_TRUE(ReleaseFileLock(reader, &text));
}

TEST_F(SharedFileLockTest, AWriterIsRefusedWhileAReaderHoldsAndTheReverse) {
  std::string text;
  const int reader = TryLockFile(path_, false, &text);
  ASSERT_NE(reader, kNoFileHandle);
  EXPECT_EQ(TryInOtherProcess(true), kChildRefused);
  ASSERT_TRUE(ReleaseFileLock(reader, &text));
  EXPECT_EQ(TryInOtherProcess(true), kChildLocked);  // released: the writer gets in

  const int writer = TryLockFile(path_, true, &text);
  ASSERT_NE(writer, kNoFileHandle);
  EXPECT_EQ(TryInOtherProcess(false), kChildRefused);
  EXPECT_EQ(TryInOtherProcess(true), kChildRefused);
  EXPECT_TRUE(ReleaseFileLock(writer, &text));
}

TEST_F(SharedFileLockTest, ARefusedTryNamesTheLockAndTheSystemsReason) {
  std::string text;
  const int writer = TryLockFile(path_, true, &text);
  ASSERT_NE(writer, kNoFileHandle);
  std::string refused;
  EXPECT_EQ(TryLockFile(path_, false, &refused), kNoFileHandle);
  EXPECT_EQ(refused.rfind("\nFailed to get read lock : ", 0), 0u) << refused;
  EXPECT_GT(refused.size(), std::string("\nFailed to get read lock : ").size());
  ReleaseFileLock(writer, &text);
}

TEST_F(SharedFileLockTest, AKilledHolderLeavesNoLock) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t holder = fork();
  if (holder == 0) {
    std::string text;
    const char locked = TryLockFile(path_, true, &text) == kNoFileHandle ? 'n' : 'y';
    (void)!write(ready[1], &locked, 1);
    for (;;) pause();
  }
  char locked = 0;
  ASSERT_EQ(read(ready[0], &locked, 1), 1);
  ASSERT_EQ(locked, 'y');
  std::string text;
  EXPECT_EQ(TryLockFile(path_, false, &text), kNoFileHandle);
  kill(holder, SIGKILL);
  waitpid(holder, nullptr, 0);
  const int reader = TryLockFile(path_, false, &text);
  EXPECT_NE(reader, kNoFileHandle) << text;
  if (reader != kNoFileHandle) ReleaseFileLock(reader, &text);
  close(ready[0]);
  close(ready[1]);
}

// The retry loop's waits, counted instead of slept; the blocking lock can be given up after
// a number of them.
int g_sleeps = 0;
int g_releaseAfter = -1;
int g_blocking = kNoFileHandle;

void CountingSleep(int32_t milliseconds) {
  EXPECT_EQ(milliseconds, 500);
  ++g_sleeps;
  if (g_sleeps == g_releaseAfter) {
    std::string text;
    ReleaseFileLock(g_blocking, &text);
    g_blocking = kNoFileHandle;
  }
}

TEST_F(SharedFileLockTest, GivingUpAfterFiveSecondsTakesElevenTriesAndSaysWhy) {
  std::string text;
  g_blocking = TryLockFile(path_, true, &text);
  ASSERT_NE(g_blocking, kNoFileHandle);
  g_sleeps = 0;
  g_releaseAfter = -1;
  std::string error;
  EXPECT_EQ(AcquireFileLock(path_, false, 5, &CountingSleep, &error), kNoFileHandle);
  EXPECT_EQ(g_sleeps, 10);  // a try at once and one after each of ten waits
  const std::string ending = "\nFailed to get read lock on file " + path_ + " after 5 seconds. Gave up.";
  ASSERT_GE(error.size(), ending.size());
  EXPECT_EQ(error.substr(error.size() - ending.size()), ending);
  EXPECT_EQ(error.rfind("\nFailed to get read lock : ", 0), 0u) << error;
  ReleaseFileLock(g_blocking, &text);
}

TEST_F(SharedFileLockTest, ALockGivenUpDuringTheWaitIsTakenAtTheNextTry) {
  std::string text;
  g_blocking = TryLockFile(path_, false, &text);
  ASSERT_NE(g_blocking, kNoFileHandle);
  g_sleeps = 0;
  g_releaseAfter = 4;  // released at 1.8 s: the try after the fourth wait, at 2 s, gets it
  std::string error = "left over";
  const int writer = AcquireFileLock(path_, true, 5, &CountingSleep, &error);
  EXPECT_NE(writer, kNoFileHandle);
  EXPECT_EQ(g_sleeps, 4);
  EXPECT_TRUE(error.empty()) << error;
  ReleaseFileLock(writer, &text);
}

TEST_F(SharedFileLockTest, NoWaitMeansOneTry) {
  std::string text;
  g_blocking = TryLockFile(path_, true, &text);
  g_sleeps = 0;
  g_releaseAfter = -1;
  std::string error;
  EXPECT_EQ(AcquireFileLock(path_, true, 0, &CountingSleep, &error), kNoFileHandle);
  EXPECT_EQ(g_sleeps, 0);
  EXPECT_NE(error.find("\nFailed to get write lock on file " + path_ + " after 0 seconds. Gave up."),
            std::string::npos);
  ReleaseFileLock(g_blocking, &text);
}

TEST_F(SharedFileLockTest, AReaderNeedsTheFileAndAWriterMakesIt) {
  std::remove(path_.c_str());
  std::string text;
  EXPECT_EQ(TryLockFile(path_, false, &text), kNoFileHandle);
  const int writer = TryLockFile(path_, true, &text);
  EXPECT_NE(writer, kNoFileHandle);
  EXPECT_TRUE(std::filesystem::exists(path_));
  ReleaseFileLock(writer, &text);
}

}  // namespace
