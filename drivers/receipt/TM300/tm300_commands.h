// The TM300's command layer: one function a printer command, over the port context.
// The TM300 is a roll receipt printer with paper sensors and a cutter; it answers ESC v
// with a single status byte.
#pragma once

#include <cstdint>
#include <vector>

#include "drivers/receipt/family/family_commands.h"

namespace TM300 {

// DriverConfig of the TM300: the roll printers' four bytes.
using Config = ReceiptFamily::RollConfig;
extern const ReceiptFamily::RollConfigKeys kConfigKeys;

// cutMode values.
constexpr std::uint8_t kCutPartial = 1;  // "val_Partial"
constexpr std::uint8_t kCutFull = 2;     // "val_Full"

PrinterResult tm300_SelectTerminator(PortContext& ctx);
PrinterResult tm300_Initialise(const PortContext& ctx);
int tm300_ReadStatus(PortContext& ctx);
PrinterResult tm300_Eject(const PortContext& ctx);
PrinterResult tm300_SelectCodePage(const PortContext& ctx, int codePage);
PrinterResult tm300_SelectFont(PortContext& ctx, const TextAttributes& attributes);
PrinterResult tm300_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp);

}  // namespace TM300
