// The PLUS, LX300 and ITALORA drivers on a scripted port (support/driver_fixture.h), with a
// logo folder of their own. The printer answers nothing unless a model's fixture says so.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/logo_files.h"
#include "support/driver_fixture.h"
#include "support/run_program.h"

namespace posprint::test {

inline std::string Font(const char* attributes) { return std::string("<SINGLEFIELD ") + attributes + "/>"; }

template <class Driver>
class OthersTest : public DriverFixture<Driver> {
 protected:
  OthersTest() { SetLogoDirectory(logos.Path()); }
  void FreshPrinter() override { this->port.OnWrite(nullptr); }
  void Prepare(const std::string&) override {}
  std::string Received() const override { return this->Line(); }
  void LogoFile(const std::string& name, const std::vector<std::uint8_t>& bytes) {
    logos.Write(name, std::string(bytes.begin(), bytes.end()));
  }

  TempDir logos;
};

}  // namespace posprint::test
