// Test helpers: bytes written out as hex, and a port context on a scripted port.
#pragma once

#include <string>

#include "frame/port_context.h"
#include "platform/scripted_port.h"

namespace posprint::test {

// "1B 40 0A" -> the three bytes. Spaces are optional between bytes.
std::string Hex(const std::string& hex);
// The bytes as "1B 40 0A" (upper case, one space between bytes; "" for none).
std::string ToHex(const std::string& bytes);

// A port context open on a scripted port: terminator CR LF, 42 characters a line.
struct ScriptedContext {
  ScriptedContext();
  ~ScriptedContext();
  ScriptedContext(const ScriptedContext&) = delete;
  ScriptedContext& operator=(const ScriptedContext&) = delete;

  std::string Sent() const { return ToHex(port.Written()); }

  ScriptedPort port;
  PortContext ctx;
};

}  // namespace posprint::test
