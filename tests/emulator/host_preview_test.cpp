// posprint run on the virtual printer, as a person runs it: no --port, --preview, sim:STATE.
#include <gtest/gtest.h>

#include "emulator/png_file.h"
#include "emulator_helpers.h"
#include "support/run_program.h"

namespace emulator_test {
namespace {

using posprint::test::ProgramRun;
using posprint::test::RunProgram;
using posprint::test::TempDir;

const std::string kExamples = std::string(POSPRINT_SOURCE_DIR) + "/examples/";

TEST(HostPreview, NoPortPrintsTheSampleReceiptAndWritesItsPreview) {
  TempDir dir;
  const std::string png = dir.Path() + "/receipt.png";
  const ProgramRun run = RunProgram(POSPRINT_HOST_PATH, {"run", "--model", "TMT70", "--params", kExamples + "receipt.params",
                                                         "--preview", png, kExamples + "receipt.xml"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "") << "the sample receipt gives the printer nothing to remark on";
  posprint::emulator::GreyPicture picture;
  std::string error;
  ASSERT_TRUE(posprint::emulator::ReadPngGrey(png, &picture, &error)) << error;
  EXPECT_EQ(picture.width, 640);
  Image ink(picture.width, picture.height);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      if (picture.At(x, y) < 64) ink.Set(x, y, posprint::emulator::kBlack);
  EXPECT_EQ(ReadBarcodes(ink), std::vector<std::string>{"TKT0001234567"});
}

TEST(HostPreview, StateInThePortName) {
  TempDir dir;
  const std::string job = dir.Write("check.xml", "<Job><Command name='INIT_PRINTER'/><Command name='CHECK'/></Job>");
  const ProgramRun run = RunProgram(POSPRINT_HOST_PATH, {"run", "--model", "TMT70", "--port", "sim:cover-open", job});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("FAILED  errors 105"), std::string::npos) << run.out;
  const ProgramRun unknown = RunProgram(POSPRINT_HOST_PATH, {"run", "--model", "TMT70", "--port", "sim:jammed", job});
  EXPECT_NE(unknown.out.find("errors 71"), std::string::npos) << unknown.out;
}

TEST(HostPreview, PreviewNeedsTheVirtualPrinter) {
  TempDir dir;
  const std::string job = dir.Write("job.xml", "<Job><Command name='INIT_PRINTER'/></Job>");
  const ProgramRun run = RunProgram(POSPRINT_HOST_PATH, {"run", "--model", "TMT70", "--port", "file:" + dir.Path() + "/out.bin",
                                                         "--preview", dir.Path() + "/p.png", job});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err,
            "posprint run: --preview draws what the virtual printer printed: use it with --port sim: (or no --port)\n");
}

}  // namespace
}  // namespace emulator_test
