// Logos on the ticket printers: the GS v 0 raster at double size, centred by whole blank
// bytes, pixels inverted and the padding of the last byte masked; the STB60's ESC * bands
// framed by centring.
#include "drivers/ticket/STB112/nx_stb112.h"
#include "drivers/ticket/STB60/nx_stb60.h"
#include "drivers/ticket/STB80/nx_stb80.h"
#include "platform/logo_files.h"
#include "support/bmp_builder.h"
#include "support/run_program.h"
#include "ticket_fixture.h"

namespace ticket_test {
namespace {

using posprint::test::MonoBmp;

std::string Zeros(int count) { return ToHex(std::string(static_cast<std::size_t>(count), '\0')); }

std::string Bytes(const std::vector<std::uint8_t>& file) { return std::string(file.begin(), file.end()); }

// The logos in a directory of their own (test processes may run side by side).
class LogoFiles {
 public:
  LogoFiles() {
    posprint::SetLogoDirectory(dir.Path());
    // 12 x 2: the padding of the second byte must not print.
    dir.Write("small.bmp", Bytes(MonoBmp({"########....", "....#......#"})));
    dir.Write("w400.bmp", Bytes(MonoBmp({std::string(400, '.')})));
    dir.Write("w700.bmp", Bytes(MonoBmp({std::string(700, '.')})));
    dir.Write("band.bmp", Bytes(MonoBmp({"########", "........"})));
    dir.Write("text.bmp", "not a picture");
    auto colour = MonoBmp({"........"});
    posprint::test::PutU16(colour, 28, 24);
    dir.Write("colour.bmp", Bytes(colour));
  }
  posprint::test::TempDir dir;
};

template <class Driver>
class Logo : public TicketTest<Driver> {
 protected:
  LogoFiles files;
};

using Stb112Logo = Logo<STB112::Nx_STB112>;
using Stb80Logo = Logo<STB80::Nx_STB80>;
using Stb60Logo = Logo<STB60::Nx_STB60>;

TEST_F(Stb112Logo, RasterAtDoubleSizeCentredOnThePaper) {
  struct Case {
    const char* name;
    Keys keys;
    const char* file;
    bool ok;
    std::vector<int> errors;
    std::string read;
  };
  const std::string before = "1B 21 00 1B 7B 00 ";
  const Case cases[] = {
      // (832 - 2 x 12) / 32 = 25 blank bytes; 2 + 25 = 27 bytes a row.
      {"full width", {}, "small.bmp", true, {},
       before + "1D 76 30 33 1B 00 02 00 " + Zeros(25) + " FF 00 " + Zeros(25) + " 08 10"},
      // (600 - 24) / 32 = 18.
      {"80 mm", {{L"param_WidthRow", L"80 mm"}}, "small.bmp", true, {},
       before + "1D 76 30 33 14 00 02 00 " + Zeros(18) + " FF 00 " + Zeros(18) + " 08 10"},
      {"400 dots wide: one margin byte", {}, "w400.bmp", true, {},
       before + "1D 76 30 33 33 00 01 00 " + Zeros(51)},
      {"wider than the paper: the margin overflows", {}, "w700.bmp", false, {11}, before.substr(0, 17)},
      {"not a bitmap prints nothing", {}, "text.bmp", true, {}, before.substr(0, 17)},
      {"colours are refused", {}, "colour.bmp", false, {13}, before.substr(0, 17)},
      {"missing file", {}, "none.bmp", false, {10}, before.substr(0, 17)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    this->Command(L"STOP_PRINTER");
    this->Open(c.keys);
    EXPECT_EQ(this->Field(std::string("<LOGO FileName='") + c.file + "'/>"), c.ok);
    EXPECT_EQ(this->Errors(), c.errors);
    EXPECT_EQ(this->Read(), c.read);
  }
}

TEST_F(Stb112Logo, NameChecks) {
  this->Open();
  EXPECT_FALSE(this->Field("<LOGO FileName='small.png'/>"));
  EXPECT_EQ(this->Errors(), std::vector<int>{9});
  EXPECT_FALSE(this->Field("<LOGO/>"));
  EXPECT_EQ(this->Errors(), std::vector<int>{8});
  this->Clear();
  ASSERT_TRUE(this->Field("<LOGO FileName='small.bmp' Rotation='180'/>"));
  EXPECT_EQ(this->Read().substr(0, 26), "1B 21 00 1B 7B 01 1B 7B 01");
}

TEST_F(Stb80Logo, AlwaysSixHundredDots) {
  this->printer.key = 0xCB;  // the STB80 runs scrambled
  this->Open();
  ASSERT_TRUE(this->Field("<LOGO FileName='small.bmp'/>"));
  EXPECT_EQ(this->Read(), "1B 21 00 1B 7B 00 1D 76 30 33 14 00 02 00 " + Zeros(18) + " FF 00 " + Zeros(18) + " 08 10");
}

TEST_F(Stb60Logo, BandsFramedByCentring) {
  this->Open();
  ASSERT_TRUE(this->Field("<LOGO FileName='band.bmp'/>"));
  std::string columns;
  for (int i = 0; i < 8; ++i) columns += " 80 00 00";
  EXPECT_EQ(this->Read(), "1B 21 00 1B 7B 00 1B 61 31 1B 2A 21 08 00" + columns + " 0D 0A 1B 61 00");
}

}  // namespace
}  // namespace ticket_test
