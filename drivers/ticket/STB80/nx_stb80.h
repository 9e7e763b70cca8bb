// Nx_STB80: the STB80 80 mm roll ticket printer. Always scrambled once open; barcodes with
// their human-readable line above, below, on both sides or not at all.
#pragma once

#include "drivers/ticket/stb_family/stb_driver.h"

namespace STB80 {

class Nx_STB80 : public StbFamily::StbFamilyDriver {
 public:
  Nx_STB80();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

 protected:
  void ChoosePortMode(const PortContext& port) override;
  PrinterResult SetRowWidth() override;
  PrinterResult Setup() override;
  PrinterResult StartTicket() override;
  PrinterResult EndTicket() override;
  int QueryStatus() override;

 private:
  std::uint8_t crypted = 0;  // no key sets it on this model: the open starts plain
};

}  // namespace STB80
