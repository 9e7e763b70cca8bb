// A 1-bit BMP printed as one GS v 0 raster image, centred on the paper by a left margin
// of blank bytes. Used by the presenter receipt printer and the ticket printers.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/port_context.h"
#include "frame/printer_result.h"

// How the left margin is worked out when the logo is wider than the line.
enum class RasterMargin {
  // The ticket printers: (line - width) divided as an unsigned 32-bit number, then taken
  // as signed and clamped at 0. A logo wider than the paper wraps round to a huge margin,
  // the row cannot be allocated, and the result is 11 (out of memory).
  kWrapUnsigned,
  // The presenter printer: a logo wider than the line gets margin 0 and is printed.
  kClampToZero,
};

// The largest margin that a raster row can hold; a larger one is taken as a failed
// allocation (11) without trying it.
constexpr std::uint32_t kMaxRasterMarginBytes = 65535;

// GS v 0 raster image of a 1-bit BMP, centred on a line of lineWidthDots; doubleSize
// selects mode '3' (0x33) and the /32 margin rule, else '0' (0x30) and /16.
// 1 also when the data is not a BMP (nothing printed); 0 for a BMP that is not 1-bit or
// is broken, and at the first short write; 11 when the row cannot be allocated.
PrinterResult PrintRasterLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp, int lineWidthDots,
                              bool doubleSize, RasterMargin margin);
