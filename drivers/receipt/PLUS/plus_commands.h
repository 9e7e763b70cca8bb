// The PLUS's command layer: one function a printer command, over the port context.
// The PLUS speaks a subset of ESC/POS and ends every line with a bare CR, which it
// takes as "print the line and feed".
#pragma once

#include <cstdint>
#include <vector>

#include "frame/driver_base.h"
#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace PLUS {

enum CutKind : std::uint8_t { kCutNone = 0, kCutPartial = 1, kCutFull = 2 };

// DriverConfig of the PLUS: six bytes.
struct Config {
  std::uint8_t feedLines = 5;         // "param_RollEjection": lines fed before the cut (0..20)
  std::uint8_t cutKind = kCutPartial; // "param_CutType": the cut at the end of a receipt
  std::uint8_t ignoreNearEnd = 0;     // "param_NearlyEndPaperSensor" FALSE: 1, near end ignored
  std::uint8_t ignorePaperEnd = 0;    // "param_EndPaperSensor" FALSE: 1, paper end ignored
  std::uint8_t narrowPaper = 0;       // "param_PaperWidth" val_58mm: 1, 58 mm roll
  std::uint8_t euroTable = 0;         // "param_CodeTable" val_PC858: 1, table PC858 (euro sign)
};
static_assert(sizeof(Config) == 6, "the PLUS configuration block is six bytes");

constexpr int kMaxFeedLines = 20;

// Characters per line in font A and font B, by paper width.
int plus_Columns(const Config& config, bool fontB);

PrinterResult plus_Initialise(const PortContext& ctx);
PrinterResult plus_SelectCodeTable(const PortContext& ctx, bool euroTable);
int plus_ReadStatus(PortContext& ctx);
PrinterResult plus_EndPrint(const PortContext& ctx);
PrinterResult plus_Cut(const PortContext& ctx, CutKind kind);
PrinterResult plus_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp);
PrinterResult plus_SelectFont(PortContext& ctx, const TextAttributes& attributes);

}  // namespace PLUS
