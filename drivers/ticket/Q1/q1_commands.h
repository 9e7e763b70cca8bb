// The Q1's own commands: the Q-series ticket printer, a relative of the STB80 that tells
// who it is when the port opens. A printer that answers 255 refuses the scrambled mode.
#pragma once

#include <cstdint>

#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace Q1 {

// The identification byte of a printer that stays plain.
constexpr std::uint32_t kPlainPrinterId = 255;

// The identification byte the printer answered (0 when it did not), kept in the context.
inline std::uint32_t PrinterId(const PortContext& ctx) { return ctx.reserved; }

// GS I 1: reads the printer's identification; switches the scrambled mode on unless the
// printer answered 255 or the port has failed. Always 1.
PrinterResult q1_Identify(PortContext& ctx);
// ESC @.
PrinterResult q1_Setup(const PortContext& ctx);
// Discards what the printer sent since the last ticket. Always 1.
PrinterResult q1_StartTicket(const PortContext& ctx);
// Feeds, then the full cut unless the cut is off. Always 1.
PrinterResult q1_EndTicket(const PortContext& ctx);
// As the STB80's, with the purge before the request and no recovery towards a printer
// that refused the scrambled mode.
int q1_Status(PortContext& ctx);

}  // namespace Q1
