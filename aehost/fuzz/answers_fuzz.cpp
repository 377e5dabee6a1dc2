// Any text is either refused with a message that names the source, or read
// into answers whose values are within their bounds.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "aehost/cli/answers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    aehost::UserAnswers answers;
    std::string error;
    if (!aehost::ReadAnswers(text, "fuzz", &answers, &error)) {
        if (error.rfind("fuzz: ", 0) != 0) std::abort();
        return 0;
    }
    if (answers.cancelProgressAt < -1 || answers.cancelProgressAt > 100) std::abort();
    return 0;
}
