// Reading and writing a non-blocking file descriptor the way a printer line needs it:
// shared by the terminal-device and TCP back-ends.
#pragma once

#include <unistd.h>

#include <utility>

#include "platform/port_backend.h"

namespace posprint {

// Waits for up to count bytes: returns when count arrived, when data has started and the
// line then stayed quiet for kPortInterByteGapMs, or at timeoutMs with what arrived.
// -1 when the far end is gone (hang-up, I/O error, end of stream) before any byte came.
int ReadWithGap(int fd, char* buffer, int count, int timeoutMs);

// Writes until every byte was accepted or timeoutMs passed; returns the count accepted
// (short only on a time-out or a failure after some bytes), -1 when nothing could be
// written because the far end is gone. `socket` sends without raising SIGPIPE.
int WriteAll(int fd, const char* buffer, int count, int timeoutMs, bool socket);

// Discards input that has arrived but was not read; the count discarded, or -1.
int DiscardPendingInput(int fd, bool terminal);

// A back-end over one file descriptor (a terminal device or a socket): reads end at the
// inter-byte gap, writes go on until every byte is taken. Kinds differ in how they purge
// and in flow control.
class FdPort : public PortBackend {
 public:
  FdPort(int fd, bool socket) : fd_(fd), socket_(socket) {}
  ~FdPort() override { Close(); }

  int Read(char* buffer, int count, int timeoutMs) override {
    return fd_ < 0 ? -1 : ReadWithGap(fd_, buffer, count, timeoutMs);
  }
  int Write(const char* buffer, int count, int timeoutMs) override {
    return fd_ < 0 ? -1 : WriteAll(fd_, buffer, count, timeoutMs, socket_);
  }
  int Purge() override { return fd_ < 0 ? -1 : DiscardPendingInput(fd_, !socket_); }
  bool Close() override {
    if (fd_ < 0) return true;
    const int fd = std::exchange(fd_, -1);
    return ::close(fd) == 0;
  }

 protected:
  int fd_;

 private:
  bool socket_;
};

}  // namespace posprint
