// The ZEBRA driver: configuration in millimetres, the set-up it sends, status codes,
// the label's job elements and the record operations.
#include "zebra/zebra_test.h"

namespace zebra_test {
namespace {

// The set-up from ^MT to the font (sent once more after the set-up), and the characters a line.
TEST_F(Zebra, SetUpByConfiguration) {
  const struct { Keys keys; std::string middle; int lineWidth; } cases[] = {
      {{{L"PrintFoilType", L"true"}, {L"Peel_Tear", L"Peel_Off"}, {L"Peeling", L"200"}, {L"Speed", L"152.4"}},
       "^MTT^MMP~TA120^PR6,6,6^LL560^PW800^LH3,0^CFF,26,13", 49},
      // Unknown words and numbers keep the defaults: direct thermal, tear-off, 8 dots/mm, 100 x 70 mm.
      {{{L"PrintFoilType", L"YES"}, {L"Peel_Tear", L"PEEL"}, {L"Resolution", L"300"}, {L"Speed", L"127"},
        {L"WidthLabel", L"0"}, {L"LenghtLabel", L"abc"}},
       "^MTD^MMT~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13", 49},
      {{{L"Resolution", L"6"}, {L"Peeling", L"-5"}, {L"Speed", L"76.2"}, {L"WidthLabel", L"1"}},
       "^MTD^MMT~TA-05^PR3,3,3^LL420^PW6^LH3,0^CFF,26,13", 1},
      {{{L"Resolution", L"24"}, {L"MagFactor", L"3"}, {L"Speed", L"127.0"}},
       "^MTD^MMT~TA000^PR5,5,5^LL1680^PW2400^LH3,0^CFF,78,39", 49},
      {{{L"Resolution", L"12"}, {L"WidthLabel", L"50"}, {L"LenghtLabel", L"30"}, {L"Origin_X", L"5"},
        {L"Origin_Y", L"2"}},
       "^MTD^MMT~TA000^PR2,2,2^LL360^PW600^LH60,24^CFF,26,13", 33},
      // Limits: length and home 32000 dots, width none, tear-off 120, magnification 20.
      {{{L"LenghtLabel", L"5000"}, {L"WidthLabel", L"5000"}, {L"Peeling", L"-200"}, {L"Origin_X", L"5000"},
        {L"Origin_Y", L"-4"}, {L"MagFactor", L"25"}},
       "^MTD^MMT~TA-120^PR2,2,2^LL32000^PW40000^LH32000,0^CFF,520,260", 25},
      // 2.5 mm counts as 2; a label no wider than its home still has one character.
      {{{L"WidthLabel", L"2.5"}, {L"Origin_X", L"2"}, {L"Speed", L"101.6"}},
       "^MTD^MMT~TA000^PR4,4,4^LL560^PW16^LH16,0^CFF,26,13", 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.middle);
    Command(L"STOP_PRINTER");
    Configure(c.keys);
    port.ClearWritten();
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    const std::string font = c.middle.substr(c.middle.find("^CF"));
    EXPECT_EQ(Sent(), "^XA" + c.middle + "^CI27^MFN,F^JUS^XZ^XA^JA^XZ" + font);
    EXPECT_EQ(port.Writes().end()[-2], "^XA^JA^XZ");  // on its own, after the printer stored the set-up
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
  }
}

TEST_F(Zebra, OpenCheckAndClose) {
  port.FailOpen();
  Configure({});
  EXPECT_FALSE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Recorded(), Errors{71});
  port.FailOpen(false);
  Open();
  EXPECT_EQ(clock.TotalSleptMs(), 500);  // the printer stores its set-up
  EXPECT_STREQ(driver.Context()->terminator, "\r\n");
  EXPECT_TRUE(Command(L"INIT_PRINTER"));  // already open: nothing more
  EXPECT_EQ(Sent(), "");
  // The status character is the status number: 'p' 112, 'e' 101 (decoding: the "~HS" tests).
  const std::pair<std::string, Errors> checks[] = {
      {kReadyFirst, {}}, {Framed("030,1,0,0560,000,0,0,0,000,0,0,0"), {112}}, {"", {101}}};
  for (const auto& [first, errors] : checks) {
    if (!first.empty()) port.Answer(first + kSecond + kThird);
    EXPECT_EQ(Command(L"CHECK"), errors.empty());
    EXPECT_EQ(Recorded(), errors);
  }
  EXPECT_EQ(Sent(), "~HS~HS~HS");
  port.FailClose();
  EXPECT_FALSE(Command(L"STOP_PRINTER"));
  EXPECT_EQ(Recorded(), Errors{2});
  port.FailClose(false);
  EXPECT_TRUE(Command(L"STOP_PRINTER"));
  EXPECT_TRUE(Command(L"STOP_PRINTER"));
  port.Vanish();
  EXPECT_TRUE(Command(L"INIT_PRINTER"));  // a printer that took nothing of the set-up still opens
}

TEST_F(Zebra, ClosedDriver) {
  Configure({});
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Recorded(), (Errors{3, 1}));
  EXPECT_TRUE(Field("<Footer/>"));  // not a field: nothing to need the port for
  const std::pair<const wchar_t*, const char*> needTheLabel[] = {
      {L"START_PRINT", ""}, {L"STOP_PRINT", ""}, {L"NEWPRINT", "<Line/>"}};
  for (const auto& [name, xml] : needTheLabel) {
    EXPECT_FALSE(Command(name, xml));
    EXPECT_EQ(Recorded(), Errors{3});
  }
  using Z = KpZEBRA;
  driver.ClearErrors();
  for (int (Z::*record)(const char*) : {&Z::PrintFormattedText, &Z::PrintLogoByName, &Z::PrintBarcodeRecord,
                                        &Z::PrintSeparatorRecord, &Z::FeedLinesRecord})
    EXPECT_EQ((driver.*record)("00C00000000000AB"), 0);
  EXPECT_EQ(Recorded(), Errors(5, 3));
  EXPECT_EQ(Sent(), "");
}

