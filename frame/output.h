// The shared ESC/POS output functions of the receipt and ticket drivers. Each writes
// through otool_WRITE and stops at the first short write with 0; nothing is retried and
// what went out stays sent. Formatting uses fixed buffers of about 100 characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "frame/port_context.h"
#include "frame/printer_result.h"

// One write of the bytes: 1 when every byte went out, else 0.
PrinterResult WriteBytes(const PortContext& ctx, const void* bytes, std::size_t count);
PrinterResult WriteBytes(const PortContext& ctx, std::string_view bytes);

// The text, then exactly four bytes of the terminator buffer (CR LF goes out as 0D 0A 00 00).
PrinterResult WriteLine(const PortContext& ctx, std::string_view text);
// printf into a 100-character buffer; a longer result writes nothing and gives 0.
PrinterResult WriteFormatted(int handle, const char* format, ...) __attribute__((format(printf, 2, 3)));
// count copies of fillChar (space for 0), at most 100. Returns true when the write FAILED.
bool WriteFill(int handle, int count, char fillChar);
// The terminator count times (count capped at 29); 1 also for 0.
PrinterResult WriteTerminators(const PortContext& ctx, int count);
// n LF bytes in one write, n 0..99 (0 sends nothing); else 0.
PrinterResult FeedLines(const PortContext& ctx, int n);
// ESC ! 0 then n spaces, n 0..99 (0 sends nothing); else 0.
PrinterResult WriteSpaces(const PortContext& ctx, int n);
// ESC ! 0.
PrinterResult ResetPrintMode(const PortContext& ctx);

// ESC { n upside-down (sent twice for 180), then ESC V n quarter turn when withTurn.
PrinterResult SetRotation(const PortContext& ctx, int rotation, bool withTurn);

// GS H (ASCII digit), GS h, GS w with the clamps of the barcode set-up.
PrinterResult SetBarcodeStyle(const PortContext& ctx, int textPosition, int height, int moduleWidth);
// ESC a by alignment code; always ends centred.
PrinterResult AlignBarcode(const PortContext& ctx, int alignment);
// GS k by BarcodeType; 18 empty, 17 longer than 90, 15 unsupported kind.
PrinterResult PrintBarcode(const PortContext& ctx, std::string_view data, int barcodeType, int alignment);
// GS f 1, GS H p, GS h h, GS w w (raw numbers), then PrintBarcode centred; 18 when empty.
PrinterResult PrintBarcodeWithText(const PortContext& ctx, std::string_view data, int barcodeType, int height,
                                   int moduleWidth, int textPosition);

// Text layout over ctx.lineWidth characters.
PrinterResult PrintDoubleField(const PortContext& ctx, int leftMargin, int rightMargin, std::string_view leftText,
                               std::string_view rightText, char fillChar);
PrinterResult PrintCentredField(const PortContext& ctx, int sideMargin, int leftOffset, std::string_view text);
PrinterResult PrintPatternLine(const PortContext& ctx, int sideMargin, int leftMargin, std::string_view pattern);

// A 1-bit BMP (whole file in memory) as ESC * bit-image bands; mode is the ESC * mode
// byte (bit 0x20: 24-dot bands, else 8-dot). 1 also for data that is not a BMP.
PrinterResult PrintBitmap(const PortContext& ctx, const std::vector<std::uint8_t>& bmp, bool doubleHeight,
                          std::uint8_t mode);
