// Replacing whole files: what is kept (the old content on failure, the old mode, a link),
// what is refused (anything but a regular file), and that no temporary file outlives a
// failed write, a signal or a killed run.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "files/pending_temp.h"
#include "files/replace_file.h"
#include "files/tests/temp_folder.h"

namespace qae::files {
namespace {

class ReplaceFile : public TempFolderTest {
 protected:
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir_)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
  static mode_t ModeOf(const std::string& path) {
    struct stat info {};
    ::stat(path.c_str(), &info);
    return info.st_mode & 07777;
  }
};

TEST_F(ReplaceFile, ANewFileGetsTheUsualModeLessTheUmask) {
  for (const mode_t mask : {mode_t{022}, mode_t{077}}) {
    const mode_t old = ::umask(mask);
    std::string error;
    const std::string path = Path("new" + std::to_string(mask));
    ASSERT_TRUE(ReplaceFileContent(path, "scene", &error)) << error;
    ::umask(old);
    EXPECT_EQ(ModeOf(path), 0666 & ~mask);
    EXPECT_EQ(Read(path), "scene");
  }
}

TEST_F(ReplaceFile, AnExistingFileKeepsItsMode) {
  const std::string path = Write("private", "old");
  ::chmod(path.c_str(), 0600);
  std::string error;
  ASSERT_TRUE(ReplaceFileContent(path, "new", &error)) << error;
  EXPECT_EQ(ModeOf(path), 0600u);
  EXPECT_EQ(Read(path), "new");
}

TEST_F(ReplaceFile, ALinkStaysAndTheFileItLeadsToIsReplaced) {
  const std::string real = Write("real", "old");
  std::filesystem::create_symlink(real, Path("link"));
  std::string error;
  ASSERT_TRUE(ReplaceFileContent(Path("link"), "new", &error)) << error;
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link")));
  EXPECT_EQ(Read(real), "new");
}

TEST_F(ReplaceFile, OnlyARegularFileIsReplaced) {
  ASSERT_EQ(::mkfifo(Path("fifo").c_str(), 0600), 0);
  std::filesystem::create_directory(Path("folder"));
  std::string error;
  EXPECT_FALSE(ReplaceFileContent(Path("fifo"), "new", &error));
  EXPECT_EQ(error, Path("fifo") + ": not a regular file; only a regular file is replaced");
  EXPECT_TRUE(std::filesystem::is_fifo(Path("fifo")));
  EXPECT_FALSE(ReplaceFileContent(Path("folder"), "new", &error));
  EXPECT_EQ(error, Path("folder") + ": cannot write: Is a directory");
  EXPECT_EQ(Names(), (std::vector<std::string>{"fifo", "folder"}));
}

// The temporary name used to be the target's name and a suffix, too long beside a long name.
TEST_F(ReplaceFile, ANameOfTheLongestLegalLengthIsWritten) {
  const std::string path = Path(std::string(NAME_MAX, 'n'));
  std::string error;
  ASSERT_TRUE(ReplaceFileContent(path, "scene", &error)) << error;
  EXPECT_EQ(Read(path), "scene");
  EXPECT_LE(std::filesystem::path(TempPathFor(path, 4194304)).filename().string().size(), 33u);
}

// Content made piece by piece: pieces in order, a placeholder rewritten at the end, and the
// target untouched until the commit; one that is never committed leaves only the old file.
TEST_F(ReplaceFile, AReplacementInPiecesTakesThePlaceOnlyWhenCommitted) {
  const std::string path = Write("scene", "old");
  std::string error;
  {
    FileReplacement abandoned;
    ASSERT_TRUE(abandoned.Begin(path, &error)) << error;
    ASSERT_TRUE(abandoned.Append("half"));
  }
  EXPECT_EQ(Read(path), "old");
  EXPECT_EQ(Names(), std::vector<std::string>{"scene"});

  FileReplacement replacement;
  ASSERT_TRUE(replacement.Begin(path, &error)) << error;
  ASSERT_TRUE(replacement.Append(std::string_view("\0\0body", 6)));
  ASSERT_TRUE(replacement.Append(" and more"));
  ASSERT_TRUE(replacement.Overwrite(0, "15"));
  EXPECT_EQ(Read(path), "old");
  ASSERT_TRUE(replacement.Commit(&error)) << error;
  EXPECT_EQ(Read(path), "15body and more");
  EXPECT_EQ(Names(), std::vector<std::string>{"scene"});
}

// Under `ulimit -f` the write fails with a message instead of SIGXFSZ killing the process.
TEST_F(ReplaceFile, AWriteBeyondTheFileSizeLimitFailsAndLeavesTheOldFile) {
  const std::string path = Write("kept", "old");
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const rlimit limit{100, 100};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::string error;
    const bool written = ReplaceFileContent(path, std::string(1000, 'x'), &error);
    ::_exit(!written && error == path + ": cannot write: File too large" ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  EXPECT_EQ(Read(path), "old");
  EXPECT_EQ(Names(), std::vector<std::string>{"kept"});
}

TEST_F(ReplaceFile, ASignalDuringTheWriteRemovesTheTemporaryFile) {
  const std::string temp = TempPathFor(Path("target"), ::getpid());
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      const PendingTemp pending(temp);
      std::ofstream(temp) << "half";
      ::raise(signal);
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << "status " << status;
    EXPECT_FALSE(std::filesystem::exists(temp)) << "after signal " << signal;
  }
}

// What a run killed by SIGKILL left is removed by the next write of the same file; the
// temporary of a process that still runs, or of another file, is not.
TEST_F(ReplaceFile, TheNextWriteRemovesWhatAKilledRunLeft) {
  const pid_t gone = ::fork();
  ASSERT_GE(gone, 0);
  if (gone == 0) ::_exit(0);
  ::waitpid(gone, nullptr, 0);
  const std::string target = Path("scene.ory");
  const std::string stale = TempPathFor(target, gone);
  const std::string running = TempPathFor(target, ::getppid());
  const std::string other = TempPathFor(Path("other.ory"), gone);
  for (const std::string& path : {stale, running, other}) std::ofstream(path) << "left";
  std::string error;
  ASSERT_TRUE(ReplaceFileContent(target, "scene", &error)) << error;
  EXPECT_FALSE(std::filesystem::exists(stale));
  EXPECT_TRUE(std::filesystem::exists(running));
  EXPECT_TRUE(std::filesystem::exists(other));
}

TEST_F(ReplaceFile, AMissingFolderIsNamedWithTheSystemsReason) {
  std::string error;
  EXPECT_FALSE(ReplaceFileContent(Path("nowhere/x.ory"), "x", &error));
  EXPECT_EQ(error, Path("nowhere/x.ory") + ": cannot write: No such file or directory");
}

}  // namespace
}  // namespace qae::files
