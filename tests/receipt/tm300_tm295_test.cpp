// The TM300 roll and TM295 slip printers: one status byte for ESC v, checked at the end of a
// ticket; the TM300 prints no barcodes, the TM295 prints ITF as bit-image bands.
#include "drivers/receipt/TM295/kp_tm295.h"
#include "drivers/receipt/TM300/kp_tm300.h"
#include "frame/bar_pattern.h"
#include "receipt_fixture.h"

namespace receipt_test {
namespace {

template <class Driver>
class EscV : public DriverTest<Driver> {
 protected:
  EscV() { this->statusRequest = Hex("1B 76"); }
};
using Tm300 = EscV<TM300::KpTM300>;
using Tm295 = EscV<TM295::KpTM295>;
const std::string kBand = "1B 2A 00 08 00 " + Times(8, "80") + " 0D 0A 1B 32";  // the 8 x 2 logo as a bit image

TEST_F(Tm300, OpenEndOfTicketAndStatus) {
  const std::string feeds = Times(9, "0A") + " ";
  const wchar_t *nearEnd = L"param_NearlyEndPaperSensor", *end = L"param_EndPaperSensor";
  const wchar_t *roll = L"param_RollEjection", *cut = L"param_CutType";
  Run({{"open: code page and reset only", {}, "", "INIT_PRINTER", 1, "1B 74 00 1B 40", 33}});
  EXPECT_EQ(clock.Waits(), 0);
  Run({
      // STOP_PRINT: the end of the ticket, then the status.
      {"defaults: nine feeds, no cut", {}, "00", "STOP_PRINT", 1, feeds + "1B 76"},
      {"no feeds", {{roll, L"False"}}, "00", "STOP_PRINT", 1, "1B 76"},
      {"partial cut", {{cut, L"val_Partial"}}, "00", "STOP_PRINT", 1, feeds + "1B 6D 1B 76"},
      {"full cut", {{cut, L"val_Full"}}, "00", "STOP_PRINT", 1, feeds + "1B 69 1B 76"},
      {"full cut, no feeds", {{roll, L"FALSE"}, {cut, L"val_Full"}}, "00", "STOP_PRINT", 1, "1B 69 1B 76"},
      {"the cut word keeps its case", {{cut, L"VAL_PARTIAL"}}, "00", "STOP_PRINT", 1, feeds + "1B 76"},
      {"ready", {}, "00", "CHECK", 1, "1B 76"},
      {"bit 0: paper near its end", {}, "01", "CHECK", 102, "1B 76"},
      {"bit 0 silenced by the near-end key", {{nearEnd, L"false"}}, "01", "CHECK", 1, "1B 76"},
      {"bit 0 is not the paper-end key's", {{end, L"FALSE"}}, "01", "CHECK", 102, "1B 76"},
      {"bit 2: paper out", {}, "04", "CHECK", 102, "1B 76"},
      {"bit 2 silenced by the paper-end key", {{end, L"FALSE"}}, "04", "CHECK", 1, "1B 76"},
      {"bit 2 is not the near-end key's", {{nearEnd, L"FALSE"}}, "04", "CHECK", 102, "1B 76"},
      {"both, one silenced", {{nearEnd, L"FALSE"}}, "05", "CHECK", 102, "1B 76"},
      {"other bits", {}, "FA", "CHECK", 1, "1B 76"},
      {"silent", {}, "", "CHECK", 101, "1B 76"},
      // STOP_PRINT asks until the printer is ready; the answers in turn, ';' between them ("": silence).
      {"ready after two silent requests", {}, ";;00", "STOP_PRINT", 1, feeds + Times(3, "1B 76")},
      {"ready at the last retry", {}, ";;;;;;00", "STOP_PRINT", 1, feeds + Times(7, "1B 76")},
      {"never answers", {}, "", "STOP_PRINT", 101, feeds + Times(7, "1B 76")},
      {"paper out after being busy", {}, ";01", "STOP_PRINT", 102, feeds + "1B 76 1B 76"},
  });
  EXPECT_EQ(port.Purges(), 0);  // nothing is purged before a request
  EXPECT_EQ(clock.Waits(), 1);  // the last row: half a second before its one retry
  EXPECT_EQ(clock.TotalSleptMs(), 500);
}

TEST_F(Tm300, FontsAndFields) {
  logos.Write("logo.bmp", Bmp({"########", "........"}));
  Run({  // no quarter-turn command on this model
      {"normal", {}, "", Font(""), 1, "1B 7B 00 1B 21 00", 33},
      {"font B", {}, "", Font("Font='FONTB'"), 1, "1B 7B 00 1B 21 01", 40},
      {"large is normal", {}, "", Font("Font='LARGE'"), 1, "1B 7B 00 1B 21 00", 33},
      {"height 8 acts as 2", {}, "", Font("Height='8'"), 1, "1B 7B 00 1B 21 10", 33},
      {"width 8 acts as 2", {}, "", Font("Width='8'"), 1, "1B 7B 00 1B 21 20", 16},
      {"font B double size", {}, "", Font("Font='FONTB' Width='2' Height='2'"), 1, "1B 7B 00 1B 21 31", 20},
      {"cursive underline", {}, "", Font("TypeFont='CURSIVE_UNDERLINE'"), 1, "1B 7B 00 1B 21 C0", 33},
      {"double strike", {}, "", Font("TypeFont='DOUBLEBEAT'"), 1, "1B 7B 00 1B 21 08", 33},
      {"cursive", {}, "", Font("TypeFont='CURSIVE'"), 1, "1B 7B 00 1B 21 40", 33},
      {"underline", {}, "", Font("TypeFont='UNDERLINE'"), 1, "1B 7B 00 1B 21 80", 33},
      {"compressed", {}, "", Font("TypeFont='COMPRESS'"), 1, "1B 7B 00 1B 21 04", 33},
      {"double strike cursive", {}, "", Font("TypeFont='DOUBLEBEAT_CURSIVE'"), 1, "1B 7B 00 1B 21 48", 33},
      {"double strike underline", {}, "", Font("TypeFont='DOUBLEBEAT_UNDERLINE'"), 1, "1B 7B 00 1B 21 88", 33},
      {"reverse prints normal", {}, "", Font("TypeFont='REVERSE'"), 1, "1B 7B 00 1B 21 00", 33},
      {"no cut", {}, "", "<CUT Type='CUT_FULL'/>", 1, ""},
      {"no barcode", {}, "", "<BARCODE Type='EAN13'>4006381333931</BARCODE>", 1, ""},
      {"no mobile barcode", {}, "", "<MOBILEBARCODE>1</MOBILEBARCODE>", 1, ""},
      {"text line", {}, "", Single("Hi"), 1, "1B 7B 00 1B 21 00 " + Spaces(15) + " 48 69 0D 0A"},
      {"euro: table 2", {}, "", Single("€"), 1, "1B 7B 00 1B 21 00 1B 74 02 " + Spaces(16) + " D5 0D 0A"},
      {"logo, unturned", {}, "", "<LOGO FileName='logo.bmp' Rotation='90'/>", 1, "1B 21 00 1B 7B 00 1B 33 10 " + kBand},
  });
}

TEST_F(Tm295, OpenEndOfSlipAndStatus) {
  const wchar_t *eject = L"param_TicketEjection", *lines = L"param_LineFeed", *block = L"param_TicketBlock";
  Run({
      {"open resets and releases the slip", {}, "", "INIT_PRINTER", 1, "1B 74 00 1B 40 1B 71 00", 35},
      // STOP_PRINT: the status first, then the slip.
      {"defaults: eject by form feed", {}, "00", "STOP_PRINT", 1, "1B 76 1B 46 31 0C"},
      {"no ejection: fed clear of the head", {{eject, L"false"}}, "00", "STOP_PRINT", 1, "1B 76 1B 64 02"},
      {"no ejection, five lines", {{eject, L"FALSE"}, {lines, L"5"}}, "00", "STOP_PRINT", 1, "1B 76 1B 64 05"},
      {"a negative feed keeps two", {{eject, L"FALSE"}, {lines, L"-3"}}, "00", "STOP_PRINT", 1, "1B 76 1B 64 02"},
      {"an empty feed keeps two", {{eject, L"FALSE"}, {lines, L""}}, "00", "STOP_PRINT", 1, "1B 76 1B 64 02"},
      {"zero lines", {{eject, L"FALSE"}, {lines, L"0"}}, "00", "STOP_PRINT", 1, "1B 76 1B 64 00"},
      {"released after the ejection", {{block, L"FALSE"}}, "00", "STOP_PRINT", 1, "1B 76 1B 46 31 0C 0A 1B 71"},
      {"released only", {{block, L"False"}, {eject, L"False"}}, "00", "STOP_PRINT", 1, "1B 76 1B 64 02 0A 1B 71"},
      {"other words keep the defaults", {{block, L"NO"}, {eject, L"0"}}, "00", "STOP_PRINT", 1, "1B 76 1B 46 31 0C"},
      {"no slip: not ejected", {}, "02", "STOP_PRINT", 102, "1B 76"},
      {"slip not in place: not ejected", {}, "01", "STOP_PRINT", 103, "1B 76"},
      {"silent: not fed", {{eject, L"FALSE"}}, "", "STOP_PRINT", 101, "1B 76"},
      {"an answer a minute late is none", {}, "00@60000", "STOP_PRINT", 101, "1B 76"},
      {"ready", {}, "00", "CHECK", 1, "1B 76"},
      {"bit 0", {}, "01", "CHECK", 103, "1B 76"},
      {"bit 1", {}, "02", "CHECK", 102, "1B 76"},
      {"bit 1 wins over bit 0", {}, "03", "CHECK", 102, "1B 76"},
      {"other bits", {}, "FC", "CHECK", 1, "1B 76"},
      {"no answer", {}, "", "CHECK", 101, "1B 76"},
  });
  EXPECT_EQ(port.Purges(), 0);  // nothing is purged before a request
  Command("STOP_PRINTER");
  EXPECT_FALSE(Command("STOP_PRINT"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));  // only: no status error on top
  for (int write = 1; write <= 4; ++write) {  // ESC F 1, FF, LF ESC q: a write not taken fails the end
    SCOPED_TRACE(write);
    Open({{L"param_TicketBlock", L"FALSE"}});
    port.ShortWriteAt(port.writeCount_ + write);
    driver.ClearErrors();
    EXPECT_EQ(driver.EndPrint(), write == 4);
    EXPECT_TRUE(Errors().empty());  // a failed write is no error number
  }
}

TEST_F(Tm295, XonXoffCommandSwitchesAnOpenPort) {
  const std::pair<const char*, bool> rows[] = {{"<XonXoff/>", true}, {"<XONXOFF/>", true}, {"<RtsCts/>", false}};
  for (const auto& [element, flowControl] : rows) {
    Open();
    EXPECT_TRUE(Command("TM295_NEWPRINT", element));
    EXPECT_EQ(port.FlowControl(), flowControl) << element;
    EXPECT_EQ(Line(), "");
  }
  Open({}, false);
  EXPECT_TRUE(Command("TM295_NEWPRINT", "<XonXoff/>"));
  EXPECT_FALSE(port.FlowControl());  // the port is closed
}

// Reads the bit-image columns of an ITF symbol (a byte a column, not 0: bar). Returns the
// digits, or a text starting with '!' that says what is wrong with the symbol.
inline std::string DecodeItf(const std::string& columns) {
  std::vector<std::pair<bool, int>> runs;  // (bar, width)
  for (char column : columns) {
    if (runs.empty() || runs.back().first != (column != 0)) runs.push_back({column != 0, 0});
    ++runs.back().second;
  }
  if (runs.size() < 9 || runs.front().first || runs.back().first) return "!no quiet zones";
  const int narrow = runs[1].second, n = static_cast<int>(runs.size()) - 1;  // runs[n]: the trailing quiet zone
  if (runs[0].second < 10 * narrow || runs[n].second < 10 * narrow) return "!quiet zone too small";
  if (std::any_of(&runs[1], &runs[5], [narrow](const auto& run) { return run.second != narrow; })) return "!bad start";
  if (runs[n - 3].second <= narrow || runs[n - 2].second != narrow || runs[n - 1].second != narrow) return "!bad stop";
  if ((n - 8) % 10 != 0) return "!bad length";
  // Wide (1) and narrow (0) elements of each digit, as in the symbology's table.
  const std::string table[10] = {"00110", "10001", "01001", "11000", "00101",
                                 "10100", "01100", "00011", "10010", "01010"};
  std::string digits;
  for (int p = 5; p < n - 3; p += 10) {
    std::string widths[2];  // of the bars (first digit) and of the spaces (second digit)
    for (int e = 0; e < 10; ++e) {
      const int width = runs[p + e].second;
      if (width != narrow && width < 2 * narrow) return "!ambiguous element";
      widths[e % 2] += width == narrow ? '0' : '1';
    }
    for (const std::string& w : widths) {
      const std::size_t digit = std::find(table, table + 10, w) - table;
      if (digit == 10) return "!not a digit";
      digits += static_cast<char>('0' + digit);
    }
  }
  return digits;
}

// `count` bands of ITF "12" at `module` columns a module (nL of them): ESC * 0 nL 0, the
// columns, CR LF; between the line spacing for bit images and its reset.
std::string ItfBands(int count, int module, const char* nL) {
  std::string columns;
  for (const char* c = kItf12Columns; *c; ++c) columns += std::string(static_cast<std::size_t>(module), *c);
  const std::string band = std::string("1B 2A 00 ") + nL + " 00 " + ToHex(ColumnBytes(columns)) + " 0D 0A";
  return "1B 7B 00 1B 21 00 1B 33 08 " + Times(count, band) + " 1B 32";
}

TEST_F(Tm295, FontsFeedsLogoAndTheItfBandRepeatedBarcodeHeightTimes) {
  logos.Write("logo.bmp", Bmp({"########", "........"}));
  const std::string itf = "<BARCODE Type='ITF2OF5'>12</BARCODE>";
  const wchar_t *height = L"param_BarcodeHeight", *width = L"param_BarcodeWidth";
  Run({
      {"font B", {}, "", Font("Font='FONTB'"), 1, "1B 7B 00 1B 21 01", 42},
      {"height 3 acts as 2", {}, "", Font("Height='3'"), 1, "1B 7B 00 1B 21 10", 35},
      {"width 5 acts as 2", {}, "", Font("Width='5'"), 1, "1B 7B 00 1B 21 20", 17},
      {"font B double width", {}, "", Font("Font='FONTB' Width='2'"), 1, "1B 7B 00 1B 21 21", 21},
      {"underline", {}, "", Font("TypeFont='UNDERLINE'"), 1, "1B 7B 00 1B 21 80", 35},
      {"no other style", {}, "", Font("TypeFont='DOUBLEBEAT_UNDERLINE'"), 1, "1B 7B 00 1B 21 00", 35},
      {"line feeds by ESC d", {}, "", "<LINEFEED Value='3'/>", 1, "1B 64 03"},
      {"at most 29", {}, "", "<LINEFEED Value='40'/>", 1, "1B 64 1D"},
      {"negative feeds none", {}, "", "<LINEFEED Value='-2'/>", 1, "1B 64 00"},
      {"no cutter", {}, "", "<CUT Type='CUT_FULL'/>", 1, ""},
      {"logo as a bit-image band", {}, "", "<LOGO FileName='logo.bmp'/>", 1, "1B 21 00 1B 7B 00 1B 33 08 " + kBand},
      {"ITF, module 1: 48 columns, three bands", {{width, L"1"}}, "", itf, 1, ItfBands(3, 1, "30")},
      {"ITF defaults: module 2, three bands", {}, "", itf, 1, ItfBands(3, 2, "60")},
      {"one band", {{height, L"1"}}, "", itf, 1, ItfBands(1, 2, "60")},
      {"module 3", {{width, L"3"}}, "", itf, 1, ItfBands(3, 3, "90")},
      {"zero keeps module 2", {{width, L"0"}}, "", itf, 1, ItfBands(3, 2, "60")},
      {"the default kind is CODE128", {}, "", "<BARCODE>12</BARCODE>", 15, "1B 7B 00 1B 21 00"},
      {"empty data", {}, "", "<BARCODE Type='ITF2OF5'></BARCODE>", 7, "1B 7B 00 1B 21 00"},
      {"not digits", {}, "", "<BARCODE Type='ITF2OF5'>12 A-</BARCODE>", 7, "1B 7B 00 1B 21 00"},
  });
  port.ShortWriteAt(port.writeCount_ + 2);
  EXPECT_FALSE(Field("<LINEFEED Value='3'/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{0}));  // a feed the printer did not take records 0
}

// What the printer receives, read back to its digits by an independent decoder.
TEST_F(Tm295, ItfDecodesFromThePrintedColumns) {
  struct Row { const char* name; const wchar_t* module; const char* data; const char* digits; };
  const Row rows[] = {
      {"a carton code", L"2", "4006381333931", "04006381333931"},  // odd length: a leading zero
      {"every digit", L"1", "1234567890", "1234567890"},
      {"every digit the other way", L"3", "0987654321", "0987654321"},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.name);
    Open({{L"param_BarcodeHeight", L"1"}, {L"param_BarcodeWidth", r.module}});
    ASSERT_TRUE(Field(std::string("<MOBILEBARCODE Type='itf2of5' OffsetY='1'>") + r.data + "</MOBILEBARCODE>"));
    const std::string& sent = port.Written();
    ASSERT_EQ(ToHex(sent.substr(0, 13)), "0A 1B 7B 00 1B 21 00 1B 33 08 1B 2A 00");
    const std::size_t columns = static_cast<std::uint8_t>(sent[13]) | static_cast<std::uint8_t>(sent[14]) << 8;
    ASSERT_EQ(ToHex(sent.substr(15 + columns)), "0D 0A 1B 32");
    EXPECT_EQ(DecodeItf(sent.substr(15, columns)), r.digits);
  }
  std::vector<std::uint8_t> pattern = {1, 2, 3};
  EXPECT_FALSE(ItfBarPattern("12", 0, pattern));  // module widths the bit image cannot take
  EXPECT_FALSE(ItfBarPattern("12", 256, pattern));
  EXPECT_TRUE(pattern.empty());
}

}  // namespace
}  // namespace receipt_test
