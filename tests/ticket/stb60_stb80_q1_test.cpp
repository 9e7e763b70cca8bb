// What the STB60, STB80 and Q1 do differently from the STB112. The STB60: density words,
// label sensor, no cut, ESC v status. The STB80: scrambled from the open on, ESC @ before
// each ticket, six-byte extended status, barcodes with text, records. The Q1: the
// identification that decides the port mode, the full cut only.
#include "drivers/ticket/Q1/nx_q1.h"
#include "drivers/ticket/STB60/nx_stb60.h"
#include "drivers/ticket/STB80/nx_stb80.h"
#include "ticket_fixture.h"

namespace ticket_test {
namespace {

const wchar_t *kPaper = L"param_TypePaper", *kFeeds = L"param_LinefeedEjection", *kCut = L"param_CutType";

using Stb60 = TicketTest<STB60::Nx_STB60>;

TEST_F(Stb60, OpenTicketsStatusAndFields) {
  const std::string open = "1B 74 00 1B 40 1D FF 0A 32 0F ", feeds = Times(10, "0A"), ticket = "START_PRINT STOP_PRINT";
  const wchar_t *density = L"param_Density", *sensor = L"param_Sensor";
  const Keys label = {{kPaper, L"val_Label"}};
  Run({
      {"defaults: roll, normal density", {}, "", "INIT_PRINTER", 1, open + "02 69", 32},
      {"label", label, "", "INIT_PRINTER", 1, open + "02 69", 31},
      {"ticket paper is roll here", {{kPaper, L"val_Ticket"}}, "", "INIT_PRINTER", 1, open + "02 69", 32},
      {"very light", {{density, L"val_VeryLight"}}, "", "INIT_PRINTER", 1, open + "00 67"},
      {"light", {{density, L"val_Light"}}, "", "INIT_PRINTER", 1, open + "01 68"},
      {"dark", {{density, L"val_Dark"}}, "", "INIT_PRINTER", 1, open + "03 6A"},
      {"very dark", {{density, L"val_VeryDark"}}, "", "INIT_PRINTER", 1, open + "04 6B"},
      {"an unknown word is normal", {{density, L"val_Normal"}}, "", "INIT_PRINTER", 1, open + "02 69"},
      {"roll: ten feeds, no cut", {}, "", ticket, 1, feeds},
      {"feeds off in lower case", {{kFeeds, L"false"}}, "", ticket, 1, ""},
      {"NO leaves the feeds on", {{kFeeds, L"NO"}}, "", ticket, 1, feeds},
      {"label, the printer's sensor", label, "", ticket, 1, "1D F8"},
      {"label, software sensor", {{kPaper, L"val_Label"}, {sensor, L"val_Software"}}, "", ticket, 1, "1D F4 1D F5"},
      {"label, no sensor", {{kPaper, L"val_Label"}, {sensor, L"val_No"}}, "", ticket, 1, "1D F6"},
      {"software sensor on roll does nothing", {{sensor, L"val_Software"}}, "", ticket, 1, feeds},
      {"no cutter", {}, "", "<CUT/><CUT Type='CUT_FULL'/><CUT Type='CUT_PARTIAL'/>", 1, ""},
      {"ready", {}, "00", "CHECK", 1, "1B 76"},
      {"paper out", {}, "04", "CHECK", 102, "1B 76"},
      {"other bits are ready", {}, "7B", "CHECK", 1, "1B 76"},
      {"no answer: no recovery", {}, "-", "CHECK", 101, "1B 76"},
      {"label: row line from column 1", label, "", "<LINE/>", 1, "1B 7B 00 20 " + Times(31, "2D") + " 0D 0A"},
      {"roll: no room, no shift", {}, "", "<LINE/>", 1, "1B 7B 00 " + Times(32, "2D") + " 0D 0A"},
      {"label: the double field keeps the first column", label, "",
       "<DOUBLEFIELD><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>", 1,
       "1B 7B 00 41 " + Spaces(29) + " 42 0D 0A"},
      {"label: centred field", label, "", "<SINGLEFIELD Justify='CENTER'><Field>AB</Field></SINGLEFIELD>", 1,
       "1B 7B 00 " + Spaces(15) + " 41 42 0D 0A"},
      {"barcode as on the STB112", {}, "", "<BARCODE Type='EAN8' HRI='no'>1234567</BARCODE>", 1,
       "1B 7B 00 1B 56 00 1B 21 00 1B 61 01 1D 6B 44 07 31 32 33 34 35 36 37 1B 61 00"},
      {"logo: ESC * bands framed by centring", {}, "", "<LOGO FileName='band.bmp'/>", 1,
       "1B 21 00 1B 7B 00 1B 61 31 1B 2A 21 08 00 " + Times(8, "80 00 00") + " 0D 0A 1B 61 00"},
  });
  Open();
  port.Answer("\x04");  // left over from before: purged, not taken as the answer
  EXPECT_TRUE(Command("CHECK"));
}

class Stb80 : public TicketTest<STB80::Nx_STB80> {
 protected:
  Stb80() { startKey = kKey; }  // the printer was left scrambled by the last session
};

TEST_F(Stb80, ScrambledTicketsStatusBarcodesAndRecords) {
  const std::string feeds = Times(8, "0A"), ticket = "START_PRINT START_PRINT STOP_PRINT", six = "00 00 00 00 00 00";
  const std::string text = "1B 7B 00 1B 56 00 1B 47 30 1B 21 01 1B C1 ", style = text + "1D 66 31 1D 48 ";
  const std::string a1 = " 1D 68 50 1D 77 03 1B 61 01 1D 6B 49 04 7B 42 41 31 1B 61 00";
  Run({
      {"open: ESC t 0 goes plain, the rest scrambled", {}, "", "INIT_PRINTER", 1,
       "D0 BF CB 1B 40 1D FF 0A 32 01 01 5A", 42},
      {"ESC @ before each ticket; eight feeds", {}, "", ticket, 1, "1B 40 1B 40 " + feeds},
      {"feeds off, partial cut", {{kFeeds, L"off"}, {kCut, L"val_Partial"}}, "", ticket, 1, "1B 40 1B 40 1B 6D"},
      {"full cut", {{kFeeds, L"True"}, {kCut, L"val_Full"}}, "", ticket, 1, "1B 40 1B 40 " + feeds + " 1B 69"},
      {"CUT_FULL, then other cuts are partial", {}, "", "<CUT Type='CUT_FULL'/><CUT/><CUT Type='CUT_PARTIAL'/>", 1,
       "1B 69 1B 6D 1B 6D"},
      {"ready", {}, "00;" + six, "CHECK", 1, "10 04 02 10 04 14"},
      {"cover", {}, "24;" + six, "CHECK", 105, "10 04 02"},
      {"paper out on the first byte", {}, "20;" + six, "CHECK", 102, "10 04 02"},
      {"fourth byte 0x08", {}, "00;FF FF FF 08 00 00", "CHECK", 104, "10 04 02 10 04 14"},
      {"other bits are ready", {}, "00;FF FF FF F7 FF FF", "CHECK", 1, "10 04 02 10 04 14"},
      {"five bytes", {}, "00;00 00 00 08 00", "CHECK", 101, "10 04 02 10 04 14"},
      {"no extended answer", {}, "00;-", "CHECK", 101, "10 04 02 10 04 14"},
      {"HRI below by default", {}, "", "<BARCODE>A1</BARCODE>", 1, style + "02" + a1},
      {"HRI no", {}, "", "<BARCODE HRI='no'>A1</BARCODE>", 1, style + "00" + a1},
      {"HRI sopra", {}, "", "<BARCODE HRI='sopra'>A1</BARCODE>", 1, style + "01" + a1},
      {"HRI sotto", {}, "", "<BARCODE HRI='sotto'>A1</BARCODE>", 1, style + "02" + a1},
      {"HRI sotto_sopra", {}, "", "<BARCODE HRI='sotto_sopra'>A1</BARCODE>", 1, style + "03" + a1},
      {"HRI sopra_sotto", {}, "", "<BARCODE HRI='sopra_sotto'>A1</BARCODE>", 1, style + "03" + a1},
      {"HRI words keep their case", {}, "", "<BARCODE HRI='SOPRA'>A1</BARCODE>", 1, style + "02" + a1},
      {"other HRI words", {}, "", "<BARCODE HRI='si'>A1</BARCODE>", 1, style + "02" + a1},
      {"height and module", {}, "", "<BARCODE Type='CODE39' Height='100' ModuleWidth='2'>X</BARCODE>", 1,
       style + "02 1D 68 64 1D 77 02 1B 61 01 1D 6B 45 01 58 1B 61 00"},
      {"logo: always 600 dots", {}, "", "<LOGO FileName='small.bmp'/>", 1,
       "1B 21 00 1B 7B 00 1D 76 30 33 14 00 02 00 " + Times(18, "00") + " FF 00 " + Times(18, "00") + " 08 10"},
      {"double field", {}, "", "PrintFormattedText(.Total\t9)", 1, "54 6F 74 61 6C " + Times(36, "2E") + " 39 0D 0A"},
      {"double field without a right part", {}, "", "PrintFormattedText( A)", 1, "41 " + Spaces(41) + " 0D 0A"},
      {"barcode record", {}, "", "PrintBarcodeRecord(10A1)", 1, style + "00" + a1},
      {"empty barcode record", {}, "", "PrintBarcodeRecord(12)", 18, text.substr(0, 41)},
      {"separator record", {}, "", "PrintSeparatorRecord()", 1, Times(42, "2D") + " 0D 0A"},
      {"feed record", {}, "", "FeedLinesRecord(2)", 1, "0D 0A 0D 0A"},
      {"cut record", {}, "", "CutRecord(CUT_FULL)", 1, "1B 69"},
      {"logo record", {}, "", "PrintLogoByName(logo.png)", 9, "1B 21 00 1B 7B 00"},
  });
  Command("STOP_PRINTER");
  EXPECT_EQ(driver.CutRecord("CUT_FULL"), 3);
  Open();
  printer.key = 0;  // switched off and on: plain again
  EXPECT_TRUE(Command("CHECK"));
  EXPECT_EQ(Line(), "DB CF C9 10 04 02 1B F9 CB DB CF C9 DB CF DF");
  EXPECT_EQ(printer.key, kKey);
}

class Q1Test : public TicketTest<Q1::Nx_Q1> {
 protected:
  Q1Test() { printer.identity = "\x01"; }
};

TEST_F(Q1Test, IdentificationDecidesThePortMode) {
  struct Row { const char* name; std::string identity; std::uint32_t printerId; std::string line; };
  const Row rows[] = {  // GS I 1 plain, then ESC @ and ESC t 0 under the key, or plain
      {"answers 1: scrambled", "\x01", 1, "1D 49 31 D0 8B D0 BF CB"},
      {"no answer: id 0, scrambled", "", 0, "1D 49 31 D0 8B D0 BF CB"},
      {"answers 255: stays plain", "\xFF", 255, "1D 49 31 1B 40 1B 74 00"},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    printer.identity = r.identity;
    Open({}, false);
    ASSERT_TRUE(Command("INIT_PRINTER"));
    EXPECT_EQ(Line(), r.line);
    EXPECT_EQ(driver.Context()->reserved, r.printerId);
    EXPECT_EQ(driver.Context()->lineWidth, 42);
  }
  printer.identity = "\xFF";  // no recovery towards a printer that refused the scrambled mode
  Open();
  printer.silent = true;
  EXPECT_FALSE(Command("CHECK"));
  EXPECT_EQ(Errors(), std::vector<int>{101});
  EXPECT_EQ(Line(), "10 04 02");  // no plain retry, no mode switch
  printer.silent = false;
  EXPECT_TRUE(Command("CHECK"));
}

TEST_F(Q1Test, TicketsCutsAndStatus) {
  const std::string feeds = Times(8, "0A"), six = "00 00 00 00 00 00";
  Run({
      {"every cut is full", {}, "", "<CUT/><CUT Type='CUT_PARTIAL'/><CUT Type='CUT_FULL'/>", 1, "1B 69 1B 69 1B 69"},
      {"defaults: eight feeds", {}, "", "STOP_PRINT", 1, feeds},
      {"partial is full here", {{kCut, L"val_Partial"}}, "", "STOP_PRINT", 1, feeds + " 1B 69"},
      {"no feeds, no cut", {{kFeeds, L"FALSE"}, {kCut, L"val_No"}}, "", "STOP_PRINT", 1, ""},
      {"ready", {}, "00;" + six, "CHECK", 1, "10 04 02 10 04 14"},
      {"cover", {}, "04;" + six, "CHECK", 105, "10 04 02"},
      {"paper out", {}, "20;" + six, "CHECK", 102, "10 04 02"},
      {"fourth byte 0x08", {}, "00;00 00 00 08 00 00", "CHECK", 104, "10 04 02 10 04 14"},
  });
  Open();
  port.Answer("\x55");
  EXPECT_TRUE(Command("START_PRINT"));  // purges and sends nothing
  EXPECT_EQ(Line(), "");
  EXPECT_EQ(port.PendingAnswers(), 0u);
  const int purges = port.Purges();
  printer.key = 0;  // reset: plain, and chattering on power-up
  port.Answer("\x7F\x7F");
  EXPECT_TRUE(Command("CHECK"));  // the stale bytes purged before the request; the plain printer recovered
  EXPECT_EQ(printer.key, kKey);
  EXPECT_GE(port.Purges(), purges + 2);
}

}  // namespace
}  // namespace ticket_test
