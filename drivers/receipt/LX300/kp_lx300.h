// KpLX300: the LX300 9-pin dot-matrix document printer, ESC/P over a serial port.
// The common frame with the printer's own mode, page, picture and bar code commands;
// it cannot turn text, has no cutter and answers no status question.
#pragma once

#include "frame/driver_base.h"

namespace LX300 {

class KpLX300 : public DriverBase {
 public:
  KpLX300();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

 protected:
  bool OpenPrinter() override;
  int QueryStatus() override;
  PrinterResult EndTicket() override;
  PrinterResult SelectFont(const TextAttributes& attributes) override;
  PrinterResult SelectRotation(int rotation) override;
  PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp) override;
  bool FieldBarcode(IXMLDOMNodePtr node) override;
  bool FieldMobileBarcode(IXMLDOMNodePtr node) override;

 private:
  bool PrintBarcodeField(IXMLDOMNodePtr node, const BarcodeAttributes& barcode);
};

}  // namespace LX300
