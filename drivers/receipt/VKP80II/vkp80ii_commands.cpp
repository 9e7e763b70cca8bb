#include "drivers/receipt/VKP80II/vkp80ii_commands.h"

#include <string>

#include "frame/output.h"
#include "frame/raster_logo.h"
#include "frame/status_query.h"
#include "platform/clock.h"
#include "platform/otool.h"

namespace VKP80II {

using namespace ReceiptFamily;

// "val_Full" is read last and brings the seven feeds back even after
// "param_LinefeedEjection" = "FALSE": the presenter needs the paper out of the cutter.
const RollConfigKeys kConfigKeys = {
    L"param_LinefeedEjection", 7, L"param_NearlyEndPaper", L"param_EndPaper",
    L"param_CutType", {{L"val_Full", kCutFull}, {nullptr, 0}}, true,
};

namespace {

// ESC t: 0 = PC437, 19 = PC858.
constexpr CodePageBytes kCodePages = {0x00, 0x13};

constexpr FontTable kFonts = {
    true,           // ESC 0xC1 selects the family
    {0, 0x01, 42},  // normal
    {1, 0x01, 56},  // small
    {0, 0x00, 32},  // large
    //   50    51    52    53    54    55    56    57    58    59
    {0xC0, 0x00, 0x08, 0x40, 0x80, 0x00, 0x00, 0x00, 0x48, 0x88},
    false,  // only exactly double size enlarges; larger codes only narrow the line
};

// DLE EOT 20 answers 10 0F and four status bytes: 2 paper, 3 user, 4 recoverable errors,
// 5 unrecoverable errors. The first test that holds names the status: paper out hides
// everything else, paper near its end shows only when nothing else is wrong.
constexpr StatusRule kStatusRules[] = {
    {2, 0x01, Sensor::kPaperEnd, kStatusPaperEnd},     // paper out
    {3, 0x03, Sensor::kNone, kStatus111},              // print head up or cover open
    {3, 0x08, Sensor::kNone, kStatus104},              // spooling: the printer is busy with data
    {4, 0x01, Sensor::kNone, kStatus110},              // print head too hot
    {4, 0x40, Sensor::kNone, kStatusNoAnswer},         // paper jam
    {2, 0x20, Sensor::kNone, kStatus116},              // a ticket is still in the presenter
    {2, 0x04, Sensor::kNearEnd, kStatusPaperNearEnd},  // paper near its end
};
constexpr int kStatusReplyLength = 6;

// The GS k symbology bytes by BarcodeType (none: not printable by this printer).
std::string_view Symbology(int barcodeType) {
  switch (barcodeType) {
    case kBarcodeCode128:
    case kBarcodeCode128B: return std::string_view("\x08\x7B\x42", 3);  // CODE128, "{B" code set B
    case kBarcodeCode128A: return std::string_view("\x08\x7B\x41", 3);  // "{A" code set A
    case kBarcodeCode128C: return std::string_view("\x08\x7B\x43", 3);  // "{C" code set C
    case kBarcodeIndicodEan13:
    case kBarcodeEan13: return std::string_view("\x02", 1);
    case kBarcodeEan8: return std::string_view("\x03", 1);
    case kBarcodeCode39: return std::string_view("\x04", 1);
    case kBarcodeItf: return std::string_view("\x05", 1);
    default: return std::string_view();
  }
}

PrinterResult AlignLeft(const PortContext& ctx) {
  return WriteBytes(ctx, "\x1B\x61\x00", 3);  // ESC a 0: left
}

}  // namespace

PrinterResult vkp_SelectTerminator(PortContext& ctx) {
  // The printer ends a line on LF alone.
  ctx.lineWidth = 42;
  ctx.SetTerminator("\n");
  return kSuccess;
}

PrinterResult vkp_Initialise(const PortContext& ctx) {
  if (WriteBytes(ctx, "\x1B\x40", 2) != kSuccess) return kFailure;  // ESC @: initialise
  // The printer restarts its mechanics after ESC @ and talks nonsense meanwhile: wait,
  // then drop whatever it sent.
  delay(3000);
  otool_IOCTL(ctx.handle, kPortPurge, 0);
  if (WriteBytes(ctx, "\x1B\xC1\x00", 3) != kSuccess) return kFailure;  // ESC 0xC1 0: normal font family
  if (WriteBytes(ctx, "\x1B\x21\x01", 3) != kSuccess) return kFailure;  // ESC ! 1: print mode of that font
  return WriteBytes(ctx, "\x1D\x50\x00\x00", 4);                       // GS P 0 0: default motion units
}

int vkp_ReadStatus(PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  std::uint8_t reply[kStatusReplyLength] = {};
  // DLE EOT 20: full status
  if (!QueryStatusByte(ctx, "\x10\x04\x14", &reply[0], Purge::kFirst)) return kStatusNoAnswer;
  int got = 1;
  while (got < kStatusReplyLength) {
    int n = otool_READ(ctx.handle, reinterpret_cast<char*>(reply) + got, kStatusReplyLength - got);
    if (n <= 0) break;
    got += n;
  }
  if (got < kStatusReplyLength || reply[0] != 0x10 || reply[1] != 0x0F) return kStatusNoAnswer;
  return DecodeStatus(reply, kStatusRules, sizeof kStatusRules / sizeof kStatusRules[0], config.ignoreNearEnd,
                      config.ignorePaperEnd);
}

PrinterResult vkp_Eject(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  FeedOneByOne(ctx, config.ejectFeedLines);
  if (config.cutMode != 0) vkp_Cut(ctx);
  // The cutter and the presenter each need a second to finish before the next command.
  Sleep(1000);
  WriteBytes(ctx, "\x1D\x65\x03\x0C", 4);  // GS e 3 12: the presenter ejects the ticket
  Sleep(1000);
  return kSuccess;
}

int vkp_Cut(const PortContext& ctx) {
  // ESC i: full cut. The result is the count of bytes that went out.
  int written = otool_WRITE(ctx.handle, "\x1B\x69", 2);
  return written < 0 ? 0 : written;
}

PrinterResult vkp_SelectCodePage(const PortContext& ctx, int codePage) {
  return SelectCodePageBy(ctx, codePage, kCodePages);
}

PrinterResult vkp_SelectFont(PortContext& ctx, const TextAttributes& attributes) {
  return SelectFontBy(ctx, attributes, kFonts);
}

PrinterResult vkp_ResetFont(PortContext& ctx) { return vkp_SelectFont(ctx, TextAttributes()); }

PrinterResult vkp_PrintBarcode(const PortContext& ctx, std::string_view data, int barcodeType) {
  // ESC a 1: barcodes are always centred, whatever alignment was set before.
  if (WriteBytes(ctx, "\x1B\x61\x01", 3) != kSuccess) return kFailure;
  std::string_view symbology = Symbology(barcodeType);
  if (symbology.empty()) {
    AlignLeft(ctx);
    return kErrBarcodeKind;
  }
  // GS k m: print barcode
  if (WriteBytes(ctx, "\x1D\x6B" + std::string(symbology)) != kSuccess) return kFailure;
  // The printer takes less than 40 characters; it is already waiting for data, and the
  // left alignment ends its wait.
  if (data.size() >= kBarcodeDataLimit) {
    AlignLeft(ctx);
    return kFailure;
  }
  // The data, then NUL (end of data) and CR in one write.
  std::string payload(data);
  payload += std::string("\x00\x0D", 2);
  if (WriteBytes(ctx, payload) != kSuccess) return kFailure;
  return AlignLeft(ctx);
}

PrinterResult vkp_PrintBarcodeHri(const PortContext& ctx, std::string_view data, int barcodeType) {
  if (data.empty()) return kFailure;
  // GS H 2: human-readable text below the bars
  if (WriteBytes(ctx, "\x1D\x48\x02", 3) != kSuccess) return kFailure;
  return vkp_PrintBarcode(ctx, data, barcodeType);
}

PrinterResult vkp_PrintAlignedBarcode(const PortContext& ctx, std::string_view data, int barcodeType,
                                      int alignment) {
  if (AlignBarcode(ctx, alignment) != kSuccess) return kFailure;
  // Any answer of the barcode command but a failed write counts as printed, so an
  // unsupported kind passes here.
  return vkp_PrintBarcode(ctx, data, barcodeType) != kFailure ? kSuccess : kFailure;
}

PrinterResult vkp_PrintRasterLogo(const PortContext& ctx, const std::vector<std::uint8_t>& bmp) {
  // GS v 0: the logo as one raster image, centred on the printer's line, normal size.
  return PrintRasterLogo(ctx, bmp, kRasterLineDots, false, RasterMargin::kClampToZero);
}

}  // namespace VKP80II
