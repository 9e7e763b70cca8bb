// The LX300 dot-matrix printer: its configuration keys, the ESC/P bytes of each command
// and field, and what CHECK reports without a printer that answers.
#include "drivers/receipt/LX300/kp_lx300.h"
#include "others/others_fixture.h"

namespace posprint::test {
namespace {

// What a text field sends before its text: DC2, ESC F, ESC - 0, ESC 5, ESC W 0, ESC w 0, ESC 2.
const std::string kPlainText = "12 1B 46 1B 2D 00 1B 35 1B 57 00 1B 77 00 1B 32";

class Lx300 : public OthersTest<LX300::KpLX300> {};

TEST_F(Lx300, ConfigurationKeys) {
  // INIT_PRINTER: ESC @, ESC t 1, ESC x n, ESC C n; then STOP_PRINT: FF.
  const std::string run = "INIT_PRINTER STOP_PRINT", open = "1B 40 1B 74 01 1B 78 00";
  Run({
      {"defaults", {}, "", run, 1, open + " 0C", 80},
      {"near letter quality", {{L"param_PrintQuality", L"val_nlq"}}, "", run, 1, "1B 40 1B 74 01 1B 78 01 0C", 80},
      {"page of 72 lines", {{L"param_PageLength", L"72"}}, "", run, 1, open + " 1B 43 48 0C", 80},
      {"no form feed", {{L"param_FormFeed", L"False"}}, "", run, 1, open, 80},
      {"40 columns", {{L"param_Columns", L"40"}}, "", run, 1, open + " 0C", 40},
      {"wide carriage capped at 100", {{L"param_Columns", L"136"}}, "", run, 1, open + " 0C", 100},
  });
}

TEST(Lx300Port, FlowControlIsSwitchedOnUnlessXonXoffIsFalse) {
  for (const bool on : {true, false}) {
    ScriptedPort printer;
    LX300::KpLX300 lx300;
    auto* parameters = new ParameterCollection();
    if (!on) parameters->Set(L"param_XonXoff", L"FALSE");
    lx300.Configure(Nx_Smartp<IParameterCollection>(parameters));
    Nx_XMLParser parser;
    ASSERT_TRUE(lx300.ExecuteCommand(&parser, L"INIT_PRINTER", IXMLDOMNodePtr(), printer.Name()));
    EXPECT_EQ(printer.FlowControl(), on);
  }
}

TEST_F(Lx300, Fields) {
  LogoFile("logo.bmp", MonoBmp({"########", "........"}));
  const std::string logo = "<LOGO FileName='logo.bmp' Rotation='180'/>", bands = " 08 00 " + Times(8, "80") + " 0D 0A 1B 32";
  Run({
      {"normal", {}, "", Font(""), 1, kPlainText, 80},
      {"condensed", {}, "", Font("Font='FONTB'"), 1, "0F 1B 46 1B 2D 00 1B 35 1B 57 00 1B 77 00 1B 32", 100},
      {"condensed double width", {}, "", Font("Font='SMALL' Width='2'"), 1, "0F 1B 46 1B 2D 00 1B 35 1B 57 01 1B 77 00 1B 32", 50},
      {"bold", {}, "", Font("TypeFont='DOUBLEBEAT'"), 1, "12 1B 45 1B 2D 00 1B 35 1B 57 00 1B 77 00 1B 32", 80},
      {"bold wins over condensed", {}, "", Font("Font='SMALL' TypeFont='DOUBLEBEAT'"), 1,
       "12 1B 45 1B 2D 00 1B 35 1B 57 00 1B 77 00 1B 32", 80},
      {"italic", {}, "", Font("TypeFont='CURSIVE'"), 1, "12 1B 46 1B 2D 00 1B 34 1B 57 00 1B 77 00 1B 32", 80},
      {"reverse prints plain", {}, "", Font("TypeFont='REVERSE'"), 1, kPlainText, 80},
      {"double width", {}, "", Font("Width='2'"), 1, "12 1B 46 1B 2D 00 1B 35 1B 57 01 1B 77 00 1B 32", 40},
      {"double height", {}, "", Font("Height='3'"), 1, "12 1B 46 1B 2D 00 1B 35 1B 57 00 1B 77 01 1B 33 48", 80},
      {"a turn is not sent", {}, "", Font("Rotation='180'"), 1, kPlainText, 80},
      // Lines end in CR LF.
      {"centred text", {}, "", "<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD>", 1,
       kPlainText + " " + Spaces(37) + " " + ToHex("Hello") + " 0D 0A"},
      {"separator", {}, "", "<LINE Char='='/>", 1, kPlainText + " " + Times(80, "3D") + " 0D 0A"},
      {"line feeds", {}, "", "<LINEFEED Value='2'/>", 1, "0D 0A 0D 0A"},
      {"no cutter: the cut sends nothing", {}, "", "<CUT/>", 1, ""},
      {"an unknown element sends nothing", {}, "", "<FOOTER/>", 1, ""},
      {"the own command sends nothing", {}, "", "LX300_NEWPRINT", 1, ""},
      // The logo in 8-dot bands, ESC * m by density.
      {"logo at 72 dpi by default", {}, "", logo, 1, "1B 21 00 1B 33 18 1B 2A 05" + bands},
      {"logo at 60 dpi", {{L"param_LogoDensity", L"val_60"}}, "", logo, 1, "1B 21 00 1B 33 18 1B 2A 00" + bands},
      {"logo at 120 dpi", {{L"param_LogoDensity", L"VAL_120"}}, "", logo, 1, "1B 21 00 1B 33 18 1B 2A 01" + bands},
      {"unknown density", {{L"param_LogoDensity", L"val_240"}}, "", logo, 1, "1B 21 00 1B 33 18 1B 2A 05" + bands},
  });
}

TEST_F(Lx300, Barcodes) {
  // After ESC ! 0: ESC ( B, the data, then CR and ESC J n to move the paper past it.
  const std::string mode = "1B 21 00 1B 28 42 ", digits = " " + ToHex("12345");
  Run({
      {"code 128, 10 mm, text below", {}, "", "<BARCODE>12345</BARCODE>", 1,
       mode + "0B 00 06 03 00 47 00 00" + digits + " 0D 1B 4A 79"},
      {"no human-readable line", {}, "", "<BARCODE HRI='no'>12345</BARCODE>", 1,
       mode + "0B 00 06 03 00 47 00 02" + digits + " 0D 1B 4A 55"},
      {"EAN-13, module 7 is 5", {}, "", "<BARCODE Type='EAN13' ModuleWidth='7'>12345</BARCODE>", 1,
       mode + "0B 00 00 05 00 47 00 00" + digits + " 0D 1B 4A 79"},
      {"40 mm: two paper moves", {}, "", "<BARCODE Type='CODE39' Height='40'>12345</BARCODE>", 1,
       mode + "0B 00 05 03 00 1B 01 00" + digits + " 0D 1B 4A FF 1B 4A 78"},
      {"QR code is not printed", {}, "", "<BARCODE Type='QR_CODE'>12345</BARCODE>", 15, "1B 21 00"},
      {"empty data", {}, "", "<BARCODE></BARCODE>", 18, "1B 21 00"},
      {"91 characters", {}, "", "<BARCODE>" + std::string(91, '7') + "</BARCODE>", 17, "1B 21 00"},
      {"placed: feeds first, module from Width", {}, "",
       "<MOBILEBARCODE OffsetY='2' Width='4' Justify='RIGHT' Rotation='90'>AB</MOBILEBARCODE>", 1,
       "0A 0A " + mode + "08 00 06 04 00 47 00 00 41 42 0D 1B 4A 79"},
  });
}

TEST_F(Lx300, CheckTellsWhetherThePortIsUsable) {
  Open();
  EXPECT_TRUE(Command("CHECK"));
  EXPECT_EQ(Line(), "");  // nothing is asked of the printer
  EXPECT_EQ(port.Purges(), 1);
  port.Vanish();  // the serial adapter pulled out
  EXPECT_FALSE(Command("CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{101}));
}

}  // namespace
}  // namespace posprint::test
