// The in-memory port behind "script:N". Nothing here waits: a delayed answer is simply
// not there yet for a read whose time-out is shorter than the delay still to run.
#include "platform/scripted_port.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <string>

#include "platform/port_kinds.h"

namespace posprint {
namespace {

// Live scripted ports by number. A back-end looks its port up on every call, so a port
// destroyed while a handle is still open makes that handle fail instead of dangling.
struct LivePorts {
  std::mutex mutex;
  std::map<int, ScriptedPort*> byNumber;
  int nextNumber = 1;
};

// Built on first use: a test may make a ScriptedPort from a static initialiser.
LivePorts& Live() {
  static LivePorts live;
  return live;
}

ScriptedPort* Lookup(int number) {
  LivePorts& live = Live();
  std::lock_guard<std::mutex> lock(live.mutex);
  auto it = live.byNumber.find(number);
  return it == live.byNumber.end() ? nullptr : it->second;
}

class ScriptedBackend : public PortBackend {
 public:
  explicit ScriptedBackend(int number) : number_(number) {}

  int Read(char* buffer, int count, int timeoutMs) override {
    ScriptedPort* port = Lookup(number_);
    if (port == nullptr) return -1;
    ++port->reads_;
    if (port->vanished_) return -1;
    if (port->answers_.empty() || count <= 0) return 0;
    ScriptedPort::Pending& next = port->answers_.front();
    if (next.delayMs > timeoutMs) {
      // Still on its way: this read times out, and the wait counts towards the delay.
      next.delayMs -= timeoutMs;
      return 0;
    }
    const int taken = std::min(count, static_cast<int>(next.bytes.size()));
    std::copy(next.bytes.begin(), next.bytes.begin() + taken, buffer);
    next.bytes.erase(0, static_cast<std::size_t>(taken));
    next.delayMs = 0;  // the rest of the burst has arrived with its start
    if (next.bytes.empty()) port->answers_.pop_front();
    return taken;
  }

  int Write(const char* buffer, int count, int timeoutMs) override {
    (void)timeoutMs;
    ScriptedPort* port = Lookup(number_);
    if (port == nullptr) return -1;
    ++port->writeCount_;
    if (port->vanished_) return -1;
    int accepted = count;
    if (port->writeCount_ == port->shortWriteAt_) accepted = std::clamp(port->shortAccepted_, 0, count);
    const std::string line(buffer, static_cast<std::size_t>(accepted));
    port->written_ += line;
    port->writes_.push_back(line);
    if (port->responder_ && accepted > 0) {
      // A copy: the responder may replace itself.
      auto responder = port->responder_;
      responder(*port, line);
    }
    return accepted;
  }

  int Purge() override {
    ScriptedPort* port = Lookup(number_);
    if (port == nullptr || port->vanished_) return -1;
    ++port->purges_;
    // Only answers that have arrived are discarded; delayed ones are still on their way.
    int discarded = 0;
    auto& answers = port->answers_;
    for (auto it = answers.begin(); it != answers.end();) {
      if (it->delayMs <= 0) {
        discarded += static_cast<int>(it->bytes.size());
        it = answers.erase(it);
      } else {
        ++it;
      }
    }
    return discarded;
  }

  bool SetFlowControl(bool xonXoff) override {
    ScriptedPort* port = Lookup(number_);
    if (port == nullptr) return false;
    port->xonXoff_ = xonXoff;
    return true;
  }

  bool Close() override {
    ScriptedPort* port = Lookup(number_);
    if (port == nullptr || closed_) return true;
    if (port->failClose_) return false;
    port->open_ = false;
    port->xonXoff_ = false;
    closed_ = true;
    return true;
  }

 private:
  int number_;
  bool closed_ = false;
};

}  // namespace

std::unique_ptr<PortBackend> OpenScriptedPort(const std::string& number) {
  if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos ||
      number.size() > 9) {
    return nullptr;
  }
  const int n = std::stoi(number);
  ScriptedPort* port = Lookup(n);
  if (port == nullptr || port->failOpen_) return nullptr;
  port->open_ = true;
  ++port->opens_;
  return std::make_unique<ScriptedBackend>(n);
}

ScriptedPort::ScriptedPort() {
  LivePorts& live = Live();
  std::lock_guard<std::mutex> lock(live.mutex);
  const int number = live.nextNumber++;
  live.byNumber[number] = this;
  name_ = L"script:" + std::to_wstring(number);
}

ScriptedPort::~ScriptedPort() {
  LivePorts& live = Live();
  std::lock_guard<std::mutex> lock(live.mutex);
  for (auto it = live.byNumber.begin(); it != live.byNumber.end(); ++it) {
    if (it->second == this) {
      live.byNumber.erase(it);
      break;
    }
  }
}

void ScriptedPort::Answer(const std::string& bytes, int delayMs) {
  if (bytes.empty()) return;  // an empty burst would be a read of nothing: not an answer
  answers_.push_back(Pending{bytes, std::max(0, delayMs)});
}

void ScriptedPort::OnWrite(std::function<void(ScriptedPort&, const std::string&)> responder) {
  responder_ = std::move(responder);
}

}  // namespace posprint
