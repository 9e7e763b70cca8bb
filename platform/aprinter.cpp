// APrinter: the framework's operations shared by every driver.
#include "platform/aprinter.h"

// The driver owns and deletes its port context (it knows the type); nothing else here
// holds a resource of its own.
APrinter::~APrinter() = default;

void APrinter::GetComponentName(Nx_Stringa& name) { name = info.componentName; }

bool APrinter::GetVisible() { return true; }

void APrinter::set_last_error(int code) { errors_.push_back(code); }

bool APrinter::checkStopPrint() { return EndPrint(); }

int APrinter::PrintFormattedText(const char*) { return 0; }
int APrinter::PrintLogoByName(const char*) { return 0; }
int APrinter::PrintBarcodeRecord(const char*) { return 0; }
int APrinter::PrintSeparatorRecord(const char*) { return 0; }
int APrinter::FeedLinesRecord(const char*) { return 0; }
int APrinter::CutRecord(const char*) { return 0; }

// Record characters onto keyword-table codes (see docs/records.md). A character
// outside a lookup's range gives the table's default code.
namespace {
bool InRange(char c, char first, char last) { return c >= first && c <= last; }
}  // namespace

int APrinter::getFontTypeID(char c) {
  if (InRange(c, '1', '9')) return 20 + (c - '0');  // FONTA .. FONTI: 21 .. 29
  if (c == 'L') return 30;                           // FONTL
  return 21;
}

int APrinter::getFontFamilyID(char c) {
  if (InRange(c, '1', '9')) return 50 + (c - '0');  // '1' NORMAL (51) .. '9' DOUBLEBEAT_UNDERLINE (59)
  return 51;
}

int APrinter::getExpWidthID(char c) {
  if (InRange(c, '1', '8')) return 40 + (c - '0');
  return 41;
}

int APrinter::getExpHeightID(char c) {
  if (InRange(c, '1', '8')) return 30 + (c - '0');
  return 31;
}

int APrinter::getBarcodeTypeID(char c) {
  if (InRange(c, '1', '6')) return c - '0';  // CODE128 .. ITF2OF5
  switch (c) {
    case 'A': return 11;  // CODE128A
    case 'B': return 12;  // CODE128B
    case 'C': return 13;  // CODE128C
    case 'Q': return 14;  // QR_CODE
    default: return 1;
  }
}
