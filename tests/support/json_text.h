#pragma once
// JSON texts that the tools print or save, parsed for a test; a text that does not parse
// fails the running test with the parser's words.
#include <json/json.h>

#include <string>

namespace qae_test {

Json::Value ParseJson(const std::string& text);

}  // namespace qae_test
