// End to end: what the tools write, and what they refuse to read. No run loses a file the
// user had: an export names the file it really wrote, an import never saves over its own
// input, only regular files are replaced and keep their mode, and no temporary file is left.
// No input can hang a tool or fill the memory: fifos and devices are refused at once,
// descriptions have a size cap, and running out of memory is a clean failure. Every failed
// export says why.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/run_command.h"

namespace {

using qae_test::CommandResult;
using qae_test::RunCommand;

constexpr int kFailed = 1;
constexpr int kBadInput = 2;

// What a user had before a case; no refused run may change it.
const char* const kKept = "what the user had before\n";

std::string Examples(const std::string& name) { return std::string(QAE_EXAMPLES_DIR) + "/" + name; }

bool UnderAddressSanitizer() {
#if defined(__SANITIZE_ADDRESS__)
  return true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
  return true;
#endif
#endif
  return false;
}

mode_t ModeOf(const std::string& path) {
  struct stat info {};
  ::stat(path.c_str(), &info);
  return info.st_mode;
}

class BadOutput : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = qae_test::MakeTempDir("bad_output");
    const auto built = RunCommand(qae_test::OrytoolPath(), {"build", Examples("scenes/import_keys.json"), "-o", Path("good.ory")});
    ASSERT_EQ(built.exitCode, 0) << built.err;
  }
  void TearDown() override {
    if (!mounted_.empty()) ::umount(mounted_.c_str());
    std::filesystem::remove_all(dir_);
  }

  std::string Path(const std::string& name) const { return dir_ + "/" + name; }
  std::string Write(const std::string& name, const std::string& content) const {
    qae_test::WriteFile(Path(name), content);
    return Path(name);
  }
  // The names in the case's folder, sorted: what a failed run may not add to.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir_)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  CommandResult Export(const std::string& output, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> args = {"export", Examples("rig.json"), "--comp", "Rig", "--output", output};
    args.insert(args.end(), more.begin(), more.end());
    return RunCommand(qae_test::AehostPath(), args);
  }
  CommandResult Build(const std::string& output) const {
    return RunCommand(qae_test::OrytoolPath(), {"build", Examples("scenes/import_keys.json"), "-o", output});
  }
  CommandResult Import(const std::string& output) const {
    return RunCommand(qae_test::AehostPath(), {"import", Path("good.ory"), "--output", output, "--quiet"});
  }
  // `program` with `args` under a shell's `ulimit -f` of `blocks` 512-byte blocks.
  static CommandResult UnderFileSizeLimit(int blocks, const std::string& program, const std::vector<std::string>& args) {
    std::vector<std::string> shell = {"-c", "ulimit -f " + std::to_string(blocks) + " && exec \"$@\"", "sh", program};
    shell.insert(shell.end(), args.begin(), args.end());
    return RunCommand("/bin/sh", shell);
  }

  std::string dir_;
  std::string mounted_;
};

// The plug-in gives the chosen file the scene suffix: added to a name without one, put in
// place of another, kept in any case. The summary names that file, and one that was there
// is replaced, as the user chose in the dialog.
TEST_F(BadOutput, ExportNamesTheFileItReallyWrote) {
  const struct {
    const char* chosen;
    const char* written;
  } cases[] = {{"keep.json", "keep.ory"}, {"plain", "plain.ory"}, {"UP.ORY", "UP.ORY"}, {"a.b.txt", "a.b.ory"}};
  for (const auto& c : cases) {
    Write(c.written, kKept);
    const auto result = Export(Path(c.chosen), {"--quiet"});
    EXPECT_EQ(result.exitCode, 0) << c.chosen << ": " << result.err;
    EXPECT_EQ(qae_test::ReadFile(Path(c.written)).substr(0, 4), "QORY") << c.written;
    if (std::string(c.chosen) != c.written) {
      EXPECT_FALSE(qae_test::FileExists(Path(c.chosen)));
    }
  }
  const auto result = Export(Path("keep.json"));
  EXPECT_EQ(result.out.rfind("exported \"Rig\" to " + Path("keep.ory") + ": 7 objects, 1 camera", 0), 0u) << result.out;
}

