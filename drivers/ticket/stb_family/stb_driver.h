// StbFamilyDriver: what the STB ticket printers and the Q1 share on top of DriverBase:
// the open sequence, START_PRINT, the CUT and BARCODE fields, the raster logo, code-page
// switching before every text, the position of text lines on the paper, and the record
// operations (slots 9 to 14). Each model states its differences as ModelTraits and by
// the few operations it implements.
#pragma once

#include <string>
#include <string_view>

#include "drivers/ticket/stb_family/stb_commands.h"
#include "frame/driver_base.h"

namespace StbFamily {

// Where text lines start. A font code of 1 to 20 is the column at which the paper's
// printable area begins; 0 and the keyword fonts (21 and above, a field's own Font) start
// at the first column. Mode 0 takes the column as given; mode 1 keeps the shifted line
// within the printer's full row (the shift only covers what the paper is narrower by).
struct LineFonts {
  int mode;
  int singleFieldFont;  // single fields and row lines; double fields use the field's Font
};
// Every text line on ticket paper starts at this column: the 30-column ticket area.
constexpr int kTicketFont = 12;

// The cut of the CUT element, by its Type word (compared as written).
struct CutRule {
  Cut full;       // "CUT_FULL"
  Cut partial;    // "CUT_PARTIAL"
  Cut otherwise;  // any other word, or none
};

enum class BarcodeStyle {
  kPlain,     // ESC ! 0, the kind from Type; size and text position as the printer has them
  kWithText,  // the normal font, then Type, Height (dots), ModuleWidth and HRI
};

struct ModelTraits {
  LineFonts lineFonts;
  CutRule cutRule;
  BarcodeStyle barcode;
  bool recordOperations;  // slots 9 to 14 print; otherwise they return 0
};

class StbFamilyDriver : public DriverBase {
 public:
  // Slots 9 to 14 (docs/ticket-printers.md has the record layouts).
  int PrintFormattedText(const char* record) override;
  int PrintLogoByName(const char* record) override;
  int PrintBarcodeRecord(const char* record) override;
  int PrintSeparatorRecord(const char* record) override;
  int FeedLinesRecord(const char* record) override;
  int CutRecord(const char* record) override;

 protected:
  StbFamilyDriver(const ModelIdentity& identity, const ModelTraits& traits);

  // --- open: port, port mode, time-outs, context, then the link ---
  bool OpenPrinter() override;
  // Before the time-outs are handed over and the context exists: the port alone.
  virtual void ChoosePortMode(const PortContext& port) { (void)port; }
  // After the context exists: code table PC437, SetRowWidth, Setup.
  virtual void StartLink();
  // 42 characters a row, lines ending in CR LF.
  virtual PrinterResult SetRowWidth();
  virtual PrinterResult Setup() = 0;
  virtual PrinterResult StartTicket() = 0;
  // Characters in the row of the printer's full width, and the logo line in dots.
  virtual int HeadColumns() const { return 42; }
  virtual int LogoWidthDots() const { return 600; }

  bool StartPrint() override;

  // --- fields ---
  bool FieldCut(IXMLDOMNodePtr node) override;
  bool FieldBarcode(IXMLDOMNodePtr node) override;
  PrinterResult SelectFont(const TextAttributes& attributes) override;
  PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp) override;
  std::string PrinterText(const Nx_Stringa& text) override;
  PrinterResult PrintTwoColumns(int leftMargin, int rightMargin, std::string_view left, std::string_view right,
                                char fill) override;
  PrinterResult PrintTextLine(std::string_view text) override;
  PrinterResult PrintRule(std::string_view pattern) override;
  // SINGLEFIELD: an empty Justify is left, and the side alignments of both spellings
  // (LEFT, RIGHT, LEFT_PRINTER, RIGHT_PRINTER) print as two columns.
  int SingleFieldDefaultAlignment() const override { return kAlignLeft; }
  bool IsSideAlignment(int alignment) const override;

  // The column a line of that font code starts at (see LineFonts).
  int LineStart(int fontCode) const;
  const ModelTraits& Traits() const { return traits_; }

 private:
  PrinterResult CutByType(const Nx_Stringa& type);
  PrinterResult PrintBarcodeData(const Nx_Stringa& data, const BarcodeAttributes& barcode);
  int DoubleFieldFont() const;
  int SingleFieldFont() const;
  // The result of a record operation: error numbers are also recorded for the host.
  int RecordResult(PrinterResult result);

  ModelTraits traits_;
  int fieldFont_ = kFontNormal;  // the Font of the field being printed
};

}  // namespace StbFamily
