// The VKP80II: open, six-byte status, end of ticket with cutter and presenter, fonts,
// code pages, fields, barcodes, the raster logo and the record operations.
#include "drivers/receipt/VKP80II/kp_vkp80ii.h"
#include "receipt_fixture.h"

namespace receipt_test {
namespace {

using Vkp80ii = DriverTest<VKP80II::Nx_KpVKP80II>;

const std::string kStatusRequest = Hex("10 04 14");
// Everything a field sends before its text: rotation 0 with the turn, normal font.
const std::string kFormat = "1B 7B 00 1B 56 00 1B C1 00 1B 21 01";

TEST_F(Vkp80ii, OpenWaitsThreeSecondsThenPurgesAndSetsUp) {
  Configure({});
  struct Moment { std::string bytes; long waited; int purges; };
  std::vector<Moment> moments;
  port.OnWrite([&](posprint::ScriptedPort& p, const std::string& written) {
    moments.push_back({ToHex(written), clock.TotalSleptMs(), p.Purges()});
  });
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  const std::vector<std::string> expected = {"1B 74 00", "1B 40", "1B C1 00", "1B 21 01", "1D 50 00 00"};
  ASSERT_EQ(moments.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    SCOPED_TRACE(expected[i]);
    EXPECT_EQ(moments[i].bytes, expected[i]);
    const bool afterReset = i >= 2;
    EXPECT_EQ(moments[i].waited, afterReset ? 3000 : 0);
    EXPECT_EQ(moments[i].purges, afterReset ? 1 : 0);
  }
  EXPECT_EQ(clock.Waits(), 1);
  EXPECT_EQ(driver.Context()->lineWidth, 42);
  EXPECT_STREQ(driver.Context()->terminator, "\n");  // a bare LF, not the driver's CR LF
  EXPECT_EQ(driver.PrinterCodePage(), 8);
}

TEST_F(Vkp80ii, OpenSucceedsWhenThePrinterTakesNothing) {
  Configure({});
  port.Vanish();  // every write fails: ESC @ never goes out, so nothing is waited for
  EXPECT_TRUE(Command(L"INIT_PRINTER"));
  EXPECT_TRUE(Errors().empty());
  EXPECT_EQ(clock.TotalSleptMs(), 0);
}

TEST_F(Vkp80ii, InitialiseStopsAtTheFirstShortWrite) {
  Configure({});
  port.ShortWriteAt(2);  // ESC @
  EXPECT_TRUE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Sent(), "1B 74 00");
  EXPECT_EQ(clock.TotalSleptMs(), 0);
  EXPECT_EQ(port.Purges(), 0);
}

TEST_F(Vkp80ii, OpenFailureRecords71) {
  Configure({});
  port.FailOpen();
  EXPECT_FALSE(Command(L"INIT_PRINTER"));
  EXPECT_EQ(Errors(), (std::vector<int>{71}));
}

TEST_F(Vkp80ii, EndOfTicketByConfiguration) {
  const std::string feeds = "0A 0A 0A 0A 0A 0A 0A ";
  struct Case { const char* name; Keys keys; std::string sent; };
  const Case cases[] = {
      {"defaults: seven feeds, no cut", {}, feeds + "1D 65 03 0C"},
      {"no feeds", {{L"param_LinefeedEjection", L"false"}}, "1D 65 03 0C"},
      {"full cut", {{L"param_CutType", L"val_Full"}}, feeds + "1B 69 1D 65 03 0C"},
      {"full cut brings the feeds back",
       {{L"param_LinefeedEjection", L"FALSE"}, {L"param_CutType", L"val_Full"}}, feeds + "1B 69 1D 65 03 0C"},
      {"the cut word keeps its case", {{L"param_CutType", L"VAL_FULL"}}, feeds + "1D 65 03 0C"},
      {"a partial cut is not this printer's", {{L"param_CutType", L"val_Partial"}}, feeds + "1D 65 03 0C"},
      {"other words keep the feeds", {{L"param_LinefeedEjection", L"NO"}}, feeds + "1D 65 03 0C"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    EXPECT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(clock.Waits(), 2);  // a second for the cutter, a second for the presenter
    EXPECT_EQ(clock.TotalSleptMs(), 2000);
  }
}

TEST_F(Vkp80ii, EndOfTicketSendsOneFeedAWriteAndWaitsBeforeAndAfterThePresenter) {
  Open();
  std::vector<long> waitedAt;
  port.OnWrite([&](posprint::ScriptedPort&, const std::string&) { waitedAt.push_back(clock.TotalSleptMs()); });
  ASSERT_TRUE(driver.EndPrint());
  EXPECT_EQ(port.Writes().size(), 8u);
  EXPECT_EQ(waitedAt.back(), 1000);  // the presenter command goes out after the first second
}

TEST_F(Vkp80ii, EndOfTicketIgnoresWriteFailures) {
  Open();
  port.Vanish();
  EXPECT_TRUE(Command(L"STOP_PRINT"));
}

TEST_F(Vkp80ii, StatusDecodingInItsOrder) {
  struct Case { const char* name; std::string reply; Keys keys; int status; };
  const Case cases[] = {
      {"ready", "10 0F 00 00 00 00", {}, 100},
      {"byte 5 is not looked at", "10 0F 00 00 00 FF", {}, 100},
      {"paper end", "10 0F 01 00 00 00", {}, 112},
      {"paper end ignored", "10 0F 01 00 00 00", {{L"param_EndPaper", L"FALSE"}}, 100},
      {"paper end hides everything", "10 0F 25 0B 41 00", {}, 112},
      {"paper end and near end", "10 0F 05 00 00 00", {}, 112},
      {"near end shows when paper end is ignored", "10 0F 05 00 00 00", {{L"param_EndPaper", L"false"}}, 113},
      {"both ignored", "10 0F 05 00 00 00", {{L"param_EndPaper", L"FALSE"}, {L"param_NearlyEndPaper", L"FALSE"}}, 100},
      {"byte 3 bit 0", "10 0F 00 01 00 00", {}, 111},
      {"byte 3 bit 1", "10 0F 00 02 00 00", {}, 111},
      {"111 before 104", "10 0F 00 09 00 00", {}, 111},
      {"byte 3 bit 3", "10 0F 00 08 00 00", {}, 104},
      {"104 before 110", "10 0F 00 08 01 00", {}, 104},
      {"byte 4 bit 0", "10 0F 00 00 01 00", {}, 110},
      {"110 before 101", "10 0F 00 00 41 00", {}, 110},
      {"byte 4 bit 6", "10 0F 00 00 40 00", {}, 101},
      {"101 before 116", "10 0F 20 00 40 00", {}, 101},
      {"byte 2 bit 5", "10 0F 20 00 00 00", {}, 116},
      {"116 before 113", "10 0F 24 00 00 00", {}, 116},
      {"near end", "10 0F 04 00 00 00", {}, 113},
      {"near end ignored", "10 0F 04 00 00 00", {{L"param_NearlyEndPaper", L"false"}}, 100},
      {"other bits are not looked at", "10 0F 12 F4 BE FF", {}, 100},
      {"short reply", "10 0F 00 00 00", {}, 101},
      {"foreign header", "10 0E 00 00 00 00", {}, 101},
      {"foreign first byte", "00 0F 00 00 00 00", {}, 101},
      {"one byte", "10", {}, 101},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    AnswerTo(kStatusRequest, Hex(c.reply));
    EXPECT_EQ(Command(L"CHECK"), c.status == 100);
    EXPECT_EQ(Errors(), c.status == 100 ? std::vector<int>{} : std::vector<int>{c.status});
    EXPECT_EQ(Sent(), "10 04 14");
  }
}

TEST_F(Vkp80ii, StatusPurgesStaleBytesFirst) {
  Open();
  port.Answer(Hex("10 0F 01 00 00 00"));  // left over from before: must not be taken as the answer
  AnswerTo(kStatusRequest, Hex("10 0F 00 00 00 00"));
  EXPECT_TRUE(Command(L"CHECK"));
}

TEST_F(Vkp80ii, StatusReplyInTwoBursts) {
  Open();
  port.OnWrite([](posprint::ScriptedPort& p, const std::string& written) {
    if (written != Hex("10 04 14")) return;
    p.Answer(Hex("10"));
    p.Answer(Hex("0F 00 00 00 00"));
  });
  EXPECT_TRUE(Command(L"CHECK"));
}

TEST_F(Vkp80ii, SilentPrinterGives101) {
  Open();
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{101}));
}

