// KpZEBRA: Zebra label printers that speak ZPL II, on a serial port. Each print job
// becomes one label of absolutely positioned fields (texts, filled lines, barcodes,
// recalled logos); the ZPL itself is written by the command layer in zpl.h.
#pragma once

#include "drivers/label/ZEBRA/zpl.h"
#include "frame/driver_base.h"

namespace ZEBRA {

class KpZEBRA : public DriverBase {
 public:
  KpZEBRA();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

  // Record operations: one 8-bit text whose first characters are a fixed header.
  int PrintFormattedText(const char* record) override;    // slot 9
  int PrintLogoByName(const char* record) override;       // slot 10
  int PrintBarcodeRecord(const char* record) override;    // slot 11
  int PrintSeparatorRecord(const char* record) override;  // slot 12
  int FeedLinesRecord(const char* record) override;       // slot 13

  // For tests: the state of the label the open port works on.
  const ZplState* Label() const { return portContext ? &portContext->ConfigAs<ZplState>() : nullptr; }

 protected:
  bool OpenPrinter() override;
  int QueryStatus() override;
  PrinterResult EndTicket() override;
  bool StartPrint() override;
  bool OwnCommand(const Nx_Stringa& command, IXMLDOMNodePtr node) override;

  // The label's own field set: nothing of the receipt renderers applies.
  bool PrintField(int fieldType, IXMLDOMNodePtr node) override;

 private:
  bool LabelLineFeed(IXMLDOMNodePtr node);
  bool LabelLine(IXMLDOMNodePtr node);
  bool LabelBarcode(IXMLDOMNodePtr node);
  bool LabelLogo(IXMLDOMNodePtr node);
  bool LabelDoubleField(IXMLDOMNodePtr node);
  bool LabelSingleField(IXMLDOMNodePtr node);
  // Font from Height and Width (Font is read but the printer has one font): 1 or 0.
  PrinterResult ApplyLabelFont(IXMLDOMNodePtr node);
  // A logo by file name, as the LOGO field prints it: true, or false with the error recorded.
  bool RecallLogo(const Nx_Stringa& fileName);

  // The pending left part of a formatted line (slot 9, selector 'L').
  char leftPart_[200] = {};
};

}  // namespace ZEBRA
