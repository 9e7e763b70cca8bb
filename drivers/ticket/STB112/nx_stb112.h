// Nx_STB112: the STB112 thermal ticket printer (roll, ticket or label paper, 80 mm or the
// full width), set up with checksummed setting frames, optionally over the scrambled port
// mode. The family's reference model.
#pragma once

#include "drivers/ticket/stb_family/stb_driver.h"

namespace STB112 {

class Nx_STB112 : public StbFamily::StbFamilyDriver {
 public:
  Nx_STB112();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;
  bool Crypted() const { return crypted != 0; }

 protected:
  void ChoosePortMode(const PortContext& port) override;
  PrinterResult SetRowWidth() override;
  PrinterResult Setup() override;
  PrinterResult StartTicket() override;
  PrinterResult EndTicket() override;
  int QueryStatus() override;
  int HeadColumns() const override;
  int LogoWidthDots() const override;

 private:
  std::uint8_t crypted = 0;  // "param_Cripted": the port runs scrambled from the open
};

}  // namespace STB112
