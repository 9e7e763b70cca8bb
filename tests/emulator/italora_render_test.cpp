// What the virtual ITALORA label printer draws: labels of the size ?02 gives at the
// printer's resolution, text cells of its three fonts and their turns, bars, stored
// pictures, barcodes and QR codes read back, copies, and the lines it cannot take.
#include <gtest/gtest.h>

#include "emulator_helpers.h"

namespace emulator_test {
namespace {

// Command lines written with "|" for the CR that ends each.
std::unique_ptr<VirtualPrinter> Italora(std::string lines, int dotsPerMm = 8) {
  for (char& c : lines)
    if (c == '|') c = '\r';
  auto printer = VirtualPrinter::ForModel("ITALORA", dotsPerMm);
  printer->Receive(lines);
  return printer;
}

// One 60 x 40 mm label holding what `drawing` draws.
Image LabelOf(const std::string& drawing) {
  auto printer = Italora("?02&60.000&40.000|" + drawing + "?03&1|");
  EXPECT_TRUE(printer->PrinterNotes().List().empty()) << printer->PrinterNotes().List().front();
  return printer->FinishedPages() == 1 ? printer->Page(0) : Image();
}

TEST(ItaloraLabel, SizeInMillimetresAtTheResolutionAndCopies) {
  auto eight = Italora("?02&60.000&40.000|?03&2|");
  ASSERT_EQ(eight->FinishedPages(), 2);
  EXPECT_EQ(eight->Page(1).Width(), 480);
  EXPECT_EQ(eight->Page(1).Height(), 320);
  auto twelve = Italora("?02&57.500&40.000|?03&1|", 12);
  ASSERT_EQ(twelve->FinishedPages(), 1);
  EXPECT_EQ(twelve->Page(0).Width(), 690);
  auto out = Italora("?02&60.000&40.000|");
  out->SetState(PrinterState::kPaperOut);
  out->Receive(std::string("?03&1\r"));
  EXPECT_EQ(out->FinishedPages(), 0) << "no labels, nothing printed";
}

// A reversed blank is a black cell: its ink is the cell exactly.
TEST(ItaloraLabel, TextCellsFontsMultipliersAndTurns) {
  struct Case {
    const char* name;
    const char* line;
    Box box;
  };
  const Case cases[] = {
      {"font 1: 1.5 x 3 mm", "?10&12.000&5.000&0&1&1&1&8&   |", {96, 40, 36, 24}},
      {"font 2: 1 x 2 mm", "?10&12.000&5.000&0&2&1&1&8&   |", {96, 40, 24, 16}},
      {"font 3: 2 x 4 mm", "?10&12.000&5.000&0&3&1&1&8&   |", {96, 40, 48, 32}},
      {"height 2, width 3", "?10&12.000&5.000&0&1&2&3&8& |", {96, 40, 36, 48}},
      {"turned 90 about its corner", "?10&12.000&5.000&90&1&1&1&8&   |", {72, 40, 24, 36}},
      {"turned 180", "?10&12.000&5.000&180&1&1&1&8&   |", {60, 16, 36, 24}},
      {"turned 270", "?10&12.000&5.000&270&1&1&1&8&   |", {96, 4, 24, 36}},
      {"a bar", "?20&1.000&14.375&58.000&0.250|", {8, 115, 464, 2}},
      {"a stored picture", "?41&P&10&2&FFC08040|?40&1.000&1.000&0&P|", {8, 8, 10, 2}},
      {"a stored picture turned", "?41&P&10&2&FFC08040|?40&1.000&1.000&90&P|", {8, 8, 2, 10}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::string line = c.line;
    for (char& ch : line)
      if (ch == '|') ch = '\r';
    EXPECT_EQ(InkBox(LabelOf(line)), c.box);
  }
}

TEST(ItaloraLabel, PictureRowsAsSent) {
  const Image label = LabelOf("?41&P&10&2&FFC08040\r?40&0.000&0.000&0&P\r");
  EXPECT_EQ(label.Count(posprint::emulator::kBlack), 12) << "a full row of 10, then the first and last dot";
  EXPECT_EQ(label.At(9, 1), posprint::emulator::kBlack);
  EXPECT_EQ(label.At(5, 1), posprint::emulator::kPaper);
}

TEST(ItaloraLabel, BarcodesReadBackWhereJustified) {
  struct Case {
    const char* name;
    std::string line;
    std::string data;
    int left, right;  // where the symbol's ink begins and ends; -1: not checked
  };
  const Case cases[] = {
      {"Code 128 centred on x", "?30&30.000&16.000&C&0&128&0.250&12.000&0&TKT0001", "TKT0001", -1, -1},
      {"left edge at x", "?30&2.000&16.000&L&0&128&0.250&12.000&0&TKT0001", "TKT0001", 16, -1},
      {"right edge at x", "?30&58.000&16.000&R&0&128&0.250&12.000&0&TKT0001", "TKT0001", -1, 464},
      {"EAN-13 with its text below", "?30&30.000&16.000&C&0&E13&0.250&12.000&2&800123456789", "8001234567897", -1, -1},
      {"EAN-8", "?30&30.000&16.000&C&0&E8&0.375&12.000&0&9638507", "96385074", -1, -1},
      {"Code 39", "?30&30.000&16.000&C&0&39&0.250&12.000&0&AB12", "AB12", -1, -1},
      {"interleaved 2 of 5", "?30&30.000&16.000&C&0&I25&0.250&12.000&0&12345678", "12345678", -1, -1},
      {"QR code", "?30&30.000&2.000&C&0&QR&0.500&30.000&0&https://example.com/t/1", "https://example.com/t/1", -1, -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Image label = LabelOf(c.line + "\r");
    EXPECT_EQ(ReadBarcodes(label), std::vector<std::string>{c.data});
    const Box box = InkBox(label);
    if (c.left >= 0) {
      EXPECT_EQ(box.x, c.left);
    }
    if (c.right >= 0) {
      EXPECT_EQ(box.x + box.width, c.right);
    }
  }
  // Upright, y is the top of the bars: a text line above stands in the 2.5 mm over them.
  const Box bare = InkBox(LabelOf("?30&30.000&16.000&C&0&128&0.250&12.000&0&TKT0001\r"));
  EXPECT_EQ(bare.y, 128);
  EXPECT_EQ(bare.height, 96);
  EXPECT_LT(InkBox(LabelOf("?30&30.000&16.000&C&0&128&0.250&12.000&1&TKT0001\r")).y, 128);
}

TEST(ItaloraLabel, LinesItCannotTakeAreNoted) {
  struct Case {
    std::string lines;
    const char* note;
  };
  const Case cases[] = {
      {"?99|", "line 1 (?99): unknown command"},
      {"?1|", "line 1 (?1): a command line begins with ? and two digits: ignored"},
      {"?0212|", "line 1 (?02): parameters begin with &: ignored"},
      {"?02&60|", "line 1 (?02): 2 parameters expected, 1 came: ignored"},
      {"?02&6O&40|", "line 1 (?02): label width \"6O\" is not a number of millimetres: ignored"},
      {"?01&20&100&D|", "line 1 (?01): darkness \"20\" is not a whole number 1 to 15: ignored"},
      {"?10&1&1&0&1&1&1&0&A|", "line 1 (?10): nothing to draw on: no label was started with ?02"},
      {"?02&60&40|?10&1&1&45&1&1&1&0&A|", "line 2 (?10): rotation \"45\" is not 0, 90, 180 or 270: ignored"},
      {"?02&60&40|?30&1&1&C&0&EAN&0.25&10&0&1|", "line 2 (?30): symbology \"EAN\" is not known: barcode skipped"},
      {"?02&60&40|?30&1&1&C&0&128&9000&10&0&A|", "line 2 (?30): a symbol 3312000 dots wide does not fit the label: skipped"},
      {"?41&P&10&2&FFC0|", "line 1 (?41): picture \"P\": 8 hexadecimal digits expected, 4 came: not stored"},
      {"?41&P&8&1&G0|", "line 1 (?41): picture \"P\": a row holds a character that is not hexadecimal: not stored"},
      {"?41&P&8&1&FF|?00|?02&60&40|?40&0&0&0&P|", "line 4 (?40): no picture \"P\" is stored (?41): nothing drawn"},
      {"?03&1|", "line 1 (?03): no label to print: none was started with ?02"},
      {"hello", "bytes outside any command line are ignored (first: 68)"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.lines);
    auto printer = Italora(c.lines);
    ASSERT_EQ(printer->PrinterNotes().List().size(), 1u);
    EXPECT_EQ(printer->PrinterNotes().List()[0], c.note);
  }
  auto unended = Italora("?02&60&40|?10&1&1&0&1&1&1&0&A|?10&1&5");
  unended->Finish();
  EXPECT_EQ(unended->PrinterNotes().List(),
            (std::vector<std::string>{"a command line was never ended with CR: \"?10&1&5\"",
                                      "a label (?02) was never printed with ?03"}));
}

TEST(ItaloraLabel, FreeTextRunsToTheEndOfTheLine) {
  // The text of ?10 may hold ampersands: the line splits into no more parts than ?10 has.
  const Image label = LabelOf("?10&0.000&0.000&0&2&1&1&8&A&B\r");
  EXPECT_EQ(InkBox(label).width, 3 * 8);
}

}  // namespace
}  // namespace emulator_test
