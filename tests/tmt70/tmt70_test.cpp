// The TMT70, the reference receipt printer: exact bytes of every command and field.
#include <unistd.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "drivers/receipt/TMT70/kp_tmt70.h"
#include "platform/logo_files.h"
#include "platform/scripted_port.h"
#include "support/bytes.h"

namespace {

using posprint::test::Hex;
using posprint::test::ToHex;

class Tmt70 : public ::testing::Test {
 protected:
  void Configure(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> pairs) {
    auto* parameters = new ParameterCollection();
    for (const auto& pair : pairs) parameters->Set(pair.first, pair.second);
    driver.Configure(Nx_Smartp<IParameterCollection>(parameters));
  }
  bool Command(const wchar_t* name) {
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, name, IXMLDOMNodePtr(), port.Name());
  }
  void Open() {
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    port.ClearWritten();
  }
  // Runs NEWPRINT with the one element in xml.
  bool Field(const std::string& xml) {
    std::string error;
    EXPECT_TRUE(parser.LoadString("<Job>" + xml + "</Job>", &error)) << error;
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, L"NEWPRINT", parser.GetFirstChild(parser.Root()), port.Name());
  }
  std::vector<int> Errors() const { return driver.RecordedErrors(); }
  std::string Sent() const { return ToHex(port.Written()); }

  posprint::ScriptedPort port;
  Nx_XMLParser parser;
  TMT70::KpTMT70 driver;
};

TEST_F(Tmt70, OpenSelectsPC437InitialisesAndSendsTheBareGsB) {
  Configure({});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Sent(), "1B 74 00 1B 40 1D 62");
  EXPECT_EQ(driver.Context()->lineWidth, 42);
  EXPECT_STREQ(driver.Context()->terminator, "\r\n");
}

TEST_F(Tmt70, StartPrintSendsNothing) {
  Configure({});
  Open();
  EXPECT_TRUE(Command(L"START_PRINT"));
  EXPECT_EQ(Sent(), "");
}

