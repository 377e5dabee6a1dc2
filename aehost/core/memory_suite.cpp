#include "aehost/core/memory_suite.h"

#include <algorithm>
#include <cstring>
#include <iostream>

#include "aehost/core/host.h"
#include "aehost/core/suite_call.h"

namespace aehost {

namespace {

MemBlock* FindBlock(const char* call, AEGP_MemHandle memH, A_Err* err) {
    const std::uintptr_t value = HandleValue(memH);
    if (MemBlock* block = g_host.memory.Find(value)) return block;
    const bool freed = std::find(g_host.freedMemory.begin(), g_host.freedMemory.end(), value) !=
                       g_host.freedMemory.end();
    *err = Refuse(call, freed ? "memory handle already freed" : "not a memory handle");
    return nullptr;
}

// With reporting on (AEGP_SetMemReportingOn), every allocation and release
// is told on standard error.
void ReportMemory(const char* what, const MemBlock& block) {
    if (g_host.memReporting)
        std::cerr << "aehost: memory: " << what << " \"" << block.what << "\" of plug-in " << block.owner << ", "
                  << block.bytes.size() << " bytes\n";
}

A_Err NewMemHandle(AEGP_PluginID plugin_id, const A_char* whatZ, AEGP_MemSize size, AEGP_MemFlag flags,
                   AEGP_MemHandle* memPH) {
    return GuardCall("AEGP_NewMemHandle", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_NewMemHandle", memPH);
        *memPH = nullptr;
        MemBlock block;
        block.bytes.assign(size, (flags & AEGP_MemFlag_CLEAR) ? 0 : static_cast<char>(0xCD));
        block.owner = plugin_id;
        block.what = whatZ ? whatZ : "";
        ReportMemory("new", block);
        *memPH = MakeHandle<AEGP_MemHandle>(g_host.memory.Add(std::move(block)));
        return A_Err_NONE;
    });
}

A_Err FreeMemHandle(AEGP_MemHandle memH) {
    return GuardCall("AEGP_FreeMemHandle", [&]() -> A_Err {
        A_Err err = A_Err_NONE;
        MemBlock* block = FindBlock("AEGP_FreeMemHandle", memH, &err);
        if (!block) return err;
        if (block->locks > 0) Refuse("AEGP_FreeMemHandle", "memory handle \"" + block->what + "\" freed while locked");
        ReportMemory("free", *block);
        g_host.memory.Remove(HandleValue(memH));
        g_host.freedMemory.push_back(HandleValue(memH));
        return A_Err_NONE;
    });
}

A_Err LockMemHandle(AEGP_MemHandle memH, void** ptr_to_ptr) {
    return GuardCall("AEGP_LockMemHandle", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_LockMemHandle", ptr_to_ptr);
        *ptr_to_ptr = nullptr;
        A_Err err = A_Err_NONE;
        MemBlock* block = FindBlock("AEGP_LockMemHandle", memH, &err);
        if (!block) return err;
        ++block->locks;
        *ptr_to_ptr = block->bytes.data();
        return A_Err_NONE;
    });
}

A_Err UnlockMemHandle(AEGP_MemHandle memH) {
    return GuardCall("AEGP_UnlockMemHandle", [&]() -> A_Err {
        A_Err err = A_Err_NONE;
        MemBlock* block = FindBlock("AEGP_UnlockMemHandle", memH, &err);
        if (!block) return err;
        if (block->locks == 0) return Refuse("AEGP_UnlockMemHandle", "memory handle is not locked");
        --block->locks;
        return A_Err_NONE;
    });
}

A_Err GetMemHandleSize(AEGP_MemHandle memH, AEGP_MemSize* sizeP) {
    return GuardCall("AEGP_GetMemHandleSize", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AEGP_GetMemHandleSize", sizeP);
        A_Err err = A_Err_NONE;
        MemBlock* block = FindBlock("AEGP_GetMemHandleSize", memH, &err);
        if (!block) return err;
        *sizeP = static_cast<AEGP_MemSize>(block->bytes.size());
        return A_Err_NONE;
    });
}

A_Err ResizeMemHandle(const A_char* whatZ, AEGP_MemSize new_size, AEGP_MemHandle memH) {
    return GuardCall("AEGP_ResizeMemHandle", [&]() -> A_Err {
        A_Err err = A_Err_NONE;
        MemBlock* block = FindBlock("AEGP_ResizeMemHandle", memH, &err);
        if (!block) return err;
        if (block->locks > 0) return Refuse("AEGP_ResizeMemHandle", "memory handle is locked");
        block->bytes.resize(new_size, 0);
        if (whatZ) block->what = whatZ;
        return A_Err_NONE;
    });
}

A_Err SetMemReportingOn(A_Boolean turn_OnB) {
    g_host.memReporting = turn_OnB != 0;
    return A_Err_NONE;
}

A_Err GetMemStats(AEGP_PluginID plugin_id, A_long* countP, A_long* sizeP) {
    return GuardCall("AEGP_GetMemStats", [&]() -> A_Err {
        A_long count = 0;
        A_long size = 0;
        for (const auto& [handle, block] : g_host.memory.Entries()) {
            if (block.owner != plugin_id) continue;
            ++count;
            size += static_cast<A_long>(block.bytes.size());
        }
        if (countP) *countP = count;
        if (sizeP) *sizeP = size;
        return A_Err_NONE;
    });
}

const AEGP_MemorySuite1 g_memorySuite = {NewMemHandle,     FreeMemHandle,     LockMemHandle,
                                         UnlockMemHandle,  GetMemHandleSize,  ResizeMemHandle,
                                         SetMemReportingOn, GetMemStats};

AEGP_MemHandle NewHandleWithBytes(AEGP_PluginID owner, const char* what, const void* data, std::size_t size) {
    MemBlock block;
    block.bytes.assign(static_cast<const char*>(data), static_cast<const char*>(data) + size);
    block.owner = owner;
    block.what = what;
    ReportMemory("new", block);
    return MakeHandle<AEGP_MemHandle>(g_host.memory.Add(std::move(block)));
}

}  // namespace

const AEGP_MemorySuite1* MemorySuite() { return &g_memorySuite; }

AEGP_MemHandle NewTextHandle(AEGP_PluginID owner, const std::u16string& text) {
    return NewHandleWithBytes(owner, "host UTF-16 text", text.c_str(), (text.size() + 1) * sizeof(char16_t));
}

AEGP_MemHandle NewBytesHandle(AEGP_PluginID owner, const std::string& text) {
    return NewHandleWithBytes(owner, "host UTF-8 text", text.c_str(), text.size() + 1);
}

std::vector<std::string> MemoryLeaks() {
    std::vector<std::string> lines;
    for (const auto& [handle, block] : g_host.memory.Entries()) {
        std::string line = "memory handle \"" + block.what + "\" of plug-in " + std::to_string(block.owner) +
                           " (" + std::to_string(block.bytes.size()) + " bytes) was never freed";
        if (block.locks > 0) line += " and is still locked";
        lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace aehost
