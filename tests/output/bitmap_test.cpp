// Logos: BMP reading, ESC * bit-image bands and the GS v 0 raster image.
#include "frame/bmp.h"
#include "frame/raster_logo.h"
#include "output/output_test.h"
#include "support/bmp_builder.h"

namespace posprint::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// 16 x 3: the top row black, a middle row with two black dots, the bottom row's right half black.
const Bytes kSample16x3 = MonoBmp({"################", "#.......#.......", "........########"});
// 2 x 9: one black dot at the top left, one at the bottom right.
const Bytes kSample2x9 = MonoBmp({"#.", "..", "..", "..", "..", "..", "..", "..", ".#"});

// A broken file is refused, and neither logo printer sends a byte of it or reads past it.
TEST(ReadMonoBmp, BrokenFilesPrintNothing) {
  const struct { const char* name; std::size_t cutTo; std::size_t at; std::uint32_t value; } cases[] = {
      {"only the signature", 2, 0, 0}, {"header cut short", 53, 0, 0}, {"last row cut short", 73, 0, 0},
      {"zero height", 0, 22, 0}, {"negative height (top-down)", 0, 22, static_cast<std::uint32_t>(-3)},
      {"huge height", 0, 22, 0x7FFFFFFF}, {"zero width", 0, 18, 0},
      {"negative width", 0, 18, static_cast<std::uint32_t>(-16)}, {"width past the stride", 0, 18, 33},
      {"image size larger than the file", 0, 34, 4000}, {"image size too small for the rows", 0, 34, 3},
      {"image size at the 32-bit limit", 0, 34, 0xFFFFFFFF}, {"data offset past the end", 0, 10, 1000},
      {"data offset at the 32-bit limit", 0, 10, 0xFFFFFFFF},
      {"24 bits a pixel", 0, 28, 24}, {"0 bits a pixel", 0, 28, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Bytes file = kSample16x3;
    if (c.cutTo) file.resize(c.cutTo);
    if (c.at == 28) PutU16(file, 28, static_cast<std::uint16_t>(c.value));
    else if (c.at) PutU32(file, c.at, c.value);
    BmpImage image;
    EXPECT_EQ(ReadMonoBmp(file, image), c.at == 28 ? BmpCheck::kNotMono : BmpCheck::kMalformed);
    ScriptedContext line;
    EXPECT_EQ(PrintBitmap(line.ctx, file, false, 0x21), 0);
    EXPECT_EQ(PrintRasterLogo(line.ctx, file, 832, true, RasterMargin::kWrapUnsigned), 0);
    EXPECT_EQ(PrintRasterLogo(line.ctx, file, 832, true, RasterMargin::kClampToZero), 0);
    EXPECT_EQ(line.Sent(), "");
  }
  Bytes narrow = MonoBmp({std::string(12, '.'), std::string(12, '.'), std::string(12, '.')});
  PutU32(narrow, 34, 0);  // no image size: 4 bytes for 3 rows, and 1 byte a row cannot hold 12 pixels
  BmpImage image;
  EXPECT_EQ(ReadMonoBmp(narrow, image), BmpCheck::kMalformed);
}

// ESC * mode nL nH, the band, the terminator: a 0 bit (black) sets the dot. No "BM": nothing.
TEST(PrintBitmap, Bands) {
  auto withoutImageSize = [](Bytes file) { return PutU32(file, 34, 0), file; };
  const struct {
    const char* name; Bytes bmp; bool doubleHeight; std::uint8_t mode; std::string bytes; const char* end = "\r\n";
  } cases[] = {
      {"8-dot band, partly filled, shifted up", kSample16x3, false, 0x00,
       "1B 2A 00 10 00 C0 80 80 80 80 80 80 80 E0 A0 A0 A0 A0 A0 A0 A0 0D 0A"},
      {"8-dot band, double height", kSample16x3, true, 0x00,
       "1B 2A 00 10 00 F0 C0 C0 C0 C0 C0 C0 C0 FC CC CC CC CC CC CC CC 0D 0A"},
      {"24-dot band", kSample16x3, false, 0x21,
       "1B 2A 21 10 00 C0 00 00 " + Repeat("80 00 00", 7) + " E0 00 00 " + Repeat("A0 00 00", 7) + " 0D 0A"},
      {"24-dot band, double height", kSample16x3, true, 0x21,
       "1B 2A 21 10 00 F0 00 00 " + Repeat("C0 00 00", 7) + " FC 00 00 " + Repeat("CC 00 00", 7) + " 0D 0A"},
      {"two 8-dot bands, a header before each", kSample2x9, false, 0x01,
       "1B 2A 01 02 00 80 00 0D 0A 1B 2A 01 02 00 00 80 0D 0A"},
      {"24-dot band, second byte partly filled", kSample2x9, false, 0x20, "1B 2A 20 02 00 80 00 00 00 80 00 0D 0A"},
      {"double height over two bands", MonoBmp({"#.", "..", "..", ".#", "##"}), true, 0x00,
       "1B 2A 00 02 00 C0 03 0D 0A 1B 2A 00 02 00 C0 C0 0D 0A"},
      {"width above 255", MonoBmp({std::string(300, '.')}), false, 0, "1B 2A 00 2C 01 " + Repeat("00", 300) + " 0D 0A"},
      {"no image size: width x height / 8, rows taken unpadded", withoutImageSize(kSample16x3), false, 0,
       "1B 2A 00 10 00 C0 " + Repeat("40", 7) + " E0 " + Repeat("60", 7) + " 0D 0A"},
      {"the context's terminator", MonoBmp({"#."}), false, 0x00, "1B 2A 00 02 00 80 00 0A", "\n"},
      {"not a bitmap", Bytes{'h', 'e', 'l', 'l', 'o'}, false, 0x00, ""}, {"empty", Bytes{}, false, 0x00, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::string sent;
    auto print = [&c](PortContext& ctx) {
      ctx.SetTerminator(c.end);
      return PrintBitmap(ctx, c.bmp, c.doubleHeight, c.mode);
    };
    EXPECT_EQ(RunCut(print, sent), 1);
    EXPECT_EQ(ToHex(sent), c.bytes);
  }
}

// GS v 0 m xL xH yL yH, then each row: the margin's blank bytes (a write of their own, none
// when there is no margin) and the row, its bits inverted, the last byte masked. Wrap: the
// ticket printers' margin rule, clamp: the presenter printer's.
TEST(RasterLogo, CentredRows) {
  const auto kWrap = RasterMargin::kWrapUnsigned, kClamp = RasterMargin::kClampToZero;
  const Bytes wide100 = MonoBmp({std::string(100, '#'), std::string(100, '.')});
  const Bytes black700 = MonoBmp({std::string(700, '#')});
  const struct {
    const char* name; Bytes bmp; int lineDots; bool twice; RasterMargin margin; int result; std::string bytes;
    std::size_t writes;
  } cases[] = {
      {"100 wide on 640: 13 bytes, the last masked, margin 33, x = 46", wide100, 640, false, kWrap, 1,
       "1D 76 30 30 2E 00 02 00 " + Repeat("00", 33) + " " + Repeat("FF", 12) + " F0 " + Repeat("00", 46), 5},
      {"bits inverted, most significant first", MonoBmp({"#.#.#.#."}), 640, false, kClamp, 1,
       "1D 76 30 30 28 00 01 00 " + Repeat("00", 39) + " AA", 3},
      {"400 wide doubled on 832: one margin byte", MonoBmp({std::string(400, '#')}), 832, true, kWrap, 1,
       "1D 76 30 33 33 00 01 00 00 " + Repeat("FF", 50), 3},
      {"700 wide doubled on 832 wraps round: 11", black700, 832, true, kWrap, 11, "", 0},
      {"700 wide on 640 wraps round: 11", black700, 640, false, kWrap, 11, "", 0},
      {"700 wide doubled on 832, clamped: no margin", black700, 832, true, kClamp, 1,
       "1D 76 30 33 58 00 01 00 " + Repeat("FF", 87) + " F0", 2},
      {"exactly the paper width", MonoBmp({std::string(416, '#')}), 832, true, kWrap, 1,
       "1D 76 30 33 34 00 01 00 " + Repeat("FF", 52), 2},
      {"300 rows: the height in two bytes", MonoBmp(std::vector<std::string>(300, "........")), 640, false, kClamp, 1,
       "1D 76 30 30 28 00 2C 01 " + Repeat("00", 40 * 300), 601},
      {"not a bitmap: 1, nothing sent", Bytes{'h', 'i'}, 640, false, kClamp, 1, "", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::string sent;
    std::size_t writes = 0;
    auto print = [&c](PortContext& ctx) { return PrintRasterLogo(ctx, c.bmp, c.lineDots, c.twice, c.margin); };
    EXPECT_EQ(RunCut(print, sent, &writes), c.result);
    EXPECT_EQ(ToHex(sent), c.bytes);
    EXPECT_EQ(writes, c.writes);
  }
}

}  // namespace
}  // namespace posprint::test
