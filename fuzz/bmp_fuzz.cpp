// Every reader of 1-bit BMP logos on arbitrary file contents: the header check, the
// ESC * bit-image bands (8 and 24 dots, single and double height) and the GS v 0 raster
// image (both margin rules, normal and double size, every line width in use).
#include <cstddef>
#include <cstdint>
#include <vector>

#include "frame/bmp.h"
#include "frame/output.h"
#include "frame/raster_logo.h"
#include "fuzz/fuzz_support.h"
#include "platform/otool.h"

namespace {

// The printable widths of the raster printers, in dots.
constexpr int kLineWidths[] = {384, 576, 600, 640, 832};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  posprint::fuzz::InitialiseHarness();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  posprint::fuzz::Input input(data, size);
  const std::uint8_t options = input.Byte();
  const std::string rest = input.Rest();
  const std::vector<std::uint8_t> file(rest.begin(), rest.end());

  BmpImage image;
  if (ReadMonoBmp(file, image) == BmpCheck::kOk) {
    // Every stored row the printers walk lies whole inside the file.
    const std::uint8_t* last = BmpRow(file, image, image.height - 1) + image.rowBytes;
    if (last > file.data() + file.size()) __builtin_trap();
  }

  posprint::ScriptedPort port;
  PortContext ctx;
  ctx.handle = otool_OPEN(port.Name().c_str(), 0, nullptr);
  ctx.SetTerminator("\r\n");
  const bool doubleHeight = options & 0x01;
  const std::uint8_t mode = (options & 0x02) ? 0x21 : 0x00;  // 24-dot or 8-dot bands
  PrintBitmap(ctx, file, doubleHeight, mode);
  port.ClearWritten();
  const int lineWidth = kLineWidths[(options >> 2) % (sizeof kLineWidths / sizeof kLineWidths[0])];
  const bool doubleSize = options & 0x20;
  const RasterMargin margin = (options & 0x40) ? RasterMargin::kClampToZero : RasterMargin::kWrapUnsigned;
  PrintRasterLogo(ctx, file, lineWidth, doubleSize, margin);
  otool_CLOSE(ctx.handle);
  return 0;
}
