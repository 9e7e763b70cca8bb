// The STB80's own commands: an 80 mm roll printer of the STB family that always runs
// over the scrambled port mode once open.
#pragma once

#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace STB80 {

// 42 characters, CR LF; then the scrambled mode, unless the port itself has failed.
PrinterResult stb80_SetRowWidth(PortContext& ctx);
// ESC @ and the 80 mm paper setting; 1 when both went out whole.
PrinterResult stb80_Setup(const PortContext& ctx);
// ESC @ before every ticket.
PrinterResult stb80_StartTicket(const PortContext& ctx);
// Feeds, then the configured cut. Always 1.
PrinterResult stb80_EndTicket(const PortContext& ctx);
// 100, 101, 102, 104, 105 from the status byte and the six-byte extended status.
int stb80_Status(PortContext& ctx);

}  // namespace STB80
