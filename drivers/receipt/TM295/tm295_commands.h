// The TM295's command layer: one function a printer command, over the port context.
// The TM295 is a slip printer: the operator inserts a single sheet, the printer prints
// it and then ejects it or holds it. It draws no barcodes itself: an ITF barcode is
// printed as a bit image.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "frame/driver_base.h"
#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace TM295 {

// DriverConfig of the TM295.
struct Config {
  std::uint8_t ticketBlock = 0;        // 1: the slip is released (LF, ESC q) at the end of a ticket
  std::uint8_t ticketEjectionOff = 0;  // 1: no form-feed ejection at the end of a ticket
  std::int32_t lineFeed = 2;           // lines fed at the end of a ticket that is not ejected
  std::int32_t linefeedExit = 12;      // kept for the host; the printer is not sent it
  std::uint8_t barcodeHeight = 3;      // how many times each barcode band is printed
  std::uint8_t barcodeWidth = 2;       // narrow bar width in bit-image columns
};

// Most lines one ESC d feeds.
constexpr int kMaxFeedLines = 29;

PrinterResult tm295_SelectTerminator(PortContext& ctx);
PrinterResult tm295_Initialise(const PortContext& ctx);
int tm295_ReadStatus(PortContext& ctx);
PrinterResult tm295_FeedBeforeEject(const PortContext& ctx);
PrinterResult tm295_EndSlip(const PortContext& ctx);
PrinterResult tm295_FeedLines(const PortContext& ctx, int count);
PrinterResult tm295_SelectCodePage(const PortContext& ctx, int codePage);
PrinterResult tm295_SelectFont(PortContext& ctx, const TextAttributes& attributes);
PrinterResult tm295_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp);
PrinterResult tm295_PrintBarcode(const PortContext& ctx, std::string_view data, int barcodeType);

}  // namespace TM295
