// The port functions: a table of open ports, each a back-end plus the settings that
// belong to the line whatever carries it (time-outs, the state word, scrambling).
#include "platform/otool.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/diagnostics.h"
#include "platform/nx_string.h"
#include "platform/port_kinds.h"

namespace posprint {
namespace {

// Until a driver sets them, reads and writes give up after one second.
constexpr int kDefaultTimeoutMs = 1000;

// At most this many ports are open at once in one process; a terminal drives a handful.
constexpr int kMaxOpenPorts = 1024;

enum SlotState : int { kFree = 0, kOpening, kOpen };

// One slot a handle. Slots last as long as the process, so a call reaches its port without
// a table lock or a reference count: with a hundred writes a ticket, those would cost more
// than the driver's own work. The slot's lock keeps one call at a time on the port, and a
// call through a handle whose port was closed finds the slot not open. Every member starts
// as zero, so the table needs no initialising: the defaults are set when a port opens.
struct OpenPort {
  std::unique_ptr<PortBackend> backend;
  int readTimeoutMs;
  int writeTimeoutMs;
  int stateWord;
  unsigned char scrambleKey;  // 0: plain line
  std::mutex mutex;           // one call at a time on one port
  std::atomic<int> state;     // SlotState
};

OpenPort slots[kMaxOpenPorts];

// The port behind a handle, locked for one call; false when the handle names no open port.
class LockedPort {
 public:
  explicit LockedPort(int handle) {
    if (handle < 0 || handle >= kMaxOpenPorts) return;
    OpenPort& slot = slots[handle];
    lock_ = std::unique_lock<std::mutex>(slot.mutex);
    if (slot.state.load(std::memory_order_acquire) == kOpen) port_ = &slot;
  }
  explicit operator bool() const { return port_ != nullptr; }
  OpenPort* operator->() const { return port_; }
  OpenPort& operator*() const { return *port_; }

 private:
  std::unique_lock<std::mutex> lock_;
  OpenPort* port_ = nullptr;
};

// Puts the back-end in a free slot; its handle, or -1 when every slot is taken.
int Insert(std::unique_ptr<PortBackend> backend) {
  for (int handle = 0; handle < kMaxOpenPorts; ++handle) {
    OpenPort& slot = slots[handle];
    int expected = kFree;
    if (!slot.state.compare_exchange_strong(expected, kOpening)) continue;
    std::lock_guard<std::mutex> lock(slot.mutex);
    slot.backend = std::move(backend);
    slot.readTimeoutMs = kDefaultTimeoutMs;
    slot.writeTimeoutMs = kDefaultTimeoutMs;
    slot.stateWord = 0;
    slot.scrambleKey = 0;
    slot.state.store(kOpen, std::memory_order_release);
    return handle;
  }
  return -1;
}

// Under the slot's lock: the port is gone, the slot free for the next one.
void Release(OpenPort& port) {
  port.backend.reset();
  port.state.store(kFree, std::memory_order_release);
}

int SetState(OpenPort& port, int word) {
  const bool xonXoff = (word & kPortStateXonXoff) != 0;
  if (!port.backend->SetFlowControl(xonXoff)) return -1;
  port.stateWord = word;
  return 0;
}

// The requests that hand the port a number: the value form, or the int behind a pointer.
int SetRequest(OpenPort& port, int request, int value) {
  switch (request) {
    case kPortSetInputBuffer:
      return 0;
    case kPortSetReadTimeout:
      if (value < 0) return -1;
      port.readTimeoutMs = value;
      return 0;
    case kPortSetWriteTimeout:
      if (value < 0) return -1;
      port.writeTimeoutMs = value;
      return 0;
    case kPortPurge:
      return port.backend->Purge();
    case kPortSetState:
      return SetState(port, value);
    case kPortScramble:
      port.scrambleKey = static_cast<unsigned char>(value & 0xFF);
      return 0;
    default:
      return -1;
  }
}

// The requests that hand a number back through an int*.
bool IsGetRequest(int request) {
  return request == kPortGetReadTimeout || request == kPortGetWriteTimeout ||
         request == kPortGetState;
}

int GetRequest(const OpenPort& port, int request, int* out) {
  switch (request) {
    case kPortGetReadTimeout: *out = port.readTimeoutMs; return 0;
    case kPortGetWriteTimeout: *out = port.writeTimeoutMs; return 0;
    case kPortGetState: *out = port.stateWord; return 0;
    default: return -1;
  }
}

void Scramble(char* bytes, int count, unsigned char key) {
  for (int i = 0; i < count; ++i) bytes[i] = static_cast<char>(bytes[i] ^ key);
}

}  // namespace
}  // namespace posprint

using posprint::LockedPort;

int otool_OPEN(const wchar_t* name, int mode, void* event) {
  (void)mode;   // ports are always opened for reading and writing
  (void)event;  // nothing here signals asynchronously: reads and writes block
  if (name == nullptr) return -1;
  auto backend = posprint::OpenPortBackend(Nx_Stringa(name).ToUtf8());
  if (!backend) return -1;
  return posprint::Insert(std::move(backend));
}

int otool_READ(int handle, char* buffer, int count) {
  LockedPort port(handle);
  if (!port || buffer == nullptr || count < 0) return -1;
  const int got = port->backend->Read(buffer, count, port->readTimeoutMs);
  if (got > 0 && port->scrambleKey != 0) posprint::Scramble(buffer, got, port->scrambleKey);
  return got;
}

int otool_WRITE(int handle, const char* buffer, int count) {
  LockedPort port(handle);
  if (!port || (buffer == nullptr && count != 0) || count < 0) return -1;
  int written;
  if (port->scrambleKey == 0 || count == 0) {
    written = port->backend->Write(buffer, count, port->writeTimeoutMs);
  } else {
    std::string line(buffer, static_cast<std::size_t>(count));
    posprint::Scramble(line.data(), count, port->scrambleKey);
    written = port->backend->Write(line.data(), count, port->writeTimeoutMs);
  }
  posprint::NoteBytesWritten(written);
  return written;
}

int otool_IOCTL(int handle, int request, int value) {
  LockedPort port(handle);
  if (!port) return -1;
  return posprint::SetRequest(*port, request, value);
}

int otool_IOCTL(int handle, int request, void* data) {
  LockedPort port(handle);
  if (!port) return -1;
  if (posprint::IsGetRequest(request)) {
    if (data == nullptr) return -1;
    return posprint::GetRequest(*port, request, static_cast<int*>(data));
  }
  // A set request through a plain pointer: the record is only read.
  if (data == nullptr) return request == kPortPurge || request == kPortSetInputBuffer
                                  ? posprint::SetRequest(*port, request, 0)
                                  : -1;
  return posprint::SetRequest(*port, request, *static_cast<const int*>(data));
}

int otool_IOCTL(int handle, int request, const void* data) {
  LockedPort port(handle);
  if (!port) return -1;
  if (posprint::IsGetRequest(request)) return -1;  // nowhere to put the answer
  if (data == nullptr) return request == kPortPurge || request == kPortSetInputBuffer
                                  ? posprint::SetRequest(*port, request, 0)
                                  : -1;
  return posprint::SetRequest(*port, request, *static_cast<const int*>(data));
}

int otool_CLOSE(int handle) {
  LockedPort port(handle);
  if (!port) return 0;
  // A port that failed to close keeps its handle: the caller still holds an open port
  // and may try again.
  if (!port->backend->Close()) return 0;
  posprint::Release(*port);
  return 1;
}
