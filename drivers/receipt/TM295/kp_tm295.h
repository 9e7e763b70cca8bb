// KpTM295: the TM295 slip printer on a serial port. The VKP80II's shape with a slip:
// the end of a ticket ejects or releases the slip, and only when the printer reports
// ready. Barcodes (ITF only) are printed as bit images; "TM295_NEWPRINT" with an
// XONXOFF element switches the port to XON/XOFF flow control.
#pragma once

#include "drivers/receipt/family/family_driver.h"

namespace TM295 {

class KpTM295 : public ReceiptFamily::ReceiptFamilyDriver {
 public:
  KpTM295();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;
  // STOP_PRINT: the slip goes out only when the printer reports ready.
  bool checkStopPrint() override;

 protected:
  int QueryStatus() override;
  PrinterResult EndTicket() override;
  bool OwnCommand(const Nx_Stringa& command, IXMLDOMNodePtr node) override;

  PrinterResult SelectCodePage(int codePage) override;
  PrinterResult SelectTerminator() override;
  PrinterResult Initialise() override;
  PrinterResult SelectFont(const TextAttributes& attributes) override;
  PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp) override;

  // A slip printer has no cutter: CUT succeeds and prints nothing.
  bool FieldCut(IXMLDOMNodePtr) override { return true; }
  bool FieldLineFeed(IXMLDOMNodePtr node) override;
  bool FieldBarcode(IXMLDOMNodePtr node) override;
  bool FieldMobileBarcode(IXMLDOMNodePtr node) override;
};

}  // namespace TM295
