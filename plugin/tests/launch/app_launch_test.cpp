// Locating the 3D application through the host's preferences, and starting a stand-in of it
// that signals readiness at once, late or never. The plug-in's code runs against the headless
// host's suites in this process; the stand-in is a program of its own (standin_application).
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "aehost/cli/preferences_file.h"
#include "aehost/core/basic_suite.h"
#include "aehost/core/host.h"
#include "plugin/engine/app_locate.h"
#include "plugin/engine/app_locate_launch.h"
#include "plugin/engine/app_locate_setting.h"
#include "plugin/host/cti.h"
#include "plugin/platform/process_start.h"
#include "plugin/platform/readiness_event.h"

namespace {

namespace fs = std::filesystem;

constexpr AEGP_PluginID kPlugin = 5;
const char* const kNoInstallText = "No Orrery Studio Installation was found.";
const char* const kCannotStartText = "Orrery Studio failed to start.";
const char* const kNoSignalText = "Orrery Studio started, but SyncBridge did not respond.";

class AppLaunch : public ::testing::Test {
 protected:
  void SetUp() override {
    root = fs::temp_directory_path() / ("app launch " + std::to_string(getpid()));
    fs::remove_all(root);
    fs::create_directories(root);
    places = {root.string(), (root / "installer-records").string(), "/qae_ready_" + std::to_string(getpid())};
    setenv("STANDIN_ARGUMENTS", (root / "arguments").c_str(), 1);
    setenv("STANDIN_EVENT", places.readinessEvent.c_str(), 1);
    setenv("STANDIN_READY", "now", 1);
    aehost::ResetHost();
    aehost::g_host.plugins.push_back({kPlugin, "quillon", nullptr});
    OpenFrame(aehost::BasicSuite(), 0, kPlugin);
  }

  void TearDown() override {
    CloseFrame();
    for (const std::string& program : installed) EndAll(program);
    aehost::ResetHost();
    fs::remove_all(root);
  }

  // The stand-in as the executable of an installation folder below the test's root.
  std::string Install(const std::string& folder, const std::string& name = "Orrery Studio.exe") {
    fs::create_directories(root / folder);
    const fs::path program = root / folder / name;
    fs::copy_file(QAE_STANDIN_APPLICATION, program);
    installed.push_back(program.string());
    return program.string();
  }

  void Store(const std::string& value) { aehost::g_host.preferences["Orrery Studio"]["ORY_LITEPATH"] = value; }

  std::string Located() {
    std::string path;
    EXPECT_EQ(LocateApplication(CurrentCTI(), places, &path), 1);
    return path;
  }

  // Ends every process of `program` and waits until the list no longer shows them.
  static void EndAll(const std::string& program) {
    for (int tries = 0; tries < 500; ++tries) {
      pid_t id = 0;
      if (!FindRunningApplication(program, &id)) return;
      kill(id, SIGKILL);
      usleep(10000);
    }
  }

  // Waits until a process of `program` runs, and gives its id (0 if none came).
  static pid_t WaitUntilRunning(const std::string& program) {
    for (int tries = 0; tries < 500; ++tries) {
      pid_t id = 0;
      if (FindRunningApplication(program, &id)) return id;
      usleep(10000);
    }
    return 0;
  }

  // The arguments the stand-in wrote, once it has written all three.
  std::vector<std::string> Arguments() {
    std::vector<std::string> lines;
    for (int tries = 0; tries < 500 && lines.size() < 3; ++tries) {
      lines.clear();
      std::ifstream in(root / "arguments");
      for (std::string line; std::getline(in, line);) lines.push_back(line);
      if (lines.size() < 3) usleep(10000);
    }
    return lines;
  }

  static bool Told(const std::string& text) {
    for (const std::string& line : aehost::g_host.transcript)
      if (line.find(text) != std::string::npos) return true;
    return false;
  }

