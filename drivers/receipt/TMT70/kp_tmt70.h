// KpTMT70: the TMT70 thermal receipt printer, ESC/POS over a serial port. The reference
// driver: the common frame without additions.
#pragma once

#include "frame/driver_base.h"

namespace TMT70 {

class KpTMT70 : public DriverBase {
 public:
  KpTMT70();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

 protected:
  bool OpenPrinter() override;
  int QueryStatus() override;
  PrinterResult EndTicket() override;
  // STOP_PRINT feeds and cuts through EndPrint directly on this model.
  bool StopPrint() override { return EndPrint(); }
  PrinterResult SelectFont(const TextAttributes& attributes) override;
  PrinterResult CutCommand() override;
  PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp) override;
};

}  // namespace TMT70
