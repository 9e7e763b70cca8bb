// The shared status query: a request written to the printer and a one-byte answer read
// back under temporary port settings. See docs/status.md for the flags it leaves in
// PortContext::statusFlags.
#pragma once

#include <cstdint>
#include <string_view>

#include "frame/port_context.h"

enum class Purge { kNo, kFirst };

// The answer time-out (ms) while the query runs.
constexpr int kStatusQueryTimeoutMs = 100;

// 1 with *answer set when the printer answered, 0 otherwise (statusFlags say why).
int QueryStatusByte(PortContext& ctx, std::string_view request, std::uint8_t* answer, Purge purge);

// The port-readiness test: the handle is valid and the port answers requests.
bool PortReady(const PortContext& ctx);
