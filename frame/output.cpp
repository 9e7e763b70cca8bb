// The shared ESC/POS output functions. Plain writes, rotation and the barcode commands
// live here; the text layout is in text_layout.cpp and the bit-image logo in bitmap.cpp.
#include "frame/output.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "frame/command_format.h"
#include "frame/keywords.h"
#include "frame/output_limits.h"
#include "platform/otool.h"

namespace {

PrinterResult WriteToHandle(int handle, const void* bytes, std::size_t count) {
  if (count == 0) return kSuccess;  // nothing to send cannot fail
  if (count > static_cast<std::size_t>(INT_MAX)) return kFailure;
  const int written = otool_WRITE(handle, static_cast<const char*>(bytes), static_cast<int>(count));
  return written == static_cast<int>(count) ? kSuccess : kFailure;
}

PrinterResult WriteCommand3(const PortContext& ctx, unsigned char a, unsigned char b, unsigned char c) {
  const unsigned char command[] = {a, b, c};
  return WriteBytes(ctx, command, sizeof command);
}

}  // namespace

PrinterResult WriteBytes(const PortContext& ctx, const void* bytes, std::size_t count) {
  return WriteToHandle(ctx.handle, bytes, count);
}

PrinterResult WriteBytes(const PortContext& ctx, std::string_view bytes) {
  return WriteToHandle(ctx.handle, bytes.data(), bytes.size());
}

PrinterResult WriteLine(const PortContext& ctx, std::string_view text) {
  if (WriteBytes(ctx, text) != kSuccess) return kFailure;
  // Always four bytes of the terminator buffer: CR LF goes out as 0D 0A 00 00. The
  // printers ignore the NULs, and installed lines have always received exactly this.
  return WriteBytes(ctx, ctx.terminator, 4);
}

PrinterResult WriteFormatted(int handle, const char* format, ...) {
  char buffer[kOutputBufferChars + 1];
  va_list args;
  va_start(args, format);
  const int length = FormatCommandV(buffer, sizeof buffer, format, args);
  va_end(args);
  // Longer than the buffer: refused whole, never split or cut.
  if (length < 0 || length > kOutputBufferChars) return kFailure;
  return WriteToHandle(handle, buffer, static_cast<std::size_t>(length));
}

bool WriteFill(int handle, int count, char fillChar) {
  char buffer[kOutputBufferChars];
  const int n = std::clamp(count, 0, kOutputBufferChars);
  std::memset(buffer, fillChar == 0 ? ' ' : fillChar, static_cast<std::size_t>(n));
  // Inverted on purpose: true means the write failed; the callers go on while it is false.
  return WriteToHandle(handle, buffer, static_cast<std::size_t>(n)) != kSuccess;
}

PrinterResult WriteTerminators(const PortContext& ctx, int count) {
  const int n = std::min(count, kMaxTerminators);
  for (int i = 0; i < n; ++i) {
    if (WriteBytes(ctx, ctx.terminator, static_cast<std::size_t>(ctx.TerminatorLength())) != kSuccess) {
      return kFailure;
    }
  }
  return kSuccess;
}

PrinterResult FeedLines(const PortContext& ctx, int n) {
  if (n == 0) return kSuccess;
  if (n < 0 || n > kMaxFeedOrSpaces) return kFailure;
  char feeds[kMaxFeedOrSpaces];
  std::memset(feeds, 0x0A, static_cast<std::size_t>(n));  // LF: print and feed one line
  return WriteBytes(ctx, feeds, static_cast<std::size_t>(n));
}

PrinterResult WriteSpaces(const PortContext& ctx, int n) {
  if (n == 0) return kSuccess;
  if (n < 0 || n > kMaxFeedOrSpaces) return kFailure;
  // The offset is measured in normal-size characters.
  if (ResetPrintMode(ctx) != kSuccess) return kFailure;
  char spaces[kMaxFeedOrSpaces];
  std::memset(spaces, ' ', static_cast<std::size_t>(n));
  return WriteBytes(ctx, spaces, static_cast<std::size_t>(n));
}

PrinterResult ResetPrintMode(const PortContext& ctx) {
  // ESC ! 0: normal print mode (font A, no emphasis, single height and width)
  return WriteCommand3(ctx, 0x1B, 0x21, 0x00);
}

PrinterResult SetRotation(const PortContext& ctx, int rotation, bool withTurn) {
  const bool upsideDown = rotation == kRotation180 || rotation == kRotation270;
  const bool quarterTurn = rotation == kRotation90 || rotation == kRotation270;
  // ESC { n: upside-down printing on (1) or off (0)
  if (WriteCommand3(ctx, 0x1B, 0x7B, upsideDown ? 1 : 0) != kSuccess) return kFailure;
  // For 180 the command goes out a second time; the printers in the field have always
  // received it twice.
  if (rotation == kRotation180 && WriteCommand3(ctx, 0x1B, 0x7B, 0x01) != kSuccess) return kFailure;
  if (!withTurn) return kSuccess;
  // ESC V n: 90-degree clockwise rotation on (1) or off (0)
  return WriteCommand3(ctx, 0x1B, 0x56, quarterTurn ? 1 : 0);
}

