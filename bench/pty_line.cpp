#include "pty_line.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace posprint::bench {
namespace {

// Longer than any status request.
constexpr std::size_t kTailBytes = 16;

void SleepUntil(PtyLine::Clock::time_point when) {
  const auto since = when.time_since_epoch();
  timespec ts{};
  ts.tv_sec = static_cast<time_t>(std::chrono::duration_cast<std::chrono::seconds>(since).count());
  ts.tv_nsec = static_cast<long>((since - std::chrono::seconds(ts.tv_sec)).count());
  // steady_clock is CLOCK_MONOTONIC on Linux.
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &ts, nullptr) == EINTR) {
  }
}

void WriteAll(int fd, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t n = ::write(fd, bytes, count);
    if (n <= 0) return;
    bytes += n;
    count -= static_cast<std::size_t>(n);
  }
}

}  // namespace

PtyLine::PtyLine(long baud, const PrinterAnswers& answers) : baud_(baud), answers_(answers) {}

PtyLine::~PtyLine() { Stop(); }

bool PtyLine::Start(std::string* error) {
  master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) {
    if (error) *error = std::string("no pseudo-terminal: ") + std::strerror(errno);
    return false;
  }
  slaveName_ = ::ptsname(master_);
  slave_ = ::open(slaveName_.c_str(), O_RDWR | O_NOCTTY);
  termios settings{};
  if (slave_ < 0 || ::tcgetattr(slave_, &settings) != 0) {
    if (error) *error = "cannot open " + slaveName_;
    return false;
  }
  ::cfmakeraw(&settings);
  ::tcsetattr(slave_, TCSANOW, &settings);
  if (::pipe(wake_) != 0) {
    if (error) *error = "no pipe";
    return false;
  }
  thread_ = std::thread([this] { Loop(); });
  return true;
}

void PtyLine::Stop() {
  if (thread_.joinable()) {
    stopping_ = true;
    const char byte = 0;
    (void)::write(wake_[1], &byte, 1);
    thread_.join();
  }
  for (int* fd : {&master_, &slave_, &wake_[0], &wake_[1]}) {
    if (*fd >= 0) ::close(*fd);
    *fd = -1;
  }
}

PtyLine::Clock::time_point PtyLine::LastByteTime() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return lastByte_;
}

std::vector<PtyLine::Interval> PtyLine::BusyIntervals() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return busy_;
}

bool PtyLine::WaitForBytes(std::uint64_t count, int quietMs) const {
  std::uint64_t seen = received_.load();
  auto quietSince = Clock::now();
  while (seen < count) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const std::uint64_t now = received_.load();
    if (now != seen) {
      seen = now;
      quietSince = Clock::now();
    } else if (Clock::now() - quietSince > std::chrono::milliseconds(quietMs)) {
      return false;
    }
  }
  return true;
}

void PtyLine::Answer(unsigned char byte) {
  if (tail_.size() == kTailBytes) tail_.erase(0, 1);
  tail_ += static_cast<char>(byte);
  std::string answer;
  if (AnswerOnLine(answers_, tail_, answer)) {
    WriteAll(master_, answer.data(), answer.size());
    tail_.clear();  // a request is answered once
  }
}

// The line carries one byte every 10 / baud seconds. The printer reads about a
// millisecond's worth at a time and sleeps until those bytes have crossed the line; while
// bytes keep waiting the line stays busy and the schedule runs on without gaps, and
// after a quiet spell it starts again from the moment the next byte arrives.
void PtyLine::Loop() {
  const auto byteTime = std::chrono::nanoseconds(baud_ > 0 ? 10'000'000'000LL / baud_ : 0);
  const std::size_t chunk = baud_ > 0 ? std::max<std::size_t>(1, static_cast<std::size_t>(baud_ / 10 / 1000)) : 4096;
  Clock::time_point wireFree = Clock::now();
  char buffer[4096];
  while (!stopping_) {
    pollfd fds[2] = {{master_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
    int ready = ::poll(fds, 2, 0);
    const bool waiting = ready > 0 && (fds[0].revents & POLLIN);
    if (!waiting) {
      ready = ::poll(fds, 2, -1);
      if (ready < 0 && errno == EINTR) continue;
      if (ready <= 0 || (fds[1].revents & POLLIN)) break;
      if (!(fds[0].revents & POLLIN)) break;
      wireFree = Clock::now();  // the line was quiet: these bytes start now
    }
    const ssize_t n = ::read(master_, buffer, std::min(chunk, sizeof buffer));
    if (n < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (n <= 0) break;
    const Clock::time_point chunkStart = wireFree;
    wireFree += byteTime * n;
    if (baud_ > 0) SleepUntil(wireFree);
    {
      std::lock_guard<std::mutex> lock(mutex_);
      lastByte_ = baud_ > 0 ? wireFree : Clock::now();
      if (!busy_.empty() && chunkStart <= busy_.back().second) {
        busy_.back().second = wireFree;
      } else {
        busy_.emplace_back(chunkStart, wireFree);
      }
    }
    for (ssize_t i = 0; i < n; ++i) Answer(static_cast<unsigned char>(buffer[i]));
    received_ += static_cast<std::uint64_t>(n);
  }
}

}  // namespace posprint::bench
