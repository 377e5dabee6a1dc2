#include "plugin/session/port_test.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

bool IsPortFree(uint16_t port, bool* addressFree) {
  *addressFree = true;
  const int socketId = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  // Without a socket nothing can be learnt; the port counts as free.
  if (socketId < 0) return true;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  errno = 0;
  const int connected = connect(socketId, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
  if (connected == -1 && errno == EADDRINUSE) *addressFree = false;
  close(socketId);
  return connected == -1;
}

std::string MakeLoopbackAddress(uint16_t port) { return "127.0.0.1:" + std::to_string(port); }
