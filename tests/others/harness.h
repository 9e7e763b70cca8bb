// A driver on a scripted port, for the PLUS, LX300 and ITALORA tests: configure, send
// commands and job elements, look at what went out and at the errors recorded.
#pragma once

#include <unistd.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/logo_files.h"
#include "platform/parameters.h"
#include "platform/scripted_port.h"
#include "support/bmp_builder.h"
#include "support/bytes.h"

namespace posprint::test {

using Keys = std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>;

template <class Driver>
class DriverHarness : public ::testing::Test {
 protected:
  void Configure(Keys keys) {
    auto* parameters = new ParameterCollection();
    for (const auto& key : keys) parameters->Set(key.first, key.second);
    driver.Configure(Nx_Smartp<IParameterCollection>(parameters));
  }
  bool Command(const wchar_t* name) {
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, name, IXMLDOMNodePtr(), port.Name());
  }
  // Configured, opened, and what the open sent forgotten.
  void Open(Keys keys = {}) {
    Configure(keys);
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    port.ClearWritten();
  }
  // NEWPRINT with the one element in xml.
  bool Field(const std::string& xml) {
    std::string error;
    EXPECT_TRUE(parser.LoadString("<Job>" + xml + "</Job>", &error)) << error;
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, L"NEWPRINT", parser.GetFirstChild(parser.Root()), port.Name());
  }
  std::vector<int> Errors() const { return driver.RecordedErrors(); }
  std::string Sent() const { return ToHex(port.Written()); }

  // Writes logo files into a fresh logo folder.
  void LogoFolder(const std::string& name) {
    folder = ::testing::TempDir() + name + "_" + std::to_string(::getpid());
    ASSERT_EQ(std::system(("rm -rf '" + folder + "' && mkdir -p '" + folder + "'").c_str()), 0);
    SetLogoDirectory(folder);
  }
  void LogoFile(const std::string& name, const std::vector<std::uint8_t>& bytes) {
    std::ofstream(folder + "/" + name, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                                                static_cast<std::streamsize>(bytes.size()));
  }

  ScriptedPort port;
  Nx_XMLParser parser;
  Driver driver;
  std::string folder;
};

}  // namespace posprint::test
