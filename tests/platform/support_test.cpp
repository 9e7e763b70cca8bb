// Parameters, the line builder, the clock, events, logo paths and the APrinter base.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "platform/aprinter.h"
#include "platform/logo_files.h"

namespace {

TEST(Parameters, LastValueWinsAndAbsentIsEmpty) {
  ParameterCollection parameters;
  parameters.Set(L"param_CutType", L"TRUE");
  parameters.Set(L"param_CutType", L"val_Partial");
  EXPECT_EQ(parameters.Count(), 1);
  EXPECT_EQ(ParameterText(parameters, L"param_CutType"), L"val_Partial");
  EXPECT_EQ(ParameterText(parameters, L"PARAM_CUTTYPE"), L"");  // keys are compared as written
  EXPECT_EQ(parameters.GetParameter(L"param_Other"), nullptr);
  EXPECT_EQ(parameters.GetParameter(L"param_CutType")->GetName(), L"param_CutType");
}

TEST(TextBuilder, AlignsCutsAndClips) {
  const struct {
    const char* name;
    const char* text;
    int position;
    char align;
    int length;
    const char* line;
  } cases[] = {
      {"left", "AB", 1, 'L', 4, ".AB......."},
      {"right", "AB", 1, 'R', 4, "...AB....."},
      {"centre, odd spare goes right", "ABC", 2, 'C', 6, "...ABC...."},
      {"cut to the field", "ABCDEFG", 0, 'L', 3, "ABC......."},
      {"clipped at the end", "WXYZ", 8, 'L', 4, "........WX"},
      {"clipped at the start", "ABCDEFG", -5, 'L', 7, "FG........"},
      {"right beyond the line", "AB", 9, 'R', 5, ".........."},
      {"zero length", "AB", 0, 'L', 0, ".........."},
      {"null text", nullptr, 0, 'L', 4, ".........."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TextBuilder builder;
    builder.Init(10, '.');
    builder.AddItem(c.text, c.position, c.align, c.length);
    EXPECT_STREQ(builder.GetLine(), c.line);
  }
  TextBuilder builder;
  builder.Init(4, ' ');
  builder.AddItem("XY", 0, 'L', 2);
  builder.Reset();
  EXPECT_STREQ(builder.GetLine(), "    ");
}

TEST(Clock, EveryWaitGoesThroughTheInstalledClock) {
  posprint::FakeClock fake;
  {
    posprint::ScopedClock scoped(fake);
    Sleep(5);
    delay(7);
    otool_DELAY(11);
    EXPECT_EQ(posprint::CurrentClock().NowMs(), 23);
  }
  EXPECT_EQ(fake.TotalSleptMs(), 23);
  EXPECT_EQ(fake.Waits(), 3);
  EXPECT_NE(&posprint::CurrentClock(), &fake);
}

TEST(Events, EachCreateGivesAHandleThatClosesOnce) {
  HANDLE first = CreateEventW(nullptr, 0, 0, nullptr);
  HANDLE second = CreateEventW(nullptr, 0, 0, nullptr);
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(CloseHandle(first), 1);
  EXPECT_EQ(CloseHandle(first), 0);
  EXPECT_EQ(CloseHandle(second), 1);
  EXPECT_EQ(CloseHandle(nullptr), 0);
}

class LogoFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/posprint_logosXXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    directory_ = pattern;
    posprint::SetLogoDirectory(directory_);
  }
  void TearDown() override {
    std::remove((directory_ + "/logo.bmp").c_str());
    std::remove(directory_.c_str());
    posprint::SetLogoDirectory(".");
  }
  std::string directory_;
};

TEST_F(LogoFiles, TerminalFolderMapsOntoTheLogoDirectory) {
  const struct {
    const char* terminal;
    std::string local;
  } cases[] = {
      {"\\FlashDisk\\Extern\\Customized\\BWLogos\\logo.bmp", directory_ + "/logo.bmp"},
      {"\\flashdisk\\EXTERN\\customized\\bwlogos\\sub\\Logo.BMP", directory_ + "/sub/Logo.BMP"},
      {"\\Other\\logo.bmp", "/Other/logo.bmp"},
      {"relative/logo.bmp", "relative/logo.bmp"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.terminal);
    EXPECT_EQ(posprint::LocalPath(c.terminal), c.local);
  }
}

