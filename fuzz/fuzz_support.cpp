#include "fuzz/fuzz_support.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/clock.h"
#include "platform/logo_files.h"
#include "platform/parameters.h"
#include "support/model_printers.h"

namespace posprint::fuzz {

const std::vector<LinkedModel>& LinkedModels() {
  // The harness is linked with -rdynamic, so its own factory exports are visible to dlsym.
  static const std::vector<LinkedModel> models = [] {
    std::vector<LinkedModel> linked;
    for (std::size_t i = 0; i < kModelCount; ++i) {
      void* symbol = dlsym(RTLD_DEFAULT, kModelIdentities[i].factory);
      if (symbol) linked.push_back({&kModelIdentities[i], reinterpret_cast<Factory>(symbol)});
    }
    return linked;
  }();
  return models;
}

const std::string& HarnessLogoDirectory() {
  static const std::string directory = [] {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("posprint-fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(path);
    return path.string();
  }();
  return directory;
}

namespace {
void RemoveLogoDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(HarnessLogoDirectory(), ignored);
}
}  // namespace

void InitialiseHarness() {
  static FakeClock clock;
  SetClock(&clock);
  SetLogoDirectory(HarnessLogoDirectory());
  std::atexit(RemoveLogoDirectory);
  // A good logo for the jobs that name logo.bmp (the logo harness overwrites it).
  const std::vector<unsigned char> logo = test::SampleLogo();
  std::ofstream(HarnessLogoDirectory() + "/logo.bmp", std::ios::binary)
      .write(reinterpret_cast<const char*>(logo.data()), static_cast<std::streamsize>(logo.size()));
}

Session::Session(const LinkedModel& model, const std::vector<std::pair<std::wstring, std::wstring>>& parameters)
    : driver_(model.factory()) {
  auto* collection = new ParameterCollection();
  for (const auto& pair : parameters) collection->Set(pair.first.c_str(), pair.second.c_str());
  driver_->Configure(Nx_Smartp<IParameterCollection>(collection));
}

// Closing gives the port's handle back; an input that left the driver open must not
// leave a handle behind for every run.
Session::~Session() {
  Command("STOP_PRINTER");
  driver_.reset();
}

bool Session::Command(const char* name, const std::string& elementXml) {
  Nx_XMLParser parser;
  std::string error;
  IXMLDOMNodePtr node;
  if (!elementXml.empty() && parser.LoadString("<Job>" + elementXml + "</Job>", &error))
    node = parser.GetFirstChild(parser.Root());
  return Command(name, parser, node);
}

bool Session::Command(const char* name, Nx_XMLParser& parser, IXMLDOMNodePtr node) {
  return driver_->ExecuteCommand(&parser, Nx_Stringa::FromUtf8(name), node, Nx_Stringa(port_.Name().c_str()));
}

}  // namespace posprint::fuzz
