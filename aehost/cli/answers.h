// The scripted user's answers from the command line and an answers file.
//
// An answers file is JSON:
//   { "save": { "path": "out.ory", "cancel": false },
//     "dialogs": [ { "choose": ["planes"], "press": "OK", "cancel": false } ],
//     "cancelProgressAt": 50 }
// Every key is optional; "dialogs" answer the modal windows in the order they open.
#pragma once

#include <string>

#include "aehost/script/script_user.h"

namespace aehost {

struct UserAnswers {
    ScriptUser user;
    int cancelProgressAt = -1;
};

// Reads answers from JSON text into `answers`; false with a message naming
// `sourceName`, the key and the problem.
bool ReadAnswers(const std::string& text, const std::string& sourceName, UserAnswers* answers, std::string* error);

// The same from a regular file of at most 1 MiB.
bool ReadAnswersFile(const std::string& path, UserAnswers* answers, std::string* error);

}  // namespace aehost
