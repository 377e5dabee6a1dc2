#include "aehost/core/host.h"

#include <iostream>

#include "aehost/core/progress.h"

namespace aehost {

Host g_host;

namespace {
std::uintptr_t g_handleSerial = 0;
}

std::uintptr_t NextHandleSerial() { return ++g_handleSerial; }

void ResetHost() { g_host = Host{}; }

void ShowMessage(const std::string& text) {
    g_host.transcript.push_back(text);
    EndProgressLine();
    std::cerr << text << '\n';
}

A_Err Refuse(const char* call, const std::string& why, A_Err err) {
    std::string line = std::string(call) + ": " + why;
    EndProgressLine();
    std::cerr << "aehost: " << line << '\n';
    g_host.misuse.push_back(std::move(line));
    return err;
}

}  // namespace aehost
