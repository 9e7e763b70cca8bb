// One back-end a kind of port. The otool_* functions validate the handle, keep the
// time-outs, state word and scrambling, and call the back-end for the bytes.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace posprint {

class PortBackend {
 public:
  virtual ~PortBackend() = default;
  // Bytes read within timeoutMs (see otool_READ for when it returns); -1: port failed.
  virtual int Read(char* buffer, int count, int timeoutMs) = 0;
  // Bytes accepted within timeoutMs; -1: port failed.
  virtual int Write(const char* buffer, int count, int timeoutMs) = 0;
  // Discards pending input; the count discarded, or -1.
  virtual int Purge() = 0;
  // Switches software flow control (XON/XOFF) on or off.
  virtual bool SetFlowControl(bool xonXoff) { (void)xonXoff; return true; }
  // False when closing failed.
  virtual bool Close() = 0;
};

// Makes a back-end for the text after the prefix, or null when it cannot be opened.
using PortFactory = std::function<std::unique_ptr<PortBackend>(const std::string& rest)>;

// Registers a kind of port under a name prefix such as "tcp:" (the empty prefix is the
// terminal-device fallback).
// A later registration of the same prefix replaces the earlier; a null factory removes
// the prefix. A name goes to the kind with the longest prefix that begins it.
void RegisterPortKind(const std::string& prefix, PortFactory factory);

}  // namespace posprint
