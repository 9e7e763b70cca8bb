// KpITALORA: the ITALORA thermal label printer, driven by text command lines over a
// serial port. A print job becomes one label: START_PRINT starts it, every field is
// placed below the previous one, STOP_PRINT prints it.
#pragma once

#include <set>
#include <string>

#include "drivers/label/ITALORA/italora_layout.h"
#include "frame/driver_base.h"

namespace ITALORA {

class KpITALORA : public DriverBase {
 public:
  KpITALORA();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

 protected:
  bool OpenPrinter() override;
  int QueryStatus() override;
  PrinterResult EndTicket() override;
  bool StartPrint() override;

  bool PrintField(int fieldType, IXMLDOMNodePtr node) override;
  bool FieldLineFeed(IXMLDOMNodePtr node) override;
  bool FieldBarcode(IXMLDOMNodePtr node) override;
  bool FieldMobileBarcode(IXMLDOMNodePtr node) override;
  bool FieldLogo(IXMLDOMNodePtr node) override;

  // The text fields of the frame lay their lines out through these.
  bool ApplyTextAttributes(IXMLDOMNodePtr node, bool withOffsets) override;
  PrinterResult PrintTwoColumns(int leftMargin, int rightMargin, std::string_view left, std::string_view right,
                                char fill) override;
  PrinterResult PrintTextLine(std::string_view text) override;
  PrinterResult PrintRule(std::string_view pattern) override;
  PrinterResult PrintAlignedText(int alignment, std::string_view text) override;

 private:
  PrinterResult StartLabel();
  PrinterResult TextAt(float x, std::string_view text);
  bool PrintBarcodeField(IXMLDOMNodePtr node, const BarcodeAttributes& barcode, BarcodeCommand placement);
  const Config& Settings() { return Port().ConfigAs<Config>(); }

  LabelLayout layout_;
  bool labelOpen_ = false;
  int indent_ = 0;                    // MOBILEFIELD's OffsetX, in characters
  std::set<std::string> storedLogos_;  // pictures sent to the printer since the port opened
};

}  // namespace ITALORA
