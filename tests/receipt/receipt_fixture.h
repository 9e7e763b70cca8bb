// A driver of the receipt family on a scripted port, with a fake clock so that no wait
// of the driver is real.
#pragma once

#include <unistd.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/logo_files.h"
#include "platform/parameters.h"
#include "platform/scripted_port.h"
#include "support/bytes.h"

namespace receipt_test {

using posprint::test::Hex;
using posprint::test::ToHex;
using Keys = std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>;

template <class Driver>
class DriverTest : public ::testing::Test {
 protected:
  void Configure(Keys keys) {
    auto* parameters = new ParameterCollection();
    for (const auto& key : keys) parameters->Set(key.first, key.second);
    driver.Configure(Nx_Smartp<IParameterCollection>(parameters));
  }
  bool Command(const wchar_t* name, IXMLDOMNodePtr node = IXMLDOMNodePtr()) {
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, name, node, port.Name());
  }
  // INIT_PRINTER, then forgets what the open sent and waited and how the printer answered.
  void Open(Keys keys = {}) {
    port.OnWrite(nullptr);
    Configure(keys);
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    port.ClearWritten();
    clock = posprint::FakeClock();
  }
  IXMLDOMNodePtr Element(const std::string& xml) {
    std::string error;
    EXPECT_TRUE(parser.LoadString("<Job>" + xml + "</Job>", &error)) << error;
    return parser.GetFirstChild(parser.Root());
  }
  // NEWPRINT with the one element in xml.
  bool Field(const std::string& xml) { return Command(L"NEWPRINT", Element(xml)); }
  // The printer answers `reply` each time `request` is written.
  void AnswerTo(const std::string& request, const std::string& reply) {
    port.OnWrite([request, reply](posprint::ScriptedPort& p, const std::string& written) {
      if (written == request) p.Answer(reply);
    });
  }
  std::vector<int> Errors() const { return driver.RecordedErrors(); }
  std::string Sent() const { return ToHex(port.Written()); }

  posprint::FakeClock clock;
  posprint::ScopedClock scopedClock{clock};
  posprint::ScriptedPort port;
  Nx_XMLParser parser;
  Driver driver;
};

// A logo folder in the test's temporary directory.
inline std::string LogoFolder(const std::string& name) {
  std::string directory = ::testing::TempDir() + name + "_" + std::to_string(::getpid());
  std::string command = "mkdir -p '" + directory + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);
  posprint::SetLogoDirectory(directory);
  return directory;
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// 8 x 2 pixels, 1 bit: the top row black, the bottom row white (rows stored bottom-up).
inline std::string SmallLogo() {
  return Hex("42 4D 46 00 00 00 00 00 00 00 3E 00 00 00 28 00 00 00 08 00 00 00 02 00 00 00 01 00 01 00 "
             "00 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 02 00 00 00 "
             "00 00 00 00 FF FF FF 00 FF 00 00 00 00 00 00 00");
}

}  // namespace receipt_test
