// Barcodes, QR codes and stored graphics on the label.
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>

#include "drivers/label/ZEBRA/zpl.h"
#include "drivers/label/ZEBRA/zpl_io.h"
#include "frame/command_format.h"
#include "platform/codepage.h"

namespace ZEBRA {

using detail::Send;
using detail::SendFormatted;
using detail::State;

namespace {

// The ZPL symbology command of each barcode type; %c is the interpretation line (Y/N).
struct Symbology {
  int type;
  const char* format;
};
constexpr Symbology kSymbologies[] = {
    {1, "^BC,,%c,N,N,N"},  // ^BC: Code 128 (orientation, height, line, line above, UCC check digit, mode)
    {2, "^BE,,%c,N"},      // ^BE: EAN-13 (orientation, height, line, line above)
    {3, "^BE,,%c,N"},
    {4, "^B8,,%c,N"},      // ^B8: EAN-8
    {5, "^B3,N,,%c,N"},    // ^B3: Code 39 (orientation, mod-43 check digit, height, line, line above)
    {6, "^B2,,%c,N,N"},    // ^B2: interleaved 2 of 5 (orientation, height, line, line above, check digit)
    {kZplQrCode, "^BQN,2,6"},  // ^BQ: QR code, normal orientation, model 2, magnification 6
};

// Module width in dots (1..10) before the magnification; anything else prints at 3.
constexpr int kDefaultModuleWidth = 3;
// Bar height in millimetres: below 3 mm a code does not scan; it prints at 10 mm.
constexpr int kMinimumHeightMm = 3;
constexpr int kDefaultHeightMm = 10;
// Wide-to-narrow bar ratio of ^BY.
constexpr float kMinimumRatio = 2.0f;
constexpr float kMaximumRatio = 3.0f;
// The interpretation line under the bars is about 4 mm high.
constexpr std::uint32_t kTextLineMm = 4;

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool IsControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

// The field data command of a barcode; with a null buffer it is only measured.
int FormatBarcodeData(char* buffer, std::size_t size, int type, std::size_t count, const std::string& text) {
  if (type == kZplQrCode) {
    // ^FH: _hh escapes follow; ^FD MM,B nnnn: error correction M, manual input, byte mode, count
    return FormatCommand(buffer, size, "^FH^FDMM,B%04u%s^FS", static_cast<unsigned>(count), text.c_str());
  }
  return FormatCommand(buffer, size, "^FD%s^FS", text.c_str());
}

}  // namespace

int zpl_BarcodeCommand(int type, std::uint8_t humanReadable, char* buffer, std::size_t size) {
  for (const Symbology& symbology : kSymbologies) {
    if (symbology.type != type) continue;
    const int length = FormatCommand(buffer, size, symbology.format, humanReadable ? 'Y' : 'N');
    return length < 0 || static_cast<std::size_t>(length) >= size ? 0 : length;
  }
  if (size > 0) buffer[0] = '\0';
  return 0;
}

int zpl_BarcodeDefaults(char* buffer, std::size_t size, std::uint32_t moduleWidth, float ratio, std::uint32_t height) {
  // The ratio with one decimal and a point whatever the host's locale says.
  char ratioText[32];
  auto converted = std::to_chars(ratioText, ratioText + sizeof ratioText - 1, ratio, std::chars_format::fixed, 1);
  *converted.ptr = '\0';
  // ^BY w,r,h: module width, wide-to-narrow ratio, bar height (dots)
  const int length = FormatCommand(buffer, size, "^BY%u,%s,%u", moduleWidth, ratioText, height);
  return length < 0 || static_cast<std::size_t>(length) >= size ? 0 : length;
}

std::size_t zpl_DecodeBraceEscapes(std::string& data) {
  for (std::size_t i = 0; i + 3 < data.size(); ++i) {
    if (data[i] != '{' || data[i + 3] != '}') continue;
    const int high = HexValue(data[i + 1]);
    const int low = HexValue(data[i + 2]);
    if (high < 0 || low < 0) continue;
    const int value = high * 16 + low;
    if (value == 0) continue;  // {00} stays as written: a NUL would end the data
    data.replace(i, 4, 1, static_cast<char>(value));
  }
  return data.size();
}

std::string zpl_FieldHexEscape(std::string_view data) {
  static const char kDigits[] = "0123456789ABCDEF";
  std::string escaped;
  for (char c : data) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if ((IsControl(byte) && byte != '\t') || c == '_') {
      escaped += '_';
      escaped += kDigits[byte >> 4];
      escaped += kDigits[byte & 0x0F];
    } else {
      escaped += c;
    }
  }
  return escaped;
}