TEST_F(BadOutput, ImportRefusesToSaveOverAnInput) {
  std::filesystem::create_directory(Path("sub"));
  std::filesystem::create_hard_link(Path("good.ory"), Path("linked.json"));
  Write("project.json", qae_test::ReadFile(Examples("rig.json")));
  const std::string scene = qae_test::ReadFile(Path("good.ory"));
  const std::vector<std::vector<std::string>> cases = {
      {"import", Path("good.ory"), "--output", Path("good.ory")},
      {"import", Path("good.ory"), "--output", dir_ + "/sub/.././good.ory"},
      {"import", Path("good.ory"), "--output", Path("linked.json")},
      {"import", Path("good.ory"), "--project", Path("project.json"), "--output", Path("project.json")},
  };
  for (const auto& args : cases) {
    const auto result = RunCommand(qae_test::AehostPath(), args);
    EXPECT_EQ(result.exitCode, kBadInput) << args.back() << ": " << result.err;
    EXPECT_NE(result.err.find("is the same file as the input"), std::string::npos) << result.err;
  }
  EXPECT_EQ(qae_test::ReadFile(Path("good.ory")), scene);
  EXPECT_EQ(qae_test::ReadFile(Path("project.json")), qae_test::ReadFile(Examples("rig.json")));
}

// As root a device node in the output's place was replaced by a regular file: `-o /dev/null`
// would have replaced /dev/null.
TEST_F(BadOutput, OnlyARegularFileIsReplaced) {
  if (::mknod(Path("null.ory").c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0)
    GTEST_SKIP() << "only the superuser makes device nodes";
  const std::string refusal = Path("null.ory") + ": not a regular file; only a regular file is replaced";
  for (const auto& result : {Build(Path("null.ory")), Export(Path("null.ory"), {"--quiet"}), Import(Path("null.ory"))}) {
    EXPECT_EQ(result.exitCode, kFailed) << result.err;
    EXPECT_NE(result.err.find(refusal), std::string::npos) << result.err;
    EXPECT_TRUE(S_ISCHR(ModeOf(Path("null.ory"))));
  }
  EXPECT_EQ(Names(), (std::vector<std::string>{"good.ory", "null.ory"}));
}

TEST_F(BadOutput, AReplacedFileKeepsItsMode) {
  for (const char* name : {"export.ory", "build.ory", "import.json"}) {
    Write(name, kKept);
    ::chmod(Path(name).c_str(), 0600);
  }
  EXPECT_EQ(Export(Path("export.ory"), {"--quiet"}).exitCode, 0);
  EXPECT_EQ(Build(Path("build.ory")).exitCode, 0);
  EXPECT_EQ(Import(Path("import.json")).exitCode, 0);
  for (const char* name : {"export.ory", "build.ory", "import.json"}) {
    EXPECT_EQ(ModeOf(Path(name)) & 07777, 0600u) << name;
    EXPECT_NE(qae_test::ReadFile(Path(name)), kKept) << name;
  }
}

// A file name may have 255 bytes; the temporary name beside it once had more.
TEST_F(BadOutput, TheLongestLegalNameIsWritten) {
  const std::string exported = Path(std::string(251, 'e') + ".ory");
  const std::string built = Path(std::string(251, 'b') + ".ory");
  EXPECT_EQ(Export(exported, {"--quiet"}).exitCode, 0);
  EXPECT_EQ(Build(built).exitCode, 0);
  EXPECT_EQ(Names().size(), 3u);
  EXPECT_EQ(qae_test::ReadFile(exported).substr(0, 4), "QORY");
  EXPECT_EQ(qae_test::ReadFile(built), qae_test::ReadFile(Path("good.ory")));
}

// Under `ulimit -f` the tools died from SIGXFSZ, without a word, leaving the temporary file.
TEST_F(BadOutput, AWriteBeyondTheFileSizeLimitFailsWithTheReason) {
  ASSERT_GT(qae_test::ReadFile(Path("good.ory")).size(), 512u);
  Write("kept.ory", kKept);
  const auto built = UnderFileSizeLimit(1, qae_test::OrytoolPath(),
                                        {"build", Examples("scenes/import_keys.json"), "-o", Path("kept.ory")});
  EXPECT_EQ(built.exitCode, kFailed) << built.err;
  EXPECT_NE(built.err.find("orytool: " + Path("kept.ory") + ": cannot write: File too large"), std::string::npos)
      << built.err;
  const auto exported = UnderFileSizeLimit(
      1, qae_test::AehostPath(), {"export", Examples("rig.json"), "--comp", "Rig", "--output", Path("kept.ory"), "--quiet"});
  EXPECT_EQ(exported.exitCode, kFailed) << exported.err;
  EXPECT_NE(exported.err.find("quillon: " + Path("kept.ory") + ": cannot write: File too large"), std::string::npos)
      << exported.err;
  EXPECT_EQ(qae_test::ReadFile(Path("kept.ory")), kKept);
  EXPECT_EQ(Names(), (std::vector<std::string>{"good.ory", "kept.ory"}));
}

// The temporary file of a target is "." + 16 hex digits of the FNV-1a hash of the target's
// name + "." + the writer's pid + ".tmp", so that the next run of the same command finds
// what a run killed by SIGKILL left.
std::string TempNameOf(const std::string& leaf, pid_t pid) {
  std::uint64_t hash = 0xcbf29ce484222325u;
  for (const unsigned char c : leaf) hash = (hash ^ c) * 0x100000001b3u;
  char hex[17];
  std::snprintf(hex, sizeof hex, "%016" PRIx64, hash);
  return "." + std::string(hex) + "." + std::to_string(pid) + ".tmp";
}

TEST_F(BadOutput, ALaterRunRemovesWhatAKilledRunLeft) {
  const pid_t gone = ::fork();
  ASSERT_GE(gone, 0);
  if (gone == 0) ::_exit(0);
  ::waitpid(gone, nullptr, 0);
  Write(TempNameOf("scene.ory", gone), "half a scene");
  Write(TempNameOf("project.json", gone), "half a project");
  EXPECT_EQ(Build(Path("scene.ory")).exitCode, 0);
  EXPECT_EQ(Import(Path("project.json")).exitCode, 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"good.ory", "project.json", "scene.ory"}));
}

