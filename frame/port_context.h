// PortContext: the command layer's record of one open port, passed to every output
// and command-layer function.
#pragma once

#include <cstdint>
#include <cstring>

// Status flags kept by the shared status query (status_query.h).
enum PortStatusFlag : std::uint32_t {
  kFlagPortError = 0x01,     // the port itself failed: no recovery is worth trying
  kFlagNoAnswer = 0x10,      // the printer did not answer in time (ZPL: or a write failed)
  kFlagUnsolicited = 0x20,   // the printer talked out of turn (ZPL: answered something malformed)
  kFlagRequestSent = 0x100,  // the request went out whole: the printer was spoken to
};

struct PortContext {
  std::int32_t handle = -1;
  std::uint32_t reserved = 0;   // the Q1 keeps its printer identification byte here
  std::uint32_t statusFlags = 0;
  std::int32_t lineWidth = 42;  // printable characters per line
  char terminator[8] = {};      // the line terminator, NUL-padded
  void* config = nullptr;       // the driver's DriverConfig (or ZplState) block

  // One of "\r\n", "\r", "\n".
  void SetTerminator(const char* text) {
    std::memset(terminator, 0, sizeof terminator);
    std::strncpy(terminator, text, sizeof terminator - 1);
  }
  int TerminatorLength() const { return static_cast<int>(std::strlen(terminator)); }

  template <class Config>
  Config& ConfigAs() const { return *static_cast<Config*>(config); }
};