PrinterResult zpl_Barcode(PortContext& ctx, std::string& data, int type, int height, int moduleWidth, float ratio,
                          std::uint8_t humanReadable) {
  ZplState& state = State(ctx);
  data.resize(std::strlen(data.c_str()));  // 8-bit text: it ends at a NUL
  if (data.empty()) return kFailure;
  if (moduleWidth < 1 || moduleWidth > 10) moduleWidth = kDefaultModuleWidth;
  const std::uint32_t moduleDots = static_cast<std::uint32_t>(moduleWidth) * state.magnification;
  if (height < kMinimumHeightMm) height = kDefaultHeightMm;
  const std::uint32_t dotsPerMm = static_cast<std::uint32_t>(state.dotsPerMm);
  const std::uint32_t heightDots = static_cast<std::uint32_t>(height) * dotsPerMm;
  if (!(ratio >= kMinimumRatio && ratio <= kMaximumRatio)) ratio = kMaximumRatio;

  // QR data: {hh} escapes decoded, then sent as bytes with _hh escapes for the control
  // characters and the escape character itself.
  std::size_t count = data.size();
  std::string fieldText = data;
  if (type == kZplQrCode) {
    count = zpl_DecodeBraceEscapes(data);
    fieldText = zpl_FieldHexEscape(data);
  }
  // Data that does not fit one command is refused before anything is sent.
  const int fieldLength = FormatBarcodeData(nullptr, 0, type, count, fieldText);
  if (fieldLength < 0 || static_cast<std::size_t>(fieldLength) >= sizeof state.commandBuffer) return kFailure;

  char command[64];
  // Two character cells in from the line's left edge.
  int length = zpl_FieldOrigin(command, sizeof command, state.cursorX + 2 * state.charWidth, state.cursorY, 0);
  if (Send(ctx, command, static_cast<std::size_t>(length)) != kSuccess) return kFailure;
  length = zpl_BarcodeDefaults(command, sizeof command, moduleDots, ratio, heightDots);
  if (Send(ctx, command, static_cast<std::size_t>(length)) != kSuccess) return kFailure;
  // A type without a symbology sends nothing here: the printer then prints the data as text.
  length = zpl_BarcodeCommand(type, humanReadable, command, sizeof command);
  if (Send(ctx, command, static_cast<std::size_t>(length)) != kSuccess) return kFailure;
  FormatBarcodeData(state.commandBuffer, sizeof state.commandBuffer, type, count, fieldText);
  if (Send(ctx, state.commandBuffer, static_cast<std::size_t>(fieldLength)) != kSuccess) return kFailure;

  state.cursorY += heightDots + state.lineGap + (humanReadable ? kTextLineMm * dotsPerMm : 0);
  state.cursorX = 0;
  return kSuccess;
}

// The logo is a graphic already stored in the printer's E: memory under the base name
// of its file; nothing is uploaded.
PrinterResult zpl_RecallLogo(PortContext& ctx, Nx_Stringa fileName) {
  ZplState& state = State(ctx);
  const std::string baseName = fileName.TakeParameterFromLeft(L".").GetAscii(CodepageTranslator::kAnsi);
  const int recallLength = FormatCommand(nullptr, 0, "^XGE:%s.GRF,1,1^FS", baseName.c_str());
  if (recallLength < 0 || static_cast<std::size_t>(recallLength) >= sizeof state.commandBuffer) return kFailure;
  char origin[32];
  const int length = zpl_FieldOrigin(origin, sizeof origin, state.cursorX, state.cursorY, 0);
  if (Send(ctx, origin, static_cast<std::size_t>(length)) != kSuccess) return kFailure;
  // ^XG d:o.x,mx,my: recall graphic at magnification 1 in both directions
  if (SendFormatted(ctx, "^XGE:%s.GRF,1,1^FS", baseName.c_str()) != kSuccess) return kFailure;
  // The label home moves down past the logo; the cursor itself stays where it was.
  return SendFormatted(ctx, "^LH,%u", state.originY + state.logoDisplacement);
}

}  // namespace ZEBRA
