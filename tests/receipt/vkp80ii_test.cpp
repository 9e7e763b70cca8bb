// The VKP80II: open with its three-second wait, six-byte status, end of ticket with cutter
// and presenter, fonts, field format, code pages, barcodes, the raster logo and the records.
#include "drivers/receipt/VKP80II/kp_vkp80ii.h"
#include "receipt_fixture.h"

namespace receipt_test {
namespace {

const std::string kTurn = "1B 7B 00 1B 56 00";            // rotation 0 with the quarter-turn command
const std::string kFont = "1B C1 00 1B 21 01";            // the normal font
const std::string kFormat = kTurn + " " + kFont;          // before every text
const std::string kBar = kFormat + " 1D 48 02 1B 61 01 ";  // a barcode: text below, centred
const std::string kBarEnd = " 00 0D 1B 61 00";
const std::string kSmallLogo = "1D 76 30 30 28 00 02 00 " + Times(39, "00") + " FF " + Times(39, "00") + " 00";

class Vkp80ii : public DriverTest<VKP80II::Nx_KpVKP80II> {
 protected:
  Vkp80ii() {
    statusRequest = Hex("10 04 14");
    // 100 x 2 pixels, rows of 16 bytes (13 used). The top row (stored last) is black but for
    // its padding bits and bytes; the bottom row is white but for its first four pixels.
    logos.Write("wide100.bmp", Hex("424D5E00000000000000 3E000000 28000000 64000000 02000000 0100 0100 00000000"
                                   "20000000 00000000 00000000 02000000 02000000 00000000 FFFFFF00"  // palette
                                   "0FFFFFFFFFFFFFFFFFFFFFFFFFAAAAAA 00000000000000000000000000555555"));
    logos.Write("small.BMP", Bmp({"########", "........"}));  // 8 pixels: 39 bytes of margin
    logos.Write("text.bmp", "hello");
    logos.Write("colour.bmp", Bmp({"........"}).replace(28, 1, 1, 24));  // 24 bits a pixel
  }
  void RecordMoments() {  // from now on each write, the time waited and the purges since
    port.OnWrite([this, base = port.Purges()](posprint::ScriptedPort& p, const std::string& w) {
      moments += ToHex(w) + " @" + std::to_string(clock.TotalSleptMs()) + "/" + std::to_string(p.Purges() - base) + ",";
    });
  }
  std::string moments;
};

TEST_F(Vkp80ii, OpenWaitsThreeSecondsAfterTheResetThenPurges) {
  Configure({});
  RecordMoments();
  ASSERT_TRUE(Command("INIT_PRINTER"));
  EXPECT_EQ(moments, "1B 74 00 @0/0,1B 40 @0/0,1B C1 00 @3000/1,1B 21 01 @3000/1,1D 50 00 00 @3000/1,");
  EXPECT_EQ(driver.Context()->lineWidth, 42);
  EXPECT_STREQ(driver.Context()->terminator, "\n");  // a bare LF, not the driver's CR LF
  const int purges = port.Purges();
  Open({}, false);
  port.ShortWriteAt(port.writeCount_ + 2);  // ESC @ not taken: nothing to wait for, and still open
  EXPECT_TRUE(Command("INIT_PRINTER"));
  EXPECT_EQ(Line(), "1B 74 00");
  EXPECT_EQ(clock.TotalSleptMs(), 0);
  EXPECT_EQ(port.Purges(), purges);
}

TEST_F(Vkp80ii, EndOfTicketAndStatusInItsOrder) {
  const std::string feeds = Times(7, "0A") + " ", presenter = "1D 65 03 0C";
  const wchar_t *eject = L"param_LinefeedEjection", *cut = L"param_CutType", *end = L"param_EndPaper";
  Run({
      {"defaults: seven feeds, no cut", {}, "", "STOP_PRINT", 1, feeds + presenter},
      {"no feeds", {{eject, L"false"}}, "", "STOP_PRINT", 1, presenter},
      {"full cut", {{cut, L"val_Full"}}, "", "STOP_PRINT", 1, feeds + "1B 69 " + presenter},
      {"full cut brings the feeds back", {{eject, L"FALSE"}, {cut, L"val_Full"}}, "", "STOP_PRINT", 1,
       feeds + "1B 69 " + presenter},
      {"the cut word keeps its case", {{cut, L"VAL_FULL"}}, "", "STOP_PRINT", 1, feeds + presenter},
      {"a partial cut is not this printer's", {{cut, L"val_Partial"}}, "", "STOP_PRINT", 1, feeds + presenter},
      {"other words keep the feeds", {{eject, L"NO"}}, "", "STOP_PRINT", 1, feeds + presenter},
      {"ready; byte 5 is not looked at", {}, "10 0F 00 00 00 FF", "CHECK", 1, "10 04 14"},
      {"paper end", {}, "10 0F 01 00 00 00", "CHECK", 112, "10 04 14"},
      {"paper end ignored", {{end, L"FALSE"}}, "10 0F 01 00 00 00", "CHECK", 1, "10 04 14"},
      {"paper end hides everything", {}, "10 0F 25 0B 41 00", "CHECK", 112, "10 04 14"},
      {"near end when paper end is ignored", {{end, L"false"}}, "10 0F 05 00 00 00", "CHECK", 113, "10 04 14"},
      {"byte 3 bit 0", {}, "10 0F 00 01 00 00", "CHECK", 111, "10 04 14"},
      {"byte 3 bit 1", {}, "10 0F 00 02 00 00", "CHECK", 111, "10 04 14"},
      {"111 before 104", {}, "10 0F 00 09 00 00", "CHECK", 111, "10 04 14"},
      {"byte 3 bit 3", {}, "10 0F 00 08 00 00", "CHECK", 104, "10 04 14"},
      {"104 before 110", {}, "10 0F 00 08 01 00", "CHECK", 104, "10 04 14"},
      {"byte 4 bit 0", {}, "10 0F 00 00 01 00", "CHECK", 110, "10 04 14"},
      {"110 before 101", {}, "10 0F 00 00 41 00", "CHECK", 110, "10 04 14"},
      {"byte 4 bit 6", {}, "10 0F 00 00 40 00", "CHECK", 101, "10 04 14"},
      {"101 before 116", {}, "10 0F 20 00 40 00", "CHECK", 101, "10 04 14"},
      {"byte 2 bit 5", {}, "10 0F 20 00 00 00", "CHECK", 116, "10 04 14"},
      {"116 before 113", {}, "10 0F 24 00 00 00", "CHECK", 116, "10 04 14"},
      {"near end", {}, "10 0F 04 00 00 00", "CHECK", 113, "10 04 14"},
      {"near end ignored", {{L"param_NearlyEndPaper", L"false"}}, "10 0F 04 00 00 00", "CHECK", 1, "10 04 14"},
      {"other bits are not looked at", {}, "10 0F 12 F4 BE FF", "CHECK", 1, "10 04 14"},
      {"a reply in two bursts", {}, "10|0F 00 00 00 00", "CHECK", 1, "10 04 14"},
      {"short reply", {}, "10 0F 00 00 00", "CHECK", 101, "10 04 14"},
      {"foreign header", {}, "10 0E 00 00 00 00", "CHECK", 101, "10 04 14"},
      {"foreign first byte", {}, "00 0F 00 00 00 00", "CHECK", 101, "10 04 14"},
      {"silent", {}, "", "CHECK", 101, "10 04 14"},
  });
  port.Answer(Hex("10 0F 01 00 00 00"));  // left over from before: purged, not taken as the answer
  Answer("10 0F 00 00 00 00");
  EXPECT_TRUE(Command("CHECK"));
  Open({{cut, L"val_Full"}});
  RecordMoments();
  ASSERT_TRUE(Command("STOP_PRINT"));  // a feed a write; a second for the cutter, one for the presenter
  EXPECT_EQ(moments, "0A @0/0,0A @0/0,0A @0/0,0A @0/0,0A @0/0,0A @0/0,0A @0/0,1B 69 @0/0,1D 65 03 0C @1000/0,");
  EXPECT_EQ(clock.TotalSleptMs(), 2000);
  port.Vanish();
  EXPECT_TRUE(Command("STOP_PRINT"));  // write failures are not looked at
}

TEST_F(Vkp80ii, CodePageFollowsTheTextAndStaysWhenThePrinterMissesTheSwitch) {
  const std::string euro = Single("5 €");
  Run({{"the euro sign takes PC858, which still fits; PC437 fits first", {}, "",
        euro + Single("Caf\xC3\xA9 1 \xE2\x82\xAC") + Single("ok"), 1,
        kFormat + " 1B 74 13 " + Spaces(19) + " 35 20 D5 0A " + kFormat + " " + Spaces(17) +
            " 43 61 66 82 20 31 20 D5 0A " + kFormat + " 1B 74 00 " + Spaces(20) + " 6F 6B 0A"}});
  port.ClearWritten();
  port.ShortWriteAt(port.writeCount_ + 5);  // the ESC t after the four writes of the format
  ASSERT_TRUE(Field(euro));
  EXPECT_EQ(Line(), kFormat + " " + Spaces(19) + " 35 20 3F 0A");  // "5 ?": no euro sign in PC437
  EXPECT_EQ(driver.PrinterCodePage(), 8);
}

TEST_F(Vkp80ii, FontsFieldsBarcodesAndTheRasterLogo) {
  const std::string hi = "<Field>Hi</Field></MOBILEFIELD>", code128 = kBar + "1D 6B 08 7B 42 ";
  const std::string logo = kFont + " " + kTurn, mobile = logo + " 1D 48 32 1D 68 50 1D 77 03 1B 61 01 1B 61 01 ";
  Run({
      {"small", {}, "", Font("Font='SMALL'"), 1, kTurn + " 1B C1 01 1B 21 01", 56},
      {"large", {}, "", Font("Font='LARGE'"), 1, kTurn + " 1B C1 00 1B 21 00", 32},
      {"height 3 enlarges nothing", {}, "", Font("Height='3'"), 1, kTurn + " 1B C1 00 1B 21 01", 42},
      {"double width halves the line", {}, "", Font("Width='2'"), 1, kTurn + " 1B C1 00 1B 21 21", 21},
      {"width 3 narrows the line only", {}, "", Font("Width='3'"), 1, kTurn + " 1B C1 00 1B 21 01", 14},
      {"small double width", {}, "", Font("Font='FONTB' Width='2'"), 1, kTurn + " 1B C1 01 1B 21 21", 28},
      {"large double size", {}, "", Font("Font='FONTC' Width='2' Height='2'"), 1, kTurn + " 1B C1 00 1B 21 30", 16},
      {"cursive underline", {}, "", Font("TypeFont='CURSIVE_UNDERLINE'"), 1, kTurn + " 1B C1 00 1B 21 C1", 42},
      {"double strike", {}, "", Font("TypeFont='DOUBLEBEAT'"), 1, kTurn + " 1B C1 00 1B 21 09", 42},
      {"underline", {}, "", Font("TypeFont='UNDERLINE'"), 1, kTurn + " 1B C1 00 1B 21 81", 42},
      {"cursive in any case", {}, "", Font("TypeFont='cursive'"), 1, kTurn + " 1B C1 00 1B 21 41", 42},
      {"double strike cursive", {}, "", Font("TypeFont='DOUBLEBEAT_CURSIVE'"), 1, kTurn + " 1B C1 00 1B 21 49", 42},
      {"double strike underline", {}, "", Font("TypeFont='DOUBLEBEAT_UNDERLINE'"), 1, kTurn + " 1B C1 00 1B 21 89", 42},
      {"font D is normal", {}, "", Font("Font='FONTD'"), 1, kTurn + " 1B C1 00 1B 21 01", 42},
      {"reverse prints normal", {}, "", Font("TypeFont='REVERSE'"), 1, kTurn + " 1B C1 00 1B 21 01", 42},
      {"offsets and rotation", {}, "", "<MOBILEFIELD OffsetY='2' OffsetX='3' Rotation='180' Alignment='LEFT'>" + hi,
       1, "0A 0A 1B 7B 01 1B 7B 01 1B 56 00 1B 21 00 20 20 20 " + kFont + " 48 69 " + Spaces(40) + " 0A"},
      {"quarter turn", {}, "", "<MOBILEFIELD Rotation='90' Alignment='RIGHT'>" + hi, 1,
       "1B 7B 00 1B 56 01 " + kFont + " " + Spaces(40) + " 48 69 0A"},
      {"offset of 100 lines", {}, "", "<MOBILEFIELD OffsetY='100'>" + hi, 16, ""},
      {"offset of 100 spaces", {}, "", "<MOBILEFIELD OffsetX='100'>" + hi, 16, kTurn},
      {"no offsets for SINGLEFIELD", {}, "", "<SINGLEFIELD OffsetY='2' OffsetX='2'><Field>Hi</Field></SINGLEFIELD>",
       1, kFormat + " " + Spaces(20) + " 48 69 0A"},
      {"centred, ending on a bare LF", {}, "", Single("Hello"), 1, kFormat + " " + Spaces(18) + " 48 65 6C 6C 6F 0A"},
      {"full cut", {}, "", "<CUT Type='CUT_FULL'/>", 1, "1B 69"},
      {"the cut type keeps its case", {}, "", "<CUT Type='cut_full'/>", 1, ""},
      {"default kind", {}, "", "<BARCODE>1234</BARCODE>", 1, code128 + "31 32 33 34" + kBarEnd},
      {"CODE128A", {}, "", "<BARCODE Type='CODE128A'>1</BARCODE>", 1, kBar + "1D 6B 08 7B 41 31" + kBarEnd},
      {"code128c", {}, "", "<BARCODE Type='code128c'>1</BARCODE>", 1, kBar + "1D 6B 08 7B 43 31" + kBarEnd},
      {"EAN13", {}, "", "<BARCODE Type='EAN13'>1</BARCODE>", 1, kBar + "1D 6B 02 31" + kBarEnd},
      {"INDICOD_EAN13", {}, "", "<BARCODE Type='INDICOD_EAN13'>1</BARCODE>", 1, kBar + "1D 6B 02 31" + kBarEnd},
      {"EAN8", {}, "", "<BARCODE Type='EAN8'>1</BARCODE>", 1, kBar + "1D 6B 03 31" + kBarEnd},
      {"CODE39", {}, "", "<BARCODE Type='CODE39'>1</BARCODE>", 1, kBar + "1D 6B 04 31" + kBarEnd},
      {"ITF", {}, "", "<BARCODE Type='ITF2OF5'>1</BARCODE>", 1, kBar + "1D 6B 05 31" + kBarEnd},
      {"39 characters", {}, "", "<BARCODE>" + std::string(39, '7') + "</BARCODE>", 1, code128 + Times(39, "37") +
       kBarEnd},
      {"40 characters: too long", {}, "", "<BARCODE>" + std::string(40, '7') + "</BARCODE>", 7, code128 + "1B 61 00"},
      {"QR code", {}, "", "<BARCODE Type='QR_CODE'>x</BARCODE>", 15, kBar + "1B 61 00"},
      {"empty data", {}, "", "<BARCODE Type='EAN8'></BARCODE>", 7, kFormat},
      {"mobile: placed, sized and aligned right", {}, "",
       "<MOBILEBARCODE OffsetY='1' Justify='RIGHT' Height='5' Width='4' HRI='sopra' Type='EAN8'>1</MOBILEBARCODE>", 1,
       kFont + " 0A " + kTurn + " 1D 48 31 1D 68 28 1D 77 04 1B 61 02 1B 61 01 1B 61 01 1D 6B 03 31" + kBarEnd},
      {"mobile: left falls through to centre", {}, "", "<MOBILEBARCODE Justify='LEFT'>12</MOBILEBARCODE>", 1,
       logo + " 1D 48 32 1D 68 50 1D 77 03 1B 61 00 1B 61 02 1B 61 01 1B 61 01 1D 6B 08 7B 42 31 32" + kBarEnd},
      {"mobile: an unsupported kind passes", {}, "", "<MOBILEBARCODE Type='QR_CODE'>x</MOBILEBARCODE>", 1,
       mobile + "1B 61 00"},
      {"mobile: too long", {}, "", "<MOBILEBARCODE>" + std::string(40, '1') + "</MOBILEBARCODE>", 7,
       mobile + "1D 6B 08 7B 42 1B 61 00"},
      {"mobile: offset out of range", {}, "", "<MOBILEBARCODE OffsetY='100'>1</MOBILEBARCODE>", 16, kFont},
      // GS v 0, 46 bytes a row: 33 of margin ((640 - 100) / 16) and 13 of picture, black as
      // 1 bits, the padding of the last byte masked.
      {"the hundred-pixel logo", {}, "", "<LOGO FileName='wide100.bmp'/>", 1, logo + " 1D 76 30 30 2E 00 02 00 " +
       Times(33, "00") + " " + Times(12, "FF") + " F0 " + Times(33, "00") + " F0 " + Times(12, "00")},
      {"small logo, upside down", {}, "", "<LOGO FileName='small.BMP' Rotation='180'/>", 1,
       kFont + " 1B 7B 01 1B 7B 01 1B 56 00 " + kSmallLogo},
      {"logo: empty name", {}, "", "<LOGO FileName=''/>", 8, logo},
      {"logo: not a bmp name", {}, "", "<LOGO FileName='logo.png'/>", 9, logo},
      {"logo: missing file", {}, "", "<LOGO FileName='missing.bmp'/>", 10, logo},
      {"logo: not a bitmap prints nothing", {}, "", "<LOGO FileName='text.bmp'/>", 1, logo},
      {"logo: more than two colours", {}, "", "<LOGO FileName='colour.bmp'/>", 13, logo},
  });
}

TEST_F(Vkp80ii, Records) {
  const std::string small = "1B C1 01 1B 21 ";
  Run({
      {"font and text, left", {}, "", "PrintFormattedText(112112LTotal)", 1,
       small + "21 54 6F 74 61 6C " + Spaces(23) + " 0A"},
      {"font only", {}, "", "PrintFormattedText(2014211Text)", 1, "1B C1 00 1B 21 91"},
      {"text only, right", {}, "", "PrintFormattedText(031111RText)", 1, Spaces(38) + " " + ToHex("Text") + " 0A"},
      {"text centred", {}, "", "PrintFormattedText(231111xab)", 1, kFont + " " + Spaces(20) + " 61 62 0A"},
      {"short record", {}, "", "PrintFormattedText(11111L)", 0, ""},
      {"separator", {}, "", "PrintSeparatorRecord(1111=)", 1, kFont + " " + Times(42, "3D") + " 0A"},
      {"separator of the default", {}, "", "PrintSeparatorRecord(2111)", 1, small + "01 " + Times(56, "2D") + " 0A"},
      {"barcode", {}, "", "PrintBarcodeRecord(412345670)", 1, kBar + "1D 6B 03 " + ToHex("12345670") + kBarEnd},
      {"feeds", {}, "", "FeedLinesRecord(2)", 1, "0A 0A"},
      {"cut", {}, "", "CutRecord()", 1, "1B 69"},
      {"logo", {}, "", "PrintLogoByName(small.BMP)", 1, kFont + " " + kSmallLogo},
  });
  EXPECT_EQ(driver.PrintFormattedText(nullptr), 0);
  Command("STOP_PRINTER");
  EXPECT_EQ(Record("CutRecord()"), 3);  // not open
}

}  // namespace
}  // namespace receipt_test
