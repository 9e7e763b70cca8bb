// The ITALORA label printer: its configuration keys, the command line of each operation
// and field, the label frame, and the parsing of its status answer.
#include "drivers/label/ITALORA/kp_italora.h"
#include "tests/others/harness.h"

namespace {

using posprint::test::Keys;
using posprint::test::MonoBmp;
using posprint::test::PutU16;

// A text line of font 1, normal size, upright, at (x, y).
std::string Text(const char* x, const char* y, const std::string& text) {
  return std::string("?10&") + x + "&" + y + "&0&1&1&1&0&" + text + "\r";
}

class Italora : public posprint::test::DriverHarness<ITALORA::KpITALORA> {
 protected:
  // A fresh label on an open port; what went out so far forgotten.
  void StartLabel(Keys keys = {}) {
    Open(keys);
    ASSERT_TRUE(Command(L"START_PRINT"));
    port.ClearWritten();
  }
  // The fields in turn: true when all succeeded.
  bool Fields(const std::vector<std::string>& fields) {
    bool ok = true;
    for (const std::string& field : fields) ok = Field(field) && ok;
    return ok;
  }
};

TEST_F(Italora, ConfigurationKeys) {
  struct Case {
    const char* name;
    Keys keys;
    std::string setup;       // sent after ?00 at INIT_PRINTER
    std::string labelStart;  // START_PRINT
    std::string firstLine;   // a left-justified "A"
    std::string labelEnd;    // STOP_PRINT
  };
  const Case cases[] = {
      {"defaults", {}, "?01&8&100&D\r", "?02&100.000&70.000\r", Text("1.000", "1.000", "A"), "?03&1\r"},
      {"12 dots/mm, decimal comma, rounded to 1/12 mm",
       {{L"param_Resolution", L"12"}, {L"param_WidthLabel", L"57,5"}, {L"param_LenghtLabel", L"32.04"}},
       "?01&8&100&D\r", "?02&57.500&32.000\r", Text("1.000", "1.000", "A"), "?03&1\r"},
      {"57.3 mm rounded to 1/8 mm", {{L"param_WidthLabel", L"57.3"}}, "?01&8&100&D\r", "?02&57.250&70.000\r",
       Text("1.000", "1.000", "A"), "?03&1\r"},
      {"300 mm is too wide", {{L"param_WidthLabel", L"300"}}, "?01&8&100&D\r", "?02&100.000&70.000\r",
       Text("1.000", "1.000", "A"), "?03&1\r"},
      {"length spelled right", {{L"param_LengthLabel", L"40"}}, "?01&8&100&D\r", "?02&100.000&40.000\r",
       Text("1.000", "1.000", "A"), "?03&1\r"},
      {"darkness, speed, ribbon",
       {{L"param_Darkness", L"12"}, {L"param_Speed", L"150"}, {L"param_PrintFoilType", L"true"}},
       "?01&12&150&T\r", "?02&100.000&70.000\r", Text("1.000", "1.000", "A"), "?03&1\r"},
      {"darkness 16 and speed 20 are refused", {{L"param_Darkness", L"16"}, {L"param_Speed", L"20"}},
       "?01&8&100&D\r", "?02&100.000&70.000\r", Text("1.000", "1.000", "A"), "?03&1\r"},
      {"three copies", {{L"param_Copies", L"3"}}, "?01&8&100&D\r", "?02&100.000&70.000\r",
       Text("1.000", "1.000", "A"), "?03&3\r"},
      {"margins", {{L"param_Origin_X", L"2.5"}, {L"param_Origin_Y", L"0"}}, "?01&8&100&D\r",
       "?02&100.000&70.000\r", Text("2.500", "0.000", "A"), "?03&1\r"},
      {"a margin of half the label is refused", {{L"param_Origin_X", L"50"}}, "?01&8&100&D\r",
       "?02&100.000&70.000\r", Text("1.000", "1.000", "A"), "?03&1\r"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    port.ClearWritten();
    Configure(c.keys);
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    EXPECT_EQ(port.Written(), "?00\r" + c.setup);
    port.ClearWritten();
    ASSERT_TRUE(Command(L"START_PRINT"));
    ASSERT_TRUE(Field("<SingleField Justify='LEFT'><Field>A</Field></SingleField>"));
    ASSERT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(port.Written(), c.labelStart + c.firstLine + c.labelEnd);
  }
}

TEST_F(Italora, TextLayout) {
  struct Case {
    const char* name;
    std::vector<std::string> fields;
    std::string lines;
  };
  const Case cases[] = {
      {"centred, one line below the other",
       {"<SINGLEFIELD><Field>Hello</Field><Field>World</Field></SINGLEFIELD>"},
       Text("46.250", "1.000", "Hello") + Text("46.250", "4.000", "World")},
      {"left", {"<SingleField Justify='LEFT'><Field>Hello</Field></SingleField>"}, Text("1.000", "1.000", "Hello")},
      {"right with dots", {"<SingleField Justify='RIGHT' Char='.'><Field>Hello</Field></SingleField>"},
       Text("1.000", "1.000", std::string(60, '.')) + Text("91.000", "1.000", "Hello")},
      {"double field", {"<DOUBLEFIELD><LeftField>Espresso</LeftField><RightField>2.20</RightField></DOUBLEFIELD>"},
       Text("1.000", "1.000", "Espresso") + Text("92.500", "1.000", "2.20")},
      {"double field with margin", {"<DOUBLEFIELD Margin='2'><LeftField>A</LeftField><RightField>B</RightField></DOUBLEFIELD>"},
       Text("4.000", "1.000", "A") + Text("97.000", "1.000", "B")},
      {"double size, bold underline",
       {"<SINGLEFIELD Height='2' Width='2' TypeFont='DOUBLEBEAT_UNDERLINE'><Field>Big</Field><Field>x</Field></SINGLEFIELD>"},
       "?10&45.500&1.000&0&1&2&2&3&Big\r?10&48.500&7.000&0&1&2&2&3&x\r"},
      {"small font turned", {"<SINGLEFIELD Font='SMALL' Rotation='90'><Field>ab</Field></SINGLEFIELD>"},
       "?10&49.000&1.000&90&2&1&1&0&ab\r"},
      {"cut to 65 characters", {"<SINGLEFIELD><Field>" + std::string(70, 'x') + "</Field></SINGLEFIELD>"},
       Text("1.250", "1.000", std::string(65, 'x'))},
      {"a tab becomes a blank, & stays", {"<SINGLEFIELD><Field>A&amp;B&#9;C</Field></SINGLEFIELD>"},
       Text("46.250", "1.000", "A&B C")},
      {"Windows-1252 text", {"<SINGLEFIELD><Field>Café €</Field></SINGLEFIELD>"}, Text("45.500", "1.000", "Caf\xE9 \x80")},
      {"placed field", {"<MOBILEFIELD Alignment='LEFT' OffsetX='2' OffsetY='1'><Field>Hi</Field></MOBILEFIELD>"},
       Text("4.000", "4.000", "Hi")},
      {"placed field on the right", {"<MOBILEFIELD Alignment='RIGHT'><Field>Hi</Field></MOBILEFIELD>"},
       Text("95.500", "1.000", "Hi")},
      {"separator", {"<LINE/>", "<SingleField Justify='LEFT'><Field>A</Field></SingleField>"},
       "?20&1.000&2.375&98.000&0.250\r" + Text("1.000", "4.000", "A")},
      {"line feeds move down", {"<LINEFEED Value='2'/>", "<SingleField Justify='LEFT'><Field>A</Field></SingleField>"},
       Text("1.000", "7.000", "A")},
      {"at most 29 line feeds", {"<LINEFEED Value='40'/>", "<SingleField Justify='LEFT'><Field>A</Field></SingleField>"},
       Text("1.000", "88.000", "A")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    StartLabel();
    EXPECT_TRUE(Fields(c.fields));
    EXPECT_EQ(port.Written(), c.lines);
    EXPECT_EQ(Errors(), std::vector<int>{});
  }
}

TEST_F(Italora, Barcodes) {
  struct Case {
    const char* name;
    std::string xml;
    std::vector<int> errors;
    std::string line;      // the ?30 line ("" when nothing is sent)
    const char* nextY;     // where a following text line goes
  };
  const Case cases[] = {
      {"code 128 centred, text below", "<BARCODE>TKT1</BARCODE>", {},
       "?30&50.000&1.000&C&0&128&0.375&10.000&2&TKT1\r", "14.500"},
      {"text above and below", "<BARCODE HRI='sopra_sotto' Height='15'>TKT1</BARCODE>", {},
       "?30&50.000&3.500&C&0&128&0.375&15.000&3&TKT1\r", "22.000"},
      {"no text", "<BARCODE HRI='no'>TKT1</BARCODE>", {}, "?30&50.000&1.000&C&0&128&0.375&10.000&0&TKT1\r", "12.000"},
      {"EAN-13", "<BARCODE Type='EAN13' ModuleWidth='2'>400638133393</BARCODE>", {},
       "?30&50.000&1.000&C&0&E13&0.250&10.000&2&400638133393\r", "14.500"},
      {"EAN-13 of 14 digits", "<BARCODE Type='EAN13'>40063813339312</BARCODE>", {17}, "", "1.000"},
      {"module 11 is 3", "<BARCODE Type='CODE39' ModuleWidth='11'>A</BARCODE>", {},
       "?30&50.000&1.000&C&0&39&0.375&10.000&2&A\r", "14.500"},
      {"QR code", "<BARCODE Type='QR_CODE' Height='20' HRI='no'>https://example.org/t/1</BARCODE>", {},
       "?30&50.000&1.000&C&0&QR&0.375&20.000&0&https://example.org/t/1\r", "22.000"},
      {"empty data", "<BARCODE Type='EAN8'></BARCODE>", {18}, "", "1.000"},
      {"placed on the right, turned", "<MOBILEBARCODE OffsetY='1' Justify='RIGHT' Rotation='90' Width='2'>AB</MOBILEBARCODE>",
       {}, "?30&99.000&4.000&R&90&128&0.250&10.000&2&AB\r", "17.500"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    StartLabel();
    EXPECT_EQ(Field(c.xml), c.errors.empty());
    EXPECT_EQ(Errors(), c.errors);
    ASSERT_TRUE(Field("<SingleField Justify='LEFT'><Field>A</Field></SingleField>"));
    EXPECT_EQ(port.Written(), c.line + Text("1.000", c.nextY, "A"));
  }
}

TEST_F(Italora, ModuleWidthIsInPrinterDots) {
  StartLabel({{L"param_Resolution", L"12"}});
  ASSERT_TRUE(Field("<BARCODE>1</BARCODE>"));
  EXPECT_EQ(port.Written(), "?30&50.000&1.000&C&0&128&0.250&10.000&2&1\r");
}

class ItaloraLogo : public Italora {
 protected:
  void SetUp() override {
    LogoFolder("italora_logos");
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
  Command(L"STOP_PRINTER");
  StartLabel();
  ASSERT_TRUE(Field("<LOGO FileName='logo.bmp'/>"));
  EXPECT_EQ(port.Written().substr(0, 9), "?41&LOGO&");
}

TEST_F(ItaloraLogo, StoredName) {
  StartLabel();
  ASSERT_TRUE(Field("<LOGO FileName='my logo.v2.bmp'/>"));
  // Centred at 49.9375, half a step: rounded up.
  EXPECT_EQ(port.Written(), "?41&MY_LOGO&1&1&80\r?40&50.000&1.000&0&MY_LOGO\r");
}

TEST_F(ItaloraLogo, Errors) {
  struct Case { const char* name; const char* xml; bool ok; std::vector<int> errors; };
  const Case cases[] = {
      {"no name", "<LOGO/>", false, {8}},
      {"not a bmp name", "<LOGO FileName='logo.png'/>", false, {9}},
      {"missing file", "<LOGO FileName='missing.bmp'/>", false, {10}},
      {"not a bitmap: nothing printed", "<LOGO FileName='notabitmap.bmp'/>", true, {}},
      {"24 bits a pixel", "<LOGO FileName='colour.bmp'/>", false, {13}},
  };
  StartLabel();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Field(c.xml), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(port.Written(), "");
  }
}

TEST_F(Italora, StatusAnswers) {
  struct Case {
    const char* name;
    std::vector<std::string> answer;  // bursts sent back to ?90
    int status;
  };
  const Case cases[] = {
      {"ready", {"!90&0&0&0&0&0\r"}, 100},
      {"answer in two bursts", {"!90&0&0", "&0&0&0\r"}, 100},
      {"labels out", {"!90&1&0&0&0&0\r"}, 102},
      {"head open wins", {"!90&1&1&1&1&7\r"}, 105},
      {"ribbon out", {"!90&0&0&1&0&0\r"}, 103},
      {"head too hot", {"!90&0&0&0&0&1\r"}, 110},
      {"printer fault wins over pause", {"!90&0&0&0&1&12\r"}, 108},
      {"paused", {"!90&0&0&0&1&0\r"}, 104},
      {"silence", {}, 101},
      {"four fields", {"!90&0&0&0&0\r"}, 101},
      {"a letter", {"!90&0&0&x&0&0\r"}, 101},
      {"four digits", {"!90&0&0&0&0&1000\r"}, 101},
      {"noise before", {"\x13!90&0&0&0&0&0\r"}, 101},
      {"endless line", {std::string(40, '!')}, 101},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open();
    port.Answer("!90&1&1&1&1&1\r");  // a late answer to an earlier question: thrown away
    port.OnWrite([&c](posprint::ScriptedPort& printer, const std::string& written) {
      if (written == "?90\r")
        for (const std::string& burst : c.answer) printer.Answer(burst);
    });
    EXPECT_EQ(Command(L"CHECK"), c.status == 100);
    EXPECT_EQ(Errors(), c.status == 100 ? std::vector<int>{} : std::vector<int>{c.status});
    EXPECT_EQ(port.Written(), "?90\r");
    port.OnWrite(nullptr);
  }
}

TEST_F(Italora, LabelFrame) {
  Open();
  EXPECT_TRUE(Command(L"STOP_PRINT"));  // no label: nothing to print
  EXPECT_TRUE(Field("<CUT/>"));           // no cutter, and no label started for it
  EXPECT_TRUE(Field("<FOOTER/>"));
  EXPECT_TRUE(Command(L"ITALORA_NEWPRINT"));
  EXPECT_EQ(port.Written(), "");
  // A field without START_PRINT starts its own label.
  ASSERT_TRUE(Field("<SingleField Justify='LEFT'><Field>A</Field></SingleField>"));
  ASSERT_TRUE(Command(L"STOP_PRINT"));
  EXPECT_TRUE(Command(L"STOP_PRINT"));
  EXPECT_EQ(port.Written(), "?02&100.000&70.000\r" + Text("1.000", "1.000", "A") + "?03&1\r");
}

TEST_F(Italora, ErrorsOfTheContract) {
  Configure({});
  EXPECT_FALSE(Command(L"START_PRINT"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_FALSE(Field("<LINE/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_FALSE(Command(L"CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{3, 1}));
  EXPECT_EQ(port.Written(), "");

  StartLabel();
  EXPECT_FALSE(Field("<MOBILEFIELD OffsetY='100'><Field>A</Field></MOBILEFIELD>"));
  EXPECT_EQ(Errors(), (std::vector<int>{16}));
  EXPECT_FALSE(Field("<DOUBLEFIELD><LeftField>A</LeftField></DOUBLEFIELD>"));
  EXPECT_EQ(Errors(), (std::vector<int>{5}));
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_FALSE(Field("<SINGLEFIELD><Field>A</Field></SINGLEFIELD>"));
  EXPECT_EQ(Errors(), (std::vector<int>{6}));
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_FALSE(Field("<LINE/>"));
  EXPECT_EQ(Errors(), (std::vector<int>{22}));
  port.ShortWriteAt(port.writeCount_ + 1);
  EXPECT_FALSE(Field("<BARCODE>1</BARCODE>"));
  EXPECT_EQ(Errors(), (std::vector<int>{7}));
}

}  // namespace
