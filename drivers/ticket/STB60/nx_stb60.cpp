#include "drivers/ticket/STB60/nx_stb60.h"

#include "drivers/ticket/STB60/stb60_commands.h"
#include "drivers/ticket/stb_family/stb_config.h"
#include "frame/factory.h"

namespace STB60 {

namespace {
// Mode 1: single fields and row lines start at column 1 where the paper leaves room for
// it (labels, 31 of the head's 32 columns). No cut at all.
constexpr StbFamily::ModelTraits kTraits = {
    {1, 1},
    {StbFamily::Cut::kNone, StbFamily::Cut::kNone, StbFamily::Cut::kNone},
    StbFamily::BarcodeStyle::kPlain,
    false,
};
}  // namespace

Nx_STB60::Nx_STB60() : StbFamilyDriver(*FindIdentity("create_STB60Driver"), kTraits) {}

void Nx_STB60::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (!config) return;
  const IParameterCollection& keys = *parameters;
  Nx_Stringa value;
  // There is no ticket paper on this model: every word but "val_Label" is roll.
  if (StbFamily::ReadKey(keys, L"param_TypePaper", value)) config->paperType = value == L"val_Label" ? kPaperLabel : kPaperRoll;
  if (StbFamily::ReadKey(keys, L"param_Density", value)) {
    config->density = value == L"val_VeryLight" ? 0 : value == L"val_Light" ? 1 : value == L"val_Dark" ? 3
                    : value == L"val_VeryDark"  ? 4 : 2;
  }
  // The feeds are on unless switched off.
  if (StbFamily::ReadKey(keys, L"param_LinefeedEjection", value)) config->ejectFeeds = value.Upper() == L"FALSE" ? 0 : 10;
  if (StbFamily::ReadKey(keys, L"param_Sensor", value)) {
    config->sensor = value == L"val_No" ? kSensorNone : value == L"val_Software" ? kSensorSoftware : kSensorPrinter;
  }
}

PrinterResult Nx_STB60::SetRowWidth() { return stb60_SetRowWidth(Port()); }
PrinterResult Nx_STB60::Setup() { return stb60_Setup(Port()); }
PrinterResult Nx_STB60::StartTicket() { return stb60_StartTicket(Port()); }
PrinterResult Nx_STB60::EndTicket() { return stb60_EndTicket(Port()); }
int Nx_STB60::QueryStatus() { return stb60_Status(Port()); }
PrinterResult Nx_STB60::PrintLogoImage(const std::vector<std::uint8_t>& bmp) { return stb60_PrintLogo(Port(), bmp); }

}  // namespace STB60

POSPRINT_FACTORY(create_STB60Driver, STB60::Nx_STB60)
