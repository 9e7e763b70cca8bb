// The STB112: open sequence by paper and width, start and end of ticket, cuts, status, the
// scrambled link and its recovery, code pages, text positions and the raster logo.
#include "drivers/ticket/STB112/nx_stb112.h"
#include "drivers/ticket/stb_family/stb_commands.h"
#include "platform/otool.h"
#include "ticket_fixture.h"

namespace ticket_test {
namespace {

using Stb112 = TicketTest<STB112::Nx_STB112>;

const wchar_t *kPaper = L"param_TypePaper", *kWidth = L"param_WidthRow", *kCut = L"param_CutType";
// Setting frames: GS 0xFF 0x0A 0x32, setting, value, checksum (the low byte of their sum).
const std::string kOpen = "1B 74 00 1B 40 ", kFull = "1D FF 0A 32 01 00 59 ", k80 = "1D FF 0A 32 01 01 5A ";
const std::string kRoll = "1D FF 0A 32 09 00 61 ", kSheet = "1D FF 0A 32 09 01 62", kDensity = "1D FF 0A 32 0F 04 6B";
const std::string kTicket = "1D FF 0A 32 10 00 68 " + kSheet + " ", kRollOpen = kOpen + kFull + kRoll + kDensity;
const std::string kLabel = "1D FF 0A 32 10 01 69 " + kSheet + " 1D FF 0A 32 0A 01 63 ";

TEST_F(Stb112, OpenSequenceByPaperAndWidth) {
  const wchar_t* density = L"param_Density";
  const std::string open = "INIT_PRINTER";
  Run({
      {"roll, full width (defaults)", {}, "", open, 1, kRollOpen, 42},
      {"roll, 80 mm", {{kWidth, L"80 mm"}}, "", open, 1, kOpen + k80 + kRoll + kDensity, 32},
      {"80MM without the blank is the full width", {{kWidth, L"80MM"}}, "", open, 1, kRollOpen, 42},
      {"ticket, full width", {{kPaper, L"val_Ticket"}}, "", open, 1, kOpen + kFull + kTicket + kDensity, 30},
      {"ticket, 80 mm", {{kPaper, L"val_Ticket"}, {kWidth, L"80 mm"}}, "", open, 1, kOpen + k80 + kTicket + kDensity,
       30},
      {"label, 80 mm", {{kPaper, L"val_Label"}, {kWidth, L"80 mm"}}, "", open, 1, kOpen + k80 + kLabel + kDensity, 32},
      {"unknown paper word keeps roll", {{kPaper, L"VAL_LABEL"}}, "", open, 1, kRollOpen, 42},
      {"density 260 sends its low byte", {{density, L"260"}}, "", open, 1, kRollOpen},
      {"density 7", {{density, L"7"}}, "", open, 1, kOpen + kFull + kRoll + "1D FF 0A 32 0F 07 6E"},
      {"density 255: the sum wraps", {{density, L"255"}}, "", open, 1, kOpen + kFull + kRoll + "1D FF 0A 32 0F FF 66"},
  });
  Open({{kPaper, L"val_Ticket"}}, false);
  printer.settingAnswer = "";
  EXPECT_TRUE(Command("INIT_PRINTER"));  // the open succeeds; without the confirmation no density is sent
  EXPECT_EQ(Received(), kOpen + kFull + kTicket.substr(0, 41));
}

TEST_F(Stb112, StartEndCutsAndStatus) {
  const std::string feeds = Times(8, "0A"), retract = "1B 28 76 64 00 1B 69 1B 28 76 9C FF";
  const wchar_t* feed = L"param_LinefeedEjection";
  Run({
      {"start: roll sends nothing", {}, "", "START_PRINT", 1, ""},
      {"start: ticket", {{kPaper, L"val_Ticket"}}, "", "START_PRINT", 1, "1D F6"},
      {"start: label sends nothing", {{kPaper, L"val_Label"}}, "", "START_PRINT", 1, ""},
      {"end of roll: eight feeds, no cut", {}, "", "STOP_PRINT", 1, feeds},
      {"feeds switched on in lower case", {{feed, L"true"}}, "", "STOP_PRINT", 1, feeds},
      {"feeds off, partial cut", {{feed, L"NO"}, {kCut, L"val_Partial"}}, "", "STOP_PRINT", 1, "1B 6D"},
      {"any other cut word is the full cut", {{kCut, L"val_Full"}}, "", "STOP_PRINT", 1, feeds + " 1B 69"},
      {"the cut word keeps its case", {{kCut, L"VAL_PARTIAL"}}, "", "STOP_PRINT", 1, feeds + " 1B 69"},
      {"explicit no cut", {{kCut, L"val_No"}}, "", "STOP_PRINT", 1, feeds},
      {"end of label, no cut", {{kPaper, L"val_Label"}, {kCut, L"val_No"}}, "", "STOP_PRINT", 1, "1D F6"},
      {"end of label, partial", {{kPaper, L"val_Label"}, {kCut, L"val_Partial"}}, "", "STOP_PRINT", 1, "1D F6"},
      {"end of label, full", {{kPaper, L"val_Label"}, {kCut, L"x"}}, "", "STOP_PRINT", 1, "1D F8"},
      {"end of ticket: nothing", {{kPaper, L"val_Ticket"}, {kCut, L"x"}}, "", "STOP_PRINT", 1, ""},
      {"CUT_FULL", {}, "", "<CUT Type='CUT_FULL'/>", 1, "1B 69"},
      {"CUT_PARTIAL", {}, "", "<CUT Type='CUT_PARTIAL'/>", 1, "1B 6D"},
      {"any other cut retracts the paper around a full cut", {}, "", "<CUT/><CUT Type='cut_full'/>", 1,
       retract + " " + retract},
      {"ready", {}, "00;00", "CHECK", 1, "10 04 02 10 04 11"},
      {"cover (first byte 0x04)", {}, "04;00", "CHECK", 105, "10 04 02"},
      {"first byte 0x20 is not looked at", {}, "20;00", "CHECK", 1, "10 04 02 10 04 11"},
      {"paper out", {}, "00;20", "CHECK", 102, "10 04 02 10 04 11"},
      {"paper 0x04", {}, "00;04", "CHECK", 104, "10 04 02 10 04 11"},
      {"0x20 before 0x04", {}, "00;24", "CHECK", 102, "10 04 02 10 04 11"},
      {"no paper answer", {}, "00;-", "CHECK", 101, "10 04 02 10 04 11"},
  });
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_TRUE(Field("<CUT/>"));  // the cut's own writes do not decide the field
  for (int write = 1; write <= 3; ++write) {  // the command layer stops at the first write not taken
    ScriptedContext line;
    line.port.ShortWriteAt(write, 1);
    EXPECT_EQ(StbFamily::stb_CutRetract(line.ctx), kFailure);
    EXPECT_EQ(line.port.Writes().size(), static_cast<std::size_t>(write));
  }
}

// The terminal runs scrambled but the printer was reset to plain: the status request goes
// unread, the plain retry is answered, and the printer is told to take up the key.
TEST_F(Stb112, ResyncSwitchesAPlainPrinterToScrambledMode) {
  Run({{"the open went unread", {{L"param_Cripted", L"TRUE"}}, "", "CHECK", 1,
        "DB CF C9 10 04 02 1B F9 CB 10 04 02 10 04 11"}});
  EXPECT_EQ(printer.key, kKey);
  EXPECT_EQ(clock.TotalSleptMs(), 100);
  int readTimeout = 0, writeTimeout = 0;  // put back after the quick retry
  otool_IOCTL(driver.Context()->handle, kPortGetReadTimeout, &readTimeout);
  otool_IOCTL(driver.Context()->handle, kPortGetWriteTimeout, &writeTimeout);
  EXPECT_EQ(readTimeout, 300);
  EXPECT_EQ(writeTimeout, 5000);
  Prepare("");
  EXPECT_TRUE(Command("CHECK"));  // from now on both ends agree
  EXPECT_EQ(Received(), "10 04 02 10 04 11");
}

TEST_F(Stb112, ResyncTowardsASilentPrinterLeavesThePortScrambled) {
  Run({{"the request, then the plain retry", {}, "-", "CHECK", 101, "10 04 02 10 04 02"}});
  EXPECT_EQ(clock.TotalSleptMs(), 0);
  int readTimeout = 0;
  otool_IOCTL(driver.Context()->handle, kPortGetReadTimeout, &readTimeout);
  EXPECT_EQ(readTimeout, 300);
  port.ClearWritten();
  EXPECT_TRUE(Field("<CUT Type='CUT_FULL'/>"));
  EXPECT_EQ(Line(), "D0 A2");  // ESC i under the key
}

TEST_F(Stb112, ScrambledPrinter) {
  startKey = kKey;
  Run({{"a scrambled open, every byte through the key", {{L"param_Cripted", L"true"}}, "", "INIT_PRINTER", 1,
        kRollOpen}});
  Open();  // behind a plain terminal: the first check fails and leaves the terminal scrambled
  EXPECT_FALSE(Command("CHECK"));
  EXPECT_EQ(Errors(), std::vector<int>{101});
  EXPECT_TRUE(Command("CHECK"));
  port.Vanish();  // no recovery when the port itself fails
  Prepare("");
  EXPECT_FALSE(Command("CHECK"));
  EXPECT_EQ(Errors(), std::vector<int>{101});
  EXPECT_EQ(Received(), "");
}

TEST_F(Stb112, CodePagesTextPositionsBarcodesAndLogo) {
  const std::string head = "1B 7B 00 1B 56 00 1B 21 00 1B 61 01 ", fail = "1B 21 00 1B 7B 00";
  // GS v 0 at double size, centred by blank bytes: (832 - 2 x 12) / 32 = 25, 27 bytes a row.
  const std::string small = " 1D 76 30 33 1B 00 02 00 " + Times(25, "00") + " FF 00 " + Times(25, "00") + " 08 10";
  const std::string ab = "<DOUBLEFIELD><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>";
  const Keys ticket = {{kPaper, L"val_Ticket"}};
  Run({
      {"the euro sign takes PC858, which carries the next line too; the peseta sign PC437", {}, "",
       "<SINGLEFIELD Justify='CENTER'><Field>\xE2\x82\xAC" "5</Field></SINGLEFIELD><SINGLEFIELD Justify='CENTER'>"
       "<Field>ab</Field></SINGLEFIELD><BARCODE Type='CODE39'>\xE2\x82\xA7</BARCODE>", 1,
       "1B 7B 00 1B 74 13 " + Spaces(20) + " D5 35 0D 0A 1B 7B 00 " + Spaces(20) + " 61 62 0D 0A " +
           head.substr(0, 27) + "1B 74 00 1B 61 01 1D 6B 45 01 9E 1B 61 00"},
      {"roll: double field from the first column", {}, "", ab, 1, "1B 7B 00 41 " + Spaces(40) + " 42 0D 0A"},
      {"ticket: double field at column 12 over 30", ticket, "", ab, 1,
       "1B 7B 00 " + Spaces(12) + " 41 " + Spaces(28) + " 42 0D 0A"},
      {"ticket: centred field", ticket, "", "<SINGLEFIELD Justify='CENTER'><Field>ABCD</Field></SINGLEFIELD>", 1,
       "1B 7B 00 " + Spaces(25) + " 41 42 43 44 0D 0A"},
      {"ticket: row line", {{kPaper, L"val_Ticket"}, {kWidth, L"80 mm"}}, "", "<LINE Char='='/>", 1,
       "1B 7B 00 " + Spaces(12) + " " + Times(30, "3D") + " 0D 0A"},
      {"roll: row line", {}, "", "<LINE/>", 1, "1B 7B 00 " + Times(42, "2D") + " 0D 0A"},
      {"an empty Justify is left", {}, "", "<SingleField><Field>AB</Field></SingleField>", 1,
       "1B 7B 00 41 42 " + Spaces(40) + " 0D 0A"},
      {"RIGHT_PRINTER: a side", {}, "", "<SingleField Justify='RIGHT_PRINTER'><Field>AB</Field></SingleField>", 1,
       "1B 7B 00 " + Spaces(40) + " 41 42 0D 0A"},
      {"SINGLEFIELD in capitals with a side alignment prints nothing", {}, "",
       "<SINGLEFIELD><Field>AB</Field></SINGLEFIELD>", 1, "1B 7B 00"},
      {"barcode without text", {}, "", "<BARCODE Height='20' HRI='no'>AB1</BARCODE>", 1,
       head + "1D 6B 49 05 7B 42 41 42 31 1B 61 00"},
      {"EAN13", {}, "", "<BARCODE Type='EAN13'>123456789012</BARCODE>", 1,
       head + "1D 6B 43 0C 31 32 33 34 35 36 37 38 39 30 31 32 1B 61 00"},
      {"QR code", {}, "", "<BARCODE Type='QR_CODE'>X</BARCODE>", 15, head.substr(0, 35)},
      {"no data", {}, "", "<BARCODE/>", 18, head.substr(0, 35)},
      {"logo, full width", {}, "", "<LOGO FileName='small.bmp'/>", 1, fail + small},
      {"logo, 80 mm: (600 - 24) / 32 = 18", {{kWidth, L"80 mm"}}, "", "<LOGO FileName='small.bmp'/>", 1,
       fail + " 1D 76 30 33 14 00 02 00 " + Times(18, "00") + " FF 00 " + Times(18, "00") + " 08 10"},
      {"logo upside down", {}, "", "<LOGO FileName='small.bmp' Rotation='180'/>", 1,
       "1B 21 00 1B 7B 01 1B 7B 01" + small},
      {"400 dots wide: one margin byte", {}, "", "<LOGO FileName='w400.bmp'/>", 1,
       fail + " 1D 76 30 33 33 00 01 00 " + Times(51, "00")},
      {"wider than the paper: the margin overflows", {}, "", "<LOGO FileName='w700.bmp'/>", 11, fail},
      {"not a bitmap prints nothing", {}, "", "<LOGO FileName='text.bmp'/>", 1, fail},
      {"colours are refused", {}, "", "<LOGO FileName='colour.bmp'/>", 13, fail},
      {"missing file", {}, "", "<LOGO FileName='none.bmp'/>", 10, fail},
      {"not a bmp name", {}, "", "<LOGO FileName='small.png'/>", 9, fail},
      {"no name", {}, "", "<LOGO/>", 8, fail},
  });
}

}  // namespace
}  // namespace ticket_test
