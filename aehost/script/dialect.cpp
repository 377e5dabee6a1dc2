#include "aehost/script/dialect.h"

#include <cctype>
#include <cstring>

namespace aehost {
namespace {

// Includes may include; a file that includes itself must end with an error.
constexpr int kMaxIncludeDepth = 16;

struct Lexer {
    const std::string& in;
    const IncludeReader& include;
    int depth;
    std::string* out;
    std::string* error;
    std::size_t pos = 0;
    int line = 1;
    // What the last significant token was decides whether a "/" starts a
    // regular expression or is a division.
    bool regexAllowed = true;

    char At(std::size_t i) const { return i < in.size() ? in[i] : '\0'; }

    bool Fail(const std::string& what) {
        *error = "line " + std::to_string(line) + ": " + what;
        return false;
    }

    void Copy(std::size_t end) {
        for (std::size_t i = pos; i < end && i < in.size(); ++i) {
            if (in[i] == '\n') ++line;
        }
        out->append(in, pos, end - pos);
        pos = end;
    }

    bool Run();
    bool AtLineStart() const;
    bool Directive(std::size_t nameStart, std::size_t lineEnd);
    bool Include(const std::string& name);
    bool TripleQuoted();
    void Quoted(char quote);
    void LineComment();
    bool BlockComment();
    void Regex();
    void Word();
};

bool Lexer::AtLineStart() const {
    for (std::size_t i = pos; i > 0; --i) {
        const char c = in[i - 1];
        if (c == '\n') return true;
        if (c != ' ' && c != '\t' && c != '\r') return false;
    }
    return true;
}

// The quoted file name of a directive, between double or single quotes.
bool QuotedName(const std::string& text, std::string* name) {
    const std::size_t open = text.find_first_of("\"'");
    if (open == std::string::npos) return false;
    const std::size_t close = text.find(text[open], open + 1);
    if (close == std::string::npos) return false;
    *name = text.substr(open + 1, close - open - 1);
    return !name->empty();
}

bool Lexer::Include(const std::string& name) {
    if (depth >= kMaxIncludeDepth) return Fail("includes nested too deeply at \"" + name + "\"");
    std::string text;
    std::string why;
    if (!include || !include(name, &text, &why)) {
        return Fail("cannot include \"" + name + "\"" + (why.empty() ? "" : ": " + why));
    }
    Lexer inner{text, include, depth + 1, out, &why};
    if (!inner.Run()) return Fail("in \"" + name + "\": " + why);
    out->push_back('\n');
    return true;
}

bool Lexer::Directive(std::size_t nameStart, std::size_t lineEnd) {
    std::size_t nameEnd = nameStart;
    while (nameEnd < lineEnd && std::isalpha(static_cast<unsigned char>(in[nameEnd]))) ++nameEnd;
    const std::string name = in.substr(nameStart, nameEnd - nameStart);
    const std::string rest = in.substr(nameEnd, lineEnd - nameEnd);
    pos = lineEnd;
    if (name == "include" || name == "includepath") {
        std::string file;
        if (!QuotedName(rest, &file)) return Fail("#" + name + " needs a quoted file name");
        return name == "include" ? Include(file) : true;
    }
    static const char* const kDropped[] = {"target", "targetengine", "strict", "script", "engine"};
    for (const char* dropped : kDropped) {
        if (name == dropped) return true;
    }
    return Fail("unknown directive #" + name);
}

// Writes the literal text between """ and """ as one JavaScript string literal.
bool Lexer::TripleQuoted() {
    const std::size_t start = pos + 3;
    const std::size_t end = in.find("\"\"\"", start);
    if (end == std::string::npos) return Fail("triple-quoted string is not closed");
    int lineEnds = 0;
    out->push_back('"');
    for (std::size_t i = start; i < end; ++i) {
        const char c = in[i];
        switch (c) {
            case '\\': out->append("\\\\"); break;
            case '"': out->append("\\\""); break;
            case '\n': out->append("\\n"); ++lineEnds; break;
            case '\r': out->append("\\r"); break;
            case '\t': out->append("\\t"); break;
            default: out->push_back(c);
        }
    }
    out->push_back('"');
    out->append(lineEnds, '\n');
    line += lineEnds;
    pos = end + 3;
    regexAllowed = false;
    return true;
}

void Lexer::Quoted(char quote) {
    std::size_t i = pos + 1;
    while (i < in.size() && in[i] != quote && in[i] != '\n') i += in[i] == '\\' ? 2 : 1;
    Copy(i < in.size() ? i + 1 : in.size());
    regexAllowed = false;
}

void Lexer::LineComment() {
    const std::size_t end = std::min(in.find('\n', pos), in.size());
    Copy(end);
}

bool Lexer::BlockComment() {
    const std::size_t end = in.find("*/", pos + 2);
    if (end == std::string::npos) return Fail("comment is not closed");
    Copy(end + 2);
    return true;
}

void Lexer::Regex() {
    std::size_t i = pos + 1;
    bool inClass = false;
    while (i < in.size() && in[i] != '\n') {
        const char c = in[i];
        if (c == '\\') {
            i += 2;
            continue;
        }
        if (c == '[') inClass = true;
        else if (c == ']') inClass = false;
        else if (c == '/' && !inClass) break;
        ++i;
    }
    ++i;
    while (i < in.size() && std::isalpha(static_cast<unsigned char>(in[i]))) ++i;
    Copy(std::min(i, in.size()));
    regexAllowed = false;
}

bool IsWordChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '$' ||
           (static_cast<unsigned char>(c) & 0x80) != 0;
}

// After these words an expression starts, so a "/" begins a regular expression.
bool WordBeforeExpression(const std::string& word) {
    static const char* const kWords[] = {"return", "typeof", "instanceof", "in", "new", "delete",
                                         "void", "throw", "case", "do", "else"};
    for (const char* w : kWords) {
        if (word == w) return true;
    }
    return false;
}

void Lexer::Word() {
    std::size_t end = pos;
    while (end < in.size() && (IsWordChar(in[end]) || (in[end] == '.' && std::isdigit(static_cast<unsigned char>(in[pos]))))) ++end;
    const std::string word = in.substr(pos, end - pos);
    Copy(end);
    regexAllowed = WordBeforeExpression(word);
}

bool Lexer::Run() {
    while (pos < in.size()) {
        const char c = in[pos];
        if (c == '#' && AtLineStart()) {
            if (!Directive(pos + 1, std::min(in.find('\n', pos), in.size()))) return false;
        } else if (c == '/' && At(pos + 1) == '/') {
            if (in.compare(pos, 10, "//@include") == 0 && AtLineStart()) {
                if (!Directive(pos + 3, std::min(in.find('\n', pos), in.size()))) return false;
            } else {
                LineComment();
            }
        } else if (c == '/' && At(pos + 1) == '*') {
            if (!BlockComment()) return false;
        } else if (c == '/' && regexAllowed) {
            Regex();
        } else if (c == '"' && At(pos + 1) == '"' && At(pos + 2) == '"') {
            if (!TripleQuoted()) return false;
        } else if (c == '"' || c == '\'') {
            Quoted(c);
        } else if (IsWordChar(c)) {
            Word();
        } else {
            Copy(pos + 1);
            if (!std::isspace(static_cast<unsigned char>(c))) {
                regexAllowed = std::strchr(")]}", c) == nullptr;
            }
        }
    }
    return true;
}

}  // namespace

bool TranslateDialect(const std::string& source, const IncludeReader& include, std::string* out,
                      std::string* error) {
    out->clear();
    out->reserve(source.size() + 16);
    std::string why;
    Lexer lexer{source, include, 0, out, &why};
    if (lexer.Run()) return true;
    if (error) *error = why;
    return false;
}

}  // namespace aehost
