// Nx_Q1: the Q-series ticket printer. Identifies itself at the open; scrambled unless it
// refuses; full cut only. Reports the model name "QSeries" under the component "KpQ1".
#pragma once

#include "drivers/ticket/stb_family/stb_driver.h"

namespace Q1 {

class Nx_Q1 : public StbFamily::StbFamilyDriver {
 public:
  Nx_Q1();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

 protected:
  void StartLink() override;
  PrinterResult Setup() override;
  PrinterResult StartTicket() override;
  PrinterResult EndTicket() override;
  int QueryStatus() override;
};

}  // namespace Q1
