// A logo file of arbitrary contents printed by the LOGO field of every model, each by
// its own path (ESC * bit image, GS v 0 raster, the label printers' stored graphics).
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include "fuzz/fuzz_support.h"
#include "support/model_printers.h"

namespace {

const char* const kRotations[] = {"0", "90", "180", "270"};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  posprint::fuzz::InitialiseHarness();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace posprint;
  fuzz::Input input(data, size);
  const std::uint8_t options = input.Byte();
  {
    std::ofstream file(fuzz::HarnessLogoDirectory() + "/logo.bmp", std::ios::binary | std::ios::trunc);
    const std::string contents = input.Rest();
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  }
  const std::string element =
      std::string("<LOGO FileName=\"logo.bmp\" Rotation=\"") + kRotations[options & 3] + "\"/>";
  for (const fuzz::LinkedModel& model : fuzz::LinkedModels()) {
    const test::ModelPrinter* printer = test::FindModelPrinter(model.identity->factory);
    auto parameters = printer ? printer->parameters : decltype(printer->parameters){};
    // Paper widths and kinds change the raster line of the ticket printers.
    if (options & 0x04) parameters.push_back({L"param_WidthRow", L"80 mm"});
    if (options & 0x08) parameters.push_back({L"param_TypePaper", L"val_Ticket"});
    fuzz::Session session(model, parameters);
    if (printer) test::PlayPrinter(session.Port(), printer->rules);
    session.Command("INIT_PRINTER");
    session.Command("NEWPRINT", element);
    session.Driver().PrintLogoByName("L:logo.bmp");  // the record form of the label printers
  }
  return 0;
}