TEST_F(LogoFiles, ReadsWholeFilesOnly) {
  std::ofstream(directory_ + "/logo.bmp", std::ios::binary) << std::string("BM\0\x01", 4);
  std::vector<std::uint8_t> bytes;
  const std::string folder = posprint::kTerminalLogoFolder;
  EXPECT_EQ(posprint::ReadTerminalFile(folder + "logo.bmp", bytes), posprint::FileReadResult::kOk);
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{'B', 'M', 0x00, 0x01}));
  EXPECT_EQ(posprint::ReadTerminalFile(folder + "missing.bmp", bytes), posprint::FileReadResult::kCannotOpen);
  EXPECT_EQ(posprint::ReadTerminalFile(folder, bytes), posprint::FileReadResult::kCannotOpen);  // a directory
}

// A driver with nothing of its own, to reach the base operations.
class BarePrinter : public APrinter {
 public:
  BarePrinter() { info.componentName = L"KpBare"; }
  void Configure(Nx_Smartp<IParameterCollection>) override {}
  int CheckStatus() override { return 100; }
  bool EndPrint() override {
    ++endPrints;
    return endResult;
  }
  bool ExecuteCommand(Nx_XMLParser*, const Nx_Stringa&, IXMLDOMNodePtr, const Nx_Stringa&) override { return true; }
  using APrinter::getBarcodeTypeID;
  using APrinter::getExpHeightID;
  using APrinter::getExpWidthID;
  using APrinter::getFontFamilyID;
  using APrinter::getFontTypeID;
  int endPrints = 0;
  bool endResult = false;
};

TEST(APrinterBase, FrameworkSlots) {
  BarePrinter printer;
  Nx_Stringa name;
  printer.GetComponentName(name);
  EXPECT_EQ(name, L"KpBare");
  EXPECT_TRUE(printer.GetVisible());
  printer.set_last_error(3);
  printer.set_last_error(1);
  EXPECT_EQ(printer.RecordedErrors(), (std::vector<int>{3, 1}));
  EXPECT_EQ(printer.LastError(), 1);
  EXPECT_FALSE(printer.checkStopPrint());
  printer.endResult = true;
  EXPECT_TRUE(printer.checkStopPrint());
  EXPECT_EQ(printer.endPrints, 2);
  EXPECT_EQ(printer.PrintFormattedText("x"), 0);
  EXPECT_EQ(printer.CutRecord("x"), 0);
}

TEST(APrinterBase, RecordCharactersGiveKeywordCodes) {
  BarePrinter p;
  const struct {
    char c;
    int font, style, width, height, barcode;
  } cases[] = {
      {'1', 21, 51, 41, 31, 1},  {'3', 23, 53, 43, 33, 3},  {'6', 26, 56, 46, 36, 6},
      {'8', 28, 58, 48, 38, 1},  {'9', 29, 59, 41, 31, 1},  {'0', 21, 51, 41, 31, 1},
      {'L', 30, 51, 41, 31, 1},  {'A', 21, 51, 41, 31, 11}, {'C', 21, 51, 41, 31, 13},
      {'Q', 21, 51, 41, 31, 14}, {'a', 21, 51, 41, 31, 1},  {'\0', 21, 51, 41, 31, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string("character ") + c.c);
    EXPECT_EQ(p.getFontTypeID(c.c), c.font);
    EXPECT_EQ(p.getFontFamilyID(c.c), c.style);
    EXPECT_EQ(p.getExpWidthID(c.c), c.width);
    EXPECT_EQ(p.getExpHeightID(c.c), c.height);
    EXPECT_EQ(p.getBarcodeTypeID(c.c), c.barcode);
  }
}

}  // namespace
