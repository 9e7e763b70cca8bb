// ReceiptFamilyDriver: the shape that the VKP80II, TM300 and TM295 drivers share on top
// of DriverBase: the open sequence, the code page check before every text, the field
// format (offsets, rotation, font) and the logo field. Each model supplies its command
// layer through the hooks below and overrides only the fields where it differs.
#pragma once

#include <string>

#include "frame/driver_base.h"

namespace ReceiptFamily {

// The numbers in which the models' shared shape differs.
struct FamilyTraits {
  int openLineWidth;      // characters per line stored when the port is opened
  bool rotationWithTurn;  // the field format also sends ESC V (the quarter turn)
};

class ReceiptFamilyDriver : public DriverBase {
 public:
  ReceiptFamilyDriver(const ModelIdentity& identity, const FamilyTraits& traits);

  // The code page the printer was last switched to (for tests and diagnostics).
  int PrinterCodePage() const { return codePage; }

 protected:
  // --- the model's command layer ---
  virtual PrinterResult SelectCodePage(int codePage) = 0;
  virtual PrinterResult SelectTerminator() = 0;
  virtual PrinterResult Initialise() = 0;
  // Before a logo (and a barcode): plain print mode. The shared ESC ! 0 by default.
  virtual PrinterResult ResetFont();

  // Open: port, time-outs, context, code page 8, then the model's code page, terminator
  // and initialisation. Their answers are not looked at: INIT_PRINTER succeeds once the
  // port is open, so a printer switched on later is still served.
  bool OpenPrinter() final;

  // Every text is first checked for its code page: when it needs the other of PC437 and
  // PC858 and the printer accepts the switch, the printer stays on the new table.
  std::string PrinterText(const Nx_Stringa& text) override;
  void CheckCodePage(const Nx_Stringa& text);

  // The field format: OffsetY (line feeds), Rotation, OffsetX (spaces), then the font.
  bool ApplyTextAttributes(IXMLDOMNodePtr node, bool withOffsets) override;
  // LOGO: font reset, rotation, then the model's logo command with the file.
  bool FieldLogo(IXMLDOMNodePtr node) override;
  // Loads a logo and prints it with PrintLogoImage: 1, or the error number (13 for 0).
  PrinterResult PrintLogoFile(const Nx_Stringa& fileName);

  // Text from an 8-bit record (slots 9 to 14), which the terminal writes in its ANSI
  // code page.
  static Nx_Stringa RecordText(const char* text);

  const FamilyTraits traits_;
};

}  // namespace ReceiptFamily
