// The status answers of the ESC/POS-family printers, by protocol and printer state. Each
// is the answer a real printer in that condition gives, encoded the way the model's
// driver reads it; nothing (nullopt) where the printer stays silent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "emulator/models.h"
#include "emulator/printer_state.h"

namespace posprint::emulator {

// DLE EOT n (10 04 n), answered as soon as it arrives.
std::optional<std::string> DleEotAnswer(StatusKind kind, PrinterState state, std::uint8_t n);
// ESC v (1B 76): the paper sensor byte, answered in turn.
std::optional<std::string> EscVAnswer(StatusKind kind, PrinterState state);

}  // namespace posprint::emulator
