// The TM300: what differs from the VKP80II: open, one-byte status, end of ticket that
// waits for the printer to be ready, fonts, no barcodes, bit-image logos.
#include "drivers/receipt/TM300/kp_tm300.h"
#include "receipt_fixture.h"

namespace receipt_test {
namespace {

using Tm300 = DriverTest<TM300::KpTM300>;

const std::string kStatusRequest = Hex("1B 76");

TEST_F(Tm300, OpenSendsCodePageAndResetOnly) {
  Configure({});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Sent(), "1B 74 00 1B 40");
  EXPECT_EQ(clock.Waits(), 0);
  EXPECT_EQ(port.Purges(), 0);
  EXPECT_EQ(driver.Context()->lineWidth, 33);
  EXPECT_STREQ(driver.Context()->terminator, "\r\n");
}

TEST_F(Tm300, EndOfTicketByConfiguration) {
  const std::string feeds = "0A 0A 0A 0A 0A 0A 0A 0A 0A";
  struct Case { const char* name; Keys keys; std::string sent; };
  const Case cases[] = {
      {"defaults: nine feeds, no cut", {}, feeds},
      {"no feeds", {{L"param_RollEjection", L"False"}}, ""},
      {"partial cut", {{L"param_CutType", L"val_Partial"}}, feeds + " 1B 6D"},
      {"full cut", {{L"param_CutType", L"val_Full"}}, feeds + " 1B 69"},
      {"a full cut leaves the feeds off", {{L"param_RollEjection", L"FALSE"}, {L"param_CutType", L"val_Full"}}, "1B 69"},
      {"the cut word keeps its case", {{L"param_CutType", L"VAL_PARTIAL"}}, feeds},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    AnswerTo(kStatusRequest, Hex("00"));
    EXPECT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(Sent(), c.sent + (c.sent.empty() ? "" : " ") + "1B 76");
  }
}

TEST_F(Tm300, StatusDecodingAndSensorPairing) {
  struct Case { const char* name; std::string reply; Keys keys; int status; };
  const Case cases[] = {
      {"ready", "00", {}, 100},
      {"bit 0: paper near its end", "01", {}, 102},
      {"bit 0 silenced by the near-end key", "01", {{L"param_NearlyEndPaperSensor", L"false"}}, 100},
      {"bit 0 is not the paper-end key's", "01", {{L"param_EndPaperSensor", L"FALSE"}}, 102},
      {"bit 2: paper out", "04", {}, 102},
      {"bit 2 silenced by the paper-end key", "04", {{L"param_EndPaperSensor", L"FALSE"}}, 100},
      {"bit 2 is not the near-end key's", "04", {{L"param_NearlyEndPaperSensor", L"FALSE"}}, 102},
      {"both, both silenced", "05", {{L"param_NearlyEndPaperSensor", L"FALSE"}, {L"param_EndPaperSensor", L"FALSE"}}, 100},
      {"both, one silenced", "05", {{L"param_NearlyEndPaperSensor", L"FALSE"}}, 102},
      {"other bits", "FA", {}, 100},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    AnswerTo(kStatusRequest, Hex(c.reply));
    EXPECT_EQ(Command(L"CHECK"), c.status == 100);
    EXPECT_EQ(Errors(), c.status == 100 ? std::vector<int>{} : std::vector<int>{c.status});
    EXPECT_EQ(Sent(), "1B 76");
    EXPECT_EQ(port.Purges(), 0);
  }
}

TEST_F(Tm300, StopPrintWaitsForThePrinter) {
  struct Case {
    const char* name;
    int silentQueries;  // queries that get no answer before the printer answers
    std::string reply;  // then its answer ("" never)
    bool ok;
    std::vector<int> errors;
    int queries;
    long waitedMs;
  };
  const Case cases[] = {
      {"ready at once", 0, "00", true, {}, 1, 0},
      {"ready after two silent queries", 2, "00", true, {}, 3, 1000},
      {"ready at the last retry", 6, "00", true, {}, 7, 3000},
      {"never answers", 99, "", false, {101}, 7, 3000},
      {"answers paper out", 0, "04", false, {102}, 1, 0},
      {"answers paper out after being busy", 1, "01", false, {102}, 2, 500},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open();
    int queries = 0;
    port.OnWrite([&](posprint::ScriptedPort& p, const std::string& written) {
      if (written != kStatusRequest) return;
      if (++queries > c.silentQueries && !c.reply.empty()) p.Answer(Hex(c.reply));
    });
    EXPECT_EQ(Command(L"STOP_PRINT"), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(queries, c.queries);
    EXPECT_EQ(clock.Waits(), c.queries - 1);
    EXPECT_EQ(clock.TotalSleptMs(), c.waitedMs);
    EXPECT_EQ(Sent().substr(0, 26), "0A 0A 0A 0A 0A 0A 0A 0A 0A");  // the ticket was ended first
  }
}

TEST_F(Tm300, StopPrintBeforeInitRecordsThree) {
  Configure({});
  EXPECT_FALSE(Command(L"STOP_PRINT"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_EQ(Sent(), "");
}

TEST_F(Tm300, FontSelection) {
  struct Case { const char* name; const char* attributes; std::string mode; int lineWidth; };
  const Case cases[] = {
      {"normal", "", "00", 33},
      {"font B", "Font='FONTB'", "01", 40},
      {"large is normal", "Font='LARGE'", "00", 33},
      {"double height", "Height='2'", "10", 33},
      {"height 8 acts as 2", "Height='8'", "10", 33},
      {"double width", "Width='2'", "20", 16},
      {"width 8 acts as 2", "Width='8'", "20", 16},
      {"font B double size", "Font='FONTB' Width='2' Height='2'", "31", 20},
      {"cursive underline", "TypeFont='CURSIVE_UNDERLINE'", "C0", 33},
      {"double strike", "TypeFont='DOUBLEBEAT'", "08", 33},
      {"cursive", "TypeFont='CURSIVE'", "40", 33},
      {"underline", "TypeFont='UNDERLINE'", "80", 33},
      {"compressed", "TypeFont='COMPRESS'", "04", 33},
      {"double strike cursive", "TypeFont='DOUBLEBEAT_CURSIVE'", "48", 33},
      {"double strike underline", "TypeFont='DOUBLEBEAT_UNDERLINE'", "88", 33},
      {"reverse prints normal", "TypeFont='REVERSE'", "00", 33},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    ASSERT_TRUE(Field(std::string("<SINGLEFIELD ") + c.attributes + "/>"));
    EXPECT_EQ(Sent(), "1B 7B 00 1B 21 " + c.mode);  // no quarter-turn command on this model
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
  }
}

TEST_F(Tm300, FieldsOfThisModel) {
  struct Case { const char* name; std::string xml; std::string sent; };
  const Case cases[] = {
      {"no cut", "<CUT Type='CUT_FULL'/>", ""},
      {"no barcode", "<BARCODE Type='EAN13'>4006381333931</BARCODE>", ""},
      {"no mobile barcode", "<MOBILEBARCODE>1</MOBILEBARCODE>", ""},
      {"text line", "<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD>", "1B 7B 00 1B 21 00 " + ToHex(std::string(14, ' ') + "Hello\r\n")},
      {"the euro switches to table 2", "<SINGLEFIELD><Field>€</Field></SINGLEFIELD>",
       "1B 7B 00 1B 21 00 1B 74 02 " + ToHex(std::string(16, ' ') + "\xD5\r\n")},
      {"line feeds are terminators", "<LINEFEED Value='2'/>", "0D 0A 0D 0A"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_TRUE(Field(c.xml));
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_TRUE(Errors().empty());
  }
}

TEST_F(Tm300, LogoAsBitImageBands) {
  const std::string folder = LogoFolder("tm300_logos");
  WriteFile(folder + "/logo.bmp", SmallLogo());
  Open();
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp' Rotation='90'/>"));
  EXPECT_EQ(Sent(), "1B 21 00 1B 7B 00 1B 33 10 1B 2A 00 08 00 80 80 80 80 80 80 80 80 0D 0A 1B 32");
  EXPECT_FALSE(Field("<LOGO FileName='logo.gif'/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{9}));
}

TEST_F(Tm300, RecordSlotsDoNothing) {
  Open();
  EXPECT_EQ(driver.PrintFormattedText("1111111x"), 0);
  EXPECT_EQ(driver.CutRecord(""), 0);
  EXPECT_EQ(Sent(), "");
}

}  // namespace
}  // namespace receipt_test
