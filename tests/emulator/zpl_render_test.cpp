// What the virtual label printer draws: one label a format, fields where ^LH and ^FO put
// them, font F cells, barcodes and QR codes read back with zxing, recalled graphics.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "emulator_helpers.h"
#include "platform/logo_files.h"
#include "support/bmp_builder.h"

namespace emulator_test {
namespace {

using posprint::emulator::kBlack;

std::unique_ptr<VirtualPrinter> Label(const std::string& zpl) {
  auto printer = VirtualPrinter::ForModel("ZEBRA");
  printer->Receive(zpl);
  return printer;
}

TEST(ZplLabel, OneLabelAFormatOfPrintWidthByLabelLength) {
  auto printer = Label("^XA^LL400^PW600^FO10,20^FDA^FS^XZ^XA^FO10,20^FDB^FS^XZ");
  ASSERT_EQ(printer->FinishedPages(), 2);
  EXPECT_EQ(printer->Page(0).Width(), 600);
  EXPECT_EQ(printer->Page(0).Height(), 400);
  EXPECT_EQ(printer->Page(1).Height(), 400) << "the length carries over to the next format";
  EXPECT_EQ(printer->Preview().Height(), 400 + 16 + 400);
}

TEST(ZplLabel, FormatsWithoutFieldsPrintNothing) {
  // The driver's set-up and its cancel at the start of each label.
  auto printer = Label("^XA^MTD^MMT~TA000^PR2,2,2^LL560^PW800^LH3,0^CFF,26,13^CI27^MFN,F^JUS^XZ^XA^JA^XZ");
  EXPECT_EQ(printer->FinishedPages(), 0);
  EXPECT_TRUE(printer->PrinterNotes().List().empty()) << printer->PrinterNotes().List().front();
}

TEST(ZplLabel, TextFieldAtHomePlusOrigin) {
  auto printer = Label("^XA^PW400^LL200^LH3,10^CFF,26,13^FO20,30^FDHH^FS^XZ");
  const Box box = InkBox(printer->Page(0));
  EXPECT_GE(box.x, 23);
  EXPECT_LE(box.x + box.width, 23 + 16 + 13) << "two font F cells: 13 dots and a 3-dot gap";
  EXPECT_GE(box.y, 40);
  EXPECT_LE(box.y + box.height, 40 + 26);
}

TEST(ZplLabel, FontMultipliersScaleTheCell) {
  auto normal = Label("^XA^PW400^LL200^CFF,26,13^FO0,0^FDH^FS^XZ");
  auto doubled = Label("^XA^PW400^LL200^CFF,52,26^FO0,0^FDH^FS^XZ");
  auto tall = Label("^XA^PW400^LL200^CFF,52,13^FO0,0^FDH^FS^XZ");
  const Box a = InkBox(normal->Page(0)), b = InkBox(doubled->Page(0)), c = InkBox(tall->Page(0));
  EXPECT_NEAR(b.width, 2 * a.width, 2);
  EXPECT_NEAR(b.height, 2 * a.height, 2);
  EXPECT_NEAR(c.width, a.width, 1);
  EXPECT_NEAR(c.height, 2 * a.height, 2);
}

TEST(ZplLabel, BarcodesReadBack) {
  struct Case {
    const char* name;
    std::string zpl;
    std::string data;
  };
  const Case cases[] = {
      {"CODE128", "^BY3,3.0,80^BC,,Y,N,N,N^FDTKT0001^FS", "TKT0001"},
      {"EAN13", "^BY3,3.0,80^BE,,Y,N^FD400638133393^FS", "4006381333931"},
      {"EAN8", "^BY3,3.0,80^B8,,Y,N^FD9638507^FS", "96385074"},
      {"CODE39", "^BY2,3.0,80^B3,N,,Y,N^FDCODE39^FS", "CODE39"},
      {"ITF ratio 2.0", "^BY3,2.0,80^B2,,N,N,N^FD123456^FS", "123456"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto printer = Label("^XA^PW800^LL400^FO60,40" + c.zpl + "^XZ");
    ASSERT_EQ(printer->FinishedPages(), 1);
    EXPECT_EQ(ReadBarcodes(printer->Page(0)), std::vector<std::string>{c.data});
    EXPECT_TRUE(printer->PrinterNotes().List().empty()) << printer->PrinterNotes().List().front();
  }
}

TEST(ZplLabel, BarcodeHeightAndModuleFromBy) {
  auto printer = Label("^XA^PW800^LL400^FO60,40^BY2,3.0,100^BC,,N,N,N,N^FDAB^FS^XZ");
  const Box box = InkBox(printer->Page(0));
  EXPECT_EQ(box.y, 40);
  EXPECT_EQ(box.height, 100);
  EXPECT_EQ(box.x, 60);
  EXPECT_EQ(box.width, 57 * 2) << "Code 128 of two characters is 57 modules";
}

TEST(ZplLabel, QrCodeWithHexEscapesReadsBackItsBytes) {
  // The driver's form: error correction M, manual, byte mode with a count of 5.
  auto printer = Label("^XA^PW600^LL600^FO40,40^BY3,3.0,10^BQN,2,6^FH^FDMM,B0005A_0DB_5FC^FS^XZ");
  ASSERT_EQ(printer->FinishedPages(), 1);
  EXPECT_EQ(ReadBarcodes(printer->Page(0)), std::vector<std::string>{"A\rB_C"});
  const Box box = InkBox(printer->Page(0));
  EXPECT_EQ(box.x, 40);
  EXPECT_EQ(box.width % 6, 0) << "modules of 6 dots (magnification 6)";
}

TEST(ZplLabel, RecalledGraphicComesFromTheLogoDirectory) {
  const std::string directory = ::testing::TempDir() + "zpl_graphics";
  std::string command = "mkdir -p " + directory;
  ASSERT_EQ(std::system(command.c_str()), 0);
  const std::vector<std::uint8_t> bmp = posprint::test::MonoBmp({"#..#", "....", "#..#"});
  std::ofstream(directory + "/TinyLogo.bmp", std::ios::binary).write(reinterpret_cast<const char*>(bmp.data()),
                                                                        static_cast<std::streamsize>(bmp.size()));
  posprint::SetLogoDirectory(directory);
  auto printer = Label("^XA^PW100^LL100^LH2,0^FO10,20^XGE:TINYLOGO.GRF,2,1^FS^XZ");
  ASSERT_EQ(printer->FinishedPages(), 1);
  const Image label = printer->Page(0);
  EXPECT_EQ(label.Count(kBlack), 8) << "four dots, each made two wide";
  EXPECT_EQ(label.Count(kBlack, 12, 20, 2, 1), 2);
  EXPECT_EQ(label.Count(kBlack, 18, 22, 2, 1), 2);
  auto missing = Label("^XA^PW100^LL100^FO10,20^XGE:NOLOGO.GRF,1,1^FS^XZ");
  ASSERT_EQ(missing->PrinterNotes().List().size(), 1u);
  EXPECT_NE(missing->PrinterNotes().List()[0].find("E:NOLOGO.GRF is not stored"), std::string::npos);
}

TEST(ZplNotes, CommandsOutsideAFormatAndUnknownOnesAreReported) {
  auto printer = Label("^CFF,26,13^XA^ZZ1^FO0,0^FDA^FS^XZ");
  const auto& notes = printer->PrinterNotes().List();
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_EQ(notes[0], "^CF outside a format (^XA .. ^XZ): ignored");
  EXPECT_EQ(notes[1], "unknown command ^ZZ (\"^ZZ1\")");
  EXPECT_EQ(printer->FinishedPages(), 1);
}

TEST(ZplLabel, NothingIsPrintedWithTheHeadOpen) {
  auto printer = VirtualPrinter::ForModel("ZEBRA");
  printer->SetState(PrinterState::kCoverOpen);
  printer->Receive(std::string("^XA^FO0,0^FDA^FS^XZ"));
  EXPECT_EQ(printer->FinishedPages(), 0);
}

TEST(ZplLabel, HigherResolutionDrawsTheInterpretationLineTaller) {
  auto eight = VirtualPrinter::ForModel("ZEBRA", 8);
  auto twelve = VirtualPrinter::ForModel("ZEBRA", 12);
  const std::string zpl = "^XA^PW800^LL400^FO60,40^BY2,3.0,50^BC,,Y,N,N,N^FDA^FS^XZ";
  eight->Receive(zpl);
  twelve->Receive(zpl);
  const auto a = InkBands(eight->Page(0)), b = InkBands(twelve->Page(0));
  ASSERT_EQ(a.size(), 2u);
  ASSERT_EQ(b.size(), 2u);
  EXPECT_GT(b[1].second - b[1].first, a[1].second - a[1].first);
}

}  // namespace
}  // namespace emulator_test
