// The TMT70's command layer: one function a printer command, over the port context.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/driver_base.h"
#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace TMT70 {

// DriverConfig of the TMT70: four bytes.
struct Config {
  std::uint8_t rollEjectionFeeds = 8;  // line feeds at the end of print ("param_RollEjection")
  std::uint8_t ignoreNearEnd = 0;      // 1: the near-end sensor is ignored
  std::uint8_t ignorePaperEnd = 0;     // 1: the paper-end sensor is ignored
  std::uint8_t cutType = 0;            // 1: partial cut at the end of print
};
static_assert(sizeof(Config) == 4, "the TMT70 configuration block is four bytes");

PrinterResult tmt70_SelectCodeTable(const PortContext& ctx, int codePage);
void tmt70_Initialise(const PortContext& ctx);
int tmt70_ReadStatus(PortContext& ctx);
PrinterResult tmt70_EndPrint(const PortContext& ctx);
PrinterResult tmt70_Cut(const PortContext& ctx);
PrinterResult tmt70_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp);
PrinterResult tmt70_SelectFont(PortContext& ctx, const TextAttributes& attributes);

}  // namespace TMT70
