#include "virtual_printer_hooks.h"

#ifdef POSPRINT_HAVE_EMULATOR
#include "emulator/virtual_printer.h"
#endif

namespace posprint::host {
namespace {

bool IsSimPort(const std::string& port) { return port.rfind("sim:", 0) == 0; }

}  // namespace

int LabelDotsPerMm(const std::vector<ParameterPair>& pairs) {
  int dots = 8;
  for (const ParameterPair& pair : pairs) {
    if (pair.first != "param_Resolution") continue;
    dots = pair.second == "6" ? 6 : pair.second == "12" ? 12 : pair.second == "24" ? 24 : 8;
  }
  return dots;
}

#ifdef POSPRINT_HAVE_EMULATOR

bool HaveVirtualPrinter() { return true; }

bool PrepareVirtualPrinter(const ModelIdentity& model, const std::vector<ParameterPair>& pairs,
                           const std::string& preview, std::string* port, std::string* error) {
  if (port->empty()) *port = "sim:";
  if (!IsSimPort(*port)) {
    if (!preview.empty()) {
      *error = "--preview draws what the virtual printer printed: use it with --port sim: (or no --port)";
      return false;
    }
    return true;
  }
  if (!emulator::HasVirtualPrinter(model.modelName)) {
    std::string names;
    for (const std::string& name : emulator::VirtualModels()) names += " " + name;
    *error = "no virtual printer plays this model; the virtual printers are:" + names;
    return false;
  }
  emulator::RegisterSimPort();
  emulator::SetLabelDotsPerMm(LabelDotsPerMm(pairs));
  emulator::SetModel(model.modelName);
  return true;
}

bool FinishVirtualPrinter(const std::string& port, const std::string& preview, std::FILE* err) {
  if (!IsSimPort(port)) return true;
  for (const std::string& note : emulator::PrinterNotes()) std::fprintf(err, "posprint run: virtual printer: %s\n", note.c_str());
  if (preview.empty()) return true;
  std::string error;
  if (!emulator::WritePreview(preview, &error)) {
    std::fprintf(err, "posprint run: --preview: %s\n", error.c_str());
    return false;
  }
  return true;
}

#else

bool HaveVirtualPrinter() { return false; }

bool PrepareVirtualPrinter(const ModelIdentity&, const std::vector<ParameterPair>&, const std::string& preview,
                           std::string* port, std::string* error) {
  if (port->empty() || IsSimPort(*port) || !preview.empty()) {
    *error = "this posprint was built without the virtual printers: name a --port";
    return false;
  }
  return true;
}

bool FinishVirtualPrinter(const std::string&, const std::string&, std::FILE*) { return true; }

#endif

}  // namespace posprint::host
