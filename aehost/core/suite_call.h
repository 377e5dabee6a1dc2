// Every suite function runs its body through GuardCall, so that no C++
// exception ever crosses back into a plug-in.
#pragma once

#include <exception>
#include <new>

#include "aehost/core/host.h"

namespace aehost {

template <class Body>
A_Err GuardCall(const char* call, Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return A_Err_ALLOC;
    } catch (const std::exception& e) {
        return Refuse(call, e.what(), A_Err_GENERIC);
    } catch (...) {
        return Refuse(call, "unexpected failure", A_Err_GENERIC);
    }
}

// Refuses a null output pointer.
#define AEHOST_REQUIRE_OUT(call, ptr) \
    if (!(ptr)) return Refuse(call, "null output pointer " #ptr)

}  // namespace aehost
