// KpPLUS: the PLUS thermal receipt printer, a subset of ESC/POS over a serial port,
// lines ended by a bare CR. The common frame with the printer's own font, cut, logo
// and status commands; the text, line, barcode and logo fields are the frame's.
#pragma once

#include "frame/driver_base.h"

namespace PLUS {

class KpPLUS : public DriverBase {
 public:
  KpPLUS();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

 protected:
  bool OpenPrinter() override;
  int QueryStatus() override;
  PrinterResult EndTicket() override;
  PrinterResult SelectFont(const TextAttributes& attributes) override;
  PrinterResult CutCommand() override;
  PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp) override;
};

}  // namespace PLUS
