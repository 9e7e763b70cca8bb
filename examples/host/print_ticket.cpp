// print_ticket: loads the posprint driver plug-in, makes a TMT70 driver and prints a
// short ticket on the port named on the command line.
//
//   print_ticket [PORT]      PORT defaults to file:ticket.bin
#include <dlfcn.h>

#include <cstdio>
#include <memory>
#include <string>

#include "platform/aprinter.h"
#include "platform/nx_xml.h"
#include "platform/parameters.h"

namespace {

const char* const kTicket = R"(<Ticket>
  <SINGLEFIELD Height="2"><Field>HELLO FROM posprint</Field></SINGLEFIELD>
  <DOUBLEFIELD><LeftField>Coffee</LeftField><RightField>2.20</RightField></DOUBLEFIELD>
  <DOUBLEFIELD><LeftField>Croissant</LeftField><RightField>1.90</RightField></DOUBLEFIELD>
  <LINE Char="-"/>
  <DOUBLEFIELD Width="2"><LeftField>TOTAL</LeftField><RightField>4.10</RightField></DOUBLEFIELD>
  <BARCODE Type="CODE128" Height="8">EX0001</BARCODE>
  <LINEFEED Value="3"/>
  <CUT/>
</Ticket>)";

bool Run(APrinter& printer, Nx_XMLParser& parser, const wchar_t* command, IXMLDOMNodePtr node, const Nx_Stringa& port) {
  printer.ClearErrors();
  bool ok = printer.ExecuteCommand(&parser, command, node, port);
  std::printf("%-13ls %s", command, ok ? "ok" : "FAILED");
  for (int code : printer.RecordedErrors()) std::printf(" %d", code);
  std::printf("\n");
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  std::string portName = argc > 1 ? argv[1] : "file:ticket.bin";
  void* plugin = dlopen(POSPRINT_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  if (!plugin) {
    std::fprintf(stderr, "cannot load the driver plug-in: %s\n", dlerror());
    return 2;
  }
  auto create = reinterpret_cast<APrinter* (*)()>(dlsym(plugin, "create_KpTMT70"));
  if (!create) {
    std::fprintf(stderr, "the plug-in has no create_KpTMT70\n");
    return 2;
  }
  std::unique_ptr<APrinter> printer(create());
  auto* parameters = new ParameterCollection();
  parameters->Set(L"param_CutType", L"val_Partial");
  printer->Configure(Nx_Smartp<IParameterCollection>(parameters));

  Nx_XMLParser parser;
  std::string error;
  if (!parser.LoadString(kTicket, &error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 2;
  }
  Nx_Stringa port = Nx_Stringa::FromUtf8(portName);
  bool ok = Run(*printer, parser, L"INIT_PRINTER", IXMLDOMNodePtr(), port);
  for (IXMLDOMNodePtr field = parser.GetFirstChild(parser.Root()); ok && !field.IsNull();
       field = parser.GetNextNode(field))
    ok = Run(*printer, parser, L"NEWPRINT", field, port) && ok;
  ok = Run(*printer, parser, L"STOP_PRINT", IXMLDOMNodePtr(), port) && ok;
  ok = Run(*printer, parser, L"STOP_PRINTER", IXMLDOMNodePtr(), port) && ok;
  printer.reset();
  dlclose(plugin);
  return ok ? 0 : 1;
}