// A fifo blocked every tool for ever; /dev/zero was read until the memory ran out. Each
// runs under `timeout`, so that a tool that blocks fails the case instead of hanging it.
TEST_F(BadOutput, AnInputMustBeARegularFile) {
  ASSERT_EQ(::mkfifo(Path("fifo").c_str(), 0600), 0);
  std::filesystem::create_directory(Path("folder"));
  const std::string out = Path("out");
  for (const std::string& input : {Path("fifo"), std::string("/dev/zero"), Path("folder")}) {
    const std::vector<std::vector<std::string>> runs = {
        {qae_test::OrytoolPath(), "build", input, "-o", out},
        {qae_test::OrytoolPath(), "dump", input},
        {qae_test::AehostPath(), "export", input, "--comp", "Rig", "--output", out},
        {qae_test::AehostPath(), "export", Examples("rig.json"), "--comp", "Rig", "--output", out, "--answers", input},
        {qae_test::AehostPath(), "import", input, "--output", out},
        {qae_test::AehostPath(), "import", Path("good.ory"), "--project", input, "--output", out},
        {qae_test::AehostPath(), "roundtrip", input, "--comp", "Rig"},
    };
    for (auto args : runs) {
      args.insert(args.begin(), "30");
      const auto result = RunCommand("/usr/bin/timeout", args);
      EXPECT_EQ(result.exitCode, kBadInput) << args[1] << " " << args[2] << " " << input << ": " << result.err;
      EXPECT_NE(result.err.find(input + ": not a regular file"), std::string::npos) << result.err;
    }
  }
  EXPECT_FALSE(qae_test::FileExists(out));
}

TEST_F(BadOutput, ADescriptionHasASizeCap) {
  std::filesystem::resize_file(Write("huge.json", ""), (std::uintmax_t{256} << 20) + 1);  // sparse: no disk used
  const auto built = RunCommand(qae_test::OrytoolPath(), {"build", Path("huge.json"), "-o", Path("out.ory")});
  EXPECT_EQ(built.exitCode, kBadInput);
  EXPECT_NE(built.err.find(Path("huge.json") + ": larger than the 256 MiB that a scene description may have"),
            std::string::npos)
      << built.err;
  const auto exported =
      RunCommand(qae_test::AehostPath(), {"export", Path("huge.json"), "--comp", "Rig", "--output", Path("out.ory")});
  EXPECT_EQ(exported.exitCode, kBadInput);
  EXPECT_NE(exported.err.find(Path("huge.json") + ": larger than the 256 MiB that a project description may have"),
            std::string::npos)
      << exported.err;
}

