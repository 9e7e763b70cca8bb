// The VKP80II's command layer: one function a printer command, over the port context.
// The VKP80II is a thermal receipt printer with a cutter and a ticket presenter that
// holds the finished ticket out of the slot until the customer takes it.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "drivers/receipt/family/family_commands.h"

namespace VKP80II {

// DriverConfig of the VKP80II: the roll printers' four bytes.
using Config = ReceiptFamily::RollConfig;
extern const ReceiptFamily::RollConfigKeys kConfigKeys;

// cutMode of a full cut at ejection ("val_Full").
constexpr std::uint8_t kCutFull = 2;

// The raster line of the printer, in dots: logos are centred on it.
constexpr int kRasterLineDots = 640;
// Barcode data of this length or longer is refused by the printer's GS k.
constexpr std::size_t kBarcodeDataLimit = 40;

PrinterResult vkp_SelectTerminator(PortContext& ctx);
PrinterResult vkp_Initialise(const PortContext& ctx);
int vkp_ReadStatus(PortContext& ctx);
PrinterResult vkp_Eject(const PortContext& ctx);
int vkp_Cut(const PortContext& ctx);
PrinterResult vkp_SelectCodePage(const PortContext& ctx, int codePage);
PrinterResult vkp_SelectFont(PortContext& ctx, const TextAttributes& attributes);
PrinterResult vkp_ResetFont(PortContext& ctx);
PrinterResult vkp_PrintBarcode(const PortContext& ctx, std::string_view data, int barcodeType);
PrinterResult vkp_PrintBarcodeHri(const PortContext& ctx, std::string_view data, int barcodeType);
PrinterResult vkp_PrintAlignedBarcode(const PortContext& ctx, std::string_view data, int barcodeType, int alignment);
PrinterResult vkp_PrintRasterLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp);

}  // namespace VKP80II
