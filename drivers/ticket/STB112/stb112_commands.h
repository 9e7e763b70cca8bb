// The STB112's own commands: its configuration block, row width, set-up, start and end
// of ticket by paper type, and its two-stage status. Everything else is the family's
// (drivers/ticket/stb_family/stb_commands.h).
#pragma once

#include <cstdint>

#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace STB112 {

enum PaperType : std::int32_t { kPaperRoll = 0, kPaperTicket = 1, kPaperLabel = 2 };

// DriverConfig of the STB112, in the printer's order.
struct Config {
  std::uint8_t ejectFeeds = 8;     // LF before the automatic cut of a roll ticket: 8 or 0
  std::uint8_t cutType = 0;        // 0 none, 1 partial, 2 full
  std::int32_t paperType = kPaperRoll;
  std::int32_t exitFeeds = 12;     // "param_LinefeedExit": kept for the host, not used here
  std::uint8_t rowWidthCode = 42;  // 32 on 80 mm paper, else 42: also the characters a row
  std::uint8_t reserved = 0;
  std::int32_t density = 4;        // low byte sent in setting 0x0F
};

// rowWidth 30 on ticket paper, else rowWidthCode; terminator CR LF. Always 1.
PrinterResult stb112_SetRowWidth(PortContext& ctx);
// ESC @, paper width, paper type, density; 0 at the first short write or missing answer.
PrinterResult stb112_Setup(const PortContext& ctx);
// Ticket paper: GS 0xF6 before the ticket; the other papers need nothing.
PrinterResult stb112_StartTicket(const PortContext& ctx);
// Roll: feeds and the configured cut; label: GS 0xF6 or GS 0xF8 by cut type; ticket: none.
PrinterResult stb112_EndTicket(const PortContext& ctx);
// 100 ready, 101 no answer, 102, 104, 105 by the printer's status bits.
int stb112_Status(PortContext& ctx);

}  // namespace STB112
