// The footage suite: files, sequences and solids behind footage items.
#include <cctype>

#include "aehost/core/memory_suite.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/utf16.h"

namespace aehost {

namespace {

// The file of frame `frame` of a sequence: the last run of digits in the
// first file's name counts up, keeping its width ("shot_0009.png", frame 2:
// "shot_0011.png").
std::string SequenceFile(const std::string& first, int frame) {
    const std::size_t slash = first.find_last_of('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    std::size_t end = first.size();
    while (end > nameStart && !std::isdigit(static_cast<unsigned char>(first[end - 1]))) --end;
    std::size_t begin = end;
    while (begin > nameStart && std::isdigit(static_cast<unsigned char>(first[begin - 1]))) --begin;
    if (begin == end) return first;
    const std::string digits = first.substr(begin, end - begin);
    std::string number = std::to_string(std::stoll(digits) + frame);
    if (number.size() < digits.size()) number.insert(0, digits.size() - number.size(), '0');
    return first.substr(0, begin) + number + first.substr(end);
}

// A four-character code from the file's extension, as the host names the
// importer that reads it ("png" gives "PNG ").
AEGP_FootageSignature ExtensionSignature(const std::string& path) {
    const std::size_t dot = path.find_last_of('.');
    std::string ext = dot == std::string::npos ? std::string() : path.substr(dot + 1);
    ext.resize(4, ' ');
    AEGP_FootageSignature sig = 0;
    for (char c : ext) sig = (sig << 8) | static_cast<unsigned char>(std::toupper(static_cast<unsigned char>(c)));
    return sig;
}

A_Err GetMainFootageFromItem(AEGP_ItemH itemH, AEGP_FootageH* footagePH) {
    return GuardCall("AEGP_GetMainFootageFromItem", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetMainFootageFromItem", footagePH);
        *footagePH = nullptr;
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetMainFootageFromItem", itemH, &item)) return err;
        if (item->kind != ItemKind::Footage) return Refuse("AEGP_GetMainFootageFromItem", "item is not footage");
        *footagePH = FootageHandle(*item);
        return A_Err_NONE;
    });
}

A_Err GetFootageNumFiles(AEGP_FootageH footageH, A_long* num_main_filesPL0, A_long* files_per_framePL0) {
    return GuardCall("AEGP_GetFootageNumFiles", [&]() -> A_Err {
        Item* item = nullptr;
        if (A_Err err = ResolveFootage("AEGP_GetFootageNumFiles", footageH, &item)) return err;
        const bool solid = item->footage.kind == FootageKind::Solid;
        if (num_main_filesPL0) *num_main_filesPL0 = solid ? 0 : item->footage.fileCount;
        if (files_per_framePL0) *files_per_framePL0 = solid ? 0 : 1;
        return A_Err_NONE;
    });
}

A_Err GetFootagePath(AEGP_PluginID plugin_id, AEGP_FootageH footageH, A_long frame_num, A_long file_index,
                     AEGP_MemHandle* unicode_pathPH) {
    return GuardCall("AEGP_GetFootagePath", [&]() -> A_Err {
        const char* call = "AEGP_GetFootagePath";
        AEHOST_REQUIRE_OUT(call, unicode_pathPH);
        *unicode_pathPH = nullptr;
        Item* item = nullptr;
        if (A_Err err = ResolveFootage(call, footageH, &item)) return err;
        const Footage& footage = item->footage;
        if (footage.kind == FootageKind::Solid) return Refuse(call, "a solid has no file");
        if (file_index != 0 || frame_num < 0 || frame_num >= footage.fileCount)
            return Refuse(call, "frame or file index out of range");
        const std::string path = footage.kind == FootageKind::Sequence ? SequenceFile(footage.path, frame_num)
                                                                       : footage.path;
        *unicode_pathPH = NewTextHandle(plugin_id, Utf8ToUtf16(path));
        return A_Err_NONE;
    });
}

A_Err GetFootageSignature(AEGP_FootageH footageH, AEGP_FootageSignature* sigP) {
    return GuardCall("AEGP_GetFootageSignature", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetFootageSignature", sigP);
        Item* item = nullptr;
        if (A_Err err = ResolveFootage("AEGP_GetFootageSignature", footageH, &item)) return err;
        if (item->footage.kind == FootageKind::Solid)
            *sigP = AEGP_FootageSignature_SOLID;
        else if (item->footage.path.empty())
            *sigP = AEGP_FootageSignature_MISSING;
        else
            *sigP = ExtensionSignature(item->footage.path);
        return A_Err_NONE;
    });
}

A_Err GetSolidFootageColor(AEGP_ItemH itemH, A_Boolean, AEGP_ColorVal* colorP) {
    return GuardCall("AEGP_GetSolidFootageColor", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetSolidFootageColor", colorP);
        Item* item = nullptr;
        if (A_Err err = ResolveItem("AEGP_GetSolidFootageColor", itemH, &item)) return err;
        if (item->kind != ItemKind::Footage || item->footage.kind != FootageKind::Solid)
            return Refuse("AEGP_GetSolidFootageColor", "item is not a solid");
        const Value& c = item->footage.color;
        *colorP = AEGP_ColorVal{c[3], c[0], c[1], c[2]};
        return A_Err_NONE;
    });
}

const AEGP_FootageSuite11 g_footageSuite = {GetMainFootageFromItem, GetFootageNumFiles, GetFootagePath,
                                            GetFootageSignature, GetSolidFootageColor};

}  // namespace

const AEGP_FootageSuite11* FootageSuite() { return &g_footageSuite; }

}  // namespace aehost
