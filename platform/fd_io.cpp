#include "platform/fd_io.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "platform/otool.h"

namespace posprint {
namespace {

using Steady = std::chrono::steady_clock;

int MsUntil(Steady::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Steady::now());
  return static_cast<int>(std::max<long long>(0, left.count()));
}

// poll() for one event; 1 ready, 0 timed out, -1 hang-up or error on the descriptor.
int WaitFor(int fd, short event, int timeoutMs) {
  pollfd p{fd, event, 0};
  for (;;) {
    const int r = ::poll(&p, 1, timeoutMs);
    if (r < 0 && errno == EINTR) continue;
    if (r < 0) return -1;
    if (r == 0) return 0;
    if (p.revents & event) return 1;  // data first: a hang-up after it is seen on the next read
    return -1;                        // POLLHUP, POLLERR or POLLNVAL alone
  }
}

}  // namespace

int ReadWithGap(int fd, char* buffer, int count, int timeoutMs) {
  const auto deadline = Steady::now() + std::chrono::milliseconds(timeoutMs);
  int got = 0;
  while (got < count) {
    const int left = MsUntil(deadline);
    const int wait = got == 0 ? left : std::min(left, kPortInterByteGapMs);
    const int ready = WaitFor(fd, POLLIN, wait);
    if (ready == 0) break;
    if (ready < 0) return got > 0 ? got : -1;
    const ssize_t n = ::read(fd, buffer + got, static_cast<size_t>(count - got));
    if (n > 0) {
      got += static_cast<int>(n);
    } else if (n < 0 && (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK)) {
      continue;
    } else {
      return got > 0 ? got : -1;  // end of stream (peer closed) or I/O error (unplugged)
    }
  }
  return got;
}

int WriteAll(int fd, const char* buffer, int count, int timeoutMs, bool socket) {
  const auto deadline = Steady::now() + std::chrono::milliseconds(timeoutMs);
  int done = 0;
  while (done < count) {
    const size_t size = static_cast<size_t>(count - done);
    const ssize_t n = socket ? ::send(fd, buffer + done, size, MSG_NOSIGNAL)
                             : ::write(fd, buffer + done, size);
    if (n > 0) {
      done += static_cast<int>(n);
      continue;
    }
    if (n < 0 && errno == EINTR) continue;
    if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK) return done > 0 ? done : -1;
    // The line is full (or held by XOFF): wait until it takes more, or give up.
    const int ready = WaitFor(fd, POLLOUT, MsUntil(deadline));
    if (ready == 0) break;
    if (ready < 0) return done > 0 ? done : -1;
  }
  return done;
}

int DiscardPendingInput(int fd, bool terminal) {
  int pending = 0;
  if (::ioctl(fd, FIONREAD, &pending) < 0) return -1;
  if (terminal) return ::tcflush(fd, TCIFLUSH) == 0 ? pending : -1;
  // A socket has no flush: read the bytes away.
  int discarded = 0;
  char sink[512];
  while (discarded < pending) {
    const ssize_t n = ::recv(fd, sink, sizeof sink, MSG_DONTWAIT);
    if (n <= 0) break;
    discarded += static_cast<int>(n);
  }
  return discarded;
}

}  // namespace posprint
