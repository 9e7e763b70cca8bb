// The PLUS receipt printer: its configuration keys, the bytes of each command and field,
// and the decoding of its status bytes.
#include <sstream>

#include "drivers/receipt/PLUS/kp_plus.h"
#include "others/others_fixture.h"

namespace posprint::test {
namespace {

// What a text field sends before its text: no turn, then ESC ! 0, GS ! 0, GS B 0.
const std::string kPlainText = "1B 7B 00 1B 21 00 1D 21 00 1D 42 00 ";

// A row's reply is the answers to DLE EOT 2 and DLE EOT 4 ("12 72"; "-" is silence). A
// stale byte from before comes first: thrown away, never taken for the answer.
class Plus : public OthersTest<PLUS::KpPLUS> {
 protected:
  void Prepare(const std::string& reply) override {
    if (reply.empty()) return;
    std::string offline, paper;
    std::istringstream(reply) >> offline >> paper;
    port.Answer("\x99");
    port.OnWrite([offline, paper](ScriptedPort& printer, const std::string& written) {
      const std::string& answer = written == Hex("10 04 02") ? offline : paper;
      if (answer != "-") printer.Answer(Hex(answer));
    });
  }
};

TEST_F(Plus, ConfigurationKeys) {
  // INIT_PRINTER, then PLUS_NEWPRINT (accepted, sends nothing) and STOP_PRINT.
  const std::string run = "INIT_PRINTER PLUS_NEWPRINT STOP_PRINT", open = "1B 40 1B 74 00 ";
  Run({
      {"defaults", {}, "", run, 1, open + "1B 64 05 1D 56 01", 48},
      {"euro table", {{L"param_CodeTable", L"val_PC858"}}, "", run, 1, "1B 40 1B 74 13 1B 64 05 1D 56 01", 48},
      {"58 mm roll", {{L"param_PaperWidth", L"VAL_58MM"}}, "", run, 1, open + "1B 64 05 1D 56 01", 32},
      {"no feeds", {{L"param_RollEjection", L"false"}}, "", run, 1, open + "1D 56 01", 48},
      {"twelve feeds", {{L"param_RollEjection", L"12"}}, "", run, 1, open + "1B 64 0C 1D 56 01"},
      {"21 feeds is too many", {{L"param_RollEjection", L"21"}}, "", run, 1, open + "1B 64 05 1D 56 01"},
      {"full cut, any case", {{L"param_CutType", L"val_full"}}, "", run, 1, open + "1B 64 05 1D 56 00"},
      {"no cut", {{L"param_CutType", L"val_None"}}, "", run, 1, open + "1B 64 05"},
      {"none, as the sample receipt says", {{L"param_CutType", L"none"}}, "", run, 1, open + "1B 64 05"},
  });
}

TEST_F(Plus, Fields) {
  LogoFile("logo.bmp", MonoBmp({"########", "........"}));
  Run({
      // Font: ESC ! n, GS ! n, GS B n after ESC { 0.
      {"normal", {}, "", Font(""), 1, "1B 7B 00 1B 21 00 1D 21 00 1D 42 00", 48},
      {"font B", {}, "", Font("Font='FONTB'"), 1, "1B 7B 00 1B 21 01 1D 21 00 1D 42 00", 64},
      {"bold", {}, "", Font("TypeFont='DOUBLEBEAT'"), 1, "1B 7B 00 1B 21 08 1D 21 00 1D 42 00", 48},
      {"bold underline", {}, "", Font("TypeFont='DOUBLEBEAT_UNDERLINE'"), 1, "1B 7B 00 1B 21 88 1D 21 00 1D 42 00", 48},
      {"cursive prints upright", {}, "", Font("TypeFont='CURSIVE'"), 1, "1B 7B 00 1B 21 00 1D 21 00 1D 42 00", 48},
      {"reverse", {}, "", Font("TypeFont='REVERSE'"), 1, "1B 7B 00 1B 21 00 1D 21 00 1D 42 01", 48},
      {"triple width", {}, "", Font("Width='3'"), 1, "1B 7B 00 1B 21 00 1D 21 20 1D 42 00", 16},
      {"eight by eight", {}, "", Font("Height='8' Width='8'"), 1, "1B 7B 00 1B 21 00 1D 21 77 1D 42 00", 6},
      {"width 9 is not a width", {}, "", Font("Width='9'"), 1, "1B 7B 00 1B 21 00 1D 21 00 1D 42 00", 48},
      // Text lines end with a bare CR.
      {"centred text", {}, "", "<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD>", 1,
       kPlainText + Spaces(21) + " " + ToHex("Hello") + " 0D"},
      {"double field", {}, "", "<DOUBLEFIELD><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>",
       1, kPlainText + ToHex("Espresso") + " " + Spaces(36) + " " + ToHex("2.20") + " 0D"},
      {"line feeds", {}, "", "<LINEFEED Value='3'/>", 1, "0D 0D 0D"},
      {"euro sign in PC858", {{L"param_CodeTable", L"val_PC858"}}, "",
       "<SingleField Justify='LEFT'><Field>2 €</Field></SingleField>", 1,
       kPlainText + "32 20 D5 " + Spaces(45) + " 0D"},
      // The cut element.
      {"partial cut by default", {}, "", "<CUT/>", 1, "1D 56 01"},
      {"full where full cuts are configured", {{L"param_CutType", L"VAL_FULL"}}, "", "<CUT/>", 1, "1D 56 00"},
      {"the element cuts even without a cut at the end", {{L"param_CutType", L"VAL_NONE"}}, "", "<CUT/>", 1, "1D 56 01"},
      {"logo centred in 24-dot bands", {}, "", "<LOGO FileName='logo.bmp'/>", 1,
       "1B 21 00 1B 7B 00 1B 61 01 1B 33 18 1B 2A 21 08 00 " + Times(8, "80 00 00") + " 0D 1B 32 1B 61 00"},
      {"barcode through the shared output", {}, "", "<BARCODE Height='5'>A1</BARCODE>", 1,
       "1B 7B 00 1B 56 00 1B 21 00 1D 66 31 1D 48 02 1D 68 28 1D 77 03 1B 61 01 1D 6B 49 04 7B 42 41 31 1B 61 00"},
  });
}

TEST_F(Plus, StatusDecoding) {
  const std::string both = "10 04 02 10 04 04", first = "10 04 02";  // a bad first byte ends the question
  const wchar_t *paperEnd = L"param_EndPaperSensor", *nearEnd = L"param_NearlyEndPaperSensor";
  Run({
      {"ready", {}, "12 12", "CHECK", 1, both},
      {"silent printer", {}, "- -", "CHECK", 101, first},
      {"garbled offline byte", {}, "13 12", "CHECK", 101, first},
      {"cover open wins", {}, "36 12", "CHECK", 105, first},
      {"stopped for paper end", {}, "32 12", "CHECK", 102, first},
      {"printer error", {}, "52 12", "CHECK", 108, first},
      {"paper end", {}, "12 72", "CHECK", 102, both},
      {"paper end ignored", {{paperEnd, L"FALSE"}}, "12 72", "CHECK", 1, both},
      {"near end", {}, "12 1E", "CHECK", 113, both},
      {"near end ignored", {{nearEnd, L"false"}}, "12 1E", "CHECK", 1, both},
      {"paper end ignored, near end not", {{paperEnd, L"FALSE"}}, "12 7E", "CHECK", 113, both},
  });
}

TEST_F(Plus, CommandsNeedAnOpenPort) {
  Open({}, false);
  EXPECT_FALSE(Command("CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{3, 1}));
  EXPECT_FALSE(Command("STOP_PRINT"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_FALSE(Field("<CUT/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_EQ(Line(), "");
}

}  // namespace
}  // namespace posprint::test