TEST_F(Zebra, OwnCommandSwitchesFlowControl) {
  const struct { const wchar_t* command; std::string element; bool xonXoff; } cases[] = {
      {L"ZEBRA_NEWPRINT", "<XONXOFF/>", true}, {L"ZEBRA_NEWPRINT", "<XonXoff/>", true},  // the element in any case
      {L"ZEBRA_NEWPRINT", "<Other/>", false}, {L"zebra_newprint", "<XONXOFF/>", false},  // the name as written
  };
  Open();
  for (const auto& c : cases) {
    otool_IOCTL(driver.Context()->handle, kPortSetState, 0);
    EXPECT_TRUE(Command(c.command, c.element));
    EXPECT_EQ(port.FlowControl(), c.xonXoff) << c.element;
  }
  EXPECT_EQ(Sent(), "");
}

// On the 10-character label: cell 16 dots, line 31 dots, bars 26 dots in. Error 0: none.
TEST_F(Zebra, Fields) {
  const std::string normal = "^CFF,26,13", twice = normal + normal, bars = "^FO26,0^BY3,";
  const struct { std::string xml; int error; std::string sent; std::uint32_t y; } cases[] = {
      {"<LineFeed Value='2'/>", 0, normal, 62}, {"<LineFeed Value='-2'/>", 0, normal, 0},
      {"<Line/>", 0, twice + "^FO0,0^FD----------^FS", 31},
      {"<Line Char='' Height='9' Width='9'/>", 0, twice + "^FO0,0^FD----------^FS", 31},  // 9: single size
      {"<LINE Char='=' Height='2' Width='2'/>", 0, normal + "^CFF,52,26^FO0,0^FD=====^FS", 62},
      {"<SingleField><Field>AB</Field><Field>ABCD</Field></SingleField>", 0,
       twice + "^FO64,0^FDAB^FS^FO48,31^FDABCD^FS", 62},
      {"<SingleField Justify='LEFT' Char='.'><Field>AB</Field></SingleField>", 0,
       twice + "^FO0,0^FDAB^FS^FO32,0^FD........^FS", 31},
      {"<SingleField Justify='RIGHT_PRINTER'><Field>AB</Field></SingleField>", 0,
       twice + "^FO0,0^FD^FS^FO0,0^FD        ^FS^FO128,0^FDAB^FS", 31},
      // In capitals with a side alignment, a single field prints nothing.
      {"<SINGLEFIELD Justify='LEFT'><Field>AB</Field></SINGLEFIELD>", 0, twice, 0},
      {"<DoubleField Char='.'><LeftField>AB</LeftField><RightField>XYZ</RightField></DoubleField>", 0,
       twice + "^FO0,0^FDAB^FS^FO32,0^FD.....^FS^FO112,0^FDXYZ^FS", 31},
      {"<DoubleFields><LeftField>A</LeftField><RightField>B</RightField><LeftField>C</LeftField></DoubleFields>", 5,
       twice + "^FO0,0^FDA^FS^FO16,0^FD        ^FS^FO144,0^FDB^FS", 31},
      {"<Barcode>123</Barcode>", 0, bars + "3.0,80^BC,,Y,N,N,N^FD123^FS", 117},
      {"<Barcode Type='QR_CODE' Height='20' ModuleWidth='5' BarRatio='2.5' HRI='sotto'>A_1</Barcode>", 0,
       "^FO26,0^BY5,2.5,160^BQN,2,6^FH^FDMM,B0003A_5F1^FS", 197},
      {"<Barcode Type='EAN8' HRI='SOPRA'>1234567</Barcode>", 0, bars + "3.0,80^B8,,N,N^FD1234567^FS", 85},
      {"<Barcode HRI='SOTTO'>1</Barcode>", 0, bars + "3.0,80^BC,,N,N,N,N^FD1^FS", 85},  // capitals: no text
      {"<Barcode BarRatio='2,5' HRI=''>1</Barcode>", 0, bars + "2.0,80^BC,,Y,N,N,N^FD1^FS", 117},  // reads 2
      {"<Barcode Type='EAN13'></Barcode>", 7, "", 0},
      {"<Logo FileName='logo.bmp' Rotation='90'/>", 0, "^FO0,0^XGE:logo.GRF,1,1^FS^LH,0", 0},
      {"<Logo FileName='logo.png'/>", 9, "", 0}, {"<Logo FileName=''/>", 8, "", 0}, {"<Cut/>", 0, "", 0},
      {"<MobileField><Field>A</Field></MobileField>", 0, "", 0}, {"<MobileBarcode>1</MobileBarcode>", 0, "", 0},
  };
  OpenNarrowLabel();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.xml);
    Command(L"START_PRINT");
    port.ClearWritten();
    EXPECT_EQ(Field(c.xml), c.error == 0);
    EXPECT_EQ(Recorded(), c.error ? Errors{c.error} : Errors{});
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(driver.Label()->cursorY, c.y);
    Field("<Line Height='1' Width='1' Char='x'/>");  // back to the normal font
  }
}

