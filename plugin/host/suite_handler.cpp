#include "plugin/host/suite_handler.h"

#include <cstring>

#include "plugin/host/cti.h"

SuiteHandler::SuiteHandler(const SPBasicSuite* pica) : pica_(pica) {}

SuiteHandler::~SuiteHandler() {
  for (const Slot& slot : slots_) pica_->ReleaseSuite(slot.name, slot.version);
}

const void* SuiteHandler::Acquire(const char* name, int32_t version) {
  for (const Slot& slot : slots_) {
    if (slot.version == version && std::strcmp(slot.name, name) == 0) return slot.table;
  }
  if (!pica_) MissingSuite();
  const void* table = nullptr;
  if (pica_->AcquireSuite(name, version, &table) != A_Err_NONE || !table) MissingSuite();
  slots_.push_back({name, version, table});
  return table;
}

void MissingSuite() {
  if (!HasNoCTI()) CurrentCTI()->AddError(A_Err_MISSING_SUITE, "Missing Suite Error");
  throw static_cast<A_Err>(A_Err_MISSING_SUITE);
}
