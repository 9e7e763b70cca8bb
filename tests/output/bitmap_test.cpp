// Logos: BMP reading, ESC * bit-image bands and the GS v 0 raster image.
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "frame/bmp.h"
#include "frame/output.h"
#include "frame/raster_logo.h"
#include "support/bmp_builder.h"
#include "support/bytes.h"

namespace posprint::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string Repeat(const std::string& hex, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += (i ? " " : "") + hex;
  return out;
}

// 16 x 3: the top row black, a middle row with two black dots, the bottom row's right half black.
Bytes Sample16x3() {
  return MonoBmp({"################",  //
                  "#.......#.......",  //
                  "........########"});
}

// 2 x 9: one black dot at the top left, one at the bottom right.
Bytes Sample2x9() { return MonoBmp({"#.", "..", "..", "..", "..", "..", "..", "..", ".#"}); }

TEST(ReadMonoBmp, FieldsOfAWellFormedFile) {
  BmpImage image;
  ASSERT_EQ(ReadMonoBmp(Sample16x3(), image), BmpCheck::kOk);
  EXPECT_EQ(image.dataOffset, 62u);
  EXPECT_EQ(image.width, 16);
  EXPECT_EQ(image.height, 3);
  EXPECT_EQ(image.stride, 4u);
  EXPECT_EQ(image.rowBytes, 2u);
}

TEST(ReadMonoBmp, MissingImageSizeMeansUnpaddedRows) {
  Bytes file = Sample16x3();
  PutU32(file, 34, 0);
  BmpImage image;
  ASSERT_EQ(ReadMonoBmp(file, image), BmpCheck::kOk);
  EXPECT_EQ(image.imageSize, 6u);  // 16 x 3 / 8
  EXPECT_EQ(image.stride, 2u);
  Bytes narrow = MonoBmp({"............", "............", "............"});  // 12 wide: 4 bytes for 3 rows
  PutU32(narrow, 34, 0);
  EXPECT_EQ(ReadMonoBmp(narrow, image), BmpCheck::kMalformed);  // 1 byte a row cannot hold 12 pixels
}

struct BadFile {
  const char* name;
  std::function<void(Bytes&)> spoil;
  BmpCheck check;
};

const std::vector<BadFile>& BadFiles() {
  static const std::vector<BadFile> files = {
      {"only the signature", [](Bytes& f) { f.resize(2); }, BmpCheck::kMalformed},
      {"header cut short", [](Bytes& f) { f.resize(53); }, BmpCheck::kMalformed},
      {"last row cut short", [](Bytes& f) { f.resize(f.size() - 1); }, BmpCheck::kMalformed},
      {"zero height", [](Bytes& f) { PutU32(f, 22, 0); }, BmpCheck::kMalformed},
      {"negative height (top-down)", [](Bytes& f) { PutU32(f, 22, static_cast<std::uint32_t>(-3)); },
       BmpCheck::kMalformed},
      {"huge height", [](Bytes& f) { PutU32(f, 22, 0x7FFFFFFF); }, BmpCheck::kMalformed},
      {"zero width", [](Bytes& f) { PutU32(f, 18, 0); }, BmpCheck::kMalformed},
      {"negative width", [](Bytes& f) { PutU32(f, 18, static_cast<std::uint32_t>(-16)); }, BmpCheck::kMalformed},
      {"width past the stride", [](Bytes& f) { PutU32(f, 18, 33); }, BmpCheck::kMalformed},
      {"width far past the data", [](Bytes& f) { PutU32(f, 18, 1000); }, BmpCheck::kMalformed},
      {"image size larger than the file", [](Bytes& f) { PutU32(f, 34, 4000); }, BmpCheck::kMalformed},
      {"image size too small for the rows", [](Bytes& f) { PutU32(f, 34, 3); }, BmpCheck::kMalformed},
      {"image size at the 32-bit limit", [](Bytes& f) { PutU32(f, 34, 0xFFFFFFFF); }, BmpCheck::kMalformed},
      {"data offset past the end", [](Bytes& f) { PutU32(f, 10, 1000); }, BmpCheck::kMalformed},
      {"data offset at the 32-bit limit", [](Bytes& f) { PutU32(f, 10, 0xFFFFFFFF); }, BmpCheck::kMalformed},
      {"24 bits a pixel", [](Bytes& f) { PutU16(f, 28, 24); }, BmpCheck::kNotMono},
      {"8 bits a pixel", [](Bytes& f) { PutU16(f, 28, 8); }, BmpCheck::kNotMono},
      {"0 bits a pixel", [](Bytes& f) { PutU16(f, 28, 0); }, BmpCheck::kNotMono},
  };
  return files;
}

