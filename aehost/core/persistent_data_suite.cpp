// The persistent data suite over the host's preferences: one application
// blob of sections and keys, kept for the life of the host.
#include <algorithm>
#include <charconv>
#include <cstring>

#include "aehost/core/host.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"

namespace aehost {

namespace {

const std::uintptr_t kApplicationBlob = IdHandle(HandleKind::Blob, 0);

A_Err CheckBlob(const char* call, AEGP_PersistentBlobH blobH, const A_char* section, const A_char* key) {
    if (HandleValue(blobH) != kApplicationBlob) return Refuse(call, "not a preferences blob");
    if (!section || !key) return Refuse(call, "null section or key");
    return A_Err_NONE;
}

const std::string* FindValue(const A_char* section, const A_char* key) {
    auto s = g_host.preferences.find(section);
    if (s == g_host.preferences.end()) return nullptr;
    auto k = s->second.find(key);
    return k == s->second.end() ? nullptr : &k->second;
}

A_Err GetApplicationBlob(AEGP_PersistentBlobH* blobPH) {
    return GuardCall("AEGP_GetApplicationBlob", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetApplicationBlob", blobPH);
        *blobPH = MakeHandle<AEGP_PersistentBlobH>(kApplicationBlob);
        return A_Err_NONE;
    });
}

A_Err DoesKeyExist(AEGP_PersistentBlobH blobH, const A_char* section, const A_char* key, A_Boolean* existsPB) {
    return GuardCall("AEGP_DoesKeyExist", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_DoesKeyExist", existsPB);
        if (A_Err err = CheckBlob("AEGP_DoesKeyExist", blobH, section, key)) return err;
        *existsPB = FindValue(section, key) != nullptr;
        return A_Err_NONE;
    });
}

A_Err GetString(AEGP_PersistentBlobH blobH, const A_char* section, const A_char* key, const A_char* defaultZ0,
                A_u_long buf_size, A_char* bufZ, A_u_long* actual_buf_sizeP0) {
    return GuardCall("AEGP_GetString", [&]() -> A_Err {
        if (A_Err err = CheckBlob("AEGP_GetString", blobH, section, key)) return err;
        const std::string* stored = FindValue(section, key);
        const std::string value = stored ? *stored : std::string(defaultZ0 ? defaultZ0 : "");
        if (actual_buf_sizeP0) *actual_buf_sizeP0 = static_cast<A_u_long>(value.size() + 1);
        if (buf_size == 0) return A_Err_NONE;
        if (!bufZ) return Refuse("AEGP_GetString", "null buffer with a size");
        const std::size_t n = std::min<std::size_t>(value.size(), buf_size - 1);
        std::memcpy(bufZ, value.data(), n);
        bufZ[n] = '\0';
        return A_Err_NONE;
    });
}

A_Err SetString(AEGP_PersistentBlobH blobH, const A_char* section, const A_char* key, const A_char* valueZ) {
    return GuardCall("AEGP_SetString", [&]() -> A_Err {
        if (A_Err err = CheckBlob("AEGP_SetString", blobH, section, key)) return err;
        if (!valueZ) return Refuse("AEGP_SetString", "null value");
        g_host.preferences[section][key] = valueZ;
        return A_Err_NONE;
    });
}

A_Err GetLong(AEGP_PersistentBlobH blobH, const A_char* section, const A_char* key, A_long defaultL, A_long* valueP) {
    return GuardCall("AEGP_GetLong", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetLong", valueP);
        if (A_Err err = CheckBlob("AEGP_GetLong", blobH, section, key)) return err;
        const std::string* stored = FindValue(section, key);
        if (!stored) {
            *valueP = defaultL;
            return A_Err_NONE;
        }
        // Preferences come from a file the user may have edited: a text that is no 32-bit
        // whole number is refused rather than read as a part of it.
        const char* end = stored->data() + stored->size();
        A_long value = 0;
        const auto [stop, problem] = std::from_chars(stored->data(), end, value);
        if (problem != std::errc() || stop != end)
            return Refuse("AEGP_GetLong", "the preference \"" + std::string(section) + "\", \"" + key + "\" holds \"" +
                                              *stored + "\", not a 32-bit whole number");
        *valueP = value;
        return A_Err_NONE;
    });
}

A_Err SetLong(AEGP_PersistentBlobH blobH, const A_char* section, const A_char* key, A_long value) {
    return GuardCall("AEGP_SetLong", [&]() -> A_Err {
        if (A_Err err = CheckBlob("AEGP_SetLong", blobH, section, key)) return err;
        g_host.preferences[section][key] = std::to_string(value);
        return A_Err_NONE;
    });
}

A_Err DeleteEntry(AEGP_PersistentBlobH blobH, const A_char* section, const A_char* key) {
    return GuardCall("AEGP_DeleteEntry", [&]() -> A_Err {
        if (A_Err err = CheckBlob("AEGP_DeleteEntry", blobH, section, key)) return err;
        auto s = g_host.preferences.find(section);
        if (s != g_host.preferences.end()) s->second.erase(key);
        return A_Err_NONE;
    });
}

const AEGP_PersistentDataSuite3 g_persistentDataSuite = {GetApplicationBlob, DoesKeyExist, GetString, SetString,
                                                         GetLong,            SetLong,      DeleteEntry};

}  // namespace

const AEGP_PersistentDataSuite3* PersistentDataSuite() { return &g_persistentDataSuite; }

}  // namespace aehost