TEST_F(Vkp80ii, FontSelection) {
  struct Case { const char* name; const char* attributes; std::string bytes; int lineWidth; };
  const Case cases[] = {
      {"normal", "", "1B C1 00 1B 21 01", 42},
      {"small", "Font='SMALL'", "1B C1 01 1B 21 01", 56},
      {"font B", "Font='FONTB'", "1B C1 01 1B 21 01", 56},
      {"large", "Font='LARGE'", "1B C1 00 1B 21 00", 32},
      {"font C", "Font='FONTC'", "1B C1 00 1B 21 00", 32},
      {"font D is normal", "Font='FONTD'", "1B C1 00 1B 21 01", 42},
      {"double height", "Height='2'", "1B C1 00 1B 21 11", 42},
      {"height 3 enlarges nothing", "Height='3'", "1B C1 00 1B 21 01", 42},
      {"double width halves the line", "Width='2'", "1B C1 00 1B 21 21", 21},
      {"width 3 narrows the line only", "Width='3'", "1B C1 00 1B 21 01", 14},
      {"width 8", "Width='8'", "1B C1 00 1B 21 01", 5},
      {"small double width", "Font='FONTB' Width='2'", "1B C1 01 1B 21 21", 28},
      {"large double size", "Font='LARGE' Width='2' Height='2'", "1B C1 00 1B 21 30", 16},
      {"cursive underline", "TypeFont='CURSIVE_UNDERLINE'", "1B C1 00 1B 21 C1", 42},
      {"double strike", "TypeFont='DOUBLEBEAT'", "1B C1 00 1B 21 09", 42},
      {"cursive", "TypeFont='cursive'", "1B C1 00 1B 21 41", 42},
      {"underline", "TypeFont='UNDERLINE'", "1B C1 00 1B 21 81", 42},
      {"reverse prints normal", "TypeFont='REVERSE'", "1B C1 00 1B 21 01", 42},
      {"compress prints normal", "TypeFont='COMPRESS'", "1B C1 00 1B 21 01", 42},
      {"double strike cursive", "TypeFont='DOUBLEBEAT_CURSIVE'", "1B C1 00 1B 21 49", 42},
      {"double strike underline", "TypeFont='DOUBLEBEAT_UNDERLINE'", "1B C1 00 1B 21 89", 42},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    ASSERT_TRUE(Field(std::string("<SINGLEFIELD ") + c.attributes + "/>"));
    EXPECT_EQ(Sent(), "1B 7B 00 1B 56 00 " + c.bytes);
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
  }
}

