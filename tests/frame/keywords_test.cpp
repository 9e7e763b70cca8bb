#include "frame/keywords.h"

#include <gtest/gtest.h>

namespace {

struct Case { const char* name; int (*lookup)(const wchar_t*); const wchar_t* word; int code; };

TEST(KeywordTables, CodesDefaultsAndQuirks) {
  const Case cases[] = {
      {"NEWPRINT lower case", LookupCommand, L"newprint", kCmdNewPrint},
      {"unknown command", LookupCommand, L"PRINT", kCmdUnknown},
      {"INIT_PRINTER", LookupCommand, L"INIT_PRINTER", 15},
      {"STOP_PRINTER", LookupCommand, L"STOP_PRINTER", 1},
      {"own command is not in the table", LookupCommand, L"ZEBRA_NEWPRINT", 0},
      {"DOUBLEFIELDS", LookupFieldType, L"DoubleFields", kFieldDoubleField},
      {"FOOTER is no field", LookupFieldType, L"FOOTER", 0},
      {"empty rotation", LookupRotation, L"", kRotation0},
      {"rotation 45", LookupRotation, L"45", kRotation0},
      {"rotation 180", LookupRotation, L"180", kRotation180},
      {"unknown font", LookupFontSize, L"FONTJ", kFontNormal},
      {"FONTL follows FONTI", LookupFontSize, L"FONTL", 30},
      {"FONTI", LookupFontSize, L"fonti", 29},
      {"FONTB is small", LookupFontSize, L"FONTB", kFontSmall},
      {"LARGE", LookupFontSize, L"large", kFontLarge},
      {"height 9", LookupExpansionHeight, L"9", 31},
      {"height 8", LookupExpansionHeight, L"8", 38},
      {"width 2", LookupExpansionWidth, L"2", 42},
      {"CURSIVE_UNDERLINE lower case is 50", LookupFontStyle, L"cursive_underline", 50},
      {"DOUBLEBEAT_UNDERLINE", LookupFontStyle, L"DOUBLEBEAT_UNDERLINE", 59},
      {"unknown style", LookupFontStyle, L"BOLD", kStyleNormal},
      {"LEFT and LEFT_ALIGN share 60", LookupAlignment, L"left_align", kAlignLeft},
      {"CENTER_ALIGN is no word", LookupAlignment, L"CENTER_ALIGN", kAlignNone},
      {"RIGHT_PRINTER", LookupAlignment, L"RIGHT_PRINTER", 66},
      {"NO reads as absent: below", LookupBarcodeText, L"NO", kTextBelow},
      {"SOPRA", LookupBarcodeText, L"SOPRA", kTextAbove},
      {"itf2of5 lower case", LookupBarcodeType, L"itf2of5", kBarcodeItf},
      {"QR is not a word", LookupBarcodeType, L"QR", kBarcodeCode128},
      {"QR_CODE", LookupBarcodeType, L"QR_CODE", kBarcodeQr},
      {"CODE128C", LookupBarcodeType, L"code128c", 13},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.lookup(c.word), c.code);
  }
}

TEST(KeywordTables, FrameworkStringsAndARebuiltCommandTable) {
  EXPECT_EQ(LookupBarcodeType(Nx_Stringa(L"Ean8")), kBarcodeEan8);
  InitCommandTable();
  InitCommandTable();
  EXPECT_EQ(LookupCommand(L"check"), kCmdCheck);
}

TEST(RoundToStep, NearestMultipleWithHalvesUp) {
  struct Row { float value, step, expected; };
  const Row rows[] = {{7.0f, 2.0f, 8.0f}, {6.9f, 2.0f, 6.0f}, {5.0f, 2.0f, 6.0f}, {0.0f, 0.5f, 0.0f},
                      {1.24f, 0.125f, 1.25f}, {-3.0f, 2.0f, -2.0f}};
  for (const Row& r : rows) EXPECT_FLOAT_EQ(RoundToStep(r.value, r.step), r.expected) << r.value << " step " << r.step;
}

}  // namespace
