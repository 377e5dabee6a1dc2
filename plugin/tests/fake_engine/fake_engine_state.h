#pragma once
// What the fake engine library was told by the loader, and how it answers.
#include <cstdint>
#include <string>
#include <vector>

#include "plugin/engine/engine_ops.h"

struct FakeEngineState {
  int initializeCalls = 0;
  int shutdownCalls = 0;
  int testsUntilReady = 0;  // IsQuillonInitialized calls that still answer false
  bool giveRecord = true;
  std::string startText;
  std::u16string path;
  std::vector<std::u16string> arguments;
  std::vector<std::string> overrideNames;
  std::vector<uint64_t> overrideIds;  // two words an override, in the block's order
  int frameworkFrees = 0;             // calls of the framework's release functions
  int frameworkSecondFrees = 0;
  void* moduleRecord = nullptr;
  QuillonApi api{};
};
