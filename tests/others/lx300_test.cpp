// The LX300 dot-matrix printer: its configuration keys, the ESC/P bytes of each command
// and field, and what CHECK reports without a printer that answers.
#include "drivers/receipt/LX300/kp_lx300.h"
#include "tests/others/harness.h"

namespace {

using posprint::test::Hex;
using posprint::test::Keys;
using posprint::test::MonoBmp;
using posprint::test::ToHex;

// What a text field sends before its text: DC2, ESC F, ESC - 0, ESC 5, ESC W 0, ESC w 0.
const char kPlainText[] = "12 1B 46 1B 2D 00 1B 35 1B 57 00 1B 77 00";

class Lx300 : public posprint::test::DriverHarness<LX300::KpLX300> {};

TEST_F(Lx300, ConfigurationKeys) {
  struct Case {
    const char* name;
    Keys keys;
    std::string open;        // INIT_PRINTER
    int lineWidth;
    bool flowControl;
    std::string endOfPrint;  // STOP_PRINT
  };
  const char* init = "1B 40 1B 74 01 ";
  const Case cases[] = {
      {"defaults", {}, "1B 78 00", 80, true, "0C"},
      {"near letter quality", {{L"param_PrintQuality", L"val_nlq"}}, "1B 78 01", 80, true, "0C"},
      {"page of 72 lines", {{L"param_PageLength", L"72"}}, "1B 78 00 1B 43 48", 80, true, "0C"},
      {"no form feed", {{L"param_FormFeed", L"False"}}, "1B 78 00", 80, true, ""},
      {"40 columns", {{L"param_Columns", L"40"}}, "1B 78 00", 40, true, "0C"},
      {"wide carriage capped at 100", {{L"param_Columns", L"136"}}, "1B 78 00", 100, true, "0C"},
      {"flow control left alone", {{L"param_XonXoff", L"FALSE"}}, "1B 78 00", 80, false, "0C"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    posprint::ScriptedPort printer;
    LX300::KpLX300 lx300;
    auto* parameters = new ParameterCollection();
    for (const auto& key : c.keys) parameters->Set(key.first, key.second);
    lx300.Configure(Nx_Smartp<IParameterCollection>(parameters));
    ASSERT_TRUE(lx300.ExecuteCommand(&parser, L"INIT_PRINTER", IXMLDOMNodePtr(), printer.Name()));
    EXPECT_EQ(ToHex(printer.Written()), init + c.open);
    EXPECT_EQ(lx300.Context()->lineWidth, c.lineWidth);
    EXPECT_EQ(printer.FlowControl(), c.flowControl);
    EXPECT_STREQ(lx300.Context()->terminator, "\r\n");
    printer.ClearWritten();
    EXPECT_TRUE(lx300.ExecuteCommand(&parser, L"STOP_PRINT", IXMLDOMNodePtr(), printer.Name()));
    EXPECT_EQ(ToHex(printer.Written()), c.endOfPrint);
  }
}

TEST_F(Lx300, FontSelection) {
  struct Case {
    const char* name;
    const char* attributes;
    std::string modes;
    int lineWidth;
  };
  const Case cases[] = {
      {"normal", "", kPlainText, 80},
      {"condensed", "Font='FONTB'", "0F 1B 46 1B 2D 00 1B 35 1B 57 00 1B 77 00", 100},
      {"condensed double width", "Font='SMALL' Width='2'", "0F 1B 46 1B 2D 00 1B 35 1B 57 01 1B 77 00", 50},
      {"bold", "TypeFont='DOUBLEBEAT'", "12 1B 45 1B 2D 00 1B 35 1B 57 00 1B 77 00", 80},
      {"bold wins over condensed", "Font='SMALL' TypeFont='DOUBLEBEAT'", "12 1B 45 1B 2D 00 1B 35 1B 57 00 1B 77 00", 80},
      {"italic", "TypeFont='CURSIVE'", "12 1B 46 1B 2D 00 1B 34 1B 57 00 1B 77 00", 80},
      {"reverse prints plain", "TypeFont='REVERSE'", kPlainText, 80},
      {"double width", "Width='2'", "12 1B 46 1B 2D 00 1B 35 1B 57 01 1B 77 00", 40},
      {"double height", "Height='3'", "12 1B 46 1B 2D 00 1B 35 1B 57 00 1B 77 01", 80},
      {"a turn is not sent", "Rotation='180'", kPlainText, 80},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    ASSERT_TRUE(Field(std::string("<SINGLEFIELD ") + c.attributes + "/>"));
    EXPECT_EQ(Sent(), c.modes);
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
  }
}

TEST_F(Lx300, TextAndLineFeeds) {
  Open();
  ASSERT_TRUE(Field("<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD>"));
  EXPECT_EQ(port.Written(), Hex(kPlainText) + std::string(37, ' ') + "Hello\r\n");
  port.ClearWritten();
  ASSERT_TRUE(Field("<LINE Char='='/>"));
  EXPECT_EQ(port.Written(), Hex(kPlainText) + std::string(80, '=') + "\r\n");
  port.ClearWritten();
  ASSERT_TRUE(Field("<LINEFEED Value='2'/>"));
  EXPECT_EQ(Sent(), "0D 0A 0D 0A");
}

TEST_F(Lx300, CutAndUnknownElementsSendNothing) {
  Open();
  EXPECT_TRUE(Field("<CUT/>"));
  EXPECT_TRUE(Field("<FOOTER/>"));
  EXPECT_TRUE(Command(L"LX300_NEWPRINT"));
  EXPECT_EQ(Sent(), "");
}

TEST_F(Lx300, LogoBandsByDensity) {
  struct Case { const char* name; Keys keys; std::string mode; };
  const Case cases[] = {
      {"72 dpi by default", {}, "05"},
      {"60 dpi", {{L"param_LogoDensity", L"val_60"}}, "00"},
      {"120 dpi", {{L"param_LogoDensity", L"VAL_120"}}, "01"},
      {"unknown density", {{L"param_LogoDensity", L"val_240"}}, "05"},
  };
  LogoFolder("lx300_logos");
  LogoFile("logo.bmp", MonoBmp({"########", "........"}));
  std::string columns;
  for (int i = 0; i < 8; ++i) columns += " 80";
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    ASSERT_TRUE(Field("<LOGO FileName='logo.bmp' Rotation='180'/>"));
    EXPECT_EQ(Sent(), "1B 21 00 1B 33 18 1B 2A " + c.mode + " 08 00" + columns + " 0D 0A 1B 32");
  }
}

TEST_F(Lx300, Barcodes) {
  struct Case {
    const char* name;
    std::string xml;
    bool ok;
    std::vector<int> errors;
    std::string sent;  // after ESC ! 0
  };
  const std::string digits = ToHex("12345");
  const Case cases[] = {
      {"code 128, 10 mm, text below", "<BARCODE>12345</BARCODE>", true, {},
       "1B 28 42 0B 00 06 03 00 47 00 00 " + digits + " 0D 1B 4A 79"},
      {"no human-readable line", "<BARCODE HRI='no'>12345</BARCODE>", true, {},
       "1B 28 42 0B 00 06 03 00 47 00 02 " + digits + " 0D 1B 4A 55"},
      {"EAN-13, module 7 is 5", "<BARCODE Type='EAN13' ModuleWidth='7'>12345</BARCODE>", true, {},
       "1B 28 42 0B 00 00 05 00 47 00 00 " + digits + " 0D 1B 4A 79"},
      {"40 mm: two paper moves", "<BARCODE Type='CODE39' Height='40'>12345</BARCODE>", true, {},
       "1B 28 42 0B 00 05 03 00 1B 01 00 " + digits + " 0D 1B 4A FF 1B 4A 78"},
      {"QR code is not printed", "<BARCODE Type='QR_CODE'>12345</BARCODE>", false, {15}, ""},
      {"empty data", "<BARCODE></BARCODE>", false, {18}, ""},
      {"91 characters", "<BARCODE>" + std::string(91, '7') + "</BARCODE>", false, {17}, ""},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Sent(), c.sent.empty() ? "1B 21 00" : "1B 21 00 " + c.sent);
  }
}

TEST_F(Lx300, PlacedBarcodeFeedsFirstAndTakesItsModuleFromWidth) {
  Open();
  ASSERT_TRUE(Field("<MOBILEBARCODE OffsetY='2' Width='4' Justify='RIGHT' Rotation='90'>AB</MOBILEBARCODE>"));
  EXPECT_EQ(Sent(), "0A 0A 1B 21 00 1B 28 42 08 00 06 04 00 47 00 00 41 42 0D 1B 4A 79");
}

TEST_F(Lx300, CheckTellsWhetherThePortIsUsable) {
  Open();
  EXPECT_TRUE(Command(L"CHECK"));
  EXPECT_EQ(Sent(), "");  // nothing is asked of the printer
  EXPECT_EQ(port.Purges(), 1);
  port.Vanish();  // the serial adapter pulled out
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{101}));
}

}  // namespace
