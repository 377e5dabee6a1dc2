// Tables of the handles the host gives out. A handle is a number that was
// never given before, so a disposed handle is never confused with a live one:
// looking it up fails, and the suite returns an error instead of touching
// freed memory. The low bits carry the table's kind, so that a handle of one
// kind passed where another is expected is refused too.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

namespace aehost {

enum class HandleKind : std::uintptr_t {
    Item = 1,
    Comp = 2,
    Layer = 3,
    Project = 4,
    Footage = 5,
    Stream = 6,
    Memory = 7,
    Marker = 8,
    AddKeyframes = 9,
    Progress = 10,
    Blob = 11,
    TextDocument = 12,
    Mask = 13,
    Outline = 14,  // outline values and the segment lengths prepared on them
    Shape = 15,    // evaluated shapes, their items, outline lists and identities
};

constexpr int kHandleKindBits = 4;

// Handles named by a model id (items, layers) are stable: the same object
// always gets the same handle, so that the plug-in may compare them.
constexpr std::uintptr_t IdHandle(HandleKind kind, int id) {
    return ((static_cast<std::uintptr_t>(id) + 1) << kHandleKindBits) | static_cast<std::uintptr_t>(kind);
}

// The id of an id handle of this kind, or -1 when the value is not one.
constexpr long IdOfHandle(HandleKind kind, std::uintptr_t handle) {
    if (handle == 0 || (handle & ((1u << kHandleKindBits) - 1)) != static_cast<std::uintptr_t>(kind)) return -1;
    return static_cast<long>(handle >> kHandleKindBits) - 1;
}

std::uintptr_t NextHandleSerial();

// Handles of objects that the plug-in disposes (streams, memory, markers...).
template <class T>
class HandleTable {
public:
    explicit HandleTable(HandleKind kind) : kind_(kind) {}

    std::uintptr_t Add(T value) {
        const std::uintptr_t handle = (NextHandleSerial() << kHandleKindBits) | static_cast<std::uintptr_t>(kind_);
        entries_.emplace(handle, std::move(value));
        return handle;
    }
    T* Find(std::uintptr_t handle) {
        auto it = entries_.find(handle);
        return it == entries_.end() ? nullptr : &it->second;
    }
    bool Remove(std::uintptr_t handle) { return entries_.erase(handle) == 1; }
    const std::map<std::uintptr_t, T>& Entries() const { return entries_; }
    void Clear() { entries_.clear(); }

private:
    HandleKind kind_;
    std::map<std::uintptr_t, T> entries_;
};

template <class H>
std::uintptr_t HandleValue(H handle) {
    return reinterpret_cast<std::uintptr_t>(handle);
}

template <class H>
H MakeHandle(std::uintptr_t value) {
    return reinterpret_cast<H>(value);
}

}  // namespace aehost
