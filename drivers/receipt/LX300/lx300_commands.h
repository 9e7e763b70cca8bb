// The LX300's command layer: one function a printer command, over the port context.
// The LX300 is a 9-pin dot-matrix document printer speaking ESC/P: modes are switched
// on and off by their own commands, a page ends with a form feed, pictures go out as
// 8-dot bit-image bands. It never answers a question.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "frame/driver_base.h"
#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace LX300 {

// DriverConfig of the LX300: six bytes.
struct Config {
  std::uint8_t nlq = 0;        // "param_PrintQuality" val_NLQ: 1, near letter quality; else draft
  std::uint8_t formFeed = 1;   // "param_FormFeed" FALSE: 0, no form feed at the end of print
  std::uint8_t pageLines = 0;  // "param_PageLength": lines a page (1..127); 0 keeps the printer's
  std::uint8_t columns = 80;   // "param_Columns": characters a line at 10 cpi (20..136)
  std::uint8_t logoMode = 5;   // "param_LogoDensity": the ESC * mode of logos (0, 1 or 5)
  std::uint8_t xonXoff = 1;    // "param_XonXoff" FALSE: 0, the port's flow control left alone
};
static_assert(sizeof(Config) == 6, "the LX300 configuration block is six bytes");

// The logo densities a configuration may name, and their ESC * modes.
struct LogoDensity {
  const wchar_t* word;
  std::uint8_t mode;
};
extern const LogoDensity kLogoDensities[3];

// The shared line output writes lines of at most this many characters.
constexpr int kLongestLine = 100;

// Characters a line for the pitch and width of the text.
int lx300_Columns(const Config& config, bool condensed, bool doubleWidth);

void lx300_SwitchOnXonXoff(int handle);
PrinterResult lx300_Initialise(const PortContext& ctx);
PrinterResult lx300_PageSetup(const PortContext& ctx);
int lx300_PortStatus(PortContext& ctx);
PrinterResult lx300_FormFeed(const PortContext& ctx);
PrinterResult lx300_EndPrint(const PortContext& ctx);
PrinterResult lx300_SelectFont(PortContext& ctx, const TextAttributes& attributes);
PrinterResult lx300_PrintLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp);
// ESC ( B: a bar code at the print position, then the paper moved past it. heightDots are
// printer dots at 8 a millimetre, as the job's barcode attributes are read.
PrinterResult lx300_PrintBarcode(const PortContext& ctx, std::string_view data, int barcodeType, int heightDots,
                                 int moduleWidth, bool withText);

}  // namespace LX300
