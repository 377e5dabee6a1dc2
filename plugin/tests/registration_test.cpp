#include <gtest/gtest.h>

#include <algorithm>

#include "fake_host.h"
#include "plugin/host/entry_point.h"
#include "plugin/host/hooks.h"
#include "plugin/host/plugin_globals.h"

namespace {

std::vector<std::string> Registrations(const FakeHost& host) {
  std::vector<std::string> calls;
  for (const std::string& call : host.calls) {
    if (call.rfind("Register", 0) == 0 || call.rfind("Insert", 0) == 0) calls.push_back(call);
  }
  return calls;
}

TEST(Entry, RegistersTheMenuItemHooksAndImportFlavor) {
  FakeHost host;
  EXPECT_EQ(EntryPointFunc(const_cast<SPBasicSuite*>(host.pica()), 1, 0, 3, nullptr), 0);
  EXPECT_EQ(Registrations(host), (std::vector<std::string>{
                                     "InsertMenuCommand 42 Vantor Orrery Studio Exporter... 13 -2",
                                     "RegisterWithAEGP Vantor Orrery Studio Exporter...",
                                     "RegisterCommandHook 77 2 0",
                                     "RegisterUpdateMenuHook 77",
                                     "RegisterDeathHook 77",
                                     "RegisterImportFlavor Orrery Studio Importer...",
                                     "RegisterImportFlavorFileTypes 5 1 1",
                                     "RegisterImportFlavorImportCallbacks 5 2 both",
                                 }));
  EXPECT_EQ(g_exportCommand, 42);
  EXPECT_EQ(g_pluginId, 77);
  // The kind: "ory" and a zero byte, then -1; the extension ".ory" padded with zeros.
  EXPECT_EQ(host.fileKindBytes,
            (std::vector<unsigned char>{0x6F, 0x72, 0x79, 0x00, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(host.extension, std::string(".ory\0\0\0\0", 8));
  EXPECT_TRUE(host.reports.empty());
  EXPECT_EQ(host.liveHandles, 0);
  for (const auto& [suite, count] : host.acquired) EXPECT_EQ(host.released[suite], count) << suite;
}

TEST(Entry, WithoutAMenuItemTheUserIsToldAndTheHooksStillRegister) {
  FakeHost host;
  host.uniqueCommandErr = A_Err_GENERIC;
  EXPECT_EQ(EntryPointFunc(const_cast<SPBasicSuite*>(host.pica()), 1, 0, 3, nullptr), 0);
  ASSERT_EQ(host.reports.size(), 1u);
  EXPECT_EQ(host.reports[0], u"Orrery Studio Exporter: Problem encountered during file export.");
  EXPECT_EQ(g_exportCommand, 0);
  EXPECT_EQ(Registrations(host).size(), 7u);
}

TEST(Entry, AFailedHookIsToldAndTheImporterStillRegisters) {
  FakeHost host;
  host.registerHookErr = A_Err_GENERIC;
  EXPECT_EQ(EntryPointFunc(const_cast<SPBasicSuite*>(host.pica()), 1, 0, 3, nullptr), 0);
  ASSERT_EQ(host.reports.size(), 1u);
  EXPECT_EQ(host.reports[0], u"Orrery Studio Exporter: Problem encountered during plugin registration.");
  const std::vector<std::string> calls = Registrations(host);
  EXPECT_EQ(calls.back(), "RegisterImportFlavorImportCallbacks 5 2 both");
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "RegisterUpdateMenuHook 77"), 0);
}

TEST(UpdateMenu, EnablesTheItemExactlyForAnActiveComposition) {
  FakeHost host;
  EntryPointFunc(const_cast<SPBasicSuite*>(host.pica()), 1, 0, 3, nullptr);
  host.calls.clear();
  EXPECT_EQ(host.updateMenuHook(nullptr, nullptr, AEGP_WindType_NONE), 0);
  host.hasActiveItem = true;
  host.activeItemType = AEGP_ItemType_FOOTAGE;
  host.updateMenuHook(nullptr, nullptr, AEGP_WindType_NONE);
  host.activeItemType = AEGP_ItemType_COMP;
  host.updateMenuHook(nullptr, nullptr, AEGP_WindType_COMP);
  EXPECT_EQ(host.calls, (std::vector<std::string>{"DisableCommand 42", "DisableCommand 42", "EnableCommand 42"}));
  EXPECT_EQ(host.liveHandles, 0);
}

TEST(CommandHook, IgnoresOtherCommandsAndHandledOnes) {
  FakeHost host;
  EntryPointFunc(const_cast<SPBasicSuite*>(host.pica()), 1, 0, 3, nullptr);
  A_Boolean handled = false;
  EXPECT_EQ(host.commandHook(nullptr, nullptr, 41, AEGP_HP_AfterAE, false, &handled), 0);
  EXPECT_EQ(host.commandHook(nullptr, nullptr, 42, AEGP_HP_AfterAE, true, &handled), 0);
  EXPECT_FALSE(handled);
  EXPECT_TRUE(host.reports.empty());
}

TEST(DeathHook, SaysSoWhenNoEngineWasLoaded) {
  FakeHost host;
  EntryPointFunc(const_cast<SPBasicSuite*>(host.pica()), 1, 0, 3, nullptr);
  EXPECT_EQ(host.deathHook(nullptr, nullptr), 1);
}

}  // namespace