PrinterResult SetBarcodeStyle(const PortContext& ctx, int textPosition, int height, int moduleWidth) {
  unsigned char position = '2';  // below the bars, also for an unknown code
  if (textPosition == kTextNone) position = '0';
  if (textPosition == kTextAbove) position = '1';
  if (textPosition == kTextBoth) position = '3';
  // GS H n: position of the human-readable digits, as the ASCII digit
  if (WriteCommand3(ctx, 0x1D, 0x48, position) != kSuccess) return kFailure;
  if (height == 0) height = 0x32;  // 50 dots
  // GS h n: bar height in dots
  if (WriteCommand3(ctx, 0x1D, 0x68, static_cast<unsigned char>(height)) != kSuccess) return kFailure;
  if (moduleWidth == 0) moduleWidth = 2;
  if (moduleWidth > 6) return kSuccess;  // too wide for the printer: keep its current width
  // GS w n: module (narrow bar) width in dots
  return WriteCommand3(ctx, 0x1D, 0x77, static_cast<unsigned char>(moduleWidth));
}

PrinterResult AlignBarcode(const PortContext& ctx, int alignment) {
  // ESC a n: justification 0 left, 1 centre, 2 right. Each case falls through into the
  // next, so the printer always ends centred; barcodes have always been printed so.
  switch (alignment) {
    case kAlignLeft:
      if (WriteCommand3(ctx, 0x1B, 0x61, 0x00) != kSuccess) return kFailure;
      [[fallthrough]];
    case kAlignRight:
      if (WriteCommand3(ctx, 0x1B, 0x61, 0x02) != kSuccess) return kFailure;
      [[fallthrough]];
    default:
      return WriteCommand3(ctx, 0x1B, 0x61, 0x01);
  }
}

namespace {

// GS k m: one row per symbology. The count byte is either fixed by the symbology or the
// data length (plus the two-byte code set selector of CODE128).
struct Symbology {
  int type;
  unsigned char m;
  unsigned char fixedCount;  // 0: the count byte is the data length plus the selector
  const char* selector;      // sent before the data
};

constexpr Symbology kSymbologies[] = {
    {kBarcodeCode128, 0x49, 0, "{B"},        // CODE128, code set B
    {kBarcodeIndicodEan13, 0x43, 0x0C, ""},  // EAN13, 12 digits and the check digit computed
    {kBarcodeEan13, 0x43, 0x0C, ""},
    {kBarcodeEan8, 0x44, 0x07, ""},  // EAN8, 7 digits and the check digit computed
    {kBarcodeCode39, 0x45, 0, ""},
    {kBarcodeItf, 0x46, 0, ""},  // interleaved 2 of 5
};

const Symbology* FindSymbology(int type) {
  for (const Symbology& symbology : kSymbologies) {
    if (symbology.type == type) return &symbology;
  }
  return nullptr;
}

}  // namespace

PrinterResult PrintBarcode(const PortContext& ctx, std::string_view data, int barcodeType, int alignment) {
  if (AlignBarcode(ctx, alignment) != kSuccess) return kFailure;
  if (data.empty()) return kErrBarcodeEmpty;
  if (data.size() > kMaxBarcodeData) return kErrBarcodeTooLong;
  const Symbology* symbology = FindSymbology(barcodeType);
  if (symbology == nullptr) return kErrBarcodeKind;

  const std::size_t selectorLength = std::strlen(symbology->selector);
  char command[4 + 2 + kMaxBarcodeData];
  std::size_t length = 0;
  command[length++] = 0x1D;  // GS k m n d1..dn: print a barcode
  command[length++] = 0x6B;
  command[length++] = static_cast<char>(symbology->m);
  command[length++] = static_cast<char>(symbology->fixedCount != 0 ? symbology->fixedCount
                                                                     : data.size() + selectorLength);
  std::memcpy(command + length, symbology->selector, selectorLength);
  length += selectorLength;
  std::memcpy(command + length, data.data(), data.size());
  length += data.size();
  // The command is handled as a C string: a NUL in the data ends what is sent.
  const void* nul = std::memchr(command, 0, length);
  if (nul != nullptr) length = static_cast<std::size_t>(static_cast<const char*>(nul) - command);
  if (WriteBytes(ctx, command, length) != kSuccess) return kFailure;
  // ESC a 0: back to left justification for the text that follows
  return WriteCommand3(ctx, 0x1B, 0x61, 0x00);
}

PrinterResult PrintBarcodeWithText(const PortContext& ctx, std::string_view data, int barcodeType, int height,
                                   int moduleWidth, int textPosition) {
  if (data.empty()) return kErrBarcodeEmpty;
  // GS f 1: font B for the human-readable digits
  if (WriteCommand3(ctx, 0x1D, 0x66, 0x31) != kSuccess) return kFailure;
  // GS H n: position of the digits, here as the number 0 to 3
  if (WriteCommand3(ctx, 0x1D, 0x48, static_cast<unsigned char>(textPosition)) != kSuccess) return kFailure;
  // GS h n: bar height in dots
  if (WriteCommand3(ctx, 0x1D, 0x68, static_cast<unsigned char>(height)) != kSuccess) return kFailure;
  // GS w n: module width in dots
  if (WriteCommand3(ctx, 0x1D, 0x77, static_cast<unsigned char>(moduleWidth)) != kSuccess) return kFailure;
  // Centred whatever the field asked for.
  return PrintBarcode(ctx, data, barcodeType, kAlignCenter);
}
