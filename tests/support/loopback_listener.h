#pragma once
// A TCP socket that listens on a port of the loopback address that the system chose, for
// tests of what a tool says about a port someone listens on. Once it is gone, its port is
// one that nobody listens on.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>

namespace qae_test {

struct LoopbackListener {
  LoopbackListener() {
    socketId = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bound = bind(socketId, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 && listen(socketId, 4) == 0;
    socklen_t size = sizeof(address);
    getsockname(socketId, reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
  }
  ~LoopbackListener() { close(socketId); }
  LoopbackListener(const LoopbackListener&) = delete;
  LoopbackListener& operator=(const LoopbackListener&) = delete;

  int socketId = -1;
  bool bound = false;
  uint16_t port = 0;
};

}  // namespace qae_test
