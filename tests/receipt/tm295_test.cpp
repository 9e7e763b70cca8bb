// The TM295 slip printer: what differs from the VKP80II: open, slip end sequence, the
// status check before ejection, XON/XOFF, fonts, feeds and the ITF bit-image barcode.
#include "drivers/receipt/TM295/kp_tm295.h"
#include "itf_pattern.h"
#include "receipt_fixture.h"

namespace receipt_test {
namespace {

using Tm295 = DriverTest<TM295::KpTM295>;

const std::string kStatusRequest = Hex("1B 76");

TEST_F(Tm295, OpenResetsAndReleasesTheSlip) {
  Configure({});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Sent(), "1B 74 00 1B 40 1B 71 00");
  EXPECT_EQ(driver.Context()->lineWidth, 35);
  EXPECT_STREQ(driver.Context()->terminator, "\r\n");
}

TEST_F(Tm295, EndOfTicketByConfiguration) {
  struct Case { const char* name; Keys keys; std::string sent; };
  const Case cases[] = {
      {"defaults: eject by form feed", {}, "1B 46 31 0C"},
      {"no ejection: fed clear of the head", {{L"param_TicketEjection", L"false"}}, "1B 64 02"},
      {"no ejection, five lines", {{L"param_TicketEjection", L"FALSE"}, {L"param_LineFeed", L"5"}}, "1B 64 05"},
      {"a negative feed keeps two", {{L"param_TicketEjection", L"FALSE"}, {L"param_LineFeed", L"-3"}}, "1B 64 02"},
      {"an empty feed keeps two", {{L"param_TicketEjection", L"FALSE"}, {L"param_LineFeed", L""}}, "1B 64 02"},
      {"zero lines", {{L"param_TicketEjection", L"FALSE"}, {L"param_LineFeed", L"0"}}, "1B 64 00"},
      {"released after the ejection", {{L"param_TicketBlock", L"FALSE"}}, "1B 46 31 0C 0A 1B 71"},
      {"released, not ejected", {{L"param_TicketBlock", L"False"}, {L"param_TicketEjection", L"False"}}, "1B 64 02 0A 1B 71"},
      {"other words keep the defaults", {{L"param_TicketBlock", L"NO"}, {L"param_TicketEjection", L"0"}}, "1B 46 31 0C"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    AnswerTo(kStatusRequest, Hex("00"));
    EXPECT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(Sent(), "1B 76 " + c.sent);  // the status first, then the slip
  }
}

TEST_F(Tm295, EndSlipFailures) {
  struct Case { const char* name; Keys keys; int shortWrite; bool ok; };
  const Case cases[] = {
      {"ESC F not taken", {}, 1, false},
      {"form feed not taken", {}, 2, false},
      {"release not taken", {{L"param_TicketBlock", L"FALSE"}}, 3, false},
      {"all taken", {{L"param_TicketBlock", L"FALSE"}}, 4, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    port.ShortWriteAt(port.writeCount_ + c.shortWrite);
    driver.ClearErrors();
    EXPECT_EQ(driver.EndPrint(), c.ok);
    EXPECT_TRUE(Errors().empty());  // a failed write is no error number
  }
}

TEST_F(Tm295, StatusDecoding) {
  struct Case { const char* name; std::string reply; int status; };
  const Case cases[] = {
      {"ready", "00", 100}, {"bit 0", "01", 103}, {"bit 1", "02", 102}, {"bit 1 wins over bit 0", "03", 102},
      {"other bits", "FC", 100}, {"no answer", "", 101},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open();
    if (!c.reply.empty()) AnswerTo(kStatusRequest, Hex(c.reply));
    EXPECT_EQ(Command(L"CHECK"), c.status == 100);
    EXPECT_EQ(Errors(), c.status == 100 ? std::vector<int>{} : std::vector<int>{c.status});
    EXPECT_EQ(Sent(), "1B 76");
    EXPECT_EQ(port.Purges(), 0);
  }
}

TEST_F(Tm295, StopPrintEjectsOnlyWhenReady) {
  struct Case {
    const char* name;
    std::string reply;  // "" never answers
    int delayMs;        // the answer comes this late
    bool ok;
    std::vector<int> errors;
    std::string sent;
  };
  const Case cases[] = {
      {"ready", "00", 0, true, {}, "1B 76 1B 46 31 0C"},
      {"no slip", "02", 0, false, {102}, "1B 76"},
      {"slip not in place", "01", 0, false, {103}, "1B 76"},
      {"silent", "", 0, false, {101}, "1B 76"},
      {"answers too late", "00", 60000, false, {101}, "1B 76"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open();
    port.OnWrite([&](posprint::ScriptedPort& p, const std::string& written) {
      if (written == kStatusRequest && !c.reply.empty()) p.Answer(Hex(c.reply), c.delayMs);
    });
    EXPECT_EQ(Command(L"STOP_PRINT"), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Sent(), c.sent);
  }
}

TEST_F(Tm295, StopPrintBeforeInitRecordsOnlyThree) {
  Configure({});
  EXPECT_FALSE(Command(L"STOP_PRINT"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
}

TEST_F(Tm295, XonXoffCommand) {
  struct Case { const char* name; const wchar_t* command; const char* element; bool open; bool flowControl; };
  const Case cases[] = {
      {"switches the port", L"TM295_NEWPRINT", "<XonXoff/>", true, true},
      {"the element in capitals", L"TM295_NEWPRINT", "<XONXOFF/>", true, true},
      {"another element", L"TM295_NEWPRINT", "<RtsCts/>", true, false},
      {"own commands keep their case", L"tm295_newprint", "<XONXOFF/>", true, false},
      {"another command", L"OTHER", "<XONXOFF/>", true, false},
      {"closed port", L"TM295_NEWPRINT", "<XONXOFF/>", false, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    if (c.open) Open();
    EXPECT_TRUE(Command(c.command, Element(c.element)));
    EXPECT_EQ(port.FlowControl(), c.flowControl);
    EXPECT_EQ(Sent(), "");
  }
}

TEST_F(Tm295, FontSelection) {
  struct Case { const char* name; const char* attributes; std::string mode; int lineWidth; };
  const Case cases[] = {
      {"normal", "", "00", 35},
      {"font B", "Font='FONTB'", "01", 42},
      {"large is normal", "Font='LARGE'", "00", 35},
      {"height 3 acts as 2", "Height='3'", "10", 35},
      {"double width", "Width='2'", "20", 17},
      {"width 5 acts as 2", "Width='5'", "20", 17},
      {"font B double width", "Font='FONTB' Width='2'", "21", 21},
      {"underline", "TypeFont='UNDERLINE'", "80", 35},
      {"no other style", "TypeFont='DOUBLEBEAT_UNDERLINE'", "00", 35},
      {"cursive underline is not underline here", "TypeFont='CURSIVE_UNDERLINE'", "00", 35},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    ASSERT_TRUE(Field(std::string("<LINE ") + c.attributes + "/>"));
    EXPECT_EQ(Sent().substr(0, 17), "1B 7B 00 1B 21 " + c.mode);
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
  }
}

TEST_F(Tm295, FeedsAndCut) {
  struct Case { const char* name; const char* xml; std::string sent; };
  const Case cases[] = {
      {"line feeds by ESC d", "<LINEFEED Value='3'/>", "1B 64 03"},
      {"at most 29", "<LINEFEED Value='40'/>", "1B 64 1D"},
      {"negative feeds none", "<LINEFEED Value='-2'/>", "1B 64 00"},
      {"no cutter", "<CUT Type='CUT_FULL'/>", ""},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_TRUE(Field(c.xml));
    EXPECT_EQ(Sent(), c.sent);
  }
  port.ShortWriteAt(port.writeCount_ + 2);
  EXPECT_FALSE(Field("<LINEFEED Value='3'/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{0}));
}

TEST_F(Tm295, ItfBarcodeBandRepeatedBarcodeHeightTimes) {
  Open({{L"param_BarcodeWidth", L"1"}});
  ASSERT_TRUE(Field("<BARCODE Type='ITF2OF5'>12</BARCODE>"));
  const std::string band = Hex("1B 2A 00 30 00") + ColumnBytes(kItf12Columns) + "\r\n";  // 48 columns
  EXPECT_EQ(port.Written(), Hex("1B 7B 00 1B 21 00 1B 33 08") + band + band + band + Hex("1B 32"));
}

TEST_F(Tm295, BarcodeConfiguration) {
  struct Case { const char* name; Keys keys; int bands; std::size_t columns; };
  const Case cases[] = {
      {"defaults: three bands, module 2", {}, 3, 96},
      {"one band", {{L"param_BarcodeHeight", L"1"}}, 1, 96},
      {"zero keeps three", {{L"param_BarcodeHeight", L"0"}}, 3, 96},
      {"a word keeps three", {{L"param_BarcodeHeight", L"TALL"}}, 3, 96},
      {"module 3", {{L"param_BarcodeWidth", L"3"}}, 3, 144},
      {"zero keeps module 2", {{L"param_BarcodeWidth", L"0"}}, 3, 96},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    ASSERT_TRUE(Field("<BARCODE Type='ITF2OF5'>12</BARCODE>"));
    const std::string header = Hex("1B 2A 00") + static_cast<char>(c.columns) + '\0';
    int bands = 0;
    for (std::size_t at = port.Written().find(header); at != std::string::npos;
         at = port.Written().find(header, at + 1)) {
      ++bands;
    }
    EXPECT_EQ(bands, c.bands);
    EXPECT_EQ(port.Written().size(), 9 + c.bands * (5 + c.columns + 2) + 2);
  }
}

TEST_F(Tm295, BarcodeDecodesFromThePrintedColumns) {
  Open({{L"param_BarcodeHeight", L"1"}});
  ASSERT_TRUE(Field("<MOBILEBARCODE Type='itf2of5' OffsetY='1'>4006381333931</MOBILEBARCODE>"));
  const std::string& sent = port.Written();
  ASSERT_EQ(sent.substr(0, 10), Hex("0A 1B 7B 00 1B 21 00 1B 33 08"));
  const std::size_t columns = static_cast<std::uint8_t>(sent[13]) | static_cast<std::uint8_t>(sent[14]) << 8;
  std::vector<std::uint8_t> pattern((columns + 7) / 8);
  for (std::size_t i = 0; i < columns; ++i) {
    if (sent[15 + i] == '\xFF') pattern[i / 8] |= static_cast<std::uint8_t>(0x80 >> (i % 8));
  }
  EXPECT_EQ(DecodeItf(pattern), "04006381333931");
}

TEST_F(Tm295, BarcodeErrors) {
  struct Case { const char* name; const char* xml; std::vector<int> errors; };
  const Case cases[] = {
      {"EAN13 is not printable", "<BARCODE Type='EAN13'>4006381333931</BARCODE>", {15}},
      {"the default kind is CODE128", "<BARCODE>12</BARCODE>", {15}},
      {"empty data", "<BARCODE Type='ITF2OF5'></BARCODE>", {7}},
      {"letters", "<BARCODE Type='ITF2OF5'>12AB</BARCODE>", {7}},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_FALSE(Field(c.xml));
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Sent(), "1B 7B 00 1B 21 00");
  }
}

TEST_F(Tm295, LogoAsBitImageBands) {
  const std::string folder = LogoFolder("tm295_logos");
  WriteFile(folder + "/logo.bmp", SmallLogo());
  Open();
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp'/>"));
  EXPECT_EQ(Sent(), "1B 21 00 1B 7B 00 1B 33 08 1B 2A 00 08 00 80 80 80 80 80 80 80 80 0D 0A 1B 32");
}

}  // namespace
}  // namespace receipt_test
