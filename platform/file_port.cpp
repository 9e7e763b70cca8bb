// "file:PATH": the printer's bytes captured in a file (created or emptied at open).
// Nothing ever answers, so reads return at once with nothing.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/port_kinds.h"

namespace posprint {
namespace {

class FilePort : public PortBackend {
 public:
  explicit FilePort(int fd) : fd_(fd) {}
  ~FilePort() override { Close(); }

  int Read(char*, int, int) override { return fd_ < 0 ? -1 : 0; }

  int Write(const char* buffer, int count, int) override {
    if (fd_ < 0) return -1;
    int done = 0;
    while (done < count) {
      const ssize_t n = ::write(fd_, buffer + done, static_cast<size_t>(count - done));
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) return done > 0 ? done : -1;  // disk full or I/O error
      done += static_cast<int>(n);
    }
    return done;
  }

  int Purge() override { return fd_ < 0 ? -1 : 0; }

  bool Close() override {
    if (fd_ < 0) return true;
    const int fd = fd_;
    fd_ = -1;
    return ::close(fd) == 0;
  }

 private:
  int fd_;
};

}  // namespace

std::unique_ptr<PortBackend> OpenFilePort(const std::string& path) {
  if (path.empty()) return nullptr;
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return nullptr;
  return std::make_unique<FilePort>(fd);
}

}  // namespace posprint
