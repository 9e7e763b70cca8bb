// The keyword tables: every word the host sends (command names, job element names,
// attribute values) becomes a small integer code here. The tables are process-wide and
// built on first use; an absent word reads as 0 and each lookup substitutes its default.
#pragma once

#include "platform/nx_string.h"

enum PrintCommand : int {
  kCmdUnknown = 0,
  kCmdStopPrinter = 1,
  kCmdCheck = 2,
  kCmdStartPrint = 3,
  kCmdStopPrint = 4,
  kCmdInitPrinter = 15,
  kCmdNewPrint = 16,
  kCmdOwn = 18,  // a model's own command, in its own table
};

enum FieldType : int {
  kFieldUnknown = 0,
  kFieldCut = 1,
  kFieldLineFeed = 2,
  kFieldLine = 3,
  kFieldBarcode = 4,
  kFieldLogo = 5,
  kFieldDoubleField = 6,
  kFieldSingleField = 7,
  kFieldMobileField = 8,
  kFieldMobileBarcode = 9,
};

enum Rotation : int { kRotation0 = 11, kRotation90 = 12, kRotation180 = 13, kRotation270 = 14 };

enum FontSize : int {
  kFontNormal = 21, kFontSmall = 22, kFontLarge = 23,  // also FONTA, FONTB, FONTC
  kFontD = 24, kFontE = 25, kFontF = 26, kFontG = 27, kFontH = 28, kFontI = 29, kFontL = 30,
};

// Expansion codes: height 31..38 and width 41..48 for the multipliers 1..8.
enum Expansion : int { kHeight1 = 31, kHeight2 = 32, kHeight8 = 38, kWidth1 = 41, kWidth2 = 42, kWidth8 = 48 };

enum FontStyle : int {
  kStyleCursiveUnderline = 50,
  kStyleNormal = 51,
  kStyleDoubleBeat = 52,
  kStyleCursive = 53,
  kStyleUnderline = 54,
  kStyleReverse = 55,
  kStyleCompress = 56,
  kStyleDoubleBeatCursive = 58,
  kStyleDoubleBeatUnderline = 59,
};

enum Alignment : int {
  kAlignLeft = 60,
  kAlignNone = 61,
  kAlignCenter = 62,
  kAlignRight = 63,
  kAlignLeftPrinter = 64,
  kAlignCenterPrinter = 65,
  kAlignRightPrinter = 66,
};

enum BarcodeText : int { kTextNone = 0, kTextAbove = 1, kTextBelow = 2, kTextBoth = 3 };

enum BarcodeType : int {
  kBarcodeCode128 = 1,
  kBarcodeIndicodEan13 = 2,
  kBarcodeEan13 = 3,
  kBarcodeEan8 = 4,
  kBarcodeCode39 = 5,
  kBarcodeItf = 6,
  kBarcodeCode128A = 11,
  kBarcodeCode128B = 12,
  kBarcodeCode128C = 13,
  kBarcodeQr = 14,
};

// One lookup a table. Each takes the word as written.
int LookupCommand(const wchar_t* word);        // upper-cased; absent 0
int LookupFieldType(const wchar_t* word);      // upper-cased; absent 0
int LookupRotation(const wchar_t* word);       // as written; empty or absent 11
int LookupFontSize(const wchar_t* word);       // upper-cased; empty or absent 21
int LookupExpansionHeight(const wchar_t* word);  // as written; empty or absent 31
int LookupExpansionWidth(const wchar_t* word);   // as written; empty or absent 41
int LookupFontStyle(const wchar_t* word);      // upper-cased; empty or absent 51
int LookupAlignment(const wchar_t* word);      // upper-cased; empty or absent 61
int LookupBarcodeText(const wchar_t* word);    // upper-cased; empty or absent 2 (so "NO" too)
int LookupBarcodeType(const wchar_t* word);    // upper-cased; empty or absent 1
int LookupBarcodeType(Nx_Stringa word);

// Builds the command table; every driver constructor calls it.
void InitCommandTable();

// The multiple of step nearest to value; an exact half rounds up.
float RoundToStep(float value, float step);
