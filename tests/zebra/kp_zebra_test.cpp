// The ZEBRA driver: configuration in millimetres, the set-up it sends, status codes,
// the label's job elements and the record operations.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "drivers/label/ZEBRA/kp_zebra.h"
#include "platform/clock.h"
#include "platform/otool.h"
#include "platform/scripted_port.h"
#include "support/bytes.h"

namespace {

using Keys = std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>;

const std::string kReady = "\x02" "030,0,0,0560,000,0,0,0,000,0,0,0" "\x03\r\n";
const std::string kSecond = "\x02" "000,0,0,0,1,2,6,0,00000000,1,000" "\x03\r\n";
const std::string kThird = "\x02" "1234,0" "\x03\r\n";

class Zebra : public ::testing::Test {
 protected:
  void Configure(Keys keys) {
    auto* parameters = new ParameterCollection();
    for (const auto& key : keys) parameters->Set(key.first, key.second);
    driver.Configure(Nx_Smartp<IParameterCollection>(parameters));
  }
  bool Command(const wchar_t* name) {
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, name, IXMLDOMNodePtr(), port.Name());
  }
  // Runs a command with the one element in xml.
  bool Command(const wchar_t* name, const std::string& xml) {
    std::string error;
    EXPECT_TRUE(parser.LoadString("<Job>" + xml + "</Job>", &error)) << error;
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, name, parser.GetFirstChild(parser.Root()), port.Name());
  }
  bool Field(const std::string& xml) { return Command(L"NEWPRINT", xml); }
  // A label 10 characters wide (21 mm: (168 - 3) / 16), opened and started.
  void OpenNarrowLabel() {
    Configure({{L"param_WidthLabel", L"21"}});
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    ASSERT_TRUE(Command(L"START_PRINT"));
    port.ClearWritten();
  }
  std::string Sent() const { return port.Written(); }
  std::vector<int> Errors() const { return driver.RecordedErrors(); }
  std::uint32_t CursorY() const { return driver.Label()->cursorY; }

  posprint::FakeClock clock;
  posprint::ScopedClock scopedClock{clock};
  posprint::ScriptedPort port;
  Nx_XMLParser parser;
  ZEBRA::KpZEBRA driver;
};

TEST_F(Zebra, Identity) {
  Nx_Stringa name;
  driver.GetComponentName(name);
  EXPECT_EQ(name, L"KpZEBRA");
  EXPECT_EQ(driver.Info().modelName, L"ZEBRA");
  EXPECT_EQ(driver.Info().timeout1, 5000);
  EXPECT_EQ(driver.Info().timeout2, 5000);
}

