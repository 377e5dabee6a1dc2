// Any text through the dialect translator: it must end, without a crash, either
// with a translation or with a message. Every include gives the same small file,
// which itself includes, so that the depth limit is reached too.
#include "aehost/script/dialect.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string source(reinterpret_cast<const char*>(data), size);
    const auto include = [](const std::string&, std::string* text, std::string*) {
        *text = "var a = \"\"\"x\"\"\";\n#include \"again.jsx\"\n";
        return true;
    };
    std::string out;
    std::string error;
    const bool translated = aehost::TranslateDialect(source, include, &out, &error);
    if (!translated && error.empty()) __builtin_trap();
    return 0;
}
