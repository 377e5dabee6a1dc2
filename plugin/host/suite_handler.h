#pragma once
// The suite cache: host suites by name and version, each acquired from the basic suite
// on first use and released once when the cache goes away. A slot of one version is
// separate from a slot of another, since each call site asks for the table layout it
// was written against.
#include <cstdint>
#include <vector>

#include "sdk/aegp.h"

class SuiteHandler {
 public:
  explicit SuiteHandler(const SPBasicSuite* pica);
  ~SuiteHandler();
  SuiteHandler(const SuiteHandler&) = delete;
  SuiteHandler& operator=(const SuiteHandler&) = delete;

  // The suite's function table; a suite the host does not have records error 13 in
  // the thread's frame (if any) and throws 13.
  template <class Table>
  const Table* Suite(const char* name, int32_t version) {
    return static_cast<const Table*>(Acquire(name, version));
  }

  const SPBasicSuite* pica() const { return pica_; }

 private:
  struct Slot {
    const char* name;
    int32_t version;
    const void* table;
  };

  const void* Acquire(const char* name, int32_t version);

  const SPBasicSuite* pica_;
  std::vector<Slot> slots_;
};

// Records the missing suite in the thread's frame, if it has one, and throws 13.
[[noreturn]] void MissingSuite();
