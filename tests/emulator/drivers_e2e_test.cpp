// The drivers against their virtual printers, through the port layer's "sim:" port: each
// model's status protocol in every printer state, and the sample jobs rendered and read
// back (barcodes with zxing, logos at dot level).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "emulator/png_file.h"
#include "emulator_helpers.h"
#include "platform/aprinter.h"
#include "platform/clock.h"
#include "platform/logo_files.h"
#include "platform/nx_xml.h"
#include "platform/parameters.h"

extern "C" {
APrinter* create_KpTMT70();
APrinter* create_KpVKP80II();
APrinter* create_KpTM300();
APrinter* create_KpTM295();
APrinter* create_STB112Driver();
APrinter* create_STB60Driver();
APrinter* create_STB80Driver();
APrinter* create_Q1Driver();
APrinter* create_KpZEBRA();
APrinter* create_KpPLUS();
APrinter* create_KpLX300();
APrinter* create_KpITALORA();
}

namespace emulator_test {
namespace {

namespace emu = posprint::emulator;

struct Model {
  const wchar_t* name;
  APrinter* (*factory)();
};
const Model kModels[] = {
    {L"TMT70", create_KpTMT70},     {L"VKP80II", create_KpVKP80II},   {L"TM300", create_KpTM300},
    {L"TM295", create_KpTM295},     {L"STB112", create_STB112Driver}, {L"STB60", create_STB60Driver},
    {L"STB80", create_STB80Driver}, {L"QSeries", create_Q1Driver},    {L"ZEBRA", create_KpZEBRA},
    {L"PLUS", create_KpPLUS},       {L"LX300", create_KpLX300},       {L"ITALORA", create_KpITALORA},
};

struct Outcome {
  std::string command;
  bool ok;
  std::vector<int> errors;
};

// Runs the commands of a job file (each <Command name=...> with its first element) on a
// fresh driver, the way posprint run does.
class JobRun {
 public:
  JobRun(const Model& model, const std::vector<std::pair<const wchar_t*, const wchar_t*>>& keys)
      : driver_(model.factory()) {
    emu::RegisterSimPort();
    EXPECT_TRUE(emu::SetModel(model.name));
    auto* parameters = new ParameterCollection();
    for (const auto& key : keys) parameters->Set(key.first, key.second);
    driver_->Configure(Nx_Smartp<IParameterCollection>(parameters));
  }

  std::vector<Outcome> Run(const std::string& xml, const std::wstring& port) {
    std::string error;
    EXPECT_TRUE(parser_.LoadString(xml, &error)) << error;
    std::vector<Outcome> outcomes;
    for (IXMLDOMNodePtr command = parser_.GetFirstChild(parser_.Root(), L"Command"); !command.IsNull();
         command = parser_.GetNextNode(command, L"Command")) {
      Nx_Stringa name;
      parser_.GetAttributeValue(command, L"name", name);
      driver_->ClearErrors();
      const bool ok = driver_->ExecuteCommand(&parser_, name, parser_.GetFirstChild(command), port.c_str());
      outcomes.push_back({name.ToUtf8(), ok, driver_->RecordedErrors()});
    }
    return outcomes;
  }

  std::vector<Outcome> RunFile(const std::string& path, const std::wstring& port) {
    std::string error;
    EXPECT_TRUE(parser_.LoadFile(path, &error)) << error;
    std::string xml;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    char buffer[4096];
    std::size_t got;
    while (file && (got = std::fread(buffer, 1, sizeof buffer, file)) > 0) xml.append(buffer, got);
    if (file) std::fclose(file);
    return Run(xml, port);
  }