TEST_F(Tmt70, StatusDecoding) {
  struct Case {
    const char* name;
    std::vector<std::string> answers;  // to DLE EOT 2, then DLE EOT 4
    std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> config;
    bool ok;
    std::vector<int> errors;
  };
  const Case cases[] = {
      {"ready", {"\x12", "\x12"}, {}, true, {}},
      {"no answer", {}, {}, false, {101}},
      {"no second answer", {"\x12"}, {}, false, {101}},
      {"cover open wins over paper out", {"\x36"}, {}, false, {105}},
      {"paper out stop", {"\x32"}, {}, false, {102}},
      {"error", {"\x52"}, {}, false, {108}},
      {"paper end", {"\x12", "\x72"}, {}, false, {102}},
      {"paper end ignored", {"\x12", "\x72"}, {{L"param_EndPaperSensor", L"false"}}, true, {}},
      {"near end", {"\x12", "\x1E"}, {}, false, {102}},
      {"near end ignored", {"\x12", "\x1E"}, {{L"param_NearlyEndPaperSensor", L"FALSE"}}, true, {}},
      {"paper end ignored but near end honoured", {"\x12", "\x7E"}, {{L"param_EndPaperSensor", L"FALSE"}}, false, {102}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    posprint::ScriptedPort printer;
    TMT70::KpTMT70 tmt70;
    auto* parameters = new ParameterCollection();
    for (const auto& pair : c.config) parameters->Set(pair.first, pair.second);
    tmt70.Configure(Nx_Smartp<IParameterCollection>(parameters));
    ASSERT_TRUE(tmt70.ExecuteCommand(&parser, L"INIT_PRINTER", IXMLDOMNodePtr(), printer.Name()));
    printer.ClearWritten();
    for (const std::string& answer : c.answers) printer.Answer(answer);
    EXPECT_EQ(tmt70.ExecuteCommand(&parser, L"CHECK", IXMLDOMNodePtr(), printer.Name()), c.ok);
    EXPECT_EQ(tmt70.RecordedErrors(), c.errors);
    EXPECT_EQ(ToHex(printer.Written()).substr(0, 8), "10 04 02");
  }
}

TEST_F(Tmt70, EndOfPrintByConfiguration) {
  struct Case {
    const char* name;
    std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> config;
    std::string sent;
  };
  const Case cases[] = {
      {"defaults: eight feeds, no cut", {}, "0A 0A 0A 0A 0A 0A 0A 0A"},
      {"no feeds, partial cut", {{L"param_RollEjection", L"false"}, {L"param_CutType", L"val_Partial"}}, "1D 56 01"},
      {"the cut word keeps its case", {{L"param_RollEjection", L"FALSE"}, {L"param_CutType", L"VAL_PARTIAL"}}, ""},
      {"feeds and cut", {{L"param_CutType", L"val_Partial"}}, "0A 0A 0A 0A 0A 0A 0A 0A 1D 56 01"},
      {"other words keep the default", {{L"param_RollEjection", L"NO"}}, "0A 0A 0A 0A 0A 0A 0A 0A"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Configure(c.config);
    Command(L"STOP_PRINTER");
    Open();
    EXPECT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(Sent(), c.sent);
  }
}

TEST_F(Tmt70, EndOfPrintWritesOneFeedAtATime) {
  Configure({});
  Open();
  ASSERT_TRUE(Command(L"STOP_PRINT"));
  EXPECT_EQ(port.Writes().size(), 8u);
}

TEST_F(Tmt70, FontSelectionAndLineWidth) {
  struct Case {
    const char* name;
    const char* attributes;
    std::string mode;
    int lineWidth;
  };
  const Case cases[] = {
      {"normal", "", "00", 42},
      {"font B", "Font='FONTB'", "01", 56},
      {"font B double width", "Font='FONTB' Width='2'", "21", 28},
      {"normal double width", "Font='NORMAL' Width='2'", "20", 21},
      {"width 8 acts as 2", "Width='8'", "20", 21},
      {"height 8 acts as 2", "Height='8'", "10", 42},
      {"underline", "TypeFont='UNDERLINE'", "80", 42},
      {"cursive underline", "TypeFont='CURSIVE_UNDERLINE'", "80", 42},
      {"double strike", "TypeFont='DOUBLEBEAT'", "08", 42},
      {"double strike cursive", "TypeFont='DOUBLEBEAT_CURSIVE'", "08", 42},
      {"double strike underline", "TypeFont='DOUBLEBEAT_UNDERLINE'", "88", 42},
      {"cursive prints normal", "TypeFont='CURSIVE'", "00", 42},
      {"large is not font B", "Font='LARGE'", "00", 42},
  };
  Configure({});
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    ASSERT_TRUE(Field(std::string("<SINGLEFIELD ") + c.attributes + "/>"));
    EXPECT_EQ(Sent(), "1B 7B 00 1B 21 " + c.mode);
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
  }
}

TEST_F(Tmt70, TextFields) {
  struct Case {
    const char* name;
    std::string xml;
    std::string text;  // what follows the attribute set-up (1B 7B 00 1B 21 00)
  };
  const std::string pad18(18, ' ');
  const Case cases[] = {
      {"centred single field", "<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD>", pad18 + "Hello\r\n"},
      {"SingleField left", "<SingleField Justify='LEFT'><Field>Hello</Field></SingleField>",
       "Hello" + std::string(37, ' ') + "\r\n"},
      {"SingleField right with fill", "<SingleField Justify='RIGHT' Char='.'><Field>Hello</Field></SingleField>",
       std::string(37, '.') + "Hello\r\n"},
      {"SINGLEFIELD left in capitals finds no LeftField", "<SINGLEFIELD Justify='LEFT'><Field>Hello</Field></SINGLEFIELD>", ""},
      {"double field", "<DOUBLEFIELD><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>",
       "Espresso" + std::string(30, ' ') + "2.20\r\n"},
      {"double field with margin", "<DOUBLEFIELD Margin='2'><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>",
       "  A" + std::string(38, ' ') + "B\r\n"},
      {"double field side margins", "<DOUBLEFIELDS MarginSx='1' MarginDx='3'><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELDS>",
       " A" + std::string(36, ' ') + "B   \r\n"},
      {"accents in PC437", "<SINGLEFIELD><Field>Café</Field></SINGLEFIELD>", std::string(19, ' ') + "Caf\x82\r\n"},
  };
  Configure({});
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_TRUE(Field(c.xml));
    EXPECT_EQ(port.Written(), Hex("1B 7B 00 1B 21 00") + c.text);
    EXPECT_TRUE(Errors().empty());
  }
}

