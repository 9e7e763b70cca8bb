// A whole print job of arbitrary XML through every model: each attribute of the root
// element is a configuration value, each child element a NEWPRINT job element, and a
// child named "Record" hands its text to the record operation of its "Slot" (9 to 14).
//
//   <Job param_CutType="val_Full"><LINE Char="*"/><Record Slot="9">..L...</Record></Job>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "support/model_printers.h"

namespace {

// Enough elements for a long ticket; more only repeat what the first ones did.
constexpr int kMaxElements = 64;

using Parameters = std::vector<std::pair<std::wstring, std::wstring>>;

// Attributes of the root element by name: the parser hands them out one at a time.
Parameters RootParameters(Nx_XMLParser& parser, const std::string& xml) {
  Parameters parameters;
  // The attribute names are taken from the start tag as written; the parser gives the values.
  const std::size_t open = xml.find('<');
  const std::size_t close = xml.find('>', open);
  if (open == std::string::npos || close == std::string::npos) return parameters;
  const std::string tag = xml.substr(open, close - open);
  for (std::size_t at = tag.find(" param_"); at != std::string::npos; at = tag.find(" param_", at + 1)) {
    const std::size_t equals = tag.find('=', at);
    if (equals == std::string::npos) break;
    const std::string name = tag.substr(at + 1, equals - at - 1);
    const Nx_Stringa key = Nx_Stringa::FromUtf8(name);
    Nx_Stringa value;
    if (parser.GetAttributeValue(parser.Root(), key.c_str(), value)) parameters.push_back({key.c_str(), value.c_str()});
  }
  return parameters;
}

int RecordSlot(Nx_XMLParser& parser, IXMLDOMNodePtr node) {
  Nx_Stringa slot;
  if (!parser.GetAttributeValue(node, L"Slot", slot) || slot.Length() != 2) return 0;
  return (slot.c_str()[0] - L'0') * 10 + (slot.c_str()[1] - L'0');
}

void RunRecord(APrinter& driver, int slot, const std::string& record) {
  const char* text = record.c_str();
  switch (slot) {
    case 9: driver.PrintFormattedText(text); break;
    case 10: driver.PrintLogoByName(text); break;
    case 11: driver.PrintBarcodeRecord(text); break;
    case 12: driver.PrintSeparatorRecord(text); break;
    case 13: driver.FeedLinesRecord(text); break;
    case 14: driver.CutRecord(text); break;
    default: break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  posprint::fuzz::InitialiseHarness();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace posprint;
  const std::string xml(reinterpret_cast<const char*>(data), size);
  for (const fuzz::LinkedModel& model : fuzz::LinkedModels()) {
    Nx_XMLParser parser;
    std::string error;
    if (!parser.LoadString(xml, &error)) return 0;
    const test::ModelPrinter* printer = test::FindModelPrinter(model.identity->factory);
    fuzz::Session session(model, RootParameters(parser, xml));
    if (printer) test::PlayPrinter(session.Port(), printer->rules);
    const std::string ownCommand =
        model.identity->ownCommand ? Nx_Stringa(model.identity->ownCommand).ToUtf8() : std::string();
    session.Command("INIT_PRINTER");
    session.Command("START_PRINT");
    int elements = 0;
    for (IXMLDOMNodePtr node = parser.GetFirstChild(parser.Root()); !node.IsNull() && elements < kMaxElements;
         node = parser.GetNextNode(node), ++elements) {
      if (parser.GetName(node) == L"Record") {
        RunRecord(session.Driver(), RecordSlot(parser, node), parser.GetText(node).GetAscii(0));
      } else {
        session.Command("NEWPRINT", parser, node);
        // The model's own command (TM295_NEWPRINT, ZEBRA_NEWPRINT: XONXOFF) on the same element.
        if (!ownCommand.empty()) session.Command(ownCommand.c_str(), parser, node);
      }
    }
    session.Command("CHECK");
    session.Command("STOP_PRINT");
    session.Port().ClearWritten();
  }
  return 0;
}
