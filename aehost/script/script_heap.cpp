#include "aehost/script/script_heap.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace aehost {

void RunPrelude(duk_context* ctx, const char* name, const char* source,
                const std::vector<NativeEntry>& natives) {
    duk_push_string(ctx, name);
    if (duk_pcompile_string_filename(ctx, DUK_COMPILE_FUNCTION, source) != 0) {
        const std::string why = duk_safe_to_string(ctx, -1);
        duk_pop(ctx);
        throw std::runtime_error(std::string(name) + ": " + why);
    }
    duk_push_object(ctx);
    for (const NativeEntry& native : natives) {
        duk_push_c_function(ctx, native.function, native.nargs);
        duk_put_prop_string(ctx, -2, native.name);
    }
    duk_push_global_object(ctx);
    if (duk_pcall(ctx, 2) != DUK_EXEC_SUCCESS) {
        const std::string why = duk_safe_to_string(ctx, -1);
        duk_pop(ctx);
        throw std::runtime_error(std::string(name) + ": " + why);
    }
    duk_pop(ctx);
}

bool ReadFileBytes(const std::string& path, std::string* bytes) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream all;
    all << in.rdbuf();
    *bytes = all.str();
    return static_cast<bool>(in) || in.eof();
}

duk_ret_t ReportLine(duk_context* ctx) {
    ScriptContext& context = ContextOf(ctx);
    if (context.report) context.report(ArgText(ctx, 0));
    duk_push_undefined(ctx);
    return 1;
}

duk_ret_t ThrowPending(duk_context* ctx) { return duk_throw(ctx); }

std::string ToUtf8(const char* text, std::size_t length) {
    std::string out;
    out.reserve(length);
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    for (std::size_t i = 0; i < length; ++i) {
        // A high and a low surrogate, each as three bytes, make one code point of four.
        if (i + 5 < length && bytes[i] == 0xED && (bytes[i + 1] & 0xF0) == 0xA0 &&
            bytes[i + 3] == 0xED && (bytes[i + 4] & 0xF0) == 0xB0) {
            const unsigned high = ((bytes[i + 1] & 0x0F) << 6) | (bytes[i + 2] & 0x3F);
            const unsigned low = ((bytes[i + 4] & 0x0F) << 6) | (bytes[i + 5] & 0x3F);
            const unsigned cp = 0x10000 + (high << 10) + low;
            out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
            i += 5;
            continue;
        }
        out.push_back(static_cast<char>(bytes[i]));
    }
    return out;
}

std::string ArgText(duk_context* ctx, duk_idx_t index) {
    if (duk_is_number(ctx, index)) {
        duk_dup(ctx, index);
        std::string text = duk_to_string(ctx, -1);
        duk_pop(ctx);
        return text;
    }
    if (!duk_is_string(ctx, index)) return {};
    duk_size_t length = 0;
    const char* text = duk_get_lstring(ctx, index, &length);
    return ToUtf8(text, length);
}

void PushText(duk_context* ctx, const std::string& text) {
    duk_push_lstring(ctx, text.data(), text.size());
}

}  // namespace aehost
