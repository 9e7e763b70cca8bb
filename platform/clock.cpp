// The clock every wait goes through, and the events the port functions take.
#include "platform/clock.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <thread>

namespace posprint {
namespace {

class SteadyClock : public Clock {
 public:
  void SleepMs(long ms) override {
    if (ms > 0) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
  }
  long long NowMs() override {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
  }
};

SteadyClock realClock;
std::atomic<Clock*> installed{nullptr};

}  // namespace

Clock& CurrentClock() {
  Clock* clock = installed.load();
  return clock ? *clock : realClock;
}

void SetClock(Clock* clock) { installed.store(clock); }

}  // namespace posprint

// Negative waits are treated as no wait.
void Sleep(unsigned long ms) { posprint::CurrentClock().SleepMs(static_cast<long>(ms)); }
void delay(int ms) { posprint::CurrentClock().SleepMs(ms < 0 ? 0 : ms); }
void otool_DELAY(long ms) { posprint::CurrentClock().SleepMs(ms < 0 ? 0 : ms); }

namespace {

// An event is only a token here: the port back-ends wait with their own means. Live
// events are registered so that closing a handle twice, or one that is no event, fails
// cleanly instead of freeing foreign memory.
struct Event {
  bool manualReset;
  bool signalled;
};

std::mutex eventsMutex;
std::set<void*>& LiveEvents() {
  static std::set<void*> events;
  return events;
}

}  // namespace

HANDLE CreateEventW(void* /*attributes*/, int manualReset, int initialState, const wchar_t* /*name*/) {
  Event* event = new Event{manualReset != 0, initialState != 0};
  std::lock_guard<std::mutex> lock(eventsMutex);
  LiveEvents().insert(event);
  return event;
}

int CloseHandle(HANDLE handle) {
  if (!handle) return 0;
  {
    std::lock_guard<std::mutex> lock(eventsMutex);
    if (LiveEvents().erase(handle) == 0) return 0;
  }
  delete static_cast<Event*>(handle);
  return 1;
}
