#include "plugin/platform/program_folders.h"

std::string ProgramFolderRoot() { return "/opt"; }