TEST(ReadMonoBmp, BrokenFilesAreRefused) {
  for (const BadFile& bad : BadFiles()) {
    SCOPED_TRACE(bad.name);
    Bytes file = Sample16x3();
    bad.spoil(file);
    BmpImage image;
    EXPECT_EQ(ReadMonoBmp(file, image), bad.check);
  }
}

struct BandCase {
  const char* name;
  Bytes bmp;
  bool doubleHeight;
  std::uint8_t mode;
  std::string bytes;
};

TEST(PrintBitmap, Bands) {
  const std::vector<BandCase> cases = {
      {"8-dot band, partly filled, shifted up", Sample16x3(), false, 0x00,
       "1B 2A 00 10 00 C0 80 80 80 80 80 80 80 E0 A0 A0 A0 A0 A0 A0 A0 0D 0A"},
      {"8-dot band, double height", Sample16x3(), true, 0x00,
       "1B 2A 00 10 00 F0 C0 C0 C0 C0 C0 C0 C0 FC CC CC CC CC CC CC CC 0D 0A"},
      {"24-dot band", Sample16x3(), false, 0x21,
       "1B 2A 21 10 00 C0 00 00 " + Repeat("80 00 00", 7) + " E0 00 00 " + Repeat("A0 00 00", 7) + " 0D 0A"},
      {"24-dot band, double height", Sample16x3(), true, 0x21,
       "1B 2A 21 10 00 F0 00 00 " + Repeat("C0 00 00", 7) + " FC 00 00 " + Repeat("CC 00 00", 7) + " 0D 0A"},
      {"two 8-dot bands, header before each", Sample2x9(), false, 0x01,
       "1B 2A 01 02 00 80 00 0D 0A 1B 2A 01 02 00 00 80 0D 0A"},
      {"24-dot band, second byte partly filled", Sample2x9(), false, 0x20,
       "1B 2A 20 02 00 80 00 00 00 80 00 0D 0A"},
      {"double height over two bands", MonoBmp({"#.", "..", "..", ".#", "##"}), true, 0x00,
       "1B 2A 00 02 00 C0 03 0D 0A 1B 2A 00 02 00 C0 C0 0D 0A"},
      {"width above 255", MonoBmp({std::string(300, '.')}), false, 0x00,
       "1B 2A 00 2C 01 " + Repeat("00", 300) + " 0D 0A"},
  };
  for (const BandCase& c : cases) {
    SCOPED_TRACE(c.name);
    ScriptedContext line;
    EXPECT_EQ(PrintBitmap(line.ctx, c.bmp, c.doubleHeight, c.mode), 1);
    EXPECT_EQ(line.Sent(), c.bytes);
  }
}

TEST(PrintBitmap, ContextTerminatorEndsEachBand) {
  ScriptedContext line;
  line.ctx.SetTerminator("\n");
  EXPECT_EQ(PrintBitmap(line.ctx, MonoBmp({"#."}), false, 0), 1);
  EXPECT_EQ(line.Sent(), "1B 2A 00 02 00 80 00 0A");
}

TEST(PrintBitmap, ShortWriteAtEachWrite) {
  const std::vector<std::string> writes = {"1B 2A 00 02 00", "80 00", "0D 0A", "1B 2A 00 02 00", "00 80", "0D 0A"};
  for (std::size_t n = 1; n <= writes.size(); ++n) {
    SCOPED_TRACE("short write " + std::to_string(n));
    ScriptedContext line;
    line.port.ShortWriteAt(static_cast<int>(n), 0);
    EXPECT_EQ(PrintBitmap(line.ctx, Sample2x9(), false, 0), 0);
    std::string expected;
    for (std::size_t i = 0; i + 1 < n; ++i) expected += (i ? " " : "") + writes[i];
    EXPECT_EQ(line.Sent(), expected);
  }
}

TEST(PrintBitmap, NotABitmapPrintsNothingAndSucceeds) {
  ScriptedContext line;
  EXPECT_EQ(PrintBitmap(line.ctx, {'h', 'e', 'l', 'l', 'o'}, false, 0), 1);
  EXPECT_EQ(PrintBitmap(line.ctx, {}, false, 0), 1);
  EXPECT_EQ(line.Sent(), "");
}

TEST(PrintBitmap, BrokenFilesGiveZeroAndSendNothing) {
  for (const BadFile& bad : BadFiles()) {
    SCOPED_TRACE(bad.name);
    Bytes file = Sample16x3();
    bad.spoil(file);
    ScriptedContext line;
    EXPECT_EQ(PrintBitmap(line.ctx, file, false, 0x21), 0);
    EXPECT_EQ(line.Sent(), "");
  }
}

struct RasterCase {
  const char* name;
  Bytes bmp;
  int lineWidthDots;
  bool doubleSize;
  RasterMargin margin;
  int result;
  std::string bytes;
};

