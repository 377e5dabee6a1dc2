#pragma once
// The current user's desktop folder, where support files for the user are written.
#include <string>

// The folder as the desktop's user-dirs convention names it: $XDG_DESKTOP_DIR, else the
// DESKTOP entry of $XDG_CONFIG_HOME/user-dirs.dirs (~/.config when unset), else
// $HOME/Desktop. Empty when that folder does not exist: it is never created.
std::string DesktopFolder();
