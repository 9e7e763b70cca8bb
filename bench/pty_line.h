// A printer at the far end of a pseudo-terminal that takes bytes no faster than a serial
// line of a given baud rate carries them (10 bits a byte: start, 8 data, stop), and
// answers status requests at once, the moment the request has crossed the line.
//
// The driver writes to the slave side (SlaveName()); a thread reads the master side. At
// a baud rate of 0 it reads as fast as the bytes come (a printer on a very fast line).
// The kernel buffers what the printer has not taken yet, as a serial port's driver does:
// the sender can run ahead of the line by that buffer, and the job is over when the last
// byte has crossed the line (LastByteTime()), not when the sender is done.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "printer_answers.h"

namespace posprint::bench {

class PtyLine {
 public:
  using Clock = std::chrono::steady_clock;

  // answers: what the printer answers to each status request (kept by the caller).
  PtyLine(long baud, const PrinterAnswers& answers);
  ~PtyLine();
  PtyLine(const PtyLine&) = delete;
  PtyLine& operator=(const PtyLine&) = delete;

  // Opens the pseudo-terminal and starts the printer's thread; false with a message.
  bool Start(std::string* error);
  void Stop();

  const std::string& SlaveName() const { return slaveName_; }
  std::uint64_t Received() const { return received_.load(); }
  // When the last byte received so far had crossed the line.
  Clock::time_point LastByteTime() const;
  // The spells when the line was carrying bytes (merged where they touch), in order.
  using Interval = std::pair<Clock::time_point, Clock::time_point>;
  std::vector<Interval> BusyIntervals() const;
  // Waits until `count` bytes were received or the line stayed quiet for quietMs.
  bool WaitForBytes(std::uint64_t count, int quietMs) const;

 private:
  void Loop();
  void Answer(unsigned char byte);

  long baud_;
  const PrinterAnswers& answers_;
  int master_ = -1;
  int slave_ = -1;  // kept open, so the driver's close never hangs the line up
  int wake_[2] = {-1, -1};
  std::string slaveName_;
  std::thread thread_;
  std::atomic<bool> stopping_{false};
  std::atomic<std::uint64_t> received_{0};
  mutable std::mutex mutex_;
  Clock::time_point lastByte_{};
  std::vector<Interval> busy_;
  // The last bytes received, to recognise a request.
  std::string tail_;
};

}  // namespace posprint::bench