TEST_F(Tmt70, DoubleFieldWithoutItsRightPartRecords5) {
  Configure({});
  Open();
  EXPECT_FALSE(Field("<DOUBLEFIELD><LeftField>A</LeftField><RightField>B</RightField><LeftField>C</LeftField></DOUBLEFIELD>"));
  EXPECT_EQ(Errors(), (std::vector<int>{5}));
  EXPECT_EQ(port.Written(), Hex("1B 7B 00 1B 21 00") + "A" + std::string(40, ' ') + "B\r\n");
}

TEST_F(Tmt70, LineAndLineFeed) {
  Configure({});
  Open();
  ASSERT_TRUE(Field("<LINE Char=''/>"));
  EXPECT_EQ(port.Written(), Hex("1B 7B 00 1B 21 00") + std::string(42, '-') + "\r\n");
  port.ClearWritten();
  ASSERT_TRUE(Field("<LINE Char='=-'/>"));
  std::string rule;
  for (int i = 0; i < 21; ++i) rule += "=-";
  EXPECT_EQ(port.Written(), Hex("1B 7B 00 1B 21 00") + rule + "\r\n");
  port.ClearWritten();
  ASSERT_TRUE(Field("<LINEFEED Value='40'/>"));
  std::string feeds;
  for (int i = 0; i < 29; ++i) feeds += "\r\n";
  EXPECT_EQ(port.Written(), feeds);
}

