// What the ESC/POS-family virtual printers draw: characters in their cells, print modes,
// alignment, pictures, barcodes read back with zxing, cuts. The TMT70 is the reference:
// 640-dot paper, 504 printable dots from dot 68, font A 12 x 24, font B 9 x 17, line
// spacing 30.
#include <gtest/gtest.h>

#include "emulator/glyphs.h"
#include "emulator_helpers.h"

namespace emulator_test {
namespace {

using posprint::emulator::kBlack;
using posprint::emulator::kCutMark;

constexpr int kLeft = 68;  // first printable dot of the TMT70's paper

// The full block (PC437 DB) fills its character cell, so its ink is the cell; the strip
// after LF shows how far the line fed.
TEST(EscPosText, CellsSizesAndAlignment) {
  struct Case {
    const char* name;
    const char* bytes;
    Box box;
    int fed;
  };
  const Case cases[] = {
      {"font A at the left margin", "DB 0A", {kLeft, 0, 12, 24}, 30},
      {"characters advance by their cell", "DB DB 0A", {kLeft, 0, 24, 24}, 30},
      {"font B", "1B 21 01 DB DB 0A", {kLeft, 0, 18, 17}, 30},
      {"ESC ! 0x30: double width and height, a line of its own height", "1B 21 30 DB 0A", {kLeft, 0, 24, 48}, 48},
      {"GS ! 0x21: 3 wide, 2 high", "1D 21 21 DB 0A", {kLeft, 0, 36, 48}, 48},
      {"ESC @ drops the unprinted line and the mode", "1B 21 30 DB DB 1B 40 DB 0A", {kLeft, 0, 12, 24}, 30},
      {"aligned left", "1B 61 00 DB DB 0A", {kLeft, 0, 24, 24}, 30},
      {"centred in the 504 printable dots", "1B 61 01 DB DB 0A", {kLeft + 240, 0, 24, 24}, 30},
      {"centred, as an ASCII digit", "1B 61 31 DB DB 0A", {kLeft + 240, 0, 24, 24}, 30},
      {"aligned right", "1B 61 02 DB DB 0A", {kLeft + 480, 0, 24, 24}, 30},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Image strip = PrinterFed("TMT70", c.bytes)->Preview();
    EXPECT_EQ(InkBox(strip), c.box);
    EXPECT_EQ(strip.Height(), c.fed);
  }
}

TEST(EscPosText, UnderlineRunsUnderEveryCellIncludingSpaces) {
  auto printer = PrinterFed("TMT70", "1B 21 80 20 20 0A");  // two underlined spaces
  const Image page = printer->Preview();
  EXPECT_EQ(page.Count(kBlack, kLeft, 23, 24, 1), 24);
  EXPECT_EQ(page.Count(kBlack, 0, 0, page.Width(), 22), 0);
}

TEST(EscPosText, EmphasisDrawsHeavierStrokes) {
  auto normal = PrinterFed("TMT70", "48 0A");
  auto bold = PrinterFed("TMT70", "1B 21 08 48 0A");
  EXPECT_GT(bold->Preview().Count(kBlack), normal->Preview().Count(kBlack));
}

TEST(EscPosText, UpsideDownTurnsTheLineHalfRound) {
  auto normal = PrinterFed("TMT70", "48 4C 0A");  // "HL"
  auto turned = PrinterFed("TMT70", "1B 7B 01 48 4C 0A");
  const Image a = normal->Preview(), b = turned->Preview();
  // The printable line turned about its centre: each dot (x, y) of the line lands at
  // (2 * kLeft + 503 - x, 23 - y) in the 24-dot line.
  int mismatches = 0;
  for (int y = 0; y < 24; ++y)
    for (int x = kLeft; x < kLeft + 504; ++x) mismatches += a.At(x, y) != b.At(2 * kLeft + 503 - x, 23 - y);
  EXPECT_EQ(mismatches, 0);
  EXPECT_GT(InkBox(b).x, kLeft + 400) << "the text now stands at the right";
}

TEST(EscPosText, LinesFollowAtTheLineSpacing) {
  auto printer = PrinterFed("TMT70", "48 0A 48 0A 1B 33 40 48 0A 48 0A");  // then ESC 3 64
  const auto bands = InkBands(printer->Preview());
  ASSERT_EQ(bands.size(), 4u);
  EXPECT_EQ(bands[1].first - bands[0].first, 30);
  EXPECT_EQ(bands[2].first - bands[1].first, 30);
  EXPECT_EQ(bands[3].first - bands[2].first, 64);
}

TEST(EscPosText, ALineThatIsFullWrapsOntoTheNext) {
  auto printer = VirtualPrinter::ForModel("TMT70");
  std::string line;
  for (int i = 0; i < 43; ++i) line += "48 ";
  printer->Receive(Hex(line + "0A"));
  const auto bands = InkBands(printer->Preview());
  ASSERT_EQ(bands.size(), 2u) << "42 characters fill the line, the 43rd starts the next";
  EXPECT_EQ(InkBox(printer->Preview(), bands[1].first).width, InkBox(PrinterFed("TMT70", "48 0A")->Preview()).width);
}

TEST(EscPosText, CodeTablePc858PrintsTheEuroSign) {
  auto euro = PrinterFed("TMT70", "1B 74 13 D5 0A");
  auto pc437 = PrinterFed("TMT70", "1B 74 00 D5 0A");
  const Image expected = posprint::emulator::DrawGlyph(U'\u20AC', 12, 24, {});
  EXPECT_EQ(euro->Preview().Crop(kLeft, 0, 12, 24).Dots(), expected.Dots());
  EXPECT_NE(pc437->Preview().Crop(kLeft, 0, 12, 24).Dots(), expected.Dots());
}

TEST(EscPosPictures, DotsWhereAndAsLargeAsEachModeDrawsThem) {
  struct Case {
    const char* name;
    const char* model;
    const char* bytes;
    Box box;
  };
  const Case cases[] = {
      {"GS v 0: the high bit leftmost", "TMT70", "1D 76 30 00 01 00 01 00 F0", {kLeft, 0, 4, 1}},
      {"GS v 0: the low bits right", "TMT70", "1D 76 30 00 01 00 01 00 0F", {kLeft + 4, 0, 4, 1}},
      {"GS v 0 double size: 2 x 2 a dot", "TMT70", "1D 76 30 33 01 00 01 00 80", {kLeft, 0, 2, 2}},
      {"GS v 0 follows the alignment", "TMT70", "1B 61 01 1D 76 30 00 01 00 01 00 FF", {kLeft + 248, 0, 8, 1}},
      {"ESC * 0: the top dot, 2 x 3", "TMT70", "1B 2A 00 01 00 80 0A", {kLeft, 0, 2, 3}},
      {"ESC * 0: the bottom dot", "TMT70", "1B 2A 00 01 00 01 0A", {kLeft, 21, 2, 3}},
      {"ESC * 0 bands stack at spacing 0", "TMT70", "1B 33 00 1B 2A 00 01 00 FF 0D 0A 1B 2A 00 01 00 FF 0D 0A",
       {kLeft, 0, 2, 48}},
      {"ESC * 33: 24 dots, one to one", "STB60", "1B 2A 21 01 00 80 00 01 0A", {(480 - 384) / 2, 0, 1, 24}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(InkBox(PrinterFed(c.model, c.bytes)->Preview()), c.box);
  }
}

TEST(EscPosBarcodes, ReadBackWithTheirData) {
  struct Case {
    const char* name;
    const char* model;
    std::string bytes;
    std::string data;
  };
  const Case cases[] = {
      {"CODE128 form 2 with code set B", "TMT70", "1D 6B 49 07 7B 42 41 42 43 31 32", "ABC12"},
      {"EAN13 form 2, twelve digits", "TMT70", "1D 6B 43 0C 34 30 30 36 33 38 31 33 33 33 39 33", "4006381333931"},
      {"EAN8 form 2", "TMT70", "1D 6B 44 07 39 36 33 38 35 30 37", "96385074"},
      {"CODE39 form 2", "STB60", "1D 6B 45 05 43 4F 44 45 39", "CODE9"},
      {"ITF form 2", "TMT70", "1D 6B 46 06 31 32 33 34 35 36", "123456"},
      {"CODE128 form 1 (NUL ended) as the VKP80II sends it", "VKP80II", "1D 6B 08 7B 42 54 4B 54 31 00 0D", "TKT1"},
      {"EAN13 form 1", "VKP80II", "1D 6B 02 34 30 30 36 33 38 31 33 33 33 39 33 00", "4006381333931"},
      {"CODE39 form 1", "VKP80II", "1D 6B 04 41 42 43 00", "ABC"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto printer = VirtualPrinter::ForModel(c.model);
    printer->Receive(Hex(c.bytes));
    EXPECT_EQ(ReadBarcodes(printer->Preview()), std::vector<std::string>{c.data});
    EXPECT_TRUE(printer->PrinterNotes().List().empty()) << printer->PrinterNotes().List().front();
  }
}

TEST(EscPosBarcodes, HeightModuleAndHriAsSet) {
  // GS H 2 (text below), GS h 80, GS w 2, CODE128 "{BAB".
  auto printer = PrinterFed("TMT70", "1D 48 02 1D 68 50 1D 77 02 1D 6B 49 04 7B 42 41 42");
  const auto bands = InkBands(printer->Preview());
  ASSERT_EQ(bands.size(), 2u) << "bars, then the human-readable line";
  EXPECT_EQ(bands[0].second - bands[0].first + 1, 80);
  // Code 128 "AB": start, two symbols, check (11 modules each) and stop (13, ending
  // in a bar): 57 modules of 2 dots.
  EXPECT_EQ(InkBox(printer->Preview(), bands[0].first, bands[0].second + 1).width, 57 * 2);
  EXPECT_LE(bands[1].second - bands[1].first + 1, 24);
}

TEST(EscPosBarcodes, TextAboveAndBelowOrNone) {
  struct Case {
    const char* name;
    const char* position;
    std::size_t bands;
  };
  const Case cases[] = {{"none", "00", 1}, {"above", "01", 2}, {"below", "02", 2}, {"both", "03", 3}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto printer = PrinterFed("TMT70", std::string("1D 48 ") + c.position + " 1D 6B 49 04 7B 42 41 42");
    EXPECT_EQ(InkBands(printer->Preview()).size(), c.bands);
  }
}

TEST(EscPosBarcodes, BadDataIsReportedNotPrinted) {
  auto printer = PrinterFed("TMT70", "1D 6B 43 0C 41 42 43 44 45 46 47 48 49 4A 4B 4C");  // EAN13 of letters
  EXPECT_EQ(printer->Preview().Count(kBlack), 0);
  ASSERT_EQ(printer->PrinterNotes().List().size(), 1u);
  EXPECT_NE(printer->PrinterNotes().List()[0].find("barcode not printed"), std::string::npos);
}

TEST(EscPosPaper, CutsMarkThePaperAndEndTickets) {
  auto printer = PrinterFed("TMT70", "48 0A 1D 56 01 48 0A 1B 69 48 0A");
  EXPECT_EQ(printer->FinishedPages(), 2);
  const Image strip = printer->Preview();
  EXPECT_GT(strip.Count(kCutMark, 0, 29, strip.Width(), 2), 0) << "partial cut after the first line";
  EXPECT_GT(strip.Count(kCutMark, 0, 59, strip.Width(), 2), 0) << "full cut after the second";
  EXPECT_EQ(strip.Count(kCutMark, strip.Width() / 2 - 4, 29, 8, 2), 0) << "a partial cut leaves the middle";
  EXPECT_GT(strip.Count(kCutMark, strip.Width() / 2 - 4, 59, 8, 2), 0) << "a full cut goes across";
  EXPECT_EQ(printer->Page(0).Height(), 30);
  EXPECT_EQ(InkBox(printer->Unfinished()).y, InkBox(printer->Page(0)).y) << "the third line hangs out of the printer";
}

TEST(EscPosPaper, RetractingCutFeedsCutsAndComesBack) {
  auto printer = PrinterFed("STB112", "48 0A 1B 28 76 64 00 1B 69 1B 28 76 9C FF 48 0A");
  ASSERT_EQ(printer->FinishedPages(), 1);
  EXPECT_EQ(printer->Page(0).Height(), 44 + 100) << "one line, then forward 100 dots to the blade";
  const auto bands = InkBands(printer->Unfinished());
  ASSERT_EQ(bands.size(), 1u);
  EXPECT_LT(bands[0].first, 10) << "the next ticket starts at the cut, not 100 dots below it";
}

TEST(EscPosPaper, NothingIsPrintedOutOfPaper) {
  auto printer = VirtualPrinter::ForModel("TMT70");
  printer->SetState(PrinterState::kPaperOut);
  printer->Receive(Hex("48 0A 1D 56 01"));
  EXPECT_TRUE(printer->Preview().Empty() || printer->Preview().Count(kBlack) == 0);
  EXPECT_EQ(printer->FinishedPages(), 0);
}

TEST(EscPosNotes, UnknownCommandsAreReported) {
  // An unknown command is taken as its two bytes: what follows is read afresh.
  auto printer = PrinterFed("TMT70", "1B 51 48 0A 1D 99 05");
  const auto& notes = printer->PrinterNotes().List();
  ASSERT_EQ(notes.size(), 3u);
  EXPECT_EQ(notes[0], "byte 0: unknown command ESC 51");
  EXPECT_EQ(notes[1], "byte 4: unknown command GS 99");
  EXPECT_EQ(notes[2], "byte 6: stray control byte 05");
  EXPECT_GT(printer->Preview().Count(kBlack), 0) << "the character after it still prints";
}

TEST(EscPosNotes, SettingFramesAreCheckedByTheirChecksum) {
  auto good = PrinterFed("STB112", "1D FF 0A 32 0F 04 6B");
  EXPECT_TRUE(good->PrinterNotes().List().empty());
  auto bad = PrinterFed("STB112", "1D FF 0A 32 0F 04 6C");
  ASSERT_EQ(bad->PrinterNotes().List().size(), 1u);
  EXPECT_EQ(bad->PrinterNotes().List()[0],
            "byte 0: setting frame 1D FF 0A 32 0F 04 6C has a wrong checksum (expected 6B): ignored");
}

TEST(EscPosPaper, StbPaperWidthSettingNarrowsTheRow) {
  auto wide = PrinterFed("STB112", "1D FF 0A 32 01 00 59 48 0A");
  auto narrow = PrinterFed("STB112", "1D FF 0A 32 01 01 5A 48 0A");
  EXPECT_EQ(wide->Preview().Width(), 896);
  EXPECT_EQ(narrow->Preview().Width(), 640);
}

}  // namespace
}  // namespace emulator_test