TEST_F(Vkp80ii, FieldFormatWithOffsets) {
  struct Case { const char* name; std::string xml; bool ok; std::string sent; std::vector<int> errors; };
  const Case cases[] = {
      {"offsets around the rotation",
       "<MOBILEFIELD OffsetY='2' OffsetX='3' Rotation='180' Alignment='LEFT'><Field>Hi</Field></MOBILEFIELD>", true,
       "0A 0A 1B 7B 01 1B 7B 01 1B 56 00 1B 21 00 20 20 20 1B C1 00 1B 21 01 " + ToHex("Hi" + std::string(40, ' ')) +
           " 0A",
       {}},
      {"quarter turn", "<MOBILEFIELD Rotation='90' Alignment='RIGHT'><Field>Hi</Field></MOBILEFIELD>", true,
       "1B 7B 00 1B 56 01 1B C1 00 1B 21 01 " + ToHex(std::string(40, ' ') + "Hi") + " 0A", {}},
      {"offset of 100 lines", "<MOBILEFIELD OffsetY='100'><Field>Hi</Field></MOBILEFIELD>", false, "", {16}},
      {"offset of 100 spaces", "<MOBILEFIELD OffsetX='100'><Field>Hi</Field></MOBILEFIELD>", false,
       "1B 7B 00 1B 56 00", {16}},
      {"offsets belong to MOBILEFIELD only", "<SINGLEFIELD OffsetY='2' OffsetX='2'><Field>Hi</Field></SINGLEFIELD>",
       true, kFormat + " " + ToHex(std::string(20, ' ') + "Hi") + " 0A", {}},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(Errors(), c.errors);
  }
}

