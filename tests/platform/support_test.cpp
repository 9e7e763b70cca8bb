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

// A 10-character line of '.': the text placed at a position, aligned in a field, clipped.
TEST(TextBuilder, AlignsCutsAndClips) {
  const struct { const char* text; int position; char align; int length; const char* line; } cases[] = {
      {"AB", 1, 'L', 4, ".AB......."}, {"AB", 1, 'R', 4, "...AB....."},
      {"ABC", 2, 'C', 6, "...ABC...."},  // the odd spare place goes right
      {"ABCDEFG", 0, 'L', 3, "ABC......."}, {"WXYZ", 8, 'L', 4, "........WX"}, {"ABCDEFG", -5, 'L', 7, "FG........"},
      {"AB", 9, 'R', 5, ".........."}, {"AB", 0, 'L', 0, ".........."}, {nullptr, 0, 'L', 4, ".........."},
  };
  for (const auto& c : cases) {
    TextBuilder builder;
    builder.Init(10, '.');
    builder.AddItem(c.text, c.position, c.align, c.length);
    EXPECT_STREQ(builder.GetLine(), c.line) << &c - cases;
  }
  TextBuilder builder;
  builder.Init(4, ' ');
  builder.AddItem("XY", 0, 'L', 2);
  builder.Reset();
  EXPECT_STREQ(builder.GetLine(), "    ");
}

TEST(Clock, EveryWaitGoesThroughTheInstalledClockAndEventsCloseOnce) {
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
  HANDLE first = CreateEventW(nullptr, 0, 0, nullptr), second = CreateEventW(nullptr, 0, 0, nullptr);
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(CloseHandle(first) + CloseHandle(second), 2);
  EXPECT_EQ(CloseHandle(first) + CloseHandle(nullptr), 0);
}

// The terminal's logo folder, in any case, is the logo directory; whole files only.
TEST(LogoFiles, TerminalFolderMapsOntoTheLogoDirectory) {
  char pattern[] = "/tmp/posprint_logosXXXXXX";
  ASSERT_NE(mkdtemp(pattern), nullptr);
  const std::string directory = pattern, folder = posprint::kTerminalLogoFolder;
  posprint::SetLogoDirectory(directory);
  EXPECT_EQ(posprint::LocalPath(folder + "logo.bmp"), directory + "/logo.bmp");
  EXPECT_EQ(posprint::LocalPath("\\flashdisk\\EXTERN\\customized\\bwlogos\\sub\\Logo.BMP"),
            directory + "/sub/Logo.BMP");
  EXPECT_EQ(posprint::LocalPath("\\Other\\logo.bmp"), "/Other/logo.bmp");
  EXPECT_EQ(posprint::LocalPath("relative/logo.bmp"), "relative/logo.bmp");
  std::ofstream(directory + "/logo.bmp", std::ios::binary) << std::string("BM\0\x01", 4);
  std::vector<std::uint8_t> bytes;
  EXPECT_EQ(posprint::ReadTerminalFile(folder + "logo.bmp", bytes), posprint::FileReadResult::kOk);
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{'B', 'M', 0x00, 0x01}));
  EXPECT_EQ(posprint::ReadTerminalFile(folder + "missing.bmp", bytes), posprint::FileReadResult::kCannotOpen);
  EXPECT_EQ(posprint::ReadTerminalFile(folder, bytes), posprint::FileReadResult::kCannotOpen);  // a directory
  std::remove((directory + "/logo.bmp").c_str());
  std::remove(directory.c_str());
  posprint::SetLogoDirectory(".");
}

// A driver with nothing of its own, to reach the base operations.
class BarePrinter : public APrinter {
 public:
  void Configure(Nx_Smartp<IParameterCollection>) override {}
  int CheckStatus() override { return 100; }
  bool EndPrint() override { return ++endPrints > 1; }
  bool ExecuteCommand(Nx_XMLParser*, const Nx_Stringa&, IXMLDOMNodePtr, const Nx_Stringa&) override { return true; }
  using APrinter::getBarcodeTypeID, APrinter::getExpHeightID, APrinter::getExpWidthID, APrinter::getFontFamilyID,
      APrinter::getFontTypeID;
  int endPrints = 0;
};

TEST(APrinterBase, FrameworkSlotsAndRecordCharacters) {
  BarePrinter p;
  p.set_last_error(3);
  p.set_last_error(1);
  EXPECT_EQ(p.RecordedErrors(), (std::vector<int>{3, 1}));
  EXPECT_EQ(p.LastError(), 1);
  EXPECT_FALSE(p.checkStopPrint());  // the result of EndPrint
  EXPECT_TRUE(p.checkStopPrint());
  EXPECT_EQ(p.PrintFormattedText("x") + p.CutRecord("x"), 0);
  // A record's character: font type, family, width and height expansion, barcode type.
  const struct { char c; int font, style, width, height, barcode; } cases[] = {
      {'1', 21, 51, 41, 31, 1},  {'3', 23, 53, 43, 33, 3},  {'6', 26, 56, 46, 36, 6},  {'8', 28, 58, 48, 38, 1},
      {'9', 29, 59, 41, 31, 1},  {'0', 21, 51, 41, 31, 1},  {'L', 30, 51, 41, 31, 1},  {'A', 21, 51, 41, 31, 11},
      {'C', 21, 51, 41, 31, 13}, {'Q', 21, 51, 41, 31, 14}, {'a', 21, 51, 41, 31, 1},  {'\0', 21, 51, 41, 31, 1},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(std::vector<int>({p.getFontTypeID(c.c), p.getFontFamilyID(c.c), p.getExpWidthID(c.c),
                                p.getExpHeightID(c.c), p.getBarcodeTypeID(c.c)}),
              std::vector<int>({c.font, c.style, c.width, c.height, c.barcode}))
        << "character " << c.c;
  }
}

}  // namespace
