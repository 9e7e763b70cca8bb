// "tcp:HOST:PORT": a raw TCP stream, as network printers offer on port 9100.
// HOST is a name or an address; an IPv6 address goes in brackets: "tcp:[::1]:9100".
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/fd_io.h"
#include "platform/port_kinds.h"

namespace posprint {
namespace {

// How long the connection may take to come up, for each address the name resolves to.
constexpr int kConnectTimeoutMs = 3000;

class TcpPort : public FdPort {
 public:
  explicit TcpPort(int fd) : FdPort(fd, true) {}

  // A TCP stream has its own flow control: the XON/XOFF bit is only remembered.
  bool SetFlowControl(bool) override { return fd_ >= 0; }
};

bool SplitHostPort(const std::string& text, std::string& host, std::string& port) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string::npos || colon == 0 || colon + 1 == text.size()) return false;
  host = text.substr(0, colon);
  port = text.substr(colon + 1);
  if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
    host = host.substr(1, host.size() - 2);
  }
  return !host.empty() && port.find_first_not_of("0123456789") == std::string::npos;
}

int ConnectWithTimeout(const addrinfo& address) {
  const int fd = ::socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC,
                          address.ai_protocol);
  if (fd < 0) return -1;
  int r = ::connect(fd, address.ai_addr, address.ai_addrlen);
  if (r != 0 && errno == EINPROGRESS) {
    pollfd p{fd, POLLOUT, 0};
    do {
      r = ::poll(&p, 1, kConnectTimeoutMs);
    } while (r < 0 && errno == EINTR);
    int error = 0;
    socklen_t length = sizeof error;
    r = (r == 1 && ::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) == 0 && error == 0)
            ? 0
            : -1;
  }
  if (r != 0) {
    ::close(fd);
    return -1;
  }
  // Status requests are a few bytes each: send them at once, not coalesced.
  const int on = 1;
  ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return fd;
}

}  // namespace

std::unique_ptr<PortBackend> OpenTcpPort(const std::string& hostAndPort) {
  std::string host, port;
  if (!SplitHostPort(hostAndPort, host, port)) return nullptr;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), port.c_str(), &hints, &found) != 0) return nullptr;
  int fd = -1;
  for (addrinfo* a = found; a != nullptr && fd < 0; a = a->ai_next) fd = ConnectWithTimeout(*a);
  ::freeaddrinfo(found);
  if (fd < 0) return nullptr;
  return std::make_unique<TcpPort>(fd);
}

}  // namespace posprint
