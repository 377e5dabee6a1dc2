// Every suite function runs its body through GuardCall, so that no C++
// exception ever crosses back into a plug-in, and so that what the host
// remembers of the project is forgotten around a call that may change it.
#pragma once

#include <exception>
#include <new>

#include "aehost/core/host.h"
#include "aehost/core/model_handles.h"

namespace aehost {

template <class Body>
A_Err RunBody(const char* call, Body&& body) noexcept {
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

template <class Body>
A_Err GuardCall(const char* call, Body&& body) noexcept {
    if (IsReadingCall(call)) return RunBody(call, body);
    ForgetModelLookups();
    const A_Err err = RunBody(call, body);
    ForgetModelLookups();
    return err;
}

// Refuses a null output pointer.
#define AEHOST_REQUIRE_OUT(call, ptr) \
    if (!(ptr)) return Refuse(call, "null output pointer " #ptr)

}  // namespace aehost
