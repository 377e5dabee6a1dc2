#include "aehost/cli/answers.h"

#include <json/json.h>

#include <initializer_list>
#include <memory>
#include <stdexcept>

#include "files/read_file.h"

namespace aehost {

namespace {

constexpr std::size_t kMaxAnswersBytes = 1 << 20;

// Reads the answers; throws the message of the first problem.
struct AnswerReader {
    std::string file;

    [[noreturn]] void Fail(const std::string& where, const std::string& what) const {
        throw std::runtime_error(file + ": " + where + ": " + what);
    }

    void OnlyKeys(const Json::Value& object, const std::string& where, std::initializer_list<const char*> keys) const {
        if (!object.isObject()) Fail(where, "expected an object");
        for (const std::string& name : object.getMemberNames()) {
            bool known = false;
            for (const char* key : keys) known = known || name == key;
            if (!known) Fail(where, "unknown key \"" + name + "\"");
        }
    }

    std::string Text(const Json::Value& value, const std::string& where) const {
        if (!value.isString()) Fail(where, "expected a string");
        return value.asString();
    }

    bool Flag(const Json::Value& value, const std::string& where) const {
        if (!value.isBool()) Fail(where, "expected true or false");
        return value.asBool();
    }

    DialogAnswer Dialog(const Json::Value& value, const std::string& where) const {
        OnlyKeys(value, where, {"choose", "press", "cancel"});
        DialogAnswer answer;
        if (value.isMember("choose")) {
            const Json::Value& choose = value["choose"];
            if (!choose.isArray()) Fail(where + ".choose", "expected an array of strings");
            for (Json::ArrayIndex i = 0; i < choose.size(); ++i)
                answer.choose.push_back(Text(choose[i], where + ".choose[" + std::to_string(i) + "]"));
        }
        if (value.isMember("press")) answer.press = Text(value["press"], where + ".press");
        if (value.isMember("cancel")) answer.cancel = Flag(value["cancel"], where + ".cancel");
        return answer;
    }

    void Read(const Json::Value& top, UserAnswers* answers) const {
        OnlyKeys(top, "top level", {"save", "dialogs", "cancelProgressAt"});
        if (top.isMember("save")) {
            const Json::Value& save = top["save"];
            OnlyKeys(save, "save", {"path", "cancel"});
            if (save.isMember("path")) answers->user.save.path = Text(save["path"], "save.path");
            if (save.isMember("cancel")) answers->user.save.cancel = Flag(save["cancel"], "save.cancel");
        }
        if (top.isMember("dialogs")) {
            const Json::Value& dialogs = top["dialogs"];
            if (!dialogs.isArray()) Fail("dialogs", "expected an array");
            for (Json::ArrayIndex i = 0; i < dialogs.size(); ++i)
                answers->user.dialogs.push_back(Dialog(dialogs[i], "dialogs[" + std::to_string(i) + "]"));
        }
        if (top.isMember("cancelProgressAt")) {
            const Json::Value& at = top["cancelProgressAt"];
            if (!at.isInt() || at.asInt() < 0 || at.asInt() > 100)
                Fail("cancelProgressAt", "expected a whole number from 0 to 100");
            answers->cancelProgressAt = at.asInt();
        }
    }
};

}  // namespace

bool ReadAnswers(const std::string& text, const std::string& sourceName, UserAnswers* answers, std::string* error) {
    Json::CharReaderBuilder builder;
    builder["rejectDupKeys"] = true;
    builder["allowComments"] = false;
    Json::Value top;
    std::string parseError;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    try {
        if (!reader->parse(text.data(), text.data() + text.size(), &top, &parseError)) {
            *error = sourceName + ": not valid JSON: " + parseError;
            return false;
        }
        AnswerReader{sourceName}.Read(top, answers);
    } catch (const Json::Exception& e) {  // the parser throws past its nesting bound
        *error = sourceName + ": not valid JSON: " + e.what();
        return false;
    } catch (const std::runtime_error& e) {
        *error = e.what();
        return false;
    }
    return true;
}

bool ReadAnswersFile(const std::string& path, UserAnswers* answers, std::string* error) {
    std::string text;
    if (!qae::files::ReadWholeFile(path, {kMaxAnswersBytes, "an answers file"}, &text, error)) return false;
    return ReadAnswers(text, path, answers, error);
}

}  // namespace aehost
