// What the virtual dot-matrix printer draws at 180 dots an inch: character pitches and
// sizes, bit-image densities and pins, line spacing and forms in 1/216 inch, bar codes
// read back, and what it reports about bytes it cannot print.
#include <gtest/gtest.h>

#include "emulator_helpers.h"

namespace emulator_test {
namespace {

constexpr int kLeft = 45;  // the 8-inch line centred on the 8.5-inch form

// Characters and bit images where the print position stands. The full block (PC437 DB)
// fills its character cell, so its ink is the cell.
TEST(EscPPage, CharacterCellsAndBitImagesAtThePrintPosition) {
  struct Case {
    const char* name;
    const char* bytes;
    Box box;
  };
  const Case cases[] = {
      {"pica: 10 an inch, 9 pins of 1/72 inch high", "DB DB", {kLeft, 0, 36, 22}},
      {"condensed: 17.14 an inch", "0F DB DB", {kLeft, 0, 21, 22}},
      {"elite: 12 an inch", "1B 4D DB DB", {kLeft, 0, 30, 22}},
      {"double width", "1B 57 01 DB", {kLeft, 0, 36, 22}},
      {"double height reaches down", "1B 77 01 DB", {kLeft, 0, 18, 45}},
      {"emphasis wins over condensed", "0F 1B 45 DB DB", {kLeft, 0, 36, 22}},
      {"ESC ! 0 ends condensed and double width", "0F 1B 57 01 1B 21 00 DB", {kLeft, 0, 18, 22}},
      {"ESC $ 30/60 inch", "1B 24 1E 00 DB", {kLeft + 90, 0, 18, 22}},
      {"CR returns to the margin", "DB DB 0D DB", {kLeft, 0, 36, 22}},
      {"ESC * 0: 60 dpi", "1B 2A 00 02 00 FF FF", {kLeft, 0, 6, 20}},
      {"ESC * 1: 120 dpi", "1B 2A 01 02 00 FF FF", {kLeft, 0, 3, 20}},
      {"ESC * 5: 72 dpi", "1B 2A 05 02 00 FF FF", {kLeft, 0, 5, 20}},
      {"ESC K: as ESC * 0", "1B 4B 02 00 FF FF", {kLeft, 0, 6, 20}},
      {"the top pin is the high bit", "1B 2A 05 01 00 80", {kLeft, 0, 2, 2}},
      {"the eighth pin", "1B 2A 05 01 00 01", {kLeft, 17, 2, 3}},
      {"a bit image after two characters", "20 20 1B 2A 00 01 00 FF", {kLeft + 36, 0, 3, 20}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(InkBox(PrinterFed("LX300", c.bytes)->Preview()), c.box);
  }
}

TEST(EscPPage, LineSpacingAndFeedsInUnitsOf216ths) {
  struct Case {
    const char* name;
    const char* bytes;
    int secondLineAt;  // dots
  };
  const Case cases[] = {
      {"LF: 1/6 inch", "DB 0D 0A DB", 30},
      {"LF alone also returns", "DB 0A DB", 30},
      {"ESC 3 72: 1/3 inch", "1B 33 48 DB 0A DB", 60},
      {"ESC 2 back to 1/6", "1B 33 48 1B 32 DB 0A DB", 30},
      {"ESC J 108", "DB 0D 1B 4A 6C DB", 90},
      {"ESC A 18: 18/72 inch", "1B 41 12 DB 0A DB", 45},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto bands = InkBands(PrinterFed("LX300", c.bytes)->Preview());
    ASSERT_EQ(bands.size(), 2u);
    EXPECT_EQ(bands[1].first, c.secondLineAt);
  }
}

TEST(EscPPage, FormsEndAtFormFeedsAndAtTheirLength) {
  auto standard = PrinterFed("LX300", "DB 0C");
  ASSERT_EQ(standard->FinishedPages(), 1);
  EXPECT_EQ(standard->Page(0).Height(), 1980) << "11 inches";
  // ESC C 6: forms of six 1/6-inch lines, from the line where it was given.
  auto short_forms = PrinterFed("LX300", "1B 43 06 DB 0C DB 0A 0A 0A 0A 0A 0A 0A");
  ASSERT_EQ(short_forms->FinishedPages(), 2) << "a form feed, then seven lines: one more form and a line";
  EXPECT_EQ(short_forms->Page(0).Height(), 180);
  EXPECT_EQ(short_forms->Page(1).Height(), 180);
  EXPECT_EQ(short_forms->Unfinished().Height(), 30);
  auto blank = PrinterFed("LX300", "1B 43 06 0C");
  EXPECT_EQ(blank->FinishedPages(), 1) << "a form feed at the top of a form feeds a blank form";
}

TEST(EscPPage, BarCodesReadBack) {
  struct Case {
    const char* name;
    std::string bytes;
    std::string data;
  };
  // ESC ( B nL nH k m s v1 v2 c data: module 3 dots, bars 80/180 inch.
  const Case cases[] = {
      {"Code 128", Hex("1B 28 42 13 00 06 03 00 50 00 00") + "TKT0001234567", "TKT0001234567"},
      {"EAN-13 adds its check digit", Hex("1B 28 42 12 00 00 03 00 50 00 00") + "400638133393", "4006381333931"},
      {"Code 39", Hex("1B 28 42 0C 00 05 03 00 50 00 00") + "CODE39", "CODE39"},
      {"interleaved 2 of 5", Hex("1B 28 42 0E 00 02 03 00 50 00 00") + "12345678", "12345678"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto printer = VirtualPrinter::ForModel("LX300");
    printer->Receive(c.bytes);
    EXPECT_EQ(ReadBarcodes(printer->Preview()), std::vector<std::string>{c.data});
  }
  // Control 02: no human-readable line, so the ink is the bars alone.
  auto bare = PrinterFed("LX300", "1B 28 42 0A 00 06 03 00 50 00 02 54 4B 54 31");
  EXPECT_EQ(InkBox(bare->Preview()).height, 80);
}

TEST(EscPPage, WhatItCannotPrintIsNoted) {
  struct Case {
    const char* bytes;
    const char* note;
  };
  const Case cases[] = {
      {"1B 7E", "byte 0: unknown command ESC 7E"},
      {"1B 2A 09 01 00 FF", "byte 0: bit image density 9 is not 0 to 7: skipped"},
      {"1B 43 00", "byte 0: page length 0 lines: kept the page as it was"},
      {"1B 28 42 07 00 09 03 00 50 00 00 31", "byte 0: bar code kind 9 is not known: skipped"},
      {"1B 28 42 07 00 06 07 00 50 00 00 31", "byte 0: bar code module 7 is not 2 to 5 dots: skipped"},
      {"1B 28 5A 01 00 00", "byte 0: unknown command ESC ( 5A"},
      {"41 10", "byte 1: stray control byte 10"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes);
    auto printer = PrinterFed("LX300", c.bytes);
    ASSERT_EQ(printer->PrinterNotes().List().size(), 1u);
    EXPECT_EQ(printer->PrinterNotes().List()[0], c.note);
  }
  auto cut = PrinterFed("LX300", "1B 2A 05 80 00 FF");
  cut->Finish();
  EXPECT_EQ(cut->PrinterNotes().List().back(), "byte 0: a command was cut short: 1B 2A 05 80 00 FF (6 bytes) never ended");
}

}  // namespace
}  // namespace emulator_test
