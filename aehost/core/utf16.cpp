#include "aehost/core/utf16.h"

#include <cstdint>

namespace aehost {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Decodes one UTF-8 sequence at text[i], advancing i; malformed input gives
// the replacement character and skips one byte.
char32_t DecodeUtf8(const std::string& text, std::size_t& i) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = byte(i);
    int extra = 0;
    char32_t code = 0;
    if (lead < 0x80) {
        ++i;
        return lead;
    } else if ((lead & 0xE0) == 0xC0) {
        extra = 1;
        code = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        extra = 2;
        code = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        extra = 3;
        code = lead & 0x07;
    } else {
        ++i;
        return kReplacement;
    }
    if (i + extra >= text.size()) {
        ++i;
        return kReplacement;
    }
    for (int k = 1; k <= extra; ++k) {
        const unsigned char next = byte(i + k);
        if ((next & 0xC0) != 0x80) {
            ++i;
            return kReplacement;
        }
        code = (code << 6) | (next & 0x3F);
    }
    i += extra + 1;
    if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return kReplacement;
    return code;
}

void AppendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

}  // namespace

std::u16string Utf8ToUtf16(const std::string& text) {
    std::u16string out;
    std::size_t i = 0;
    while (i < text.size()) {
        const char32_t code = DecodeUtf8(text, i);
        if (code >= 0x10000) {
            out += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            out += static_cast<char16_t>(code);
        }
    }
    return out;
}

std::string Utf16ToUtf8(const std::u16string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else if (unit >= 0xD800 && unit <= 0xDFFF) {
            AppendUtf8(out, kReplacement);
        } else {
            AppendUtf8(out, unit);
        }
    }
    return out;
}

std::string Utf16zToUtf8(const A_UTF16Char* text) {
    if (!text) return {};
    std::u16string units;
    while (*text) units += static_cast<char16_t>(*text++);
    return Utf16ToUtf8(units);
}

std::string Cp1252ToUtf8(const std::string& text) {
    // The bytes 0x80..0x9F that differ from Latin-1; 0 marks the unassigned ones.
    static const char16_t kHigh[32] = {
        0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    std::string out;
    for (unsigned char c : text) {
        char32_t code = c;
        if (c >= 0x80 && c <= 0x9F) code = kHigh[c - 0x80] ? kHigh[c - 0x80] : kReplacement;
        AppendUtf8(out, code);
    }
    return out;
}

}  // namespace aehost
