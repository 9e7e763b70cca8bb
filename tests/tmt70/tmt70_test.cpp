// The TMT70, the reference receipt printer: exact bytes of every command and field.
#include "drivers/receipt/TMT70/kp_tmt70.h"
#include "platform/logo_files.h"
#include "support/driver_fixture.h"
#include "support/run_program.h"

namespace {

using namespace posprint::test;

// ESC { 0 (not upside down), ESC ! 0 (print mode): the set-up before a text field.
const std::string kText = "1B 7B 00 1B 21 00";
// The text set-up, then `raw` as it goes on the line.
std::string Text(const std::string& raw) { return kText + " " + ToHex(raw); }
// A barcode: never turned (ESC { 0, ESC V 0), normal mode, GS f 1 (HRI font B), then `style`.
const std::string kBarcode = "1B 7B 00 1B 56 00 1B 21 00 1D 66 31 ";
const std::string kStyle = "1D 48 02 1D 68 50 1D 77 03";  // HRI below, 80 dots high, module 3
const std::string kFeeds = Times(8, "0A");

class Tmt70 : public DriverFixture<TMT70::KpTMT70> {
 protected:
  Tmt70() {
    posprint::SetLogoDirectory(logos.Path());
    // 8 x 2 pixels, 1 bit: the top row black, the bottom row white (rows stored bottom-up).
    logos.Write("logo.bmp", Bmp({"########", "........"}));
    logos.Write("notabitmap.bmp", "hello");
  }
  void FreshPrinter() override {}
  // The answers to the status requests in turn, split by ';'.
  void Prepare(const std::string& reply) override {
    std::string answer;
    for (std::istringstream in(reply); std::getline(in, answer, ';');) port.Answer(Hex(answer));
  }
  std::string Received() const override { return Line(); }
  TempDir logos;
};

TEST_F(Tmt70, OpenStatusAndEndOfPrint) {
  const wchar_t *end = L"param_EndPaperSensor", *nearEnd = L"param_NearlyEndPaperSensor";
  const wchar_t *roll = L"param_RollEjection", *cut = L"param_CutType";
  const std::string ask = "10 04 02", both = "10 04 02 10 04 04";
  Run({
      // ESC t 0 (PC437), ESC @, GS b: the open; 42 columns of font A.
      {"open", {}, "", "INIT_PRINTER", 1, "1B 74 00 1B 40 1D 62", 42},
      {"start print sends nothing", {}, "", "START_PRINT", 1, ""},
      // DLE EOT 2 (printer), then DLE EOT 4 (paper); bits 1 and 4 of each answer are fixed.
      {"ready", {}, "12;12", "CHECK", 1, both},
      {"no answer", {}, "", "CHECK", 101, ask},
      {"no second answer", {}, "12", "CHECK", 101, both},
      {"cover open wins over paper out", {}, "36", "CHECK", 105, ask},
      {"paper out stop", {}, "32", "CHECK", 102, ask},
      {"error", {}, "52", "CHECK", 108, ask},
      {"paper end", {}, "12;72", "CHECK", 102, both},
      {"paper end ignored", {{end, L"false"}}, "12;72", "CHECK", 1, both},
      {"near end", {}, "12;1E", "CHECK", 102, both},
      {"near end ignored", {{nearEnd, L"FALSE"}}, "12;1E", "CHECK", 1, both},
      {"paper end ignored, near end honoured", {{end, L"FALSE"}}, "12;7E", "CHECK", 102, both},
      {"end: eight feeds, no cut", {}, "", "STOP_PRINT", 1, kFeeds},
      {"no feeds, partial cut", {{roll, L"false"}, {cut, L"val_Partial"}}, "", "STOP_PRINT", 1, "1D 56 01"},
      {"the cut word keeps its case", {{roll, L"FALSE"}, {cut, L"VAL_PARTIAL"}}, "", "STOP_PRINT", 1, ""},
      {"feeds and cut", {{cut, L"val_Partial"}}, "", "STOP_PRINT", 1, kFeeds + " 1D 56 01"},
      {"other words keep the default", {{roll, L"NO"}}, "", "STOP_PRINT", 1, kFeeds},
  });
  Open();
  ASSERT_TRUE(Command("STOP_PRINT"));
  EXPECT_EQ(port.Writes().size(), 8u) << "one feed a write";
}

TEST_F(Tmt70, FontSelectionAndLineWidth) {  // ESC ! n: bit 0 font B, 3 emphasis, 4/5 double height/width, 7 underline
  Run({
      {"normal", {}, "", "<SINGLEFIELD/>", 1, "1B 7B 00 1B 21 00", 42},
      {"font B", {}, "", "<SINGLEFIELD Font='FONTB'/>", 1, "1B 7B 00 1B 21 01", 56},
      {"font B double width", {}, "", "<SINGLEFIELD Font='FONTB' Width='2'/>", 1, "1B 7B 00 1B 21 21", 28},
      {"width 8 acts as 2", {}, "", "<SINGLEFIELD Width='8'/>", 1, "1B 7B 00 1B 21 20", 21},
      {"height 8 acts as 2", {}, "", "<SINGLEFIELD Height='8'/>", 1, "1B 7B 00 1B 21 10", 42},
      {"underline", {}, "", "<SINGLEFIELD TypeFont='UNDERLINE'/>", 1, "1B 7B 00 1B 21 80", 42},
      {"cursive underline", {}, "", "<SINGLEFIELD TypeFont='CURSIVE_UNDERLINE'/>", 1, "1B 7B 00 1B 21 80", 42},
      {"double strike", {}, "", "<SINGLEFIELD TypeFont='DOUBLEBEAT'/>", 1, "1B 7B 00 1B 21 08", 42},
      {"double strike cursive", {}, "", "<SINGLEFIELD TypeFont='DOUBLEBEAT_CURSIVE'/>", 1, "1B 7B 00 1B 21 08", 42},
      {"double strike underline", {}, "", "<SINGLEFIELD TypeFont='DOUBLEBEAT_UNDERLINE'/>", 1, "1B 7B 00 1B 21 88", 42},
      {"cursive prints normal", {}, "", "<SINGLEFIELD TypeFont='CURSIVE'/>", 1, "1B 7B 00 1B 21 00", 42},
      {"large is not font B", {}, "", "<SINGLEFIELD Font='LARGE'/>", 1, "1B 7B 00 1B 21 00", 42},
  });
}

TEST_F(Tmt70, Fields) {
  const std::string ab = "<LeftField>A</LeftField><RightField>B</RightField>", sp = " ";
  std::string rule, feeds;
  for (int i = 0; i < 21; ++i) rule += "=-";
  for (int i = 0; i < 29; ++i) feeds += "\r\n";
  Run({
      {"centred", {}, "", "<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD>", 1, Text(std::string(18, ' ') + "Hello\r\n")},
      {"SingleField left", {}, "", "<SingleField Justify='LEFT'><Field>Hello</Field></SingleField>", 1,
       Text("Hello" + std::string(37, ' ') + "\r\n")},
      {"SingleField right, filled", {}, "", "<SingleField Justify='RIGHT' Char='.'><Field>Hello</Field></SingleField>",
       1, Text(std::string(37, '.') + "Hello\r\n")},
      {"SINGLEFIELD left finds no LeftField", {}, "", "<SINGLEFIELD Justify='LEFT'><Field>Hello</Field></SINGLEFIELD>",
       1, kText},
      {"double field", {}, "", "<DOUBLEFIELD><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>",
       1, Text("Espresso" + std::string(30, ' ') + "2.20\r\n")},
      {"margin", {}, "", "<DOUBLEFIELD Margin='2'>" + ab + "</DOUBLEFIELD>", 1, Text("  A" + std::string(38, ' ') + "B\r\n")},
      {"side margins", {}, "", "<DOUBLEFIELDS MarginSx='1' MarginDx='3'>" + ab + "</DOUBLEFIELDS>", 1,
       Text(" A" + std::string(36, ' ') + "B   \r\n")},
      {"left field without its right part", {}, "", "<DOUBLEFIELD>" + ab + "<LeftField>C</LeftField></DOUBLEFIELD>", 5,
       Text("A" + std::string(40, ' ') + "B\r\n")},
      {"é is 82 in PC437", {}, "", "<SINGLEFIELD><Field>Café</Field></SINGLEFIELD>", 1,
       Text(std::string(19, ' ') + "Caf\x82\r\n")},
      {"line of the default char", {}, "", "<LINE Char=''/>", 1, Text(std::string(42, '-') + "\r\n")},
      {"line of a pattern", {}, "", "<LINE Char='=-'/>", 1, Text(rule + "\r\n")},
      {"line feeds stop at 29", {}, "", "<LINEFEED Value='40'/>", 1, ToHex(feeds)},
      {"cut whatever the configuration", {}, "", "<CUT/>", 1, "1D 56 01"},
      {"footer prints nothing", {}, "", "<FOOTER>x</FOOTER>", 1, ""},
      {"records do nothing", {}, "", "PrintFormattedText(xx)", 0, ""},
      {"cut record does nothing", {}, "", "CutRecord(xx)", 0, ""},
  });
  Open();
  port.ShortWriteAt(port.writeCount_ + 1);  // the line feed is not taken
  EXPECT_FALSE(Field("<LINEFEED Value='2'/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{0}));
}

TEST_F(Tmt70, Barcodes) {
  // GS k 73 n with "{B" (code set B) and the data, centred (ESC a 1) and back to the left.
  const std::string one = " 1B 61 01 1D 6B 49 03 7B 42 31 1B 61 00";
  Run({
      {"code 128", {}, "", "<BARCODE Type='CODE128' Height='10' ModuleWidth='3'>TKT0001234567</BARCODE>", 1,
       kBarcode + kStyle + " 1B 61 01 1D 6B 49 0F 7B 42 " + ToHex("TKT0001234567") + " 1B 61 00"},
      {"hri sopra", {}, "", "<BARCODE HRI='sopra'>1</BARCODE>", 1, kBarcode + "1D 48 01 1D 68 50 1D 77 03" + one},
      {"hri SOPRA keeps case: below", {}, "", "<BARCODE HRI='SOPRA'>1</BARCODE>", 1, kBarcode + kStyle + one},
      {"hri sopra_sotto", {}, "", "<BARCODE HRI='sopra_sotto' Height='5' ModuleWidth='2'>1</BARCODE>", 1,
       kBarcode + "1D 48 03 1D 68 28 1D 77 02" + one},
      {"hri no", {}, "", "<BARCODE HRI='no'>1</BARCODE>", 1, kBarcode + "1D 48 00 1D 68 50 1D 77 03" + one},
      {"empty data", {}, "", "<BARCODE></BARCODE>", 18, "1B 7B 00 1B 56 00 1B 21 00"},
      {"QR code is not supported", {}, "", "<BARCODE Type='QR_CODE'>x</BARCODE>", 15, kBarcode + kStyle + " 1B 61 01"},
      {"91 characters", {}, "", "<BARCODE>" + std::string(91, '1') + "</BARCODE>", 17, kBarcode + kStyle + " 1B 61 01"},
  });
}

TEST_F(Tmt70, Logos) {
  Run({
      // ESC 3 0 (bands touch), ESC * 0 with 8 columns, CR LF a band, ESC 2 (default spacing).
      {"eight-dot bands", {}, "", "<LOGO FileName='logo.bmp'/>", 1,
       "1B 21 00 1B 7B 00 1B 33 00 1B 2A 00 08 00 " + Times(8, "80") + " 0D 0A 1B 32"},
      {"upside down sends ESC { 1 twice", {}, "", "<LOGO FileName='logo.bmp' Rotation='180'/>", 1,
       "1B 21 00 1B 7B 01 1B 7B 01 1B 33 00 1B 2A 00 08 00 " + Times(8, "80") + " 0D 0A 1B 32"},
      // The print mode is set before the name is looked at.
      {"empty name", {}, "", "<LOGO FileName=''/>", 8, "1B 21 00 1B 7B 00"},
      {"no name", {}, "", "<LOGO/>", 8, "1B 21 00 1B 7B 00"},
      {"not a bmp name", {}, "", "<LOGO FileName='logo.png'/>", 9, "1B 21 00 1B 7B 00"},
      {"missing file", {}, "", "<LOGO FileName='missing.bmp'/>", 10, "1B 21 00 1B 7B 00"},
      {"the name test upper-cases: LOGO.BMP passes it", {}, "", "<LOGO FileName='LOGO.BMP'/>", 10, "1B 21 00 1B 7B 00"},
      {"data that is not a bitmap: no bands", {}, "", "<LOGO FileName='notabitmap.bmp'/>", 1, "1B 21 00 1B 7B 00 1B 33 00 1B 32"},
  });
}

}  // namespace