 private:
  posprint::FakeClock clock_;
  posprint::ScopedClock scopedClock_{clock_};
  Nx_XMLParser parser_;
  std::unique_ptr<APrinter> driver_;
};

TEST(DriverStatus, CheckReportsEveryPrinterState) {
  const PrinterState states[] = {PrinterState::kReady,     PrinterState::kNearEnd, PrinterState::kPaperOut,
                                 PrinterState::kCoverOpen, PrinterState::kError,   PrinterState::kSilent};
  // CHECK's errors in each state, in the order above (none: ready).
  const std::vector<int> expected[][6] = {
      /* TMT70 */ {{}, {102}, {102}, {105}, {108}, {101}},
      /* VKP80II */ {{}, {113}, {112}, {111}, {110}, {101}},
      /* TM300 */ {{}, {102}, {102}, {101}, {101}, {101}},
      /* TM295 */ {{}, {103}, {102}, {101}, {101}, {101}},
      // The STB drivers read no error bit: a printer in error reads as ready on them.
      /* STB112 */ {{}, {104}, {102}, {105}, {}, {101}},
      /* STB60 */ {{}, {}, {102}, {101}, {101}, {101}},
      /* STB80 */ {{}, {104}, {102}, {105}, {}, {101}},
      /* QSeries */ {{}, {104}, {102}, {105}, {}, {101}},
      /* ZEBRA */ {{}, {}, {112}, {105}, {110}, {101}},
      /* PLUS */ {{}, {113}, {102}, {105}, {108}, {101}},
      // The LX300 never answers: CHECK asks only the port, which stays usable.
      /* LX300 */ {{}, {}, {}, {}, {}, {}},
      /* ITALORA */ {{}, {}, {102}, {105}, {108}, {101}},
  };
  const std::string job = "<Job><Command name='INIT_PRINTER'/><Command name='CHECK'/><Command name='STOP_PRINTER'/></Job>";
  for (std::size_t m = 0; m < std::size(kModels); ++m) {
    for (int s = 0; s < 6; ++s) {
      const std::string state = emu::StateName(states[s]);
      SCOPED_TRACE(Nx_Stringa(kModels[m].name).ToUtf8() + " " + state);
      JobRun run(kModels[m], {});
      const auto outcomes = run.Run(job, Nx_Stringa::FromUtf8("sim:" + state).c_str());
      ASSERT_EQ(outcomes.size(), 3u);
      EXPECT_TRUE(outcomes[0].ok);
      EXPECT_EQ(outcomes[1].errors, expected[m][s]);
      EXPECT_EQ(outcomes[1].ok, expected[m][s].empty());
    }
  }
}

// The preview written as a PNG file and read back: its black dots.
Image PreviewFile(const std::string& path) {
  std::string error;
  EXPECT_TRUE(emu::WritePreview(path, &error)) << error;
  emu::GreyPicture picture;
  EXPECT_TRUE(emu::ReadPngGrey(path, &picture, &error)) << error;
  Image ink(picture.width, picture.height);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      if (picture.At(x, y) < 64) ink.Set(x, y, emu::kBlack);
  return ink;
}

std::string Example(const std::string& name) { return std::string(POSPRINT_SOURCE_DIR) + "/examples/" + name; }

TEST(DriverSamples, EveryModelPrintsTheSampleJob) {
  struct Case {
    const wchar_t* model;
    const char* job;
    std::vector<std::string> barcodes;
  };
  const std::vector<std::string> ticket = {"TKT0001234567"};
  const Case cases[] = {
      {L"TMT70", "receipt.xml", ticket},
      {L"VKP80II", "receipt.xml", ticket},
      {L"TM300", "receipt.xml", {}},  // prints no barcodes
      {L"TM295", "receipt.xml", {}},  // interleaved 2 of 5 only
      {L"STB112", "receipt.xml", ticket},
      {L"STB60", "receipt.xml", ticket},
      {L"STB80", "receipt.xml", ticket},
      {L"QSeries", "receipt.xml", ticket},
      {L"ZEBRA", "label.xml", {"TKT0001234567", "https://example.com/t/1234"}},
      {L"PLUS", "receipt.xml", ticket},
      {L"LX300", "receipt.xml", ticket},
      {L"ITALORA", "label-italora.xml", {"8001234567897"}},
  };
  posprint::SetLogoDirectory(std::string(POSPRINT_SOURCE_DIR) + "/examples");
  for (const Case& c : cases) {
    const std::string name = Nx_Stringa(c.model).ToUtf8();
    SCOPED_TRACE(name);
    const Model* model = nullptr;
    for (const Model& row : kModels)
      if (std::wstring(row.name) == c.model) model = &row;
    ASSERT_NE(model, nullptr);
    std::vector<std::pair<const wchar_t*, const wchar_t*>> keys;
    if (name == "ZEBRA") keys = {{L"param_LenghtLabel", L"70"}, {L"param_Displacement", L"4"}};
    if (name == "ITALORA") keys = {{L"param_WidthLabel", L"60"}, {L"param_LenghtLabel", L"40"}};
    JobRun run(*model, keys);
    const auto outcomes = run.RunFile(Example(c.job), L"sim:");
    for (const Outcome& outcome : outcomes) {
      const bool barcodeRefused = name == "TM295" && outcome.errors == std::vector<int>{15};
      EXPECT_TRUE(outcome.ok || barcodeRefused) << outcome.command;
    }
    for (const std::string& note : emu::PrinterNotes())
      EXPECT_EQ(note.find("unknown command"), std::string::npos) << note;
    std::vector<std::string> found = ReadBarcodes(PreviewFile(::testing::TempDir() + name + ".png"));
    std::sort(found.begin(), found.end());
    std::vector<std::string> wanted = c.barcodes;
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(found, wanted);
  }
}

// The LX300 tells nothing: a printer out of paper holds the line with XOFF, so the first
// field that writes fails while CHECK, which only asks the port, still finds it usable.
TEST(DriverStatus, Lx300HeldByXoffFailsTheFieldNotTheCheck) {
  JobRun run(kModels[10], {});
  const auto outcomes = run.Run(
      "<Job><Command name='INIT_PRINTER'/><Command name='CHECK'/><Command name='NEWPRINT'>"
      "<SINGLEFIELD><Field>Hello</Field></SINGLEFIELD></Command></Job>",
      L"sim:paper-out");
  ASSERT_EQ(outcomes.size(), 3u);
  EXPECT_TRUE(outcomes[1].ok);
  EXPECT_FALSE(outcomes[2].ok);
  EXPECT_EQ(outcomes[2].errors, std::vector<int>{16});  // the field's attributes go first
}

TEST(DriverSamples, Tm295InterleavedTwoOfFiveAsABitImageReadsBack) {
  JobRun run(kModels[3], {});
  const auto outcomes = run.Run(
      "<Job><Command name='INIT_PRINTER'/><Command name='NEWPRINT'>"
      "<BARCODE Type='ITF2OF5'>12345678</BARCODE></Command></Job>",
      L"sim:");
  ASSERT_EQ(outcomes.size(), 2u);
  EXPECT_TRUE(outcomes[1].ok);
  EXPECT_EQ(ReadBarcodes(PreviewFile(::testing::TempDir() + "tm295.png")), std::vector<std::string>{"12345678"});
}

// The sample logo is 128 x 40 with a one-dot frame, so its box is exact.
TEST(DriverSamples, LogosAtTheSizeAndPlaceOfEachModelsPictureCommand) {
  struct Case {
    const wchar_t* model;
    Box box;  // in the paper strip
  };
  const Case cases[] = {
      {L"TMT70", {68, 0, 256, 120}},   // ESC * 8-dot single density: 2 x 3 dots a pixel, at the left
      {L"VKP80II", {266, 0, 128, 40}},  // GS v 0 normal size, 32 margin bytes on a 640-dot line
      {L"STB112", {320, 0, 256, 80}},   // GS v 0 double size: 18 margin bytes (288 dots) centre it on 832
      {L"PLUS", {256, 0, 128, 40}},     // ESC * 24-dot double density, centred by ESC a 1 on 576 of 640
      {L"LX300", {45, 0, 320, 100}},    // ESC * 5 at 72 dpi: 2.5 dots a pixel at 180 dpi, at the left margin
      {L"ITALORA", {336, 8, 128, 40}},  // ?41/?40 one dot a pixel, centred on the 100 mm label below its 1 mm margin
  };
  posprint::SetLogoDirectory(std::string(POSPRINT_SOURCE_DIR) + "/examples");
  for (const Case& c : cases) {
    SCOPED_TRACE(Nx_Stringa(c.model).ToUtf8());
    const Model* model = nullptr;
    for (const Model& row : kModels)
      if (std::wstring(row.name) == c.model) model = &row;
    JobRun run(*model, {});
    // CHECK after the open, as in a real job: the TMT70's open leaves GS b waiting for a
    // parameter, and the status request is what it takes.
    run.Run("<Job><Command name='INIT_PRINTER'/><Command name='CHECK'/><Command name='START_PRINT'/>"
            "<Command name='NEWPRINT'><LOGO FileName='logo.bmp'/></Command><Command name='STOP_PRINT'/></Job>",
            L"sim:");
    EXPECT_EQ(InkBox(PreviewFile(::testing::TempDir() + "logo.png")), c.box);
  }
}

}  // namespace
}  // namespace emulator_test
