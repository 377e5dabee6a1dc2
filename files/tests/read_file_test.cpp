// Reading whole input files: only regular files, never blocking on a fifo or running on
// into a device, and never beyond the cap of the kind of file.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "files/read_file.h"
#include "files/same_file.h"
#include "files/tests/temp_folder.h"

namespace qae::files {
namespace {

constexpr ReadLimit kSmall{64, "a test file"};

using ReadFile = TempFolderTest;

TEST_F(ReadFile, ReadsAllOfARegularFileUpToTheCap) {
  const std::string content(kSmall.maxBytes, 'x');
  std::string bytes, error;
  ASSERT_TRUE(ReadWholeFile(Write("full", content), kSmall, &bytes, &error)) << error;
  EXPECT_EQ(bytes, content);
}

TEST_F(ReadFile, RefusesOneByteOverTheCapNamingIt) {
  std::string bytes, error;
  EXPECT_FALSE(ReadWholeFile(Write("over", std::string(kSmall.maxBytes + 1, 'x')), kSmall, &bytes, &error));
  EXPECT_EQ(error, Path("over") + ": larger than the 64 bytes that a test file may have");
}

// Each of these blocked or ran out of memory when read as a stream.
TEST_F(ReadFile, RefusesWhatIsNotARegularFileAtOnce) {
  ASSERT_EQ(::mkfifo(Path("fifo").c_str(), 0600), 0);
  std::filesystem::create_directory(Path("folder"));
  const struct {
    std::string path;
    std::string kind;
  } cases[] = {{Path("fifo"), "a fifo"}, {"/dev/zero", "a character device"}, {Path("folder"), "a folder"}};
  for (const auto& c : cases) {
    std::string bytes, error;
    EXPECT_FALSE(ReadWholeFile(c.path, kSmall, &bytes, &error)) << c.path;
    EXPECT_EQ(error, c.path + ": not a regular file (" + c.kind + ")");
    EXPECT_FALSE(CheckRegularFile(c.path, &error)) << c.path;
  }
}

TEST_F(ReadFile, NamesAMissingFileWithTheSystemsReason) {
  std::string bytes, error;
  EXPECT_FALSE(ReadWholeFile(Path("missing"), kSmall, &bytes, &error));
  EXPECT_EQ(error, Path("missing") + ": cannot open: No such file or directory");
}

TEST(SizeText, NamesACapAsAUserReadsIt) {
  EXPECT_EQ(SizeText(std::size_t{256} << 20), "256 MiB");
  EXPECT_EQ(SizeText(std::size_t{1} << 20), "1 MiB");
  EXPECT_EQ(SizeText(std::size_t{64} << 30), "64 GiB");
  EXPECT_EQ(SizeText(1000), "1000 bytes");
}

TEST_F(ReadFile, SameFileGoesByDeviceAndInode) {
  const std::string file = Write("a", "a");
  Write("b", "a");
  std::filesystem::create_hard_link(file, Path("hard"));
  EXPECT_TRUE(SameFile(file, Path("hard")));
  EXPECT_TRUE(SameFile(file, (dir_ / "." / ".." / dir_.filename() / "a").string()));
  EXPECT_FALSE(SameFile(file, Path("b")));
  EXPECT_FALSE(SameFile(file, Path("missing")));
}

}  // namespace
}  // namespace qae::files
