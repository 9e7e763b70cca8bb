// The STB112: open sequence, configuration, start and end of ticket, cuts, status, the
// scrambled link and its recovery, code pages, text positions and the raster logo.
#include "drivers/ticket/STB112/nx_stb112.h"

#include "platform/otool.h"
#include "ticket_fixture.h"

namespace ticket_test {
namespace {

using Stb112 = TicketTest<STB112::Nx_STB112>;

TEST_F(Stb112, Identity) {
  EXPECT_EQ(driver.Info().modelName, L"STB112");
  EXPECT_EQ(driver.Info().componentName, L"KpSTB112");
  EXPECT_EQ(driver.Info().timeout1, 300);
  EXPECT_EQ(driver.Info().timeout2, 5000);
  Open();
  EXPECT_TRUE(Command(L"STB112_NEWPRINT"));
  EXPECT_EQ(Line(), "");
}

TEST_F(Stb112, OpenSequenceByPaperAndWidth) {
  struct Case {
    const char* name;
    Keys keys;
    int lineWidth;
    std::string read;
  };
  const Case cases[] = {
      {"roll, full width (defaults)", {}, 42,
       "1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 04 6B"},
      {"roll, 80 mm", {{L"param_WidthRow", L"80 mm"}}, 32,
       "1B 74 00 1B 40 1D FF 0A 32 01 01 5A 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 04 6B"},
      {"80MM without the blank is the full width", {{L"param_WidthRow", L"80MM"}}, 42,
       "1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 04 6B"},
      {"ticket, full width", {{L"param_TypePaper", L"val_Ticket"}}, 30,
       "1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 10 00 68 1D FF 0A 32 09 01 62 1D FF 0A 32 0F 04 6B"},
      {"ticket, 80 mm", {{L"param_TypePaper", L"val_Ticket"}, {L"param_WidthRow", L"80 mm"}}, 30,
       "1B 74 00 1B 40 1D FF 0A 32 01 01 5A 1D FF 0A 32 10 00 68 1D FF 0A 32 09 01 62 1D FF 0A 32 0F 04 6B"},
      {"label, 80 mm", {{L"param_TypePaper", L"val_Label"}, {L"param_WidthRow", L"80 mm"}}, 32,
       "1B 74 00 1B 40 1D FF 0A 32 01 01 5A 1D FF 0A 32 10 01 69 1D FF 0A 32 09 01 62 1D FF 0A 32 0A 01 63 "
       "1D FF 0A 32 0F 04 6B"},
      {"unknown paper word keeps roll", {{L"param_TypePaper", L"VAL_LABEL"}}, 42,
       "1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 04 6B"},
      {"density 260 sends its low byte", {{L"param_Density", L"260"}}, 42,
       "1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 04 6B"},
      {"density 7", {{L"param_Density", L"7"}}, 42,
       "1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 07 6E"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Clear();
    Configure(c.keys);
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    EXPECT_EQ(Read(), c.read);
    EXPECT_EQ(Line(), c.read);  // plain mode: the line carries the printer's bytes
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
  }
}

TEST_F(Stb112, TicketSetupStopsWithoutThePrintersConfirmation) {
  printer.settingAnswer = "";
  Configure({{L"param_TypePaper", L"val_Ticket"}});
  EXPECT_TRUE(Command(L"INIT_PRINTER"));  // the open succeeds; the density is not sent
  EXPECT_EQ(Read(), "1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 10 00 68 1D FF 0A 32 09 01 62");
}

TEST_F(Stb112, ScrambledOpenPutsEveryByteThroughTheKey) {
  printer.key = 0xCB;
  Configure({{L"param_Cripted", L"true"}});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Line().substr(0, 8), "D0 BF CB");  // ESC t 0 under key 0xCB
  EXPECT_EQ(Read(), "1B 74 00 1B 40 1D FF 0A 32 01 00 59 1D FF 0A 32 09 00 61 1D FF 0A 32 0F 04 6B");
}

TEST_F(Stb112, OpenFailureAndConfigurationAllocation) {
  port.FailOpen();
  EXPECT_FALSE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Errors(), std::vector<int>{71});
  posprint::FailNextConfigAllocation();
  driver.ClearErrors();
  Configure({});
  EXPECT_EQ(driver.RecordedErrors(), std::vector<int>{12});
}

TEST_F(Stb112, StartOfTicketByPaper) {
  struct Case {
    const char* name;
    Keys keys;
    std::string read;
  };
  const Case cases[] = {
      {"roll sends nothing", {}, ""},
      {"ticket", {{L"param_TypePaper", L"val_Ticket"}}, "1D F6"},
      {"label sends nothing", {{L"param_TypePaper", L"val_Label"}}, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    EXPECT_TRUE(Command(L"START_PRINT"));
    EXPECT_EQ(Read(), c.read);
  }
  Command(L"STOP_PRINTER");
  EXPECT_FALSE(Command(L"START_PRINT"));
  EXPECT_EQ(Errors(), std::vector<int>{3});
}

TEST_F(Stb112, EndOfTicketByPaperAndCut) {
  const std::string feeds = "0A 0A 0A 0A 0A 0A 0A 0A";
  struct Case {
    const char* name;
    Keys keys;
    std::string read;
  };
  const Case cases[] = {
      {"roll defaults: eight feeds, no cut", {}, feeds},
      {"feeds switched on in lower case", {{L"param_LinefeedEjection", L"true"}}, feeds},
      {"feeds off, partial cut", {{L"param_LinefeedEjection", L"NO"}, {L"param_CutType", L"val_Partial"}}, "1B 6D"},
      {"any other cut word is the full cut", {{L"param_CutType", L"val_Full"}}, feeds + " 1B 69"},
      {"the cut word keeps its case", {{L"param_CutType", L"VAL_PARTIAL"}}, feeds + " 1B 69"},
      {"explicit no cut", {{L"param_CutType", L"val_No"}}, feeds},
      {"label, no cut", {{L"param_TypePaper", L"val_Label"}, {L"param_CutType", L"val_No"}}, "1D F6"},
      {"label, partial", {{L"param_TypePaper", L"val_Label"}, {L"param_CutType", L"val_Partial"}}, "1D F6"},
      {"label, full", {{L"param_TypePaper", L"val_Label"}, {L"param_CutType", L"x"}}, "1D F8"},
      {"ticket: nothing", {{L"param_TypePaper", L"val_Ticket"}, {L"param_CutType", L"x"}}, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    EXPECT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(Read(), c.read);
  }
}

TEST_F(Stb112, CutField) {
  struct Case {
    const char* xml;
    std::string read;
  };
  const Case cases[] = {
      {"<CUT Type='CUT_FULL'/>", "1B 69"},
      {"<CUT Type='CUT_PARTIAL'/>", "1B 6D"},
      {"<CUT/>", "1B 28 76 64 00 1B 69 1B 28 76 9C FF"},
      {"<CUT Type='cut_full'/>", "1B 28 76 64 00 1B 69 1B 28 76 9C FF"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.xml);
    Clear();
    EXPECT_TRUE(Field(c.xml));
    EXPECT_EQ(Read(), c.read);
  }
  port.ShortWriteAt(port.Writes().size() + 1);
  EXPECT_TRUE(Field("<CUT/>"));  // the cut's own writes do not decide the field
}

TEST_F(Stb112, StatusDecoding) {
  struct Case {
    const char* name;
    std::string status, paper;
    bool ok;
    std::vector<int> errors;
    std::string read;
  };
  const Case cases[] = {
      {"ready", "00", "00", true, {}, "10 04 02 10 04 11"},
      {"cover (first byte 0x04)", "04", "00", false, {105}, "10 04 02"},
      {"first byte 0x20 is not looked at", "20", "00", true, {}, "10 04 02 10 04 11"},
      {"paper out", "00", "20", false, {102}, "10 04 02 10 04 11"},
      {"paper 0x04", "00", "04", false, {104}, "10 04 02 10 04 11"},
      {"0x20 before 0x04", "00", "24", false, {102}, "10 04 02 10 04 11"},
      {"no paper answer", "00", "", false, {101}, "10 04 02 10 04 11"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    printer.status = Hex(c.status);
    printer.paper = Hex(c.paper);
    Clear();
    EXPECT_EQ(Command(L"CHECK"), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Read(), c.read);
  }
}

TEST_F(Stb112, CheckWithoutOpenRecordsThreeThenOne) {
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{3, 1}));
}

// The terminal runs scrambled but the printer was reset to plain: the status request
// goes unanswered, the plain retry is answered, and the printer is switched back.
TEST_F(Stb112, ResyncSwitchesAPlainPrinterToScrambledMode) {
  Open({{L"param_Cripted", L"TRUE"}});  // the printer stays plain: the open went unread
  EXPECT_TRUE(Command(L"CHECK"));
  EXPECT_EQ(Line(), "DB CF C9 10 04 02 1B F9 CB DB CF C9 DB CF DA");
  EXPECT_EQ(printer.key, 0xCB);
  EXPECT_EQ(clock.TotalSleptMs(), 100);
  int readTimeout = 0, writeTimeout = 0;
  otool_IOCTL(driver.Context()->handle, kPortGetReadTimeout, &readTimeout);
  otool_IOCTL(driver.Context()->handle, kPortGetWriteTimeout, &writeTimeout);
  EXPECT_EQ(readTimeout, 300);
  EXPECT_EQ(writeTimeout, 5000);
  // From now on both ends agree.
  Clear();
  EXPECT_TRUE(Command(L"CHECK"));
  EXPECT_EQ(Read(), "10 04 02 10 04 11");
}

TEST_F(Stb112, ResyncTowardsASilentPrinterLeavesThePortScrambled) {
  printer.silent = true;
  Open();
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), std::vector<int>{101});
  EXPECT_EQ(Line(), "10 04 02 10 04 02");  // the request, then the plain retry
  EXPECT_EQ(clock.TotalSleptMs(), 0);
  int readTimeout = 0;
  otool_IOCTL(driver.Context()->handle, kPortGetReadTimeout, &readTimeout);
  EXPECT_EQ(readTimeout, 300);
  Clear();
  Command(L"START_PRINT");
  EXPECT_TRUE(Field("<CUT Type='CUT_FULL'/>"));
  EXPECT_EQ(Line(), "D0 A2");  // ESC i under key 0xCB
}

