#include "aehost/cli/preferences_file.h"

#include <json/json.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>

#include "aehost/core/host.h"
#include "files/read_file.h"
#include "files/replace_file.h"

namespace aehost {

namespace {

constexpr std::size_t kMaxPreferencesBytes = 1 << 20;

bool Refused(const std::string& path, const std::string& problem, std::string* error) {
    *error = path + ": " + problem;
    return false;
}

bool Missing(const std::string& path) {
    struct stat info {};
    return lstat(path.c_str(), &info) != 0 && errno == ENOENT;
}

bool ParseJson(const std::string& text, const std::string& path, Json::Value* top, std::string* error) {
    Json::CharReaderBuilder builder;
    builder["rejectDupKeys"] = true;
    builder["allowComments"] = false;
    std::string parseError;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    try {
        if (reader->parse(text.data(), text.data() + text.size(), top, &parseError)) return true;
    } catch (const Json::Exception& e) {  // the parser throws past its nesting bound
        parseError = e.what();
    }
    return Refused(path, "not valid JSON: " + parseError, error);
}

}  // namespace

bool ReadPreferencesFile(const std::string& path, std::string* error) {
    if (Missing(path)) return true;
    std::string text;
    if (!qae::files::ReadWholeFile(path, {kMaxPreferencesBytes, "a preferences file"}, &text, error)) return false;
    Json::Value top;
    if (!ParseJson(text, path, &top, error)) return false;
    if (!top.isObject()) return Refused(path, "expected an object of sections", error);
    decltype(g_host.preferences) preferences;
    for (const std::string& section : top.getMemberNames()) {
        const Json::Value& keys = top[section];
        if (!keys.isObject()) return Refused(path, "section \"" + section + "\": expected an object of keys", error);
        for (const std::string& key : keys.getMemberNames()) {
            if (!keys[key].isString())
                return Refused(path, "section \"" + section + "\", key \"" + key + "\": expected a string", error);
            preferences[section][key] = keys[key].asString();
        }
    }
    g_host.preferences = std::move(preferences);
    return true;
}

bool WritePreferencesFile(const std::string& path, std::string* error) {
    Json::Value top(Json::objectValue);
    for (const auto& [section, keys] : g_host.preferences) {
        Json::Value& entries = top[section] = Json::Value(Json::objectValue);
        for (const auto& [key, value] : keys) entries[key] = value;
    }
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    return qae::files::ReplaceFileContent(path, Json::writeString(builder, top) + "\n", error);
}

}  // namespace aehost