TEST_F(Vkp80ii, TextFieldsEndOnABareLineFeed) {
  struct Case { const char* name; std::string xml; std::string text; };
  const Case cases[] = {
      {"centred", "<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD>", std::string(18, ' ') + "Hello\n"},
      {"SingleField right with fill", "<SingleField Justify='RIGHT_ALIGN' Char='.'><Field>Hi</Field></SingleField>",
       std::string(40, '.') + "Hi\n"},
      {"double field", "<DOUBLEFIELD><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>",
       "Espresso" + std::string(30, ' ') + "2.20\n"},
      {"line", "<LINE/>", std::string(42, '-') + "\n"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_TRUE(Field(c.xml));
    EXPECT_EQ(port.Written(), Hex(kFormat) + c.text);
    EXPECT_TRUE(Errors().empty());
  }
}

TEST_F(Vkp80ii, FieldsWithoutFormat) {
  struct Case { const char* name; std::string xml; std::string sent; };
  const Case cases[] = {
      {"line feeds", "<LINEFEED Value='3'/>", "0A 0A 0A"},
      {"at most 29 line feeds", "<LINEFEED Value='40'/>", [] { std::string s = "0A"; for (int i = 1; i < 29; ++i) s += " 0A"; return s; }()},
      {"full cut", "<CUT Type='CUT_FULL'/>", "1B 69"},
      {"the cut type keeps its case", "<CUT Type='cut_full'/>", ""},
      {"cut without a type", "<CUT/>", ""},
      {"an element that is no field", "<FOOTER>x</FOOTER>", ""},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_TRUE(Field(c.xml));
    EXPECT_EQ(Sent(), c.sent);
  }
}

TEST_F(Vkp80ii, FieldsNeedAnOpenPort) {
  Configure({});
  for (const char* xml : {"<CUT Type='CUT_FULL'/>", "<LINE/>", "<BARCODE>1</BARCODE>", "<LOGO FileName='a.bmp'/>",
                          "<MOBILEBARCODE>1</MOBILEBARCODE>", "<SINGLEFIELD/>"}) {
    SCOPED_TRACE(xml);
    EXPECT_FALSE(Field(xml));
    EXPECT_EQ(Errors(), (std::vector<int>{3}));
  }
}

TEST_F(Vkp80ii, CodePageFollowsTheText) {
  Open();
  ASSERT_TRUE(Field("<SINGLEFIELD><Field>5 €</Field></SINGLEFIELD>"));
  EXPECT_EQ(port.Written(), Hex(kFormat + " 1B 74 13") + std::string(19, ' ') + "5 \xD5\n");
  EXPECT_EQ(driver.PrinterCodePage(), 12);
  port.ClearWritten();
  ASSERT_TRUE(Field("<SINGLEFIELD><Field>Caf\xC3\xA9 1 \xE2\x82\xAC</Field></SINGLEFIELD>"));
  EXPECT_EQ(port.Written(), Hex(kFormat) + std::string(17, ' ') + "Caf\x82 1 \xD5\n");  // PC858 still fits
  port.ClearWritten();
  ASSERT_TRUE(Field("<SINGLEFIELD><Field>ok</Field></SINGLEFIELD>"));
  EXPECT_EQ(port.Written(), Hex(kFormat + " 1B 74 00") + std::string(20, ' ') + "ok\n");  // PC437 fits first
  EXPECT_EQ(driver.PrinterCodePage(), 8);
}

TEST_F(Vkp80ii, CodePageStaysWhenThePrinterMissesTheSwitch) {
  Open();
  ASSERT_TRUE(Field("<SINGLEFIELD/>"));  // counts the writes of rotation and font
  const int formatWrites = static_cast<int>(port.Writes().size());
  port.ClearWritten();
  port.ShortWriteAt(port.writeCount_ + formatWrites + 1);  // the ESC t that follows them
  ASSERT_TRUE(Field("<SINGLEFIELD><Field>5 €</Field></SINGLEFIELD>"));
  EXPECT_EQ(driver.PrinterCodePage(), 8);
  const std::string line = std::string(19, ' ') + "5 ?\n";
  ASSERT_GE(port.Written().size(), line.size());
  EXPECT_EQ(port.Written().substr(port.Written().size() - line.size()), line);
}

TEST_F(Vkp80ii, BarcodeKinds) {
  struct Case { const char* name; const char* type; std::string symbology; };
  const Case cases[] = {
      {"default", "", "08 7B 42"},         {"CODE128", "CODE128", "08 7B 42"},
      {"CODE128B", "CODE128B", "08 7B 42"}, {"CODE128A", "CODE128A", "08 7B 41"},
      {"CODE128C", "code128c", "08 7B 43"}, {"EAN13", "EAN13", "02"},
      {"INDICOD_EAN13", "INDICOD_EAN13", "02"}, {"EAN8", "EAN8", "03"},
      {"CODE39", "CODE39", "04"},           {"ITF", "ITF2OF5", "05"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    ASSERT_TRUE(Field(std::string("<BARCODE Type='") + c.type + "'>1234</BARCODE>"));
    EXPECT_EQ(Sent(), kFormat + " 1D 48 02 1B 61 01 1D 6B " + c.symbology + " 31 32 33 34 00 0D 1B 61 00");
  }
}

TEST_F(Vkp80ii, BarcodeLimitsAndErrors) {
  struct Case { const char* name; std::string xml; bool ok; std::vector<int> errors; std::string sent; };
  const std::string code128 = "1D 48 02 1B 61 01 1D 6B 08 7B 42";
  const Case cases[] = {
      {"39 characters print", "<BARCODE>" + std::string(39, '7') + "</BARCODE>", true, {},
       code128 + " " + ToHex(std::string(39, '7')) + " 00 0D 1B 61 00"},
      {"40 characters do not", "<BARCODE>" + std::string(40, '7') + "</BARCODE>", false, {7}, code128 + " 1B 61 00"},
      {"QR code", "<BARCODE Type='QR_CODE'>x</BARCODE>", false, {15}, "1D 48 02 1B 61 01 1B 61 00"},
      {"empty data", "<BARCODE Type='EAN8'></BARCODE>", false, {7}, ""},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Sent(), c.sent.empty() ? kFormat : kFormat + " " + c.sent);
  }
}

TEST_F(Vkp80ii, MobileBarcode) {
  struct Case { const char* name; std::string xml; bool ok; std::vector<int> errors; std::string sent; };
  const std::string reset = "1B C1 00 1B 21 01";
  const Case cases[] = {
      {"placed, sized and aligned right",
       "<MOBILEBARCODE OffsetY='1' Rotation='0' Justify='RIGHT' Height='5' Width='4' HRI='sopra' Type='EAN8'>1234567</MOBILEBARCODE>",
       true, {},
       reset + " 0A 1B 7B 00 1B 56 00 1D 48 31 1D 68 28 1D 77 04 1B 61 02 1B 61 01 1B 61 01 1D 6B 03 " +
           ToHex("1234567") + " 00 0D 1B 61 00"},
      {"defaults: 10 mm, module 3, text below, left alignment falls through to centre",
       "<MOBILEBARCODE Justify='LEFT'>12</MOBILEBARCODE>", true, {},
       reset + " 1B 7B 00 1B 56 00 1D 48 32 1D 68 50 1D 77 03 1B 61 00 1B 61 02 1B 61 01 1B 61 01 1D 6B 08 7B 42 31 32 00 0D 1B 61 00"},
      {"an unsupported kind passes", "<MOBILEBARCODE Type='QR_CODE'>x</MOBILEBARCODE>", true, {},
       reset + " 1B 7B 00 1B 56 00 1D 48 32 1D 68 50 1D 77 03 1B 61 01 1B 61 01 1B 61 00"},
      {"too long", "<MOBILEBARCODE>" + std::string(40, '1') + "</MOBILEBARCODE>", false, {7},
       reset + " 1B 7B 00 1B 56 00 1D 48 32 1D 68 50 1D 77 03 1B 61 01 1B 61 01 1D 6B 08 7B 42 1B 61 00"},
      {"offset out of range", "<MOBILEBARCODE OffsetY='100'>1</MOBILEBARCODE>", false, {16}, reset},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Sent(), c.sent);
  }
}

