// Waits and events. Every wait a driver makes goes through one replaceable clock,
// so tests run without waiting for real.
#pragma once

namespace posprint {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual void SleepMs(long ms) = 0;
  virtual long long NowMs() = 0;
};

// The clock in force; a real (steady) clock unless a test installed another.
Clock& CurrentClock();
// Installs clock (not owned); nullptr restores the real clock.
void SetClock(Clock* clock);

// A clock that never waits: it records each wait and advances its own time.
class FakeClock : public Clock {
 public:
  void SleepMs(long ms) override { slept_ += ms; now_ += ms; ++waits_; }
  long long NowMs() override { return now_; }
  long TotalSleptMs() const { return slept_; }
  int Waits() const { return waits_; }

 private:
  long slept_ = 0;
  long long now_ = 0;
  int waits_ = 0;
};

// Installs a clock for the lifetime of the object.
class ScopedClock {
 public:
  explicit ScopedClock(Clock& clock) { SetClock(&clock); }
  ~ScopedClock() { SetClock(nullptr); }
  ScopedClock(const ScopedClock&) = delete;
  ScopedClock& operator=(const ScopedClock&) = delete;
};

}  // namespace posprint

using HANDLE = void*;

// Framework wait functions, all in milliseconds.
void Sleep(unsigned long ms);
void delay(int ms);
void otool_DELAY(long ms);

// Events: the port functions take one per open port.
HANDLE CreateEventW(void* attributes, int manualReset, int initialState, const wchar_t* name);
int CloseHandle(HANDLE handle);
