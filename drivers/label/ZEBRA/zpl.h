// The ZPL II command layer of the Zebra label printers: one function a printer command or
// layout step, over the port context, whose config pointer designates a ZplState.
//
// The printer never flows text by itself: the layer keeps a print cursor (X, Y in dots)
// and places every text line, barcode and logo as an absolutely positioned field.
// Every position, size and gap is in printer dots; the only physical unit is the
// resolution in dots per millimetre, set by the driver's configuration.
//
// Each function returns 1 when every command went out whole and 0 at the first short
// write (nothing further is sent and the cursor stays where it stood), unless its
// comment says otherwise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "frame/port_context.h"
#include "frame/printer_result.h"
#include "platform/nx_string.h"

namespace ZEBRA {

// Every command is formatted whole into the state's command buffer before it is written.
// A command that would not fit is not sent at all: the function fails with 0. The text
// layout cuts its lines to kZplMaxLineChars, so a text field always fits; only barcode
// data (and an absurdly long logo name) can be refused. See docs/zebra.md.
constexpr std::size_t kZplCommandBufferSize = 1024;
constexpr std::uint32_t kZplMaxLineChars = 512;

// The state of one label printer: configuration (filled by the driver), the print
// cursor and the current font metrics. Allocated by the driver's Configure.
struct ZplState {
  char mediaType = 'D';             // ^MT: 'T' thermal transfer (ribbon), 'D' direct thermal
  char printMode = 'T';             // ^MM: 'T' tear-off, 'P' peel-off
  std::int8_t dotsPerMm = 8;        // 6, 8, 12 or 24
  std::uint32_t labelWidth = 800;   // ^PW, dots
  std::uint32_t labelLength = 560;  // ^LL, dots
  std::uint32_t cursorX = 0;        // left edge of the next field, dots from the label home
  std::uint32_t cursorY = 0;        // top of the next line, dots from the label home
  char fontName = 'F';              // first argument of ^CF
  std::uint32_t charWidth = 13;
  std::uint32_t charHeight = 26;
  std::uint32_t charGap = 3;        // dots between characters
  std::uint32_t lineGap = 5;        // dots between lines
  std::uint32_t charsPerLine = 1;   // characters in one label line; never 0
  std::uint32_t logoDisplacement = 0;  // added to the label home's Y after a logo
  std::uint32_t originX = 3;        // label home (^LH)
  std::uint32_t originY = 0;
  std::uint32_t magnification = 1;  // 1..20: scales every font and barcode module
  std::int32_t tearOffAdjust = 0;   // -120..120: ~TA
  std::uint32_t printSpeed = 2;     // 2..6 inches per second: ^PR
  char commandBuffer[kZplCommandBufferSize] = {};  // commands and the status answers
};

// Status characters of zpl_QueryStatus; the driver reports their codes.
enum ZplStatus : char {
  kZplReady = 'd',        // 100
  kZplError = 'e',        // 101: no answer, malformed answer, or a printer fault
  kZplPaused = 'i',       // 105
  kZplTemperature = 'n',  // 110: head under or over temperature
  kZplPaperOut = 'p',     // 112
};

// Barcode type codes of the keyword table that have a ZPL symbology.
constexpr int kZplQrCode = 14;

// --- printer set-up, labels, status ---
PrinterResult zpl_ResetTerminator(PortContext& ctx);
PrinterResult zpl_Init(PortContext& ctx);
char zpl_QueryStatus(PortContext& ctx);
PrinterResult zpl_StartLabel(PortContext& ctx);
PrinterResult zpl_EndLabel(PortContext& ctx);
PrinterResult zpl_Cancel(PortContext& ctx);

// --- fonts ---
// A multiplier outside 1..8 leaves its quantities as they were.
PrinterResult zpl_SetFont(PortContext& ctx, int widthMultiplier, int heightMultiplier);
PrinterResult zpl_FontNormal(PortContext& ctx);
PrinterResult zpl_FontDoubleHeight(PortContext& ctx);
PrinterResult zpl_FontDoubleWidth(PortContext& ctx);
PrinterResult zpl_FontTripleHeight(PortContext& ctx);
PrinterResult zpl_FontTripleWidth(PortContext& ctx);
PrinterResult zpl_FontDouble(PortContext& ctx);
PrinterResult zpl_FontDoubleWidthTripleHeight(PortContext& ctx);
PrinterResult zpl_FontCustom(PortContext& ctx, int widthMultiplier, int heightMultiplier);

// --- text ---
// One field at the cursor; the cursor does not move.
PrinterResult zpl_Text(PortContext& ctx, std::string_view text);
// The layout functions: each prints one label line and moves the cursor to the next.
PrinterResult zpl_TextLine(PortContext& ctx, std::string_view text, std::uint8_t centred, std::uint8_t doubleHeight);
PrinterResult zpl_Centred(PortContext& ctx, std::string_view text);
PrinterResult zpl_TwoColumns(PortContext& ctx, std::string_view left, std::string_view right);
// A fill character of 0 fills with spaces.
PrinterResult zpl_ThreePart(PortContext& ctx, std::string_view left, std::string_view right, char fill);
// An empty pattern prints nothing and gives 0.
PrinterResult zpl_FillLine(PortContext& ctx, std::string_view pattern);
// count lines of the normal font further down.
PrinterResult zpl_LineFeed(PortContext& ctx, std::uint32_t count);

// --- barcodes and logos ---
// height in millimetres; data is modified in place (QR escapes are decoded).
// 0 for empty data or data whose field does not fit the command buffer (nothing sent).
PrinterResult zpl_Barcode(PortContext& ctx, std::string& data, int type, int height, int moduleWidth, float ratio,
                          std::uint8_t humanReadable);
// The stored graphic E:<name up to its first '.'>.GRF at the cursor; the label home
// then moves down by the logo displacement.
PrinterResult zpl_RecallLogo(PortContext& ctx, Nx_Stringa fileName);

// --- formatting helpers: each writes one command into buffer and returns its length ---
// mode 1: ^FT (baseline origin), else ^FO (top-left origin).
int zpl_FieldOrigin(char* buffer, std::size_t size, std::uint32_t x, std::uint32_t y, std::uint8_t mode);
// The symbology command of a barcode type; 0 (nothing) for a type without one.
int zpl_BarcodeCommand(int type, std::uint8_t humanReadable, char* buffer, std::size_t size);
int zpl_BarcodeDefaults(char* buffer, std::size_t size, std::uint32_t moduleWidth, float ratio, std::uint32_t height);

// The two passes of QR data: {hh} escapes decoded in place (returns the byte count the
// printer will decode), then control characters and '_' written as _hh for ^FH.
std::size_t zpl_DecodeBraceEscapes(std::string& data);
std::string zpl_FieldHexEscape(std::string_view data);

}  // namespace ZEBRA
