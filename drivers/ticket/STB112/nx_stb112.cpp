#include "drivers/ticket/STB112/nx_stb112.h"

#include "drivers/ticket/STB112/stb112_commands.h"
#include "drivers/ticket/stb_family/stb_config.h"
#include "frame/factory.h"

namespace STB112 {

namespace {
// Text lines as given (mode 0); single fields and row lines from the first column.
constexpr StbFamily::ModelTraits kTraits = {
    {0, 0},
    {StbFamily::Cut::kFull, StbFamily::Cut::kPartial, StbFamily::Cut::kRetract},
    StbFamily::BarcodeStyle::kPlain,
    false,
};
}  // namespace

Nx_STB112::Nx_STB112() : StbFamilyDriver(*FindIdentity("create_STB112Driver"), kTraits) {}

// Each key gets its default first; a key the host does not send keeps it.
void Nx_STB112::Configure(Nx_Smartp<IParameterCollection> parameters) {
  Config* config = NewConfig<Config>();
  if (!config) return;
  crypted = 0;
  const IParameterCollection& keys = *parameters;
  Nx_Stringa value;
  if (StbFamily::ReadKey(keys, L"param_Cripted", value)) crypted = value.Upper() == L"TRUE";
  if (StbFamily::ReadKey(keys, L"param_LinefeedEjection", value)) config->ejectFeeds = value.Upper() == L"TRUE" ? 8 : 0;
  if (StbFamily::ReadKey(keys, L"param_CutType", value)) config->cutType = StbFamily::CutTypeWord(value, true);
  if (StbFamily::ReadKey(keys, L"param_TypePaper", value)) {
    if (value == L"val_Roll") config->paperType = kPaperRoll;
    if (value == L"val_Ticket") config->paperType = kPaperTicket;
    if (value == L"val_Label") config->paperType = kPaperLabel;
  }
  if (StbFamily::ReadKey(keys, L"param_LinefeedExit", value)) config->exitFeeds = AtoiText(value);
  // "80 mm" exactly, with the blank: "80MM" and "80 MM" are the full width.
  if (StbFamily::ReadKey(keys, L"param_WidthRow", value)) config->rowWidthCode = value == L"80 mm" ? 32 : 42;
  if (StbFamily::ReadKey(keys, L"param_Density", value)) config->density = AtoiText(value);
}

// The port mode is chosen once, at the open; Resync may switch it on later.
void Nx_STB112::ChoosePortMode(const PortContext& port) {
  if (crypted) StbFamily::stb_CryptOn(port);
  else StbFamily::stb_CryptOff(port);
}

PrinterResult Nx_STB112::SetRowWidth() { return stb112_SetRowWidth(Port()); }
PrinterResult Nx_STB112::Setup() { return stb112_Setup(Port()); }
PrinterResult Nx_STB112::StartTicket() { return stb112_StartTicket(Port()); }
PrinterResult Nx_STB112::EndTicket() { return stb112_EndTicket(Port()); }
int Nx_STB112::QueryStatus() { return stb112_Status(Port()); }

int Nx_STB112::HeadColumns() const { return portContext->ConfigAs<Config>().rowWidthCode; }

// 600 dots on 80 mm paper, 832 on the full width.
int Nx_STB112::LogoWidthDots() const { return portContext->ConfigAs<Config>().rowWidthCode == 32 ? 600 : 832; }

}  // namespace STB112

POSPRINT_FACTORY(create_STB112Driver, STB112::Nx_STB112)
