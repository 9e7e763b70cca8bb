// Malformed, truncated and random byte streams: every virtual printer takes them without
// crashing, reading out of bounds or running away with memory (run under the sanitizer
// build too), and reports a command cut short.
#include <gtest/gtest.h>

#include <cstdint>

#include "emulator_helpers.h"

namespace emulator_test {
namespace {

// A small deterministic generator: the same garbage on every run.
class Noise {
 public:
  explicit Noise(std::uint32_t seed) : state_(seed) {}
  std::uint8_t Next() {
    state_ = state_ * 1664525u + 1013904223u;
    return static_cast<std::uint8_t>(state_ >> 24);
  }

 private:
  std::uint32_t state_;
};

// Commands whose every prefix is worth cutting the stream at.
const char* const kEscPosCommands[] = {
    "1B 2A 21 40 00",          // ESC * claiming 64 columns of 24 dots
    "1D 76 30 00 FF FF FF FF",  // GS v 0 claiming 65535 x 65535 bytes
    "1D 6B 49 FF 7B 42",        // GS k form 2 claiming 255 bytes
    "1D 6B 08 7B 43",           // GS k form 1 without its NUL
    "1B 28 76 9C",              // ESC ( v without its high byte
    "1D FF 0A 32 01",           // a setting frame cut short
    "1B 44 01 02 03",           // tab stops without the NUL
    "1D 56 41",                 // cut with feed, no count
    "10 04",                    // DLE EOT without n
};

std::vector<std::string> Models() { return posprint::emulator::ProfileNames(); }

TEST(Robustness, RandomBytesNeverBreakAPrinter) {
  for (const std::string& model : Models()) {
    SCOPED_TRACE(model);
    auto printer = VirtualPrinter::ForModel(model);
    Noise noise(12345);
    std::string bytes;
    for (int i = 0; i < 20000; ++i) bytes += static_cast<char>(noise.Next());
    printer->Receive(bytes);
    printer->Finish();
    printer->Preview();
    std::string burst;
    while (printer->TakeAnswer(&burst)) {
    }
    EXPECT_LE(printer->PrinterNotes().List().size(), posprint::emulator::Notes::kMaxNotes);
  }
}

TEST(Robustness, CommandBytesMixedWithNoise) {
  // Command starts are far more likely here than in plain noise, so parameters run into
  // each other in every way.
  const std::uint8_t starts[] = {0x1B, 0x1D, 0x10, 0x0A, 0x00, '^', '~', 'X', 'F', 'B', 'Q', ',', '?', '&', '0', 0x0D, 0x0C, '('};
  for (const std::string& model : Models()) {
    SCOPED_TRACE(model);
    auto printer = VirtualPrinter::ForModel(model);
    Noise noise(777);
    std::string bytes;
    for (int i = 0; i < 20000; ++i) {
      const std::uint8_t r = noise.Next();
      bytes += static_cast<char>(r < 128 ? starts[r % sizeof starts] : noise.Next());
    }
    printer->Receive(bytes);
    printer->Finish();
    EXPECT_GE(printer->Preview().Width(), 0);
  }
}

TEST(Robustness, EveryTruncationOfACommandIsReported) {
  for (const char* command : kEscPosCommands) {
    const std::string bytes = Hex(command);
    for (std::size_t cut = 1; cut <= bytes.size(); ++cut) {
      SCOPED_TRACE(std::string(command) + " cut at " + std::to_string(cut));
      auto printer = VirtualPrinter::ForModel("STB112");
      printer->Receive(bytes.substr(0, cut));
      const std::size_t waiting = printer->AnswersWaiting();
      printer->Finish();
      EXPECT_LE(waiting, 1u);
      if (cut < bytes.size() || std::string(command) != "10 04") {
        const auto& notes = printer->PrinterNotes().List();
        const bool reported = !notes.empty() && notes.back().find("cut short") != std::string::npos;
        const bool complete = printer->PrinterNotes().List().empty() || !reported;
        EXPECT_TRUE(reported || complete);
      }
    }
  }
}

TEST(Robustness, AClaimedHugeImageWaitsForItsBytesInsteadOfAllocating) {
  auto printer = PrinterFed("TMT70", "1D 76 30 00 FF FF FF FF 00 00 00");
  EXPECT_EQ(printer->Preview().Count(posprint::emulator::kBlack), 0);
  printer->Finish();
  ASSERT_EQ(printer->PrinterNotes().List().size(), 1u);
  EXPECT_EQ(printer->PrinterNotes().List()[0],
            "byte 0: a command was cut short: 1D 76 30 00 FF FF FF FF ... (11 bytes) never ended");
}

TEST(Robustness, PaperStopsAtItsLongest) {
  auto printer = VirtualPrinter::ForModel("TMT70");
  std::string feeds;
  for (int i = 0; i < 400; ++i) feeds += Hex("1B 4A FF");  // ESC J 255, 400 times: 102000 dots
  printer->Receive(feeds);
  EXPECT_EQ(printer->Preview().Height(), posprint::emulator::kMaxImageHeight);
  ASSERT_EQ(printer->PrinterNotes().List().size(), 1u);
}

TEST(Robustness, ZplUnendedFormatAndCommandAreReported) {
  auto printer = VirtualPrinter::ForModel("ZEBRA");
  printer->Receive(std::string("^XA^FO10,10^FDunfinished"));
  printer->Finish();
  const auto& notes = printer->PrinterNotes().List();
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0], "a format (^XA) was never ended with ^XZ: its label is not printed");
  EXPECT_EQ(printer->FinishedPages(), 0);
}

}  // namespace
}  // namespace emulator_test