class Vkp80iiLogo : public Vkp80ii {
 protected:
  void SetUp() override {
    folder = LogoFolder("vkp80ii_logos");
    // 100 x 2 pixels, 1 bit, rows of 16 bytes (13 used). The top row (stored last) is
    // black but for its padding; the bottom row is white but for its first four pixels.
    std::string header = Hex(
        "42 4D 5E 00 00 00 00 00 00 00 3E 00 00 00 28 00 00 00 64 00 00 00 02 00 00 00 01 00 01 00 "
        "00 00 00 00 20 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 02 00 00 00 00 00 00 00 FF FF FF 00");
    std::string bottom = Hex("0F FF FF FF FF FF FF FF FF FF FF FF FF AA AA AA");
    std::string top = Hex("00 00 00 00 00 00 00 00 00 00 00 00 00 55 55 55");
    WriteFile(folder + "/wide100.bmp", header + bottom + top);
    WriteFile(folder + "/small.BMP", SmallLogo());
    WriteFile(folder + "/text.bmp", "hello");
    std::string colour = SmallLogo();
    colour[28] = 24;
    WriteFile(folder + "/colour.bmp", colour);
    Open();
  }
  std::string folder;
};

TEST_F(Vkp80iiLogo, HundredPixelsCentredOnTheLine) {
  ASSERT_TRUE(Field("<LOGO FileName='wide100.bmp'/>"));
  const std::string margin = ToHex(std::string(33, '\0'));
  EXPECT_EQ(Sent(), "1B C1 00 1B 21 01 1B 7B 00 1B 56 00 "  // font reset, rotation
                    "1D 76 30 30 2E 00 02 00 " +              // GS v 0, 46 bytes a row, 2 rows
                        margin + " FF FF FF FF FF FF FF FF FF FF FF FF F0 " +  // top: black, last byte masked
                        margin + " F0 00 00 00 00 00 00 00 00 00 00 00 00");   // bottom: four black pixels
}