TEST_F(Tmt70, LineFeedShortWriteRecordsZero) {
  Configure({});
  Open();
  port.ShortWriteAt(port.writeCount_ + 1);  // the next write
  EXPECT_FALSE(Field("<LINEFEED Value='2'/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{0}));
}

TEST_F(Tmt70, Barcode) {
  Configure({});
  Open();
  ASSERT_TRUE(Field("<BARCODE Type='CODE128' Height='10' ModuleWidth='3'>TKT0001234567</BARCODE>"));
  EXPECT_EQ(Sent(),
            "1B 7B 00 1B 56 00 1B 21 00 "   // never turned, normal mode
            "1D 66 31 1D 48 02 1D 68 50 1D 77 03 "  // HRI font, below, 80 dots, module 3
            "1B 61 01 1D 6B 49 0F 7B 42 " + ToHex("TKT0001234567") + " 1B 61 00");
}

TEST_F(Tmt70, BarcodeAttributesAndErrors) {
  struct Case {
    const char* name;
    std::string xml;
    bool ok;
    std::vector<int> errors;
    std::string style;  // GS H p GS h h GS w w, or "" when nothing reaches the printer
  };
  const Case cases[] = {
      {"hri sopra", "<BARCODE HRI='sopra'>1</BARCODE>", true, {}, "1D 48 01 1D 68 50 1D 77 03"},
      {"hri SOPRA keeps case: below", "<BARCODE HRI='SOPRA'>1</BARCODE>", true, {}, "1D 48 02 1D 68 50 1D 77 03"},
      {"hri sopra_sotto", "<BARCODE HRI='sopra_sotto' Height='5' ModuleWidth='2'>1</BARCODE>", true, {}, "1D 48 03 1D 68 28 1D 77 02"},
      {"hri no", "<BARCODE HRI='no'>1</BARCODE>", true, {}, "1D 48 00 1D 68 50 1D 77 03"},
      {"empty data", "<BARCODE></BARCODE>", false, {18}, ""},
      {"QR code is not supported", "<BARCODE Type='QR_CODE'>x</BARCODE>", false, {15}, "1D 48 02 1D 68 50 1D 77 03"},
      {"91 characters", "<BARCODE>" + std::string(91, '1') + "</BARCODE>", false, {17}, "1D 48 02 1D 68 50 1D 77 03"},
  };
  Configure({});
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    if (!c.style.empty()) {
      EXPECT_NE(Sent().find("1D 66 31 " + c.style), std::string::npos) << Sent();
    } else {
      EXPECT_EQ(Sent(), "1B 7B 00 1B 56 00 1B 21 00");
    }
  }
}

class Tmt70Logo : public Tmt70 {
 protected:
  void SetUp() override {
    directory = ::testing::TempDir() + "tmt70_logos_" + std::to_string(::getpid());
    std::string command = "mkdir -p '" + directory + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    posprint::SetLogoDirectory(directory);
    // 8 x 2 pixels, 1 bit: the top row black, the bottom row white (rows stored bottom-up).
    std::ofstream(directory + "/logo.bmp", std::ios::binary)
        << Hex("42 4D 46 00 00 00 00 00 00 00 3E 00 00 00 28 00 00 00 08 00 00 00 02 00 00 00 01 00 01 00 "
               "00 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 02 00 00 00 "
               "00 00 00 00 FF FF FF 00 FF 00 00 00 00 00 00 00");
    std::ofstream(directory + "/notabitmap.bmp", std::ios::binary) << "hello";
    Configure({});
    Open();
  }
  std::string directory;
};

TEST_F(Tmt70Logo, PrintsEightDotBandsBetweenLineSpacingCommands) {
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp'/>"));
  EXPECT_EQ(Sent(), "1B 21 00 1B 7B 00 1B 33 00 1B 2A 00 08 00 80 80 80 80 80 80 80 80 0D 0A 1B 32");
}

TEST_F(Tmt70Logo, UpsideDownSendsTheCommandTwice) {
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp' Rotation='180'/>"));
  EXPECT_EQ(Sent().substr(0, 26), "1B 21 00 1B 7B 01 1B 7B 01");
}

TEST_F(Tmt70Logo, Errors) {
  struct Case { const char* name; const char* xml; bool ok; std::vector<int> errors; };
  const Case cases[] = {
      {"empty name", "<LOGO FileName=''/>", false, {8}},
      {"no name", "<LOGO/>", false, {8}},
      {"not a bmp name", "<LOGO FileName='logo.png'/>", false, {9}},
      {"missing file", "<LOGO FileName='missing.bmp'/>", false, {10}},
      {"the name test upper-cases: LOGO.BMP passes it", "<LOGO FileName='LOGO.BMP'/>", false, {10}},
      {"data that is not a bitmap prints nothing", "<LOGO FileName='notabitmap.bmp'/>", true, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
  }
}

TEST_F(Tmt70, CutFieldCutsWhateverTheConfiguration) {
  Configure({});
  Open();
  ASSERT_TRUE(Field("<CUT/>"));
  EXPECT_EQ(Sent(), "1D 56 01");
  port.ClearWritten();
  ASSERT_TRUE(Field("<FOOTER>x</FOOTER>"));
  EXPECT_EQ(Sent(), "");
}

TEST_F(Tmt70, RecordSlotsDoNothing) {
  EXPECT_EQ(driver.PrintFormattedText("xx"), 0);
  EXPECT_EQ(driver.CutRecord("xx"), 0);
}

}  // namespace
