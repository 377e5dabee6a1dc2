// The scripted user: the person in front of a headless host. Every dialog that a
// script opens (the save dialog of File.saveDlg, a ScriptUI Window shown modally)
// is answered from this structure instead of a screen. The host fills it from its
// command line or an answers file before it runs the plug-in.
#pragma once

#include <deque>
#include <string>
#include <vector>

namespace aehost {

// The answer to File.saveDlg / File.saveDialog.
struct SaveAnswer {
    bool cancel = false;  // press Cancel: the script receives null
    std::string path;     // the file chosen; empty: accept the file the script proposed
};

// The answer to one modal ScriptUI window, in the order the windows are shown.
// Controls are named by their text or by their `name` property, compared without
// regard to case; a name matches when it is contained in the control's text, so
// "planes" chooses a radio button labelled "As planes". A name that matches no
// control is a script error, so that a changed dialog cannot be answered silently.
struct DialogAnswer {
    std::vector<std::string> choose;  // radio buttons and checkboxes to switch on
    std::string press;                // the button to press; empty: the default (OK) button
    bool cancel = false;              // close the window as with Escape: show() returns 2
};

struct ScriptUser {
    SaveAnswer save;                   // used for every save dialog of the run
    std::deque<DialogAnswer> dialogs;  // consumed by Window.show(); when empty the
                                       // default button is pressed
};

}  // namespace aehost
