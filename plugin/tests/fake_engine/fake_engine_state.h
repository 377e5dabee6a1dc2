#pragma once
// What the fake engine library was told by the loader, and how it answers.
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
  void* moduleRecord = nullptr;
  QuillonApi api{};
};
