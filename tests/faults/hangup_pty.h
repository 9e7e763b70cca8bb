// A printer at the far end of a pseudo-terminal that can hang up: it answers by the
// model's rules (plain or scrambled, each burst apart so that every read of the driver
// takes one) until Hangup() closes its end; the driver's end then fails every read and
// write, as a serial line does when the cable is pulled.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/model_printers.h"

namespace posprint::test {

class HangupPty {
 public:
  explicit HangupPty(std::vector<PrinterRule> rules) : rules_(std::move(rules)) {
    char name[128] = {};
    if (::openpty(&master_, &slave_, name, nullptr, nullptr) != 0) {
      error_ = std::string("openpty: ") + std::strerror(errno);
      return;
    }
    termios raw{};
    ::tcgetattr(slave_, &raw);
    ::cfmakeraw(&raw);
    ::tcsetattr(slave_, TCSANOW, &raw);
    if (::pipe(wake_) != 0) {
      error_ = std::string("pipe: ") + std::strerror(errno);
      return;
    }
    portName_ = name;
    thread_ = std::thread([this] { Loop(); });
  }
  ~HangupPty() {
    Hangup();
    for (int fd : {wake_[0], wake_[1]})
      if (fd >= 0) ::close(fd);
  }
  HangupPty(const HangupPty&) = delete;
  HangupPty& operator=(const HangupPty&) = delete;

  bool Ok() const { return !portName_.empty(); }
  const std::string& Error() const { return error_; }
  const std::string& PortName() const { return portName_; }

  // Stops answering and closes the printer's end (and the spare slave descriptor that
  // kept the line up until the driver opened it).
  void Hangup() {
    if (thread_.joinable()) {
      const char stop = 1;
      (void)!::write(wake_[1], &stop, 1);
      thread_.join();
    }
    for (int* fd : {&master_, &slave_}) {
      if (*fd >= 0) ::close(*fd);
      *fd = -1;
    }
  }

 private:
  // Bursts are written this far apart, more than the port's inter-byte gap.
  static constexpr int kBurstGapMs = 50;

  void Loop() {
    for (;;) {
      pollfd fds[2] = {{master_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
      if (::poll(fds, 2, -1) < 0) {
        if (errno == EINTR) continue;
        return;
      }
      if (fds[1].revents) return;
      if (!(fds[0].revents & POLLIN)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));  // nobody on the line yet
        continue;
      }
      char buffer[512];
      const ssize_t n = ::read(master_, buffer, sizeof buffer);
      if (n <= 0) continue;
      line_.append(buffer, static_cast<std::size_t>(n));
      const std::vector<std::string> answers = AnswersTo(rules_, line_);
      for (std::size_t i = 0; i < answers.size(); ++i) {
        if (i > 0) std::this_thread::sleep_for(std::chrono::milliseconds(kBurstGapMs));
        (void)!::write(master_, answers[i].data(), answers[i].size());
      }
    }
  }

  std::vector<PrinterRule> rules_;
  int master_ = -1;
  int slave_ = -1;
  int wake_[2] = {-1, -1};
  std::string portName_;
  std::string error_;
  std::string line_;
  std::thread thread_;
};

}  // namespace posprint::test
