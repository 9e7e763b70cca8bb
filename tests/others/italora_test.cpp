// The ITALORA label printer: its configuration keys, the command line of each operation
// and field, the label frame, and the parsing of its status answer. Its lines are text:
// rows hold what the printer received as written, not as hex.
#include <sstream>

#include "drivers/label/ITALORA/kp_italora.h"
#include "others/others_fixture.h"

namespace posprint::test {
namespace {

// A text line of font 1, normal size, upright, at (x, y).
std::string Text(const char* x, const char* y, const std::string& text) {
  return std::string("?10&") + x + "&" + y + "&0&1&1&1&0&" + text + "\r";
}
const std::string kLeftA = "<SingleField Justify='LEFT'><Field>A</Field></SingleField>";
// A field without START_PRINT starts a label of the default size.
const std::string kLabel = "?02&100.000&70.000\r";

// A row's reply is the printer's answer to ?90 in bursts split by '|' ("-": silence). A
// late answer to an earlier question comes first: it must be thrown away.
class Italora : public OthersTest<ITALORA::KpITALORA> {
 protected:
  std::string Received() const override { return port.Written(); }
  void Prepare(const std::string& reply) override {
    if (reply.empty()) return;
    port.Answer("!90&1&1&1&1&1\r");
    port.OnWrite([reply](ScriptedPort& printer, const std::string& written) {
      std::istringstream bursts(reply == "-" ? "" : reply);
      for (std::string burst; written == "?90\r" && std::getline(bursts, burst, '|');) printer.Answer(burst);
    });
  }
  // A fresh label on an open port; what went out so far forgotten.
  void StartLabel(Keys keys = {}) {
    Open(keys);
    ASSERT_TRUE(Command("START_PRINT"));
    port.ClearWritten();
  }
};

TEST_F(Italora, ConfigurationKeys) {
  struct Row {
    const char* name;
    Keys keys;
    std::string sent;  // INIT_PRINTER (after ?00), START_PRINT, a left-justified "A", STOP_PRINT
  };
  const std::string setup = "?01&8&100&D\r", a = Text("1.000", "1.000", "A"), end = "?03&1\r";
  const Row rows[] = {
      {"defaults", {}, setup + kLabel + a + end},
      {"12 dots/mm, decimal comma, rounded to 1/12 mm",
       {{L"param_Resolution", L"12"}, {L"param_WidthLabel", L"57,5"}, {L"param_LenghtLabel", L"32.04"}},
       setup + "?02&57.500&32.000\r" + a + end},
      {"57.3 mm rounded to 1/8 mm", {{L"param_WidthLabel", L"57.3"}}, setup + "?02&57.250&70.000\r" + a + end},
      {"300 mm is too wide", {{L"param_WidthLabel", L"300"}}, setup + kLabel + a + end},
      {"length spelled right", {{L"param_LengthLabel", L"40"}}, setup + "?02&100.000&40.000\r" + a + end},
      {"darkness, speed, ribbon", {{L"param_Darkness", L"12"}, {L"param_Speed", L"150"}, {L"param_PrintFoilType", L"true"}},
       "?01&12&150&T\r" + kLabel + a + end},
      {"darkness 16 and speed 20 are refused", {{L"param_Darkness", L"16"}, {L"param_Speed", L"20"}},
       setup + kLabel + a + end},
      {"three copies", {{L"param_Copies", L"3"}}, setup + kLabel + a + "?03&3\r"},
      {"margins", {{L"param_Origin_X", L"2.5"}, {L"param_Origin_Y", L"0"}}, setup + kLabel + Text("2.500", "0.000", "A") + end},
      {"a margin of half the label is refused", {{L"param_Origin_X", L"50"}}, setup + kLabel + a + end},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    Open(row.keys, false);
    const bool ok = Command("INIT_PRINTER") && Command("START_PRINT") && Field(kLeftA) && Command("STOP_PRINT");
    EXPECT_TRUE(ok);
    EXPECT_EQ(port.Written(), "?00\r" + row.sent);
  }
}

TEST_F(Italora, TextLayout) {
  Run({
      {"centred, one line below the other", {}, "", "<SINGLEFIELD><Field>Hello</Field><Field>World</Field></SINGLEFIELD>",
       1, kLabel + Text("46.250", "1.000", "Hello") + Text("46.250", "4.000", "World")},
      {"left", {}, "", "<SingleField Justify='LEFT'><Field>Hello</Field></SingleField>", 1,
       kLabel + Text("1.000", "1.000", "Hello")},
      {"right with dots", {}, "", "<SingleField Justify='RIGHT' Char='.'><Field>Hello</Field></SingleField>", 1,
       kLabel + Text("1.000", "1.000", std::string(60, '.')) + Text("91.000", "1.000", "Hello")},
      {"double field", {}, "", "<DOUBLEFIELD><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>",
       1, kLabel + Text("1.000", "1.000", "Espresso") + Text("92.500", "1.000", "2.20")},
      {"double field with margin", {}, "",
       "<DOUBLEFIELD Margin='2'><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>", 1,
       kLabel + Text("4.000", "1.000", "A") + Text("97.000", "1.000", "B")},
      {"double size, bold underline", {}, "",
       "<SINGLEFIELD Height='2' Width='2' TypeFont='DOUBLEBEAT_UNDERLINE'><Field>Big</Field><Field>x</Field></SINGLEFIELD>",
       1, kLabel + "?10&45.500&1.000&0&1&2&2&3&Big\r?10&48.500&7.000&0&1&2&2&3&x\r"},
      {"small font turned", {}, "", "<SINGLEFIELD Font='SMALL' Rotation='90'><Field>ab</Field></SINGLEFIELD>", 1,
       kLabel + "?10&49.000&1.000&90&2&1&1&0&ab\r"},
      {"cut to 65 characters", {}, "", "<SINGLEFIELD><Field>" + std::string(70, 'x') + "</Field></SINGLEFIELD>", 1,
       kLabel + Text("1.250", "1.000", std::string(65, 'x'))},
      {"a tab becomes a blank, & stays", {}, "", "<SINGLEFIELD><Field>A&amp;B&#9;C</Field></SINGLEFIELD>", 1,
       kLabel + Text("46.250", "1.000", "A&B C")},
      {"Windows-1252 text", {}, "", "<SINGLEFIELD><Field>Café €</Field></SINGLEFIELD>", 1,
       kLabel + Text("45.500", "1.000", "Caf\xE9 \x80")},
      {"placed field", {}, "", "<MOBILEFIELD Alignment='LEFT' OffsetX='2' OffsetY='1'><Field>Hi</Field></MOBILEFIELD>", 1,
       kLabel + Text("4.000", "4.000", "Hi")},
      {"placed field on the right", {}, "", "<MOBILEFIELD Alignment='RIGHT'><Field>Hi</Field></MOBILEFIELD>", 1,
       kLabel + Text("95.500", "1.000", "Hi")},
      {"separator", {}, "", "<LINE/>" + kLeftA, 1, kLabel + "?20&1.000&2.375&98.000&0.250\r" + Text("1.000", "4.000", "A")},
      {"line feeds move down", {}, "", "<LINEFEED Value='2'/>" + kLeftA, 1, kLabel + Text("1.000", "7.000", "A")},
      {"at most 29 line feeds", {}, "", "<LINEFEED Value='40'/>" + kLeftA, 1, kLabel + Text("1.000", "88.000", "A")},
  });
}

// Each barcode is followed by a text line, to show how far down it reached.
TEST_F(Italora, Barcodes) {
  const auto then = [](const char* y) { return Text("1.000", y, "A"); };
  const std::string a = kLeftA;
  Run({
      {"code 128 centred, text below", {}, "", "<BARCODE>TKT1</BARCODE>" + a, 1,
       kLabel + "?30&50.000&1.000&C&0&128&0.375&10.000&2&TKT1\r" + then("14.500")},
      {"text above and below", {}, "", "<BARCODE HRI='sopra_sotto' Height='15'>TKT1</BARCODE>" + a, 1,
       kLabel + "?30&50.000&3.500&C&0&128&0.375&15.000&3&TKT1\r" + then("22.000")},
      {"no text", {}, "", "<BARCODE HRI='no'>TKT1</BARCODE>" + a, 1,
       kLabel + "?30&50.000&1.000&C&0&128&0.375&10.000&0&TKT1\r" + then("12.000")},
      {"EAN-13", {}, "", "<BARCODE Type='EAN13' ModuleWidth='2'>400638133393</BARCODE>" + a, 1,
       kLabel + "?30&50.000&1.000&C&0&E13&0.250&10.000&2&400638133393\r" + then("14.500")},
      {"EAN-13 of 14 digits", {}, "", "<BARCODE Type='EAN13'>40063813339312</BARCODE>" + a, 17, kLabel + then("1.000")},
      {"module 11 is 3", {}, "", "<BARCODE Type='CODE39' ModuleWidth='11'>A</BARCODE>" + a, 1,
       kLabel + "?30&50.000&1.000&C&0&39&0.375&10.000&2&A\r" + then("14.500")},
      {"QR code", {}, "", "<BARCODE Type='QR_CODE' Height='20' HRI='no'>https://example.org/t/1</BARCODE>" + a, 1,
       kLabel + "?30&50.000&1.000&C&0&QR&0.375&20.000&0&https://example.org/t/1\r" + then("22.000")},
      {"empty data", {}, "", "<BARCODE Type='EAN8'></BARCODE>" + a, 18, kLabel + then("1.000")},
      {"placed on the right, turned", {}, "",
       "<MOBILEBARCODE OffsetY='1' Justify='RIGHT' Rotation='90' Width='2'>AB</MOBILEBARCODE>" + a, 1,
       kLabel + "?30&99.000&4.000&R&90&128&0.250&10.000&2&AB\r" + then("17.500")},
      {"module width in printer dots", {{L"param_Resolution", L"12"}}, "", "<BARCODE>1</BARCODE>", 1,
       kLabel + "?30&50.000&1.000&C&0&128&0.250&10.000&2&1\r"},
  });
}

class ItaloraLogo : public Italora {
 protected:
  void SetUp() override {
    LogoFile("logo.bmp", MonoBmp({"##########", "#........#"}));
    LogoFile("my logo.v2.bmp", MonoBmp({"#"}));
    LogoFile("notabitmap.bmp", {'h', 'i'});
    std::vector<std::uint8_t> colour = MonoBmp({"#"});
    PutU16(colour, 28, 24);
    LogoFile("colour.bmp", colour);
  }
};

TEST_F(ItaloraLogo, StoredOnceThenRecalledCentred) {
  StartLabel();
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp'/>"));
  EXPECT_EQ(port.Written(), "?41&LOGO&10&2&FFC08040\r?40&49.375&1.000&0&LOGO\r");
  port.ClearWritten();
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp' Rotation='90'/>"));
  EXPECT_EQ(port.Written(), "?40&49.875&2.250&90&LOGO\r");
  // A new open resets the printer, which forgets its pictures.
  StartLabel();
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp'/>"));
  EXPECT_EQ(port.Written().substr(0, 9), "?41&LOGO&");
}

TEST_F(ItaloraLogo, StoredNameAndErrors) {
  struct Row { const char* name; const char* xml; int result; std::string sent; };
  const Row rows[] = {
      // Centred at 49.9375, half a step: rounded up.
      {"the stored name", "<LOGO FileName='my logo.v2.bmp'/>", 1, "?41&MY_LOGO&1&1&80\r?40&50.000&1.000&0&MY_LOGO\r"},
      {"no name", "<LOGO/>", 8, ""},
      {"not a bmp name", "<LOGO FileName='logo.png'/>", 9, ""},
      {"missing file", "<LOGO FileName='missing.bmp'/>", 10, ""},
      {"not a bitmap: nothing printed", "<LOGO FileName='notabitmap.bmp'/>", 1, ""},
      {"24 bits a pixel", "<LOGO FileName='colour.bmp'/>", 13, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    StartLabel();
    EXPECT_EQ(Field(row.xml), row.result == 1);
    EXPECT_EQ(Errors(), row.result == 1 ? std::vector<int>{} : std::vector<int>{row.result});
    EXPECT_EQ(port.Written(), row.sent);
  }
}

TEST_F(Italora, StatusAnswers) {
  Run({
      {"ready", {}, "!90&0&0&0&0&0\r", "CHECK", 1, "?90\r"},
      {"answer in two bursts", {}, "!90&0&0|&0&0&0\r", "CHECK", 1, "?90\r"},
      {"labels out", {}, "!90&1&0&0&0&0\r", "CHECK", 102, "?90\r"},
      {"head open wins", {}, "!90&1&1&1&1&7\r", "CHECK", 105, "?90\r"},
      {"ribbon out", {}, "!90&0&0&1&0&0\r", "CHECK", 103, "?90\r"},
      {"head too hot", {}, "!90&0&0&0&0&1\r", "CHECK", 110, "?90\r"},
      {"printer fault wins over pause", {}, "!90&0&0&0&1&12\r", "CHECK", 108, "?90\r"},
      {"paused", {}, "!90&0&0&0&1&0\r", "CHECK", 104, "?90\r"},
      {"silence", {}, "-", "CHECK", 101, "?90\r"},
      {"four fields", {}, "!90&0&0&0&0\r", "CHECK", 101, "?90\r"},
      {"a letter", {}, "!90&0&0&x&0&0\r", "CHECK", 101, "?90\r"},
      {"four digits", {}, "!90&0&0&0&0&1000\r", "CHECK", 101, "?90\r"},
      {"noise before", {}, "\x13!90&0&0&0&0&0\r", "CHECK", 101, "?90\r"},
      {"endless line", {}, std::string(40, '!'), "CHECK", 101, "?90\r"},
  });
}

TEST_F(Italora, LabelFrame) {
  Open();
  EXPECT_TRUE(Command("STOP_PRINT"));  // no label: nothing to print
  EXPECT_TRUE(Field("<CUT/>"));        // no cutter, and no label started for it
  EXPECT_TRUE(Field("<FOOTER/>"));
  EXPECT_TRUE(Command("ITALORA_NEWPRINT"));
  EXPECT_EQ(port.Written(), "");
  // A field without START_PRINT starts its own label.
  ASSERT_TRUE(Field(kLeftA));
  ASSERT_TRUE(Command("STOP_PRINT"));
  EXPECT_TRUE(Command("STOP_PRINT"));
  EXPECT_EQ(port.Written(), kLabel + Text("1.000", "1.000", "A") + "?03&1\r");
}

TEST_F(Italora, ErrorsOfTheContract) {
  Open({}, false);
  EXPECT_FALSE(Command("START_PRINT"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_FALSE(Field("<LINE/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_FALSE(Command("CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{3, 1}));
  EXPECT_EQ(port.Written(), "");

  StartLabel();
  EXPECT_FALSE(Field("<MOBILEFIELD OffsetY='100'><Field>A</Field></MOBILEFIELD>"));
  EXPECT_EQ(Errors(), (std::vector<int>{16}));
  EXPECT_FALSE(Field("<DOUBLEFIELD><LeftField>A</LeftField></DOUBLEFIELD>"));
  EXPECT_EQ(Errors(), (std::vector<int>{5}));
  // A short write: the field's own error.
  for (const auto& [xml, error] : {std::pair{"<SINGLEFIELD><Field>A</Field></SINGLEFIELD>", 6},
                                   std::pair{"<LINE/>", 22}, std::pair{"<BARCODE>1</BARCODE>", 7}}) {
    port.ShortWriteAt(port.writeCount_ + 1);
    EXPECT_FALSE(Field(xml));
    EXPECT_EQ(Errors(), (std::vector<int>{error})) << xml;
  }
}

}  // namespace
}  // namespace posprint::test