// A description of ten million numbers takes about a gigabyte once parsed: under a limit of
// 300 MB of address space it runs out of memory, which is a failure (1), not bad input or
// an abort.
TEST_F(BadOutput, RunningOutOfMemoryIsACleanFailure) {
  if (UnderAddressSanitizer()) GTEST_SKIP() << "the address sanitizer reserves more address space than the limit";
  {
    std::ofstream big(Path("big.json"));
    big << '[';
    for (int i = 0; i < 10000000; ++i) big << "0,";
    big << "0]";
  }
  const std::vector<std::string> limit = {"--as=300000000", "--"};
  auto run = [&](const std::string& tool, const std::vector<std::string>& args) {
    std::vector<std::string> all = limit;
    all.push_back(tool);
    all.insert(all.end(), args.begin(), args.end());
    return RunCommand("/usr/bin/prlimit", all);
  };
  const auto built = run(qae_test::OrytoolPath(), {"build", Path("big.json"), "-o", Path("out.ory")});
  EXPECT_EQ(built.exitCode, kFailed) << built.err;
  EXPECT_NE(built.err.find("orytool: out of memory while building " + Path("out.ory")), std::string::npos) << built.err;
  const auto exported = run(qae_test::AehostPath(), {"export", Path("big.json"), "--comp", "Rig", "--output", Path("out.ory")});
  EXPECT_EQ(exported.exitCode, kFailed) << exported.err;
  EXPECT_NE(exported.err.find("aehost: out of memory while reading the project description " + Path("big.json")),
            std::string::npos)
      << exported.err;
  EXPECT_FALSE(qae_test::FileExists(Path("out.ory")));
}

// The plug-in's own messages stay as they are; the engine's console line gives the reason.
TEST_F(BadOutput, AFailedExportSaysWhy) {
  std::filesystem::create_directory(Path("folder.ory"));
  const auto intoFolder = Export(Path("folder.ory"), {"--quiet"});
  EXPECT_EQ(intoFolder.exitCode, kFailed);
  EXPECT_NE(intoFolder.err.find("quillon: " + Path("folder.ory") + ": cannot write: Is a directory"), std::string::npos)
      << intoFolder.err;
  EXPECT_NE(intoFolder.err.find("aehost: the export wrote no scene file to " + Path("folder.ory")), std::string::npos)
      << intoFolder.err;
  EXPECT_TRUE(std::filesystem::is_directory(Path("folder.ory")));
}

// A target whose folder takes no new file fails when the scene file is opened, before anything
// is written, with the plug-in's own words; /proc refuses new files even to the superuser.
TEST_F(BadOutput, ATargetThatCannotBeCreatedFailsAtOpen) {
  const auto result = Export("/proc/quillon-export.ory");
  EXPECT_EQ(result.exitCode, kFailed);
  EXPECT_NE(result.err.find("Failed to create target file."), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("quillon: /proc/quillon-export.ory: cannot write: "), std::string::npos) << result.err;
  EXPECT_FALSE(qae_test::FileExists("/proc/quillon-export.ory"));
}

TEST_F(BadOutput, AnExportIntoAReadOnlyFolderSaysWhy) {
  if (::geteuid() == 0) GTEST_SKIP() << "the superuser writes into read-only folders";
  std::filesystem::create_directory(Path("locked"));
  ::chmod(Path("locked").c_str(), 0555);
  const auto result = Export(Path("locked/out.ory"), {"--quiet"});
  ::chmod(Path("locked").c_str(), 0755);
  EXPECT_EQ(result.exitCode, kFailed);
  EXPECT_NE(result.err.find("quillon: " + Path("locked/out.ory") + ": cannot write: Permission denied"),
            std::string::npos)
      << result.err;
}

TEST_F(BadOutput, AnExportOntoAFullDiskSaysWhyAndLeavesNothing) {
  std::filesystem::create_directory(Path("small"));
  if (::mount("tmpfs", Path("small").c_str(), "tmpfs", 0, "size=16k") != 0)
    GTEST_SKIP() << "a small file system needs the superuser and permission to mount one";
  mounted_ = Path("small");
  const auto result = Export(Path("small/out.ory"), {"--quiet"});
  EXPECT_EQ(result.exitCode, kFailed);
  EXPECT_NE(result.err.find("quillon: " + Path("small/out.ory") + ": cannot write: No space left on device"),
            std::string::npos)
      << result.err;
  EXPECT_TRUE(std::filesystem::is_empty(Path("small")));
}

}  // namespace
