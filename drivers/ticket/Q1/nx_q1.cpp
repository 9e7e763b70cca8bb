#include "drivers/ticket/Q1/nx_q1.h"

#include "drivers/ticket/Q1/q1_commands.h"
#include "drivers/ticket/stb_family/stb_config.h"
#include "frame/factory.h"

namespace Q1 {

namespace {
// Text lines as on the STB112; every CUT is a full cut; barcodes with their text line;
// the record operations print.
constexpr StbFamily::ModelTraits kTraits = {
    {0, 0},
    {StbFamily::Cut::kFull, StbFamily::Cut::kFull, StbFamily::Cut::kFull},
    StbFamily::BarcodeStyle::kWithText,
    true,
};
}  // namespace

Nx_Q1::Nx_Q1() : StbFamilyDriver(*FindIdentity("create_Q1Driver"), kTraits) {}

// There is no partial cut: "val_Partial" is a full cut.
void Nx_Q1::Configure(Nx_Smartp<IParameterCollection> parameters) {
  auto* config = NewConfig<StbFamily::RollConfig>();
  if (config) StbFamily::ReadRollConfig(*parameters, *config, false);
}

// No configured port mode: the printer's identification decides it.
void Nx_Q1::StartLink() {
  q1_Identify(Port());
  Setup();
  StbFamily::stb_SelectCodeTable(Port(), codePage);
}

PrinterResult Nx_Q1::Setup() { return q1_Setup(Port()); }
PrinterResult Nx_Q1::StartTicket() { return q1_StartTicket(Port()); }
PrinterResult Nx_Q1::EndTicket() { return q1_EndTicket(Port()); }
int Nx_Q1::QueryStatus() { return q1_Status(Port()); }

}  // namespace Q1

POSPRINT_FACTORY(create_Q1Driver, Q1::Nx_Q1)