TEST(RasterLogo, CentredRows) {
  const Bytes wide100 = MonoBmp({std::string(100, '#'), std::string(100, '.')});
  const std::string rows100 = Repeat("00", 33) + " " + Repeat("FF", 12) + " F0 " + Repeat("00", 33) + " " +
                              Repeat("00", 13);
  const Bytes black400 = MonoBmp({std::string(400, '#')});
  const Bytes black700 = MonoBmp({std::string(700, '#')});
  const std::vector<RasterCase> cases = {
      {"100 wide on 640: 13 bytes, last masked to 4 bits, margin 33, x = 46", wide100, 640, false,
       RasterMargin::kClampToZero, 1, "1D 76 30 30 2E 00 02 00 " + rows100},
      {"the same with the ticket printers' rule", wide100, 640, false, RasterMargin::kWrapUnsigned, 1,
       "1D 76 30 30 2E 00 02 00 " + rows100},
      {"bits inverted, most significant first", MonoBmp({"#.#.#.#."}), 640, false, RasterMargin::kClampToZero,
       1, "1D 76 30 30 28 00 01 00 " + Repeat("00", 39) + " AA"},
      {"400 wide doubled on 832: one margin byte", black400, 832, true, RasterMargin::kWrapUnsigned, 1,
       "1D 76 30 33 33 00 01 00 00 " + Repeat("FF", 50)},
      {"700 wide doubled on 832 wraps round: 11", black700, 832, true, RasterMargin::kWrapUnsigned, 11, ""},
      {"700 wide on 640 at normal size wraps round: 11", black700, 640, false, RasterMargin::kWrapUnsigned, 11,
       ""},
      {"700 wide doubled on 832, clamped: no margin", black700, 832, true, RasterMargin::kClampToZero, 1,
       "1D 76 30 33 58 00 01 00 " + Repeat("FF", 87) + " F0"},
      {"exactly the paper width", MonoBmp({std::string(416, '#')}), 832, true, RasterMargin::kWrapUnsigned, 1,
       "1D 76 30 33 34 00 01 00 " + Repeat("FF", 52)},
      {"not a bitmap: 1, nothing sent", Bytes{'h', 'i'}, 640, false, RasterMargin::kClampToZero, 1, ""},
  };
  for (const RasterCase& c : cases) {
    SCOPED_TRACE(c.name);
    ScriptedContext line;
    EXPECT_EQ(PrintRasterLogo(line.ctx, c.bmp, c.lineWidthDots, c.doubleSize, c.margin), c.result);
    EXPECT_EQ(line.Sent(), c.bytes);
  }
}

TEST(RasterLogo, MarginAndRowAreSeparateWritesAndNoEmptyMarginIsSent) {
  ScriptedContext line;
  ASSERT_EQ(PrintRasterLogo(line.ctx, MonoBmp({"#", "."}), 640, false, RasterMargin::kClampToZero), 1);
  EXPECT_EQ(line.port.Writes().size(), 5u);  // header, then margin and row twice
  ScriptedContext flush;
  ASSERT_EQ(PrintRasterLogo(flush.ctx, MonoBmp({std::string(640, '#')}), 640, false, RasterMargin::kClampToZero),
            1);
  EXPECT_EQ(flush.port.Writes().size(), 2u);  // header and row
}

TEST(RasterLogo, TallLogoHeightInTwoBytes) {
  ScriptedContext line;
  ASSERT_EQ(PrintRasterLogo(line.ctx, MonoBmp(std::vector<std::string>(300, "........")), 640, false,
                            RasterMargin::kClampToZero),
            1);
  EXPECT_EQ(line.Sent().substr(0, 23), "1D 76 30 30 28 00 2C 01");
}

TEST(RasterLogo, ShortWritesStopAtOnce) {
  const Bytes logo = MonoBmp({"#", "."});
  for (int n = 1; n <= 5; ++n) {
    SCOPED_TRACE("short write " + std::to_string(n));
    ScriptedContext line;
    line.port.ShortWriteAt(n, 0);
    EXPECT_EQ(PrintRasterLogo(line.ctx, logo, 640, false, RasterMargin::kClampToZero), 0);
    EXPECT_EQ(line.port.Writes().size(), static_cast<std::size_t>(n));
  }
}

TEST(RasterLogo, BrokenFilesGiveZeroAndSendNothing) {
  for (const BadFile& bad : BadFiles()) {
    SCOPED_TRACE(bad.name);
    Bytes file = Sample16x3();
    bad.spoil(file);
    for (RasterMargin rule : {RasterMargin::kWrapUnsigned, RasterMargin::kClampToZero}) {
      ScriptedContext line;
      EXPECT_EQ(PrintRasterLogo(line.ctx, file, 832, true, rule), 0);
      EXPECT_EQ(line.Sent(), "");
    }
  }
}

}  // namespace
}  // namespace posprint::test
