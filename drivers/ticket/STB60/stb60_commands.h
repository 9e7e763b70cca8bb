// The STB60's own commands: a narrower printer of the STB family on roll or label paper,
// with a density in five steps and a label-gap sensor; no cut and no scrambled mode.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace STB60 {

enum PaperType : std::int32_t { kPaperRoll = 0, kPaperLabel = 1 };
enum Sensor : std::int32_t { kSensorPrinter = 0, kSensorSoftware = 1, kSensorNone = 2 };

// DriverConfig of the STB60, in the printer's order.
struct Config {
  std::uint8_t ejectFeeds = 10;  // LF at the end of a roll ticket: 10 or 0
  std::int32_t paperType = kPaperRoll;
  std::int32_t density = 2;      // 0 very light .. 4 very dark
  std::int32_t sensor = kSensorPrinter;
};

// 31 characters on labels, 32 on roll; terminator CR LF. Always 1.
PrinterResult stb60_SetRowWidth(PortContext& ctx);
// ESC @ and the density setting; 1 when both went out whole.
PrinterResult stb60_Setup(const PortContext& ctx);
// Labels read by the software sensor: GS 0xF4 before each label.
PrinterResult stb60_StartTicket(const PortContext& ctx);
// Roll: the feeds (no cut on this printer); label: the end of label of the sensor.
PrinterResult stb60_EndTicket(const PortContext& ctx);
// ESC v: 100 ready, 101 no answer, 102 paper out.
int stb60_Status(PortContext& ctx);
// The logo in 24-dot bands, centred by ESC a.
PrinterResult stb60_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp);

}  // namespace STB60