// A scrambled printer behind a plain terminal: the first CHECK fails and leaves the
// terminal scrambled, so the next one succeeds.
TEST_F(Stb112, PlainTerminalMeetsAScrambledPrinter) {
  Open();
  printer.key = 0xCB;
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), std::vector<int>{101});
  EXPECT_TRUE(Command(L"CHECK"));
}

TEST_F(Stb112, NoResyncWhenThePortItselfFails) {
  Open();
  port.Vanish();
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), std::vector<int>{101});
  EXPECT_EQ(printer.received, "");
}

TEST_F(Stb112, CodePageFollowsTheText) {
  Open();
  ASSERT_TRUE(Field("<SINGLEFIELD Justify='CENTER'><Field>\xE2\x82\xAC" "5</Field></SINGLEFIELD>"));
  // ESC t 0x13 before the text; the euro sign is D5 in PC858.
  EXPECT_EQ(Read(), "1B 7B 00 1B 74 13 " + ToHex(std::string(20, ' ')) + " D5 35 0D 0A");
  Clear();
  ASSERT_TRUE(Field("<SINGLEFIELD Justify='CENTER'><Field>ab</Field></SINGLEFIELD>"));
  EXPECT_EQ(Read(), "1B 7B 00 " + ToHex(std::string(20, ' ')) + " 61 62 0D 0A");  // PC858 carries it
  Clear();
  ASSERT_TRUE(Field("<BARCODE Type='CODE39'>\xE2\x82\xA7</BARCODE>"));  // the peseta sign: PC437 only
  EXPECT_EQ(Read(), "1B 7B 00 1B 56 00 1B 21 00 1B 74 00 1B 61 01 1D 6B 45 01 9E 1B 61 00");
}

