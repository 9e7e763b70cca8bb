#include "drivers/ticket/STB80/nx_stb80.h"

#include "drivers/ticket/STB80/stb80_commands.h"
#include "drivers/ticket/stb_family/stb_config.h"
#include "frame/factory.h"

namespace STB80 {

namespace {
// Text lines as on the STB112; CUT_FULL cuts full and every other CUT partly; barcodes
// with their text line; the record operations print.
constexpr StbFamily::ModelTraits kTraits = {
    {0, 0},
    {StbFamily::Cut::kFull, StbFamily::Cut::kPartial, StbFamily::Cut::kPartial},
    StbFamily::BarcodeStyle::kWithText,
    true,
};
}  // namespace

Nx_STB80::Nx_STB80() : StbFamilyDriver(*FindIdentity("create_STB80Driver"), kTraits) {}

void Nx_STB80::Configure(Nx_Smartp<IParameterCollection> parameters) {
  auto* config = NewConfig<StbFamily::RollConfig>();
  if (config) StbFamily::ReadRollConfig(*parameters, *config, true);
}

// The open switches the scrambled mode off here and SetRowWidth switches it on again:
// the printer always ends up scrambled, whatever state the port was left in.
void Nx_STB80::ChoosePortMode(const PortContext& port) {
  if (crypted) StbFamily::stb_CryptOn(port);
  else StbFamily::stb_CryptOff(port);
}

PrinterResult Nx_STB80::SetRowWidth() { return stb80_SetRowWidth(Port()); }
PrinterResult Nx_STB80::Setup() { return stb80_Setup(Port()); }
PrinterResult Nx_STB80::StartTicket() { return stb80_StartTicket(Port()); }
PrinterResult Nx_STB80::EndTicket() { return stb80_EndTicket(Port()); }
int Nx_STB80::QueryStatus() { return stb80_Status(Port()); }

}  // namespace STB80

POSPRINT_FACTORY(create_STB80Driver, STB80::Nx_STB80)
