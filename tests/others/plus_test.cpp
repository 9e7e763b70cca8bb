// The PLUS receipt printer: its configuration keys, the bytes of each command and field,
// and the decoding of its status bytes.
#include "drivers/receipt/PLUS/kp_plus.h"
#include "tests/others/harness.h"

namespace {

using posprint::test::Hex;
using posprint::test::Keys;
using posprint::test::MonoBmp;
using posprint::test::ToHex;

// What a text field sends before its text: no turn, then ESC ! 0, GS ! 0, GS B 0.
const char kPlainText[] = "1B 7B 00 1B 21 00 1D 21 00 1D 42 00";

class Plus : public posprint::test::DriverHarness<PLUS::KpPLUS> {};

TEST_F(Plus, ConfigurationKeys) {
  struct Case {
    const char* name;
    Keys keys;
    std::string open;       // INIT_PRINTER
    int lineWidth;          // after the open
    std::string endOfPrint; // STOP_PRINT
  };
  const Case cases[] = {
      {"defaults", {}, "1B 40 1B 74 00", 48, "1B 64 05 1D 56 01"},
      {"euro table", {{L"param_CodeTable", L"val_PC858"}}, "1B 40 1B 74 13", 48, "1B 64 05 1D 56 01"},
      {"58 mm roll", {{L"param_PaperWidth", L"VAL_58MM"}}, "1B 40 1B 74 00", 32, "1B 64 05 1D 56 01"},
      {"no feeds", {{L"param_RollEjection", L"false"}}, "1B 40 1B 74 00", 48, "1D 56 01"},
      {"twelve feeds", {{L"param_RollEjection", L"12"}}, "1B 40 1B 74 00", 48, "1B 64 0C 1D 56 01"},
      {"21 feeds is too many", {{L"param_RollEjection", L"21"}}, "1B 40 1B 74 00", 48, "1B 64 05 1D 56 01"},
      {"full cut, any case", {{L"param_CutType", L"val_full"}}, "1B 40 1B 74 00", 48, "1B 64 05 1D 56 00"},
      {"no cut", {{L"param_CutType", L"val_None"}}, "1B 40 1B 74 00", 48, "1B 64 05"},
      {"none, as the sample receipt says", {{L"param_CutType", L"none"}}, "1B 40 1B 74 00", 48, "1B 64 05"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    port.ClearWritten();
    Configure(c.keys);
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    EXPECT_EQ(Sent(), c.open);
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
    EXPECT_STREQ(driver.Context()->terminator, "\r");
    port.ClearWritten();
    EXPECT_TRUE(Command(L"PLUS_NEWPRINT"));  // accepted, sends nothing
    EXPECT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(Sent(), c.endOfPrint);
  }
}

TEST_F(Plus, EuroSignGoesOutInPC858) {
  Open({{L"param_CodeTable", L"val_PC858"}});
  ASSERT_TRUE(Field("<SingleField Justify='LEFT'><Field>2 €</Field></SingleField>"));
  EXPECT_EQ(port.Written(), Hex(kPlainText) + "2 \xD5" + std::string(45, ' ') + "\r");
}

TEST_F(Plus, FontSelection) {
  struct Case {
    const char* name;
    const char* attributes;
    std::string font;  // ESC ! n, GS ! n, GS B n
    int lineWidth;
  };
  const Case cases[] = {
      {"normal", "", "1B 21 00 1D 21 00 1D 42 00", 48},
      {"font B", "Font='FONTB'", "1B 21 01 1D 21 00 1D 42 00", 64},
      {"bold", "TypeFont='DOUBLEBEAT'", "1B 21 08 1D 21 00 1D 42 00", 48},
      {"bold underline", "TypeFont='DOUBLEBEAT_UNDERLINE'", "1B 21 88 1D 21 00 1D 42 00", 48},
      {"cursive prints upright", "TypeFont='CURSIVE'", "1B 21 00 1D 21 00 1D 42 00", 48},
      {"reverse", "TypeFont='REVERSE'", "1B 21 00 1D 21 00 1D 42 01", 48},
      {"triple width", "Width='3'", "1B 21 00 1D 21 20 1D 42 00", 16},
      {"eight by eight", "Height='8' Width='8'", "1B 21 00 1D 21 77 1D 42 00", 6},
      {"width 9 is not a width", "Width='9'", "1B 21 00 1D 21 00 1D 42 00", 48},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    port.ClearWritten();
    ASSERT_TRUE(Field(std::string("<SINGLEFIELD ") + c.attributes + "/>"));
    EXPECT_EQ(Sent(), "1B 7B 00 " + c.font);
    EXPECT_EQ(driver.Context()->lineWidth, c.lineWidth);
  }
}

TEST_F(Plus, TextLinesEndWithABareCarriageReturn) {
  Open();
  ASSERT_TRUE(Field("<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD>"));
  EXPECT_EQ(port.Written(), Hex(kPlainText) + std::string(21, ' ') + "Hello\r");
  port.ClearWritten();
  ASSERT_TRUE(Field("<DOUBLEFIELD><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>"));
  EXPECT_EQ(port.Written(), Hex(kPlainText) + "Espresso" + std::string(36, ' ') + "2.20\r");
  port.ClearWritten();
  ASSERT_TRUE(Field("<LINEFEED Value='3'/>"));
  EXPECT_EQ(Sent(), "0D 0D 0D");
}

TEST_F(Plus, CutField) {
  struct Case { const char* name; Keys keys; std::string sent; };
  const Case cases[] = {
      {"partial by default", {}, "1D 56 01"},
      {"full where full cuts are configured", {{L"param_CutType", L"VAL_FULL"}}, "1D 56 00"},
      {"the element cuts even without a cut at the end", {{L"param_CutType", L"VAL_NONE"}}, "1D 56 01"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    EXPECT_TRUE(Field("<CUT/>"));
    EXPECT_EQ(Sent(), c.sent);
  }
}

TEST_F(Plus, LogoIsCentredIn24DotBands) {
  LogoFolder("plus_logos");
  LogoFile("logo.bmp", MonoBmp({"########", "........"}));
  Open();
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp'/>"));
  std::string columns;
  for (int i = 0; i < 8; ++i) columns += " 80 00 00";
  EXPECT_EQ(Sent(), "1B 21 00 1B 7B 00 1B 61 01 1B 33 18 1B 2A 21 08 00" + columns + " 0D 1B 32 1B 61 00");
}

TEST_F(Plus, BarcodeGoesThroughTheSharedOutput) {
  Open();
  ASSERT_TRUE(Field("<BARCODE Height='5'>A1</BARCODE>"));
  EXPECT_EQ(Sent(), "1B 7B 00 1B 56 00 1B 21 00 1D 66 31 1D 48 02 1D 68 28 1D 77 03 "
                    "1B 61 01 1D 6B 49 04 7B 42 41 31 1B 61 00");
}

TEST_F(Plus, StatusDecoding) {
  struct Case {
    const char* name;
    std::string offline;  // answer to DLE EOT 2 ("" = silence)
    std::string paper;    // answer to DLE EOT 4
    Keys keys;
    int status;           // 100 = CHECK succeeds
  };
  const Case cases[] = {
      {"ready", "\x12", "\x12", {}, 100},
      {"silent printer", "", "", {}, 101},
      {"garbled offline byte", "\x13", "\x12", {}, 101},
      {"cover open wins", "\x36", "\x12", {}, 105},
      {"stopped for paper end", "\x32", "\x12", {}, 102},
      {"printer error", "\x52", "\x12", {}, 108},
      {"paper end", "\x12", "\x72", {}, 102},
      {"paper end ignored", "\x12", "\x72", {{L"param_EndPaperSensor", L"FALSE"}}, 100},
      {"near end", "\x12", "\x1E", {}, 113},
      {"near end ignored", "\x12", "\x1E", {{L"param_NearlyEndPaperSensor", L"false"}}, 100},
      {"paper end ignored, near end not", "\x12", "\x7E", {{L"param_EndPaperSensor", L"FALSE"}}, 113},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    port.Answer("\x99");  // a stale byte from before: thrown away, never taken for the answer
    port.OnWrite([&c](posprint::ScriptedPort& printer, const std::string& written) {
      const std::string& answer = written == "\x10\x04\x02" ? c.offline : c.paper;
      if (!answer.empty()) printer.Answer(answer);
    });
    EXPECT_EQ(Command(L"CHECK"), c.status == 100);
    EXPECT_EQ(Errors(), c.status == 100 ? std::vector<int>{} : std::vector<int>{c.status});
    EXPECT_EQ(Sent().substr(0, 8), "10 04 02");
    port.OnWrite(nullptr);
  }
}

TEST_F(Plus, CommandsNeedAnOpenPort) {
  Configure({});
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{3, 1}));
  EXPECT_FALSE(Command(L"STOP_PRINT"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_FALSE(Field("<CUT/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_EQ(Sent(), "");
}

}  // namespace
