// The port functions: a table of open ports, each a back-end plus the settings that
// belong to the line whatever carries it (time-outs, the state word, scrambling).
#include "platform/otool.h"

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

struct OpenPort {
  std::unique_ptr<PortBackend> backend;
  int readTimeoutMs = kDefaultTimeoutMs;
  int writeTimeoutMs = kDefaultTimeoutMs;
  int stateWord = 0;
  unsigned char scrambleKey = 0;  // 0: plain line
  std::mutex mutex;               // one call at a time on one port
};

std::mutex tableMutex;
std::vector<std::shared_ptr<OpenPort>> table;

std::shared_ptr<OpenPort> Find(int handle) {
  std::lock_guard<std::mutex> lock(tableMutex);
  if (handle < 0 || static_cast<std::size_t>(handle) >= table.size()) return nullptr;
  return table[handle];
}

int Insert(std::shared_ptr<OpenPort> port) {
  std::lock_guard<std::mutex> lock(tableMutex);
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (!table[i]) {
      table[i] = std::move(port);
      return static_cast<int>(i);
    }
  }
  table.push_back(std::move(port));
  return static_cast<int>(table.size() - 1);
}

void Remove(int handle, const std::shared_ptr<OpenPort>& port) {
  std::lock_guard<std::mutex> lock(tableMutex);
  if (table[handle] == port) table[handle].reset();
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

using posprint::Find;
using posprint::OpenPort;

int otool_OPEN(const wchar_t* name, int mode, void* event) {
  (void)mode;   // ports are always opened for reading and writing
  (void)event;  // nothing here signals asynchronously: reads and writes block
  if (name == nullptr) return -1;
  auto backend = posprint::OpenPortBackend(Nx_Stringa(name).ToUtf8());
  if (!backend) return -1;
  auto port = std::make_shared<OpenPort>();
  port->backend = std::move(backend);
  return posprint::Insert(std::move(port));
}

int otool_READ(int handle, char* buffer, int count) {
  auto port = Find(handle);
  if (!port || buffer == nullptr || count < 0) return -1;
  std::lock_guard<std::mutex> lock(port->mutex);
  const int got = port->backend->Read(buffer, count, port->readTimeoutMs);
  if (got > 0 && port->scrambleKey != 0) posprint::Scramble(buffer, got, port->scrambleKey);
  return got;
}

int otool_WRITE(int handle, const char* buffer, int count) {
  auto port = Find(handle);
  if (!port || (buffer == nullptr && count != 0) || count < 0) return -1;
  std::lock_guard<std::mutex> lock(port->mutex);
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
  auto port = Find(handle);
  if (!port) return -1;
  std::lock_guard<std::mutex> lock(port->mutex);
  return posprint::SetRequest(*port, request, value);
}

int otool_IOCTL(int handle, int request, void* data) {
  auto port = Find(handle);
  if (!port) return -1;
  std::lock_guard<std::mutex> lock(port->mutex);
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
  auto port = Find(handle);
  if (!port) return -1;
  std::lock_guard<std::mutex> lock(port->mutex);
  if (posprint::IsGetRequest(request)) return -1;  // nowhere to put the answer
  if (data == nullptr) return request == kPortPurge || request == kPortSetInputBuffer
                                  ? posprint::SetRequest(*port, request, 0)
                                  : -1;
  return posprint::SetRequest(*port, request, *static_cast<const int*>(data));
}

int otool_CLOSE(int handle) {
  auto port = Find(handle);
  if (!port) return 0;
  std::lock_guard<std::mutex> lock(port->mutex);
  // A port that failed to close keeps its handle: the caller still holds an open port
  // and may try again.
  if (!port->backend->Close()) return 0;
  posprint::Remove(handle, port);
  return 1;
}
