#pragma once
// Where installed programs live. On Windows the 3D application installs below
// "C:\Program Files\"; on this system its installation folders stand below /opt.
#include <string>

std::string ProgramFolderRoot();