  static bool Stopped(pid_t id) {
    std::ifstream stat("/proc/" + std::to_string(id) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
    const size_t end = text.rfind(')');
    return end != std::string::npos && end + 2 < text.size() && text[end + 2] == 'T';
  }

  fs::path root;
  ApplicationPlaces places;
  std::vector<std::string> installed;
};

TEST_F(AppLaunch, TheStoredExplicitPathWinsOverTheNewestInstallation) {
  Install("Vantor Orrery Studio 2025");
  const std::string newest = Install("Vantor Orrery Studio 2027");
  EXPECT_EQ(Located(), newest);

  const std::string chosen = Install("My tools", "ORRERY STUDIO.EXE");
  Store("explicit:" + chosen);
  EXPECT_EQ(Located(), chosen);
  // A plain stored path counts as well.
  Store(chosen);
  EXPECT_EQ(Located(), chosen);
  // A chosen file that is gone leaves the search to the installation folders.
  Store("explicit:" + (root / "gone" / "Orrery Studio.exe").string());
  EXPECT_EQ(Located(), newest);
  // A copy inside the plug-in's own support folder is never the user's choice.
  const std::string inside = Install("AE/Plug-ins/Quillon by Vantor/support/bin");
  Store(inside);
  EXPECT_EQ(Located(), newest);
  // A path given by the caller comes before all of these.
  std::string given = chosen;
  EXPECT_EQ(LocateApplication(CurrentCTI(), places, &given), 1);
  EXPECT_EQ(given, chosen);
}

TEST_F(AppLaunch, TheSettingIsStoredExplicitWhereItDiffersAndKeptAcrossRuns) {
  const std::string newest = Install("Vantor Orrery Studio 2027");
  const std::string chosen = Install("My tools");
  // The first store makes the key; only a later one can tell a place of the user's own.
  ASSERT_TRUE(StoreApplicationPath(CurrentCTI(), places, chosen, false));
  EXPECT_EQ(aehost::g_host.preferences["Orrery Studio"]["ORY_LITEPATH"], chosen);
  ASSERT_TRUE(StoreApplicationPath(CurrentCTI(), places, chosen, false));
  EXPECT_EQ(aehost::g_host.preferences["Orrery Studio"]["ORY_LITEPATH"], "explicit:" + chosen);
  ASSERT_TRUE(StoreApplicationPath(CurrentCTI(), places, newest, false));
  EXPECT_EQ(aehost::g_host.preferences["Orrery Studio"]["ORY_LITEPATH"], newest);
  ASSERT_TRUE(StoreApplicationPath(CurrentCTI(), places, chosen, false));

  // The host quits and starts again with the same preferences file.
  const std::string file = (root / "prefs.json").string();
  std::string error;
  ASSERT_TRUE(aehost::WritePreferencesFile(file, &error)) << error;
  CloseFrame();
  aehost::ResetHost();
  aehost::g_host.plugins.push_back({kPlugin, "quillon", nullptr});
  OpenFrame(aehost::BasicSuite(), 0, kPlugin);
  EXPECT_EQ(Located(), newest);  // nothing read yet
  ASSERT_TRUE(aehost::ReadPreferencesFile(file, &error)) << error;
  EXPECT_EQ(Located(), chosen);
}

TEST_F(AppLaunch, WithoutAnInstallationNothingStarts) {
  EXPECT_FALSE(StartApplication(CurrentCTI(), kStartAndWait, (root / "a.ory").string(), places));
  EXPECT_TRUE(Told(kNoInstallText));
}

TEST_F(AppLaunch, AProgramThatCannotRunIsReported) {
  const std::string program = Install("Vantor Orrery Studio 2027");
  fs::permissions(program, fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_FALSE(StartApplication(CurrentCTI(), kStartAndWait, (root / "a.ory").string(), places));
  EXPECT_TRUE(Told(kCannotStartText));
}

TEST_F(AppLaunch, APathWithSpacesReachesTheApplicationAsOneArgument) {
  const std::string program = Install("Vantor Orrery Studio 2027");
  const std::string scene = (root / "my scenes" / "shot \"1\" final.ory").string();
  EXPECT_TRUE(StartApplication(CurrentCTI(), kStartAndWait, scene, places));
  EXPECT_EQ(Arguments(), (std::vector<std::string>{scene, "-setforeground", "-g_supressWarning=true"}));
  EXPECT_TRUE(aehost::g_host.transcript.empty());
  EXPECT_NE(WaitUntilRunning(program), 0);
}

// How the stand-in signals, and what each start then gives.
struct ReadinessCase {
  const char* ready;
  bool open;  // OpenInApplication instead of StartApplication
  bool result;
};

class AppReadiness : public AppLaunch, public ::testing::WithParamInterface<ReadinessCase> {};

TEST_P(AppReadiness, TheStartWaitsForTheSignal) {
  const ReadinessCase& c = GetParam();
  setenv("STANDIN_READY", c.ready, 1);
  const std::string program = Install("Vantor Orrery Studio 2027");
  const std::string scene = (root / "scene.ory").string();
  const bool started = c.open ? OpenInApplication(CurrentCTI(), scene, program, places)
                              : StartApplication(CurrentCTI(), kStartAndWait, scene, places);
  EXPECT_EQ(started, c.result);
  EXPECT_EQ(Told(kNoSignalText), !c.result);
  EXPECT_EQ(Arguments().front(), scene);
}

INSTANTIATE_TEST_SUITE_P(Signals, AppReadiness,
                         ::testing::Values(ReadinessCase{"now", false, true}, ReadinessCase{"late", false, true},
                                           ReadinessCase{"never", false, false}, ReadinessCase{"now", true, true},
                                           ReadinessCase{"late", true, true}, ReadinessCase{"never", true, false}),
                         [](const auto& info) {
                           return std::string(info.param.open ? "Open" : "Start") + "_" + info.param.ready;
                         });

TEST_F(AppLaunch, ARunningApplicationGetsNoWaitAndComesToTheFront) {
  setenv("STANDIN_READY", "never", 1);
  const std::string program = Install("Vantor Orrery Studio 2027");
  ASSERT_TRUE(StartApplication(CurrentCTI(), kStartWithoutActiveFile, "", places));
  const pid_t first = WaitUntilRunning(program);
  ASSERT_NE(first, 0);
  kill(first, SIGSTOP);
  // A wait would end without a signal; the running application needs none.
  EXPECT_TRUE(StartApplication(CurrentCTI(), kStartAndWait, (root / "b.ory").string(), places));
  EXPECT_FALSE(Stopped(first));
  EXPECT_TRUE(OpenInApplication(CurrentCTI(), (root / "c.ory").string(), program, places));
  EXPECT_TRUE(aehost::g_host.transcript.empty());
}

TEST_F(AppLaunch, WithoutAnEventTheProcessIsTheSignOfTheApplication) {
  setenv("STANDIN_READY", "never", 1);
  const std::string program = Install("Vantor Orrery Studio 2027");
  places.readinessEvent = "/no/such/event";  // a name the system refuses for a semaphore
  EXPECT_TRUE(OpenInApplication(CurrentCTI(), (root / "a.ory").string(), program, places));
  EXPECT_TRUE(aehost::g_host.transcript.empty());
}

TEST_F(AppLaunch, OnlyTheAskedProcessCountsWhenAnIdIsGiven) {
  setenv("STANDIN_READY", "never", 1);
  const std::string program = Install("Vantor Orrery Studio 2027");
  std::string error;
  ASSERT_TRUE(StartDetachedProcess(program, {}, &error)) << error;
  const pid_t running = WaitUntilRunning(program);
  ASSERT_NE(running, 0);
  pid_t other = getpid();
  EXPECT_FALSE(FindRunningApplication(program, &other));
  pid_t same = running;
  EXPECT_TRUE(FindRunningApplication(program, &same));
  EXPECT_EQ(same, running);
  pid_t none = 0;
  EXPECT_FALSE(FindRunningApplication((root / "Orrery Studio.exe").string(), &none));
  EXPECT_FALSE(StartDetachedProcess((root / "missing").string(), {}, &error));
  EXPECT_EQ(error, "No such file or directory");
}

TEST_F(AppLaunch, AManualResetEventStaysSetAndAnAutoResetOneLetsOneWaitThrough) {
  for (const EventReset reset : {EventReset::kManual, EventReset::kAuto}) {
    ReadinessEvent event;
    ASSERT_TRUE(CreateReadinessEvent(places.readinessEvent, reset, &event));
    EXPECT_FALSE(WaitForReadiness(event, 10));
    sem_t* other = sem_open(places.readinessEvent.c_str(), 0);
    ASSERT_NE(other, SEM_FAILED);
    sem_post(other);
    sem_close(other);
    EXPECT_TRUE(WaitForReadiness(event, 10));
    EXPECT_EQ(WaitForReadiness(event, 10), reset == EventReset::kManual);
    CloseReadinessEvent(event);
    // Closed, the name is gone: the next event begins not set.
    ASSERT_TRUE(CreateReadinessEvent(places.readinessEvent, reset, &event));
    EXPECT_FALSE(WaitForReadiness(event, 10));
    CloseReadinessEvent(event);
  }
}

}  // namespace