TEST_F(Zebra, SetUpByConfiguration) {
  struct Case {
    const char* name;
    Keys keys;
    std::string sent;
  };
  auto setUp = [](const std::string& media, const std::string& rest) {
    return "^XA" + media + rest + "^CI27^MFN,F^JUS^XZ^XA^JA^XZ";
  };
  const Case cases[] = {
      {"defaults: direct thermal, tear-off, 8 dots/mm, 100 x 70 mm", {},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"ribbon and peel-off, words in any case", {{L"param_PrintFoilType", L"true"}, {L"param_Peel_Tear", L"Peel_Off"}},
       setUp("^MTT^MMP", "~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"other words keep direct thermal and tear-off", {{L"param_PrintFoilType", L"YES"}, {L"param_Peel_Tear", L"PEEL"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"6 dots/mm", {{L"param_Resolution", L"6"}}, setUp("^MTD^MMT", "~TA000^PR2,2,2^LL420^PW600^LH3,0^CFF,26,13")},
      {"12 dots/mm", {{L"param_Resolution", L"12"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL840^PW1200^LH3,0^CFF,26,13")},
      {"24 dots/mm", {{L"param_Resolution", L"24"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL1680^PW2400^LH3,0^CFF,26,13")},
      {"300 is not a resolution word: 8", {{L"param_Resolution", L"300"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"size in mm at 12 dots/mm",
       {{L"param_Resolution", L"12"}, {L"param_WidthLabel", L"50"}, {L"param_LenghtLabel", L"30"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL360^PW600^LH3,0^CFF,26,13")},
      {"width 0 and a non-number keep the defaults", {{L"param_WidthLabel", L"0"}, {L"param_LenghtLabel", L"abc"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"2.5 mm counts as 2", {{L"param_WidthLabel", L"2.5"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW16^LH3,0^CFF,26,13")},
      {"length is at most 32000 dots, width has no limit",
       {{L"param_LenghtLabel", L"5000"}, {L"param_WidthLabel", L"5000"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL32000^PW40000^LH3,0^CFF,26,13")},
      {"tear-off -200 is -120", {{L"param_Peeling", L"-200"}},
       setUp("^MTD^MMT", "~TA-120^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"tear-off 200 is 120", {{L"param_Peeling", L"200"}},
       setUp("^MTD^MMT", "~TA120^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"tear-off -5", {{L"param_Peeling", L"-5"}}, setUp("^MTD^MMT", "~TA-05^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"speed 76.2 mm/s", {{L"param_Speed", L"76.2"}},
       setUp("^MTD^MMT", "~TA000^PR3,3,3^LL560^PW800^LH3,0^CFF,26,13")},
      {"speed 101.6 mm/s", {{L"param_Speed", L"101.6"}},
       setUp("^MTD^MMT", "~TA000^PR4,4,4^LL560^PW800^LH3,0^CFF,26,13")},
      {"speed 127.0 mm/s", {{L"param_Speed", L"127.0"}},
       setUp("^MTD^MMT", "~TA000^PR5,5,5^LL560^PW800^LH3,0^CFF,26,13")},
      {"speed 152.4 mm/s", {{L"param_Speed", L"152.4"}},
       setUp("^MTD^MMT", "~TA000^PR6,6,6^LL560^PW800^LH3,0^CFF,26,13")},
      {"speed 127 is not a speed word", {{L"param_Speed", L"127"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13")},
      {"label home in mm", {{L"param_Origin_X", L"5"}, {L"param_Origin_Y", L"2"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH40,16^CFF,26,13")},
      {"label home at most 32000 dots", {{L"param_Origin_X", L"5000"}, {L"param_Origin_Y", L"-4"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH32000,0^CFF,26,13")},
      {"magnification 3", {{L"param_MagFactor", L"3"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,78,39")},
      {"magnification 25 is 20", {{L"param_MagFactor", L"25"}},
       setUp("^MTD^MMT", "~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,520,260")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Configure(c.keys);
    port.ClearWritten();
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    // The set-up, then the normal font once more.
    const std::string font = c.sent.substr(c.sent.find("^CF"), c.sent.find("^CI") - c.sent.find("^CF"));
    EXPECT_EQ(Sent(), c.sent + font);
  }
}

TEST_F(Zebra, OpenComputesTheLineAndTakesCrLf) {
  Configure({});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(driver.Context()->lineWidth, 49);  // (800 - 3) / 16
  EXPECT_STREQ(driver.Context()->terminator, "\r\n");
  port.ClearWritten();
  EXPECT_TRUE(Command(L"INIT_PRINTER"));  // already open: nothing more
  EXPECT_EQ(Sent(), "");
}

TEST_F(Zebra, OpenFailureAndClose) {
  Configure({});
  port.FailOpen();
  EXPECT_FALSE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Errors(), std::vector<int>{71});
  port.FailOpen(false);
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  port.FailClose();
  EXPECT_FALSE(Command(L"STOP_PRINTER"));
  EXPECT_EQ(Errors(), std::vector<int>{2});
  port.FailClose(false);
  EXPECT_TRUE(Command(L"STOP_PRINTER"));
  EXPECT_TRUE(Command(L"STOP_PRINTER"));
}

TEST_F(Zebra, CheckReportsThePrinterStatus) {
  struct Case {
    const char* name;
    std::vector<std::string> answers;
    bool ok;
    std::vector<int> errors;
  };
  const Case cases[] = {
      {"ready", {kReady, kSecond, kThird}, true, {}},
      {"paper out", {"\x02" "030,1,0,0560,000,0,0,0,000,0,0,0" "\x03\r\n", kSecond, kThird}, false, {112}},
      {"paused", {"\x02" "030,0,1,0560,000,0,0,0,000,0,0,0" "\x03\r\n", kSecond, kThird}, false, {105}},
      {"head too hot", {"\x02" "030,0,0,0560,000,0,0,0,000,0,0,1" "\x03\r\n", kSecond, kThird}, false, {110}},
      {"corrupt RAM", {"\x02" "030,0,0,0560,000,0,0,0,000,1,0,0" "\x03\r\n", kSecond, kThird}, false, {101}},
      {"garbled", {"?", kSecond, kThird}, false, {101}},
      {"silent", {}, false, {101}},
  };
  Configure({});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.answers_.clear();
    port.ClearWritten();
    for (const std::string& answer : c.answers) port.Answer(answer);
    EXPECT_EQ(Command(L"CHECK"), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Sent(), "~HS");
  }
}

TEST_F(Zebra, ClosedDriver) {
  Configure({});
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{3, 1}));
  EXPECT_FALSE(Command(L"START_PRINT"));
  EXPECT_EQ(Errors(), std::vector<int>{3});
  EXPECT_FALSE(Command(L"STOP_PRINT"));
  EXPECT_EQ(Errors(), std::vector<int>{3});
  EXPECT_FALSE(Field("<Line/>"));
  EXPECT_EQ(Errors(), std::vector<int>{3});
  EXPECT_TRUE(Field("<Footer/>"));  // not a field: nothing to need the port for
  for (int (ZEBRA::KpZEBRA::*record)(const char*) :
       {&ZEBRA::KpZEBRA::PrintFormattedText, &ZEBRA::KpZEBRA::PrintLogoByName, &ZEBRA::KpZEBRA::PrintBarcodeRecord,
        &ZEBRA::KpZEBRA::PrintSeparatorRecord, &ZEBRA::KpZEBRA::FeedLinesRecord}) {
    driver.ClearErrors();
    EXPECT_EQ((driver.*record)("00C00000000000AB"), 0);
    EXPECT_EQ(Errors(), std::vector<int>{3});
  }
  EXPECT_EQ(Sent(), "");
}

TEST_F(Zebra, LabelStartAndEnd) {
  Configure({{L"param_Origin_Y", L"2"}});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  port.ClearWritten();
  EXPECT_TRUE(Command(L"START_PRINT"));
  EXPECT_EQ(Sent(), "^XA^JA^XZ^XA^LH,16");
  port.ClearWritten();
  EXPECT_TRUE(Command(L"STOP_PRINT"));
  EXPECT_EQ(Sent(), "^XZ");
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_FALSE(Command(L"STOP_PRINT"));
  EXPECT_EQ(Errors(), std::vector<int>{});  // a lost ^XZ is no error number
}

TEST_F(Zebra, OwnCommandSwitchesFlowControl) {
  struct Case {
    const char* name;
    const wchar_t* command;
    std::string element;
    bool xonXoff;
  };
  const Case cases[] = {
      {"XONXOFF", L"ZEBRA_NEWPRINT", "<XONXOFF/>", true},
      {"the element in any case", L"ZEBRA_NEWPRINT", "<XonXoff/>", true},
      {"another element", L"ZEBRA_NEWPRINT", "<Other/>", false},
      {"the command name keeps its case", L"zebra_newprint", "<XONXOFF/>", false},
      {"an unknown command", L"ITALORA_NEWPRINT", "<XONXOFF/>", false},
  };
  Configure({});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  port.ClearWritten();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    otool_IOCTL(driver.Context()->handle, kPortSetState, 0);
    EXPECT_TRUE(Command(c.command, c.element));
    EXPECT_EQ(port.FlowControl(), c.xonXoff);
  }
  EXPECT_EQ(Sent(), "");
}

// On the 10-character label: cell 16 dots, line 31 dots, bars 26 dots in.
TEST_F(Zebra, Fields) {
  struct Case {
    const char* name;
    std::string xml;
    bool ok;
    std::vector<int> errors;
    std::string sent;
    std::uint32_t y;  // cursor Y afterwards
  };
  const std::string normal = "^CFF,26,13";
  const Case cases[] = {
      {"line feed", "<LineFeed Value='2'/>", true, {}, normal, 62},
      {"negative line feed stays", "<LineFeed Value='-2'/>", true, {}, normal, 0},
      {"line", "<Line/>", true, {}, normal + normal + "^FO0,0^FD----------^FS", 31},
      {"line with an empty Char", "<Line Char=''/>", true, {}, normal + normal + "^FO0,0^FD----------^FS", 31},
      {"line, double size", "<LINE Char='=' Height='2' Width='2'/>", true, {},
       normal + "^CFF,52,26^FO0,0^FD=====^FS", 62},
      {"expansion 9 is single size", "<Line Char='*' Height='9' Width='9'/>", true, {},
       normal + normal + "^FO0,0^FD**********^FS", 31},
      {"single field centred", "<SingleField><Field>AB</Field><Field>ABCD</Field></SingleField>", true, {},
       normal + normal + "^FO64,0^FDAB^FS^FO48,31^FDABCD^FS", 62},
      {"single field left", "<SingleField Justify='LEFT' Char='.'><Field>AB</Field></SingleField>", true, {},
       normal + normal + "^FO0,0^FDAB^FS^FO32,0^FD........^FS", 31},
      {"single field right (printer)", "<SingleField Justify='RIGHT_PRINTER'><Field>AB</Field></SingleField>", true,
       {}, normal + normal + "^FO0,0^FD^FS^FO0,0^FD        ^FS^FO128,0^FDAB^FS", 31},
      {"SINGLEFIELD in capitals with a side alignment prints nothing",
       "<SINGLEFIELD Justify='LEFT'><Field>AB</Field></SINGLEFIELD>", true, {}, normal + normal, 0},
      {"double field", "<DoubleField Char='.'><LeftField>AB</LeftField><RightField>XYZ</RightField></DoubleField>",
       true, {}, normal + normal + "^FO0,0^FDAB^FS^FO32,0^FD.....^FS^FO112,0^FDXYZ^FS", 31},
      {"double field without its right part",
       "<DoubleFields><LeftField>A</LeftField><RightField>B</RightField><LeftField>C</LeftField></DoubleFields>",
       false, {5}, normal + normal + "^FO0,0^FDA^FS^FO16,0^FD        ^FS^FO144,0^FDB^FS", 31},
      {"barcode defaults", "<Barcode>123</Barcode>", true, {}, "^FO26,0^BY3,3.0,80^BC,,Y,N,N,N^FD123^FS", 117},
      {"barcode with its attributes",
       "<Barcode Type='QR_CODE' Height='20' ModuleWidth='5' BarRatio='2.5' HRI='sotto'>A_1</Barcode>", true, {},
       "^FO26,0^BY5,2.5,160^BQN,2,6^FH^FDMM,B0003A_5F1^FS", 197},
      {"barcode HRI SOPRA: no text line", "<Barcode Type='EAN8' HRI='SOPRA'>1234567</Barcode>", true, {},
       "^FO26,0^BY3,3.0,80^B8,,N,N^FD1234567^FS", 85},
      {"barcode HRI in capitals is not sotto", "<Barcode HRI='SOTTO'>1</Barcode>", true, {},
       "^FO26,0^BY3,3.0,80^BC,,N,N,N,N^FD1^FS", 85},
      {"barcode ratio with a comma reads as 2", "<Barcode BarRatio='2,5' HRI=''>1</Barcode>", true, {},
       "^FO26,0^BY3,2.0,80^BC,,Y,N,N,N^FD1^FS", 117},
      {"code 128 C prints as text", "<Barcode Type='CODE128C'>1234</Barcode>", true, {},
       "^FO26,0^BY3,3.0,80^FD1234^FS", 117},
      {"barcode without data", "<Barcode Type='EAN13'></Barcode>", false, {7}, "", 0},
      {"barcode too long", "<Barcode>" + std::string(1100, '1') + "</Barcode>", false, {7}, "", 0},
      {"logo", "<Logo FileName='logo.bmp' Rotation='90'/>", true, {}, "^FO0,0^XGE:logo.GRF,1,1^FS^LH,0", 0},
      {"logo that is not a BMP", "<Logo FileName='logo.png'/>", false, {9}, "", 0},
      {"logo without a name", "<Logo FileName=''/>", false, {8}, "", 0},
      {"cut", "<Cut/>", true, {}, "", 0},
      {"mobile field", "<MobileField><Field>A</Field></MobileField>", true, {}, "", 0},
      {"mobile barcode", "<MobileBarcode>1</MobileBarcode>", true, {}, "", 0},
      {"not a field", "<Footer/>", true, {}, "", 0},
  };
  OpenNarrowLabel();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"START_PRINT");
    port.ClearWritten();
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(CursorY(), c.y);
    Field("<Line Height='1' Width='1' Char='x'/>");  // back to the normal font
  }
}

TEST_F(Zebra, FieldFailures) {
  OpenNarrowLabel();
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_FALSE(Field("<Line/>"));
  EXPECT_EQ(Errors(), std::vector<int>{16});
  port.ShortWriteAt(port.writeCount_ + 3);
  EXPECT_FALSE(Field("<Line/>"));
  EXPECT_EQ(Errors(), std::vector<int>{22});
  port.ShortWriteAt(port.writeCount_ + 3);
  EXPECT_FALSE(Field("<SingleField><Field>A</Field></SingleField>"));
  EXPECT_EQ(Errors(), std::vector<int>{6});
  port.ShortWriteAt(port.writeCount_ + 2);
  EXPECT_FALSE(Field("<Logo FileName='a.bmp'/>"));
  EXPECT_EQ(Errors(), std::vector<int>{13});
}

TEST_F(Zebra, FormattedLineRecords) {
  OpenNarrowLabel();
  // Header: [2] selector, [9] '2' double height, [12] fill, text from [14].
  EXPECT_EQ(driver.PrintFormattedText("00L00000000000AB"), 1);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(driver.PrintFormattedText("00R000000200.0XYZ"), 1);
  EXPECT_EQ(Sent(), "^CFF,52,13^FO0,0^FDAB^FS^FO32,0^FD.....^FS^FO112,0^FDXYZ^FS^CFF,26,13");
  EXPECT_EQ(CursorY(), 62u);  // the line advanced while the font was double height
  port.ClearWritten();
  EXPECT_EQ(driver.PrintFormattedText("00C00000000000ABCD"), 1);
  EXPECT_EQ(Sent(), "^FO48,62^FDABCD^FS");
  port.ClearWritten();
  driver.ClearErrors();
  EXPECT_EQ(driver.PrintFormattedText("00X00000000000ABCD"), 0);
  EXPECT_EQ(driver.PrintFormattedText(""), 0);
  EXPECT_EQ(Errors(), (std::vector<int>{6, 6}));
  EXPECT_EQ(Sent(), "");
  driver.ClearErrors();
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_EQ(driver.PrintFormattedText("00C00000000000ABCD"), 0);
  EXPECT_EQ(Errors(), std::vector<int>{6});
}

TEST_F(Zebra, LogoBarcodeSeparatorAndFeedRecords) {
  OpenNarrowLabel();
  EXPECT_EQ(driver.PrintLogoByName("00logo.bmp"), 1);
  EXPECT_EQ(Sent(), "^FO0,0^XGE:logo.GRF,1,1^FS^LH,0");
  driver.ClearErrors();
  EXPECT_EQ(driver.PrintLogoByName("00logo.png"), 0);
  EXPECT_EQ(Errors(), std::vector<int>{9});

  // The barcode record still sends the receipt printers' rotation and mode reset first.
  port.ClearWritten();
  EXPECT_EQ(driver.PrintBarcodeRecord("00Q{41}"), 1);
  EXPECT_EQ(posprint::test::ToHex(Sent().substr(0, 9)), "1B 7B 00 1B 56 00 1B 21 00");
  EXPECT_EQ(Sent().substr(9), "^FO26,0^BY3,3.0,80^BQN,2,6^FH^FDMM,B0001A^FS");
  EXPECT_EQ(CursorY(), 117u);
  driver.ClearErrors();
  EXPECT_EQ(driver.PrintBarcodeRecord("004"), 0);
  EXPECT_EQ(Errors(), std::vector<int>{7});

  port.ClearWritten();
  EXPECT_EQ(driver.PrintSeparatorRecord("000000="), 1);
  EXPECT_EQ(Sent(), "^FO0,117^FD==========^FS");
  driver.ClearErrors();
  EXPECT_EQ(driver.PrintSeparatorRecord("000000"), 0);
  EXPECT_EQ(Errors(), std::vector<int>{22});

  port.ClearWritten();
  EXPECT_EQ(driver.FeedLinesRecord("003"), 1);
  EXPECT_EQ(Sent(), "^CFF,26,13");
  EXPECT_EQ(CursorY(), 148u + 93u);
  EXPECT_EQ(driver.FeedLinesRecord("00x"), 1);
  EXPECT_EQ(CursorY(), 241u);
}

}  // namespace
