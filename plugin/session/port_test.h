#pragma once
// Whether anyone accepts TCP connections on a port of the local machine.
#include <cstdint>
#include <string>

// True when a connection to 127.0.0.1:`port` is refused, that is when nobody listens there.
// `addressFree` turns false only when the system said that the address is in use.
bool IsPortFree(uint16_t port, bool* addressFree);

// "127.0.0.1:" and the port in decimal.
std::string MakeLoopbackAddress(uint16_t port);