TEST_F(Vkp80iiLogo, SmallLogoAndRotation) {
  ASSERT_TRUE(Field("<LOGO FileName='small.BMP' Rotation='180'/>"));
  // 8 pixels: (640 - 8) / 16 = 39 bytes of margin, 40 bytes a row.
  const std::string margin = ToHex(std::string(39, '\0'));
  EXPECT_EQ(Sent(), "1B C1 00 1B 21 01 1B 7B 01 1B 7B 01 1B 56 00 1D 76 30 30 28 00 02 00 " + margin + " FF " + margin +
                        " 00");
}

TEST_F(Vkp80iiLogo, Errors) {
  struct Case { const char* name; const char* xml; bool ok; std::vector<int> errors; };
  const Case cases[] = {
      {"empty name", "<LOGO FileName=''/>", false, {8}},
      {"not a bmp name", "<LOGO FileName='logo.png'/>", false, {9}},
      {"missing file", "<LOGO FileName='missing.bmp'/>", false, {10}},
      {"not a bitmap prints nothing", "<LOGO FileName='text.bmp'/>", true, {}},
      {"more than two colours", "<LOGO FileName='colour.bmp'/>", false, {13}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
  }
}

TEST_F(Vkp80iiLogo, LogoByName) {
  driver.ClearErrors();
  EXPECT_EQ(driver.PrintLogoByName("small.BMP"), 1);
  EXPECT_EQ(Sent().substr(0, 41), "1B C1 00 1B 21 01 1D 76 30 30 28 00 02 00");
  EXPECT_EQ(driver.PrintLogoByName(""), 8);
  EXPECT_EQ(driver.PrintLogoByName("logo.png"), 9);
  EXPECT_EQ(Errors(), (std::vector<int>{8, 9}));
}

TEST_F(Vkp80ii, Records) {
  struct Case { const char* name; int (VKP80II::Nx_KpVKP80II::*slot)(const char*); const char* record; int result; std::string sent; };
  using D = VKP80II::Nx_KpVKP80II;
  const Case cases[] = {
      {"font and text, left", &D::PrintFormattedText, "112112LTotal", 1,
       "1B C1 01 1B 21 21 " + ToHex("Total" + std::string(23, ' ')) + " 0A"},
      {"font only", &D::PrintFormattedText, "2014211Text", 1, "1B C1 00 1B 21 91"},
      {"text only, right", &D::PrintFormattedText, "031111RText", 1, ToHex(std::string(38, ' ') + "Text") + " 0A"},
      {"text centred", &D::PrintFormattedText, "231111xab", 1, "1B C1 00 1B 21 01 " + ToHex(std::string(20, ' ') + "ab") + " 0A"},
      {"short record", &D::PrintFormattedText, "11111L", 0, ""},
      {"no record", &D::PrintFormattedText, nullptr, 0, ""},
      {"separator", &D::PrintSeparatorRecord, "1111=", 1, "1B C1 00 1B 21 01 " + ToHex(std::string(42, '=')) + " 0A"},
      {"separator of the default", &D::PrintSeparatorRecord, "2111", 1, "1B C1 01 1B 21 01 " + ToHex(std::string(56, '-')) + " 0A"},
      {"short separator", &D::PrintSeparatorRecord, "111", 0, ""},
      {"barcode", &D::PrintBarcodeRecord, "412345670", 1,
       "1B 7B 00 1B 56 00 1B C1 00 1B 21 01 1D 48 02 1B 61 01 1D 6B 03 " + ToHex("12345670") + " 00 0D 1B 61 00"},
      {"QR barcode", &D::PrintBarcodeRecord, "Qx", 15, "1B 7B 00 1B 56 00 1B C1 00 1B 21 01 1D 48 02 1B 61 01 1B 61 00"},
      {"barcode without data", &D::PrintBarcodeRecord, "4", 7, "1B 7B 00 1B 56 00 1B C1 00 1B 21 01"},
      {"feeds", &D::FeedLinesRecord, "2", 1, "0A 0A"},
      {"cut", &D::CutRecord, "", 1, "1B 69"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    EXPECT_EQ((driver.*c.slot)(c.record), c.result);
    EXPECT_EQ(Sent(), c.sent);
  }
}

TEST_F(Vkp80ii, RecordsNeedAnOpenPort) {
  Configure({});
  EXPECT_EQ(driver.PrintFormattedText("1111111x"), 3);
  EXPECT_EQ(driver.CutRecord(""), 3);
  EXPECT_EQ(Errors(), (std::vector<int>{3, 3}));
}

TEST_F(Vkp80ii, OwnCommandSucceedsSilently) {
  Open();
  EXPECT_TRUE(Command(L"VKP80II_NEWPRINT"));
  EXPECT_EQ(Sent(), "");
}

}  // namespace
}  // namespace receipt_test
