// Nx_STB60: the STB60 ticket printer, a narrower member of the STB family (32 characters
// on roll, 31 on labels) without a cutter or the scrambled port mode.
#pragma once

#include "drivers/ticket/stb_family/stb_driver.h"

namespace STB60 {

class Nx_STB60 : public StbFamily::StbFamilyDriver {
 public:
  Nx_STB60();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

 protected:
  PrinterResult SetRowWidth() override;
  PrinterResult Setup() override;
  PrinterResult StartTicket() override;
  PrinterResult EndTicket() override;
  int QueryStatus() override;
  int HeadColumns() const override { return 32; }
  PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp) override;
};

}  // namespace STB60
