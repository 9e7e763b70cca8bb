// The STB80: scrambled from the open on, ESC @ before each ticket, cuts, the six-byte
// extended status, barcodes with each HRI word, and the record operations.
#include "drivers/ticket/STB80/nx_stb80.h"

#include "ticket_fixture.h"

namespace ticket_test {
namespace {

class Stb80 : public TicketTest<STB80::Nx_STB80> {
 protected:
  Stb80() { printer.key = 0xCB; }  // the printer was left scrambled by the last session
};

TEST_F(Stb80, OpenGoesScrambledAfterTheCodeTable) {
  Configure({});
  ASSERT_TRUE(Command(L"INIT_PRINTER"));
  // ESC t 0 still plain; then ESC @ and the 80 mm setting under key 0xCB.
  EXPECT_EQ(Line(), "1B 74 00 D0 8B D6 34 C1 F9 CA CA 91");
  EXPECT_EQ(ToHex(Descramble(port.Written().substr(3), 0xCB)), "1B 40 1D FF 0A 32 01 01 5A");
  EXPECT_EQ(driver.Context()->lineWidth, 42);
  EXPECT_EQ(driver.Info().timeout1, 5000);
}

TEST_F(Stb80, StartResetsEveryTimeAndEndFeedsAndCuts) {
  const std::string feeds = "0A 0A 0A 0A 0A 0A 0A 0A";
  struct Case {
    const char* name;
    Keys keys;
    std::string end;
  };
  const Case cases[] = {
      {"defaults", {}, feeds},
      {"feeds off, partial", {{L"param_LinefeedEjection", L"off"}, {L"param_CutType", L"val_Partial"}}, "1B 6D"},
      {"full", {{L"param_LinefeedEjection", L"True"}, {L"param_CutType", L"val_Full"}}, feeds + " 1B 69"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Open(c.keys);
    EXPECT_TRUE(Command(L"START_PRINT"));
    EXPECT_TRUE(Command(L"START_PRINT"));
    EXPECT_EQ(Read(), "1B 40 1B 40");
    Clear();
    EXPECT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(Read(), c.end);
  }
}

TEST_F(Stb80, CutField) {
  Open();
  struct Case {
    const char* xml;
    const char* read;
  };
  const Case cases[] = {{"<CUT Type='CUT_FULL'/>", "1B 69"}, {"<CUT/>", "1B 6D"}, {"<CUT Type='CUT_PARTIAL'/>", "1B 6D"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.xml);
    Clear();
    EXPECT_TRUE(Field(c.xml));
    EXPECT_EQ(Read(), c.read);
  }
}

TEST_F(Stb80, StatusDecoding) {
  struct Case {
    const char* name;
    std::string status, extended;
    bool ok;
    std::vector<int> errors;
    std::string read;
  };
  const std::string six = Hex("00 00 00 00 00 00");
  const Case cases[] = {
      {"ready", "00", six, true, {}, "10 04 02 10 04 14"},
      {"cover", "24", six, false, {105}, "10 04 02"},
      {"paper out on the first byte", "20", six, false, {102}, "10 04 02"},
      {"fourth byte 0x08", "00", Hex("FF FF FF 08 00 00"), false, {104}, "10 04 02 10 04 14"},
      {"other bits are ready", "00", Hex("FF FF FF F7 FF FF"), true, {}, "10 04 02 10 04 14"},
      {"five bytes", "00", Hex("00 00 00 08 00"), false, {101}, "10 04 02 10 04 14"},
      {"no extended answer", "00", "", false, {101}, "10 04 02 10 04 14"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    printer.status = Hex(c.status);
    printer.extended = c.extended;
    Clear();
    EXPECT_EQ(Command(L"CHECK"), c.ok);
    EXPECT_EQ(Errors(), c.errors);
    EXPECT_EQ(Read(), c.read);
  }
}

TEST_F(Stb80, ResyncBringsBackAPrinterThatWasReset) {
  Open();
  printer.key = 0;  // switched off and on: plain again
  EXPECT_TRUE(Command(L"CHECK"));
  EXPECT_EQ(Line(), "DB CF C9 10 04 02 1B F9 CB DB CF C9 DB CF DF");
  EXPECT_EQ(printer.key, 0xCB);
}

TEST_F(Stb80, BarcodeWithEachHriWord) {
  struct Case {
    const char* hri;
    const char* position;
  };
  const Case cases[] = {
      {"", "02"},          {" HRI='no'", "00"},          {" HRI='sopra'", "01"}, {" HRI='sotto'", "02"},
      {" HRI='sotto_sopra'", "03"}, {" HRI='sopra_sotto'", "03"}, {" HRI='SOPRA'", "02"}, {" HRI='si'", "02"},
  };
  Open();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.hri);
    Clear();
    ASSERT_TRUE(Field(std::string("<BARCODE") + c.hri + ">A1</BARCODE>"));
    EXPECT_EQ(Read(), std::string("1B 7B 00 1B 56 00 1B 47 30 1B 21 01 1B C1 1D 66 31 1D 48 ") + c.position +
                          " 1D 68 50 1D 77 03 1B 61 01 1D 6B 49 04 7B 42 41 31 1B 61 00");
  }
  Clear();
  ASSERT_TRUE(Field("<BARCODE Type='CODE39' Height='100' ModuleWidth='2'>X</BARCODE>"));
  EXPECT_EQ(Read(), "1B 7B 00 1B 56 00 1B 47 30 1B 21 01 1B C1 1D 66 31 1D 48 02 1D 68 64 1D 77 02 "
                    "1B 61 01 1D 6B 45 01 58 1B 61 00");
}

TEST_F(Stb80, RecordOperations) {
  Open();
  struct Case {
    const char* name;
    int (STB80::Nx_STB80::*operation)(const char*);
    const char* record;
    int result;
    std::string read;
  };
  const Case cases[] = {
      {"double field", &STB80::Nx_STB80::PrintFormattedText, ".Total\t9", 1,
       "54 6F 74 61 6C " + ToHex(std::string(36, '.')) + " 39 0D 0A"},
      {"double field without a right part", &STB80::Nx_STB80::PrintFormattedText, " A", 1,
       "41 " + ToHex(std::string(41, ' ')) + " 0D 0A"},
      {"barcode", &STB80::Nx_STB80::PrintBarcodeRecord, "10A1", 1,
       "1B 7B 00 1B 56 00 1B 47 30 1B 21 01 1B C1 1D 66 31 1D 48 00 1D 68 50 1D 77 03 1B 61 01 1D 6B 49 04 7B 42 41 31 "
       "1B 61 00"},
      {"empty barcode", &STB80::Nx_STB80::PrintBarcodeRecord, "12", 18, "1B 7B 00 1B 56 00 1B 47 30 1B 21 01 1B C1"},
      {"separator", &STB80::Nx_STB80::PrintSeparatorRecord, "", 1, ToHex(std::string(42, '-')) + " 0D 0A"},
      {"feeds", &STB80::Nx_STB80::FeedLinesRecord, "2", 1, "0D 0A 0D 0A"},
      {"cut", &STB80::Nx_STB80::CutRecord, "CUT_FULL", 1, "1B 69"},
      {"logo name", &STB80::Nx_STB80::PrintLogoByName, "logo.png", 9, "1B 21 00 1B 7B 00"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Clear();
    driver.ClearErrors();
    EXPECT_EQ((driver.*c.operation)(c.record), c.result);
    EXPECT_EQ(Read(), c.read);
  }
  EXPECT_EQ(Errors(), std::vector<int>{9});
  Command(L"STOP_PRINTER");
  EXPECT_EQ(driver.CutRecord("CUT_FULL"), 3);
}

}  // namespace
}  // namespace ticket_test
