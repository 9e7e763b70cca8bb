// KpTM300: the TM300 roll receipt printer on a serial port. The VKP80II's shape with a
// one-byte status, no barcodes, no cut on a CUT field, bit-image logos, and a ticket
// that ends only when the printer answers as ready again.
#pragma once

#include "drivers/receipt/family/family_driver.h"

namespace TM300 {

class KpTM300 : public ReceiptFamily::ReceiptFamilyDriver {
 public:
  KpTM300();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;
  // STOP_PRINT: feed and cut, then wait for the printer to answer as ready.
  bool checkStopPrint() override;

 protected:
  int QueryStatus() override;
  PrinterResult EndTicket() override;

  PrinterResult SelectCodePage(int codePage) override;
  PrinterResult SelectTerminator() override;
  PrinterResult Initialise() override;
  PrinterResult SelectFont(const TextAttributes& attributes) override;
  PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp) override;

  // The printer has no barcode command and its cut belongs to the end of the ticket:
  // these fields succeed and print nothing.
  bool FieldCut(IXMLDOMNodePtr) override { return true; }
  bool FieldBarcode(IXMLDOMNodePtr) override { return true; }
  bool FieldMobileBarcode(IXMLDOMNodePtr) override { return true; }
};

}  // namespace TM300
