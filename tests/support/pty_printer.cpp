#include "support/pty_printer.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>

namespace posprint::test {

bool EndsWith(const std::string& text, const std::string& suffix) {
  return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

PtyPrinter::Responder AnswerRequests(std::vector<std::pair<std::string, std::string>> rules) {
  return [rules = std::move(rules)](const std::string& received) -> std::string {
    for (const auto& [request, answer] : rules) {
      if (!request.empty() && EndsWith(received, request)) return answer;
    }
    return "";
  };
}

PtyPrinter::PtyPrinter() : PtyPrinter(Responder()) {}

PtyPrinter::PtyPrinter(Responder responder) : responder_(std::move(responder)) {
  termios raw {};
  ::cfmakeraw(&raw);
  char name[128] = {};
  if (::openpty(&master_, &slave_, name, &raw, nullptr) != 0) {
    error_ = std::string("openpty: ") + std::strerror(errno);
    return;
  }
  if (::pipe2(wake_, O_CLOEXEC | O_NONBLOCK) != 0) {
    error_ = std::string("pipe: ") + std::strerror(errno);
    return;
  }
  // A spawned driver process must not inherit the printer's side of the line.
  ::fcntl(master_, F_SETFD, FD_CLOEXEC);
  ::fcntl(slave_, F_SETFD, FD_CLOEXEC);
  ::fcntl(master_, F_SETFL, ::fcntl(master_, F_GETFL) | O_NONBLOCK);
  portName_ = name;
  thread_ = std::thread([this] { Loop(); });
}

PtyPrinter::~PtyPrinter() {
  Stop();
  for (int fd : {master_, slave_, wake_[0], wake_[1]}) {
    if (fd >= 0) ::close(fd);
  }
}

void PtyPrinter::Stop() {
  stopping_.store(true);
  if (wake_[1] >= 0) {
    const char byte = 0;
    (void)!::write(wake_[1], &byte, 1);
  }
  if (thread_.joinable()) thread_.join();
}

void PtyPrinter::Hangup() {
  Stop();
  for (int* fd : {&master_, &slave_}) {
    if (*fd >= 0) ::close(*fd);
    *fd = -1;
  }
}

void PtyPrinter::SetResponder(Responder responder) {
  std::lock_guard<std::mutex> lock(mutex_);
  responder_ = std::move(responder);
}

std::string PtyPrinter::Received() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return received_;
}

std::string PtyPrinter::Line() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return line_;
}

bool PtyPrinter::WaitForBytes(std::size_t count, int timeoutMs) const {
  std::unique_lock<std::mutex> lock(mutex_);
  return arrived_.wait_for(lock, std::chrono::milliseconds(timeoutMs), [&] { return received_.size() >= count; });
}

void PtyPrinter::Send(const std::string& bytes) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    const int key = key_.load();
    for (char c : bytes) pending_ += static_cast<char>(c ^ key);
  }
  if (wake_[1] >= 0) {
    const char byte = 1;
    (void)!::write(wake_[1], &byte, 1);
  }
}

// Each byte is descrambled with the key in force when it arrives, so a key switched by
// the responder applies exactly from the byte after the one that caused it.
void PtyPrinter::Take(const char* bytes, std::size_t count) {
  std::lock_guard<std::mutex> lock(mutex_);
  for (std::size_t i = 0; i < count; ++i) {
    line_ += bytes[i];
    received_ += static_cast<char>(bytes[i] ^ key_.load());
    if (!responder_) continue;
    const std::string answer = responder_(received_);
    const int key = key_.load();
    for (char c : answer) pending_ += static_cast<char>(c ^ key);
  }
  arrived_.notify_all();
}

// Writes what it can of the queued answers without blocking.
void PtyPrinter::Flush() {
  std::lock_guard<std::mutex> lock(mutex_);
  while (!pending_.empty()) {
    const ssize_t n = ::write(master_, pending_.data(), pending_.size());
    if (n <= 0) return;  // full (EAGAIN) or gone: try again on the next round
    pending_.erase(0, static_cast<std::size_t>(n));
  }
}

void PtyPrinter::Loop() {
  char buffer[4096];
  while (!stopping_.load()) {
    bool wantWrite;
    {
      std::lock_guard<std::mutex> lock(mutex_);
      wantWrite = !pending_.empty();
    }
    pollfd fds[2] = {{master_, static_cast<short>(POLLIN | (wantWrite ? POLLOUT : 0)), 0}, {wake_[0], POLLIN, 0}};
    // The time-out only bounds how long a full line can stall an answer.
    if (::poll(fds, 2, 50) < 0 && errno != EINTR) return;
    if (fds[1].revents & POLLIN) {
      while (::read(wake_[0], buffer, sizeof buffer) > 0) {
      }
    }
    if (fds[0].revents & POLLIN) {
      const ssize_t n = ::read(master_, buffer, sizeof buffer);
      if (n > 0) Take(buffer, static_cast<std::size_t>(n));
    }
    Flush();
  }
  // What the host wrote just before it exited may still be on the line: take it too, so
  // that a test which stops the printer right after the host ends sees every byte.
  for (;;) {
    pollfd fd = {master_, POLLIN, 0};
    if (::poll(&fd, 1, 0) <= 0 || !(fd.revents & POLLIN)) break;
    const ssize_t n = ::read(master_, buffer, sizeof buffer);
    if (n <= 0) break;
    Take(buffer, static_cast<std::size_t>(n));
  }
}

}  // namespace posprint::test
