#pragma once
// The path of the open project's file as the host gives it; empty when it was never saved.
#include <string>

#include "plugin/host/suite_handler.h"

A_Err GetProjectPath(SuiteHandler& suites, std::u16string* path);