// A short write at the n-th write of a field gives the field's error number.
TEST_F(Zebra, ShortWritesGiveTheFieldsErrorNumbers) {
  const struct { int nthWrite; std::string xml; Errors errors; } cases[] = {
      {1, "<Line/>", {16}}, {3, "<Line/>", {22}}, {3, "<SingleField><Field>A</Field></SingleField>", {6}},
      {2, "<Logo FileName='a.bmp'/>", {13}},
  };
  OpenNarrowLabel();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.xml);
    port.ShortWriteAt(port.writeCount_ + c.nthWrite);
    EXPECT_FALSE(Field(c.xml));
    EXPECT_EQ(Recorded(), c.errors);
  }
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_FALSE(Command(L"STOP_PRINT"));
  EXPECT_EQ(Recorded(), Errors{});  // a lost ^XZ is no error number
}

// Records: one 8-bit text with a fixed header; for a line: [2] selector, [9] '2' double
// height, [12] fill, text from [14].
TEST_F(Zebra, RecordOperations) {
  OpenNarrowLabel();
  EXPECT_EQ(driver.PrintFormattedText("00L00000000000AB"), 1);  // the left part waits for the right
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(driver.PrintFormattedText("00R000000200.0XYZ"), 1);
  EXPECT_EQ(Sent(), "^CFF,52,13^FO0,0^FDAB^FS^FO32,0^FD.....^FS^FO112,0^FDXYZ^FS^CFF,26,13");
  port.ClearWritten();
  EXPECT_EQ(driver.PrintFormattedText("00C00000000000ABCD"), 1);
  EXPECT_EQ(driver.PrintLogoByName("00logo.bmp"), 1);
  EXPECT_EQ(Sent(), "^FO48,62^FDABCD^FS^FO0,93^XGE:logo.GRF,1,1^FS^LH,0");  // double height advanced one line
  // The barcode record still sends the receipt printers' rotation and mode reset first.
  port.ClearWritten();
  EXPECT_EQ(driver.PrintBarcodeRecord("00Q{41}"), 1);
  EXPECT_EQ(posprint::test::ToHex(Sent().substr(0, 9)), "1B 7B 00 1B 56 00 1B 21 00");
  EXPECT_EQ(Sent().substr(9), "^FO26,93^BY3,3.0,80^BQN,2,6^FH^FDMM,B0001A^FS");
  port.ClearWritten();
  EXPECT_EQ(driver.PrintSeparatorRecord("000000="), 1);
  EXPECT_EQ(driver.FeedLinesRecord("003"), 1);
  EXPECT_EQ(driver.FeedLinesRecord("00x"), 1);  // feeds nothing
  EXPECT_EQ(Sent(), "^FO0,210^FD==========^FS^CFF,26,13^CFF,26,13");
  EXPECT_EQ(driver.Label()->cursorY, 334u);  // 210 + 31, then 3 lines of 31

  driver.ClearErrors();
  EXPECT_EQ(driver.PrintFormattedText("00X00000000000ABCD"), 0);
  EXPECT_EQ(driver.PrintFormattedText(""), 0);
  EXPECT_EQ(driver.PrintLogoByName("00logo.png"), 0);
  EXPECT_EQ(driver.PrintBarcodeRecord("004"), 0);
  EXPECT_EQ(driver.PrintSeparatorRecord("000000"), 0);
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_EQ(driver.PrintFormattedText("00C00000000000ABCD"), 0);
  EXPECT_EQ(Recorded(), (Errors{6, 6, 9, 7, 22, 6}));
}

}  // namespace
}  // namespace zebra_test