TEST_F(Stb112, TextLinesStartAtTheTicketsPrintableArea) {
  const std::string sp12 = ToHex(std::string(12, ' '));
  struct Case {
    const char* name;
    Keys keys;
    const char* xml;
    std::string read;
  };
  const Case cases[] = {
      {"roll: double field from the first column", {},
       "<DOUBLEFIELD><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>",
       "1B 7B 00 41 " + ToHex(std::string(40, ' ')) + " 42 0D 0A"},
      {"ticket: double field at column 12 over 30 columns", {{L"param_TypePaper", L"val_Ticket"}},
       "<DOUBLEFIELD><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>",
       "1B 7B 00 " + sp12 + " 41 " + ToHex(std::string(28, ' ')) + " 42 0D 0A"},
      {"ticket: centred field", {{L"param_TypePaper", L"val_Ticket"}},
       "<SINGLEFIELD Justify='CENTER'><Field>ABCD</Field></SINGLEFIELD>",
       "1B 7B 00 " + ToHex(std::string(25, ' ')) + " 41 42 43 44 0D 0A"},
      {"ticket: row line", {{L"param_TypePaper", L"val_Ticket"}, {L"param_WidthRow", L"80 mm"}},
       "<LINE Char='='/>", "1B 7B 00 " + sp12 + " " + ToHex(std::string(30, '=')) + " 0D 0A"},
      {"roll: row line", {}, "<LINE/>", "1B 7B 00 " + ToHex(std::string(42, '-')) + " 0D 0A"},
      {"an empty Justify is left", {}, "<SingleField><Field>AB</Field></SingleField>",
       "1B 7B 00 41 42 " + ToHex(std::string(40, ' ')) + " 0D 0A"},
      {"RIGHT_PRINTER is a side alignment", {}, "<SingleField Justify='RIGHT_PRINTER'><Field>AB</Field></SingleField>",
       "1B 7B 00 " + ToHex(std::string(40, ' ')) + " 41 42 0D 0A"},
      {"SINGLEFIELD in capitals with a side alignment prints nothing", {},
       "<SINGLEFIELD><Field>AB</Field></SINGLEFIELD>", "1B 7B 00"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    EXPECT_TRUE(Field(c.xml));
    EXPECT_EQ(Read(), c.read);
  }
}

TEST_F(Stb112, Barcode) {
  struct Case {
    const char* xml;
    bool ok;
    std::vector<int> errors;
    std::string read;
  };
  const std::string head = "1B 7B 00 1B 56 00 1B 21 00 1B 61 01";
  const Case cases[] = {
      {"<BARCODE Height='20' HRI='no'>AB1</BARCODE>", true, {}, head + " 1D 6B 49 05 7B 42 41 42 31 1B 61 00"},
      {"<BARCODE Type='EAN13'>123456789012</BARCODE>", true, {},
       head + " 1D 6B 43 0C 31 32 33 34 35 36 37 38 39 30 31 32 1B 61 00"},
      {"<BARCODE Type='QR_CODE'>X</BARCODE>", false, {15}, head},
      {"<BARCODE/>", false, {18}, head},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.xml);
    Clear();
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Read(), c.read);
  }
}

TEST_F(Stb112, FieldsNeedAnOpenPort) {
  for (const char* xml : {"<CUT/>", "<LINE/>", "<BARCODE>1</BARCODE>", "<LOGO FileName='a.bmp'/>", "<LINEFEED Value='1'/>"}) {
    SCOPED_TRACE(xml);
    EXPECT_FALSE(Field(xml));
    EXPECT_EQ(Errors(), std::vector<int>{3});
  }
  EXPECT_EQ(Line(), "");
}

}  // namespace
}  // namespace ticket_test
