// The status answers of every virtual printer in every state, as the printer sends them,
// and the printer's side of the scrambled link.
#include <gtest/gtest.h>

#include "emulator_helpers.h"

namespace emulator_test {
namespace {

constexpr PrinterState kStates[] = {PrinterState::kReady,     PrinterState::kNearEnd, PrinterState::kPaperOut,
                                    PrinterState::kCoverOpen, PrinterState::kError,   PrinterState::kSilent};

struct Case {
  const char* model;
  const char* request;
  // The answer in each state of kStates, in that order ("" for none; " | " between bursts).
  const char* answers[6];
};

TEST(Status, EveryModelAnswersForEveryState) {
  const Case cases[] = {
      {"TMT70", "10 04 01", {"12", "12", "1A", "1A", "1A", ""}},
      {"TMT70", "10 04 02", {"12", "12", "32", "16", "52", ""}},
      {"TMT70", "10 04 03", {"12", "12", "12", "12", "52", ""}},
      {"TMT70", "10 04 04", {"12", "1E", "7E", "12", "12", ""}},
      {"PLUS", "10 04 02", {"12", "12", "32", "16", "52", ""}},
      {"PLUS", "10 04 04", {"12", "1E", "7E", "12", "12", ""}},
      {"VKP80II",
       "10 04 14",
       {"10 0F 00 00 00 00", "10 0F 04 00 00 00", "10 0F 05 00 00 00", "10 0F 00 02 00 00", "10 0F 00 00 01 00",
        ""}},
      {"TM300", "1B 76", {"00", "03", "0F", "", "", ""}},
      {"TM295", "1B 76", {"00", "01", "03", "", "", ""}},
      {"STB60", "1B 76", {"00", "03", "0F", "", "", ""}},
      {"STB112", "10 04 02", {"12", "12", "32", "16", "52", ""}},
      {"STB112", "10 04 11", {"12", "16", "36", "12", "12", ""}},
      {"QSeries", "10 04 02", {"12", "12", "32", "16", "52", ""}},
      {"QSeries",
       "10 04 14",
       {"10 0F 00 00 00 00", "10 0F 04 08 00 00", "10 0F 05 00 00 00", "10 0F 00 02 00 00", "10 0F 00 00 01 00",
        ""}},
      // ?90 CR: !90&paper&head&ribbon&pause&error CR.
      {"ITALORA",
       "3F 39 30 0D",
       {"21 39 30 26 30 26 30 26 30 26 30 26 30 0D", "21 39 30 26 30 26 30 26 30 26 30 26 30 0D",
        "21 39 30 26 31 26 30 26 30 26 30 26 30 0D", "21 39 30 26 30 26 31 26 30 26 30 26 30 0D",
        "21 39 30 26 30 26 30 26 30 26 30 26 32 0D", ""}},
      {"LX300", "10 04 01 1B 76", {"", "", "", "", "", ""}},  // a printer that never answers
  };
  for (const Case& c : cases) {
    for (int i = 0; i < 6; ++i) {
      SCOPED_TRACE(std::string(c.model) + " " + c.request + " " + posprint::emulator::StateName(kStates[i]));
      auto printer = VirtualPrinter::ForModel(c.model);
      printer->SetState(kStates[i]);
      printer->Receive(Hex(c.request));
      EXPECT_EQ(Answers(*printer), c.answers[i]);
    }
  }
}

// The LX300 answers nothing: it tells that it cannot print by holding the line with
// XOFF. Switched off, it holds nothing (the bytes are lost).
TEST(Status, Lx300HoldsTheLineWhenItCannotPrint) {
  const bool holds[6] = {false, false, true, true, true, false};
  for (int i = 0; i < 6; ++i) {
    SCOPED_TRACE(posprint::emulator::StateName(kStates[i]));
    auto printer = VirtualPrinter::ForModel("LX300");
    printer->SetState(kStates[i]);
    EXPECT_EQ(printer->HoldsLine(), holds[i]);
    auto receipt = VirtualPrinter::ForModel("TMT70");  // a printer that answers holds nothing
    receipt->SetState(kStates[i]);
    EXPECT_FALSE(receipt->HoldsLine());
  }
}

TEST(Status, ZplHostStatusHasItsThreeFramedStrings) {
  const char* first[6] = {
      "030,0,0,1200,000,0,0,0,000,0,0,0", "030,0,0,1200,000,0,0,0,000,0,0,0", "030,1,1,1200,000,0,0,0,000,0,0,0",
      "030,0,1,1200,000,0,0,0,000,0,0,0", "030,0,0,1200,000,0,0,0,000,0,0,1", nullptr};
  for (int i = 0; i < 6; ++i) {
    SCOPED_TRACE(posprint::emulator::StateName(kStates[i]));
    auto printer = VirtualPrinter::ForModel("ZEBRA");
    printer->SetState(kStates[i]);
    printer->Receive(std::string("~HS"));
    if (!first[i]) {
      EXPECT_EQ(printer->AnswersWaiting(), 0u);
      continue;
    }
    const std::string headUp = kStates[i] == PrinterState::kCoverOpen ? "1" : "0";
    std::string burst;
    ASSERT_TRUE(printer->TakeAnswer(&burst));
    EXPECT_EQ(burst, std::string("\x02") + first[i] + "\x03\r\n");
    EXPECT_EQ(burst.size(), 36u);
    ASSERT_TRUE(printer->TakeAnswer(&burst));
    EXPECT_EQ(burst, "\x02" "001,0," + headUp + ",0,0,2,6,0,00000000,0,000\x03\r\n");
    EXPECT_EQ(burst.size(), 36u);
    ASSERT_TRUE(printer->TakeAnswer(&burst));
    EXPECT_EQ(burst, "\x02" "1234,0\x03\r\n");
  }
}

TEST(Status, ZplLabelLengthShowsInTheFirstString) {
  auto printer = VirtualPrinter::ForModel("ZEBRA");
  printer->Receive(std::string("^XA^LL560^PW800^XZ~HS"));
  std::string burst;
  ASSERT_TRUE(printer->TakeAnswer(&burst));
  EXPECT_EQ(burst.substr(9, 4), "0560");
}

TEST(Status, DleEotIsAnsweredEvenInsideAnotherCommand) {
  // The TMT70's open leaves GS b waiting for its parameter: the status request that
  // follows is still answered on arrival.
  auto printer = PrinterFed("TMT70", "1B 40 1D 62 10 04 02");
  EXPECT_EQ(Answers(*printer), "12");
}

TEST(Status, DleEotSplitAcrossWritesIsAnsweredOnce) {
  auto printer = PrinterFed("TMT70", "10");
  printer->Receive(Hex("04"));
  EXPECT_EQ(Answers(*printer), "");
  printer->Receive(Hex("04"));
  EXPECT_EQ(Answers(*printer), "12");
}

TEST(Status, StbSettingThatSwitchesOnTheMarkSensorIsConfirmed) {
  auto printer = PrinterFed("STB112", "1D FF 0A 32 10 00 68 1D FF 0A 32 09 01 62");
  EXPECT_EQ(Answers(*printer), "06");
  auto roll = PrinterFed("STB112", "1D FF 0A 32 09 00 61");
  EXPECT_EQ(Answers(*roll), "");
}

TEST(Scrambling, Stb80RunsScrambledFromPowerOn) {
  auto printer = VirtualPrinter::ForModel("STB80");
  EXPECT_EQ(printer->ScrambleKey(), 0xCB);
  printer->Receive(Hex("DB CF C9"));  // DLE EOT 2, scrambled
  EXPECT_EQ(Answers(*printer), "D9") << "12 goes out scrambled";
  printer->Receive(Hex("10 04 02"));  // plain: noise to a scrambled printer
  EXPECT_EQ(Answers(*printer), "");
}

TEST(Scrambling, EscF9SwitchesTheStb112ToScrambled) {
  auto printer = PrinterFed("STB112", "10 04 02 1B F9 CB DB CF C9");
  EXPECT_EQ(Answers(*printer), "12 | D9");
  EXPECT_EQ(printer->ScrambleKey(), 0xCB);
}

TEST(Scrambling, Stb112LearnsTheModeFromWhatItFirstHears) {
  auto plain = PrinterFed("STB112", "1B 74 00");
  EXPECT_EQ(plain->ScrambleKey(), 0);
  auto scrambled = PrinterFed("STB112", "D0 BF CB");  // ESC t 0, scrambled
  EXPECT_EQ(scrambled->ScrambleKey(), 0xCB);
  EXPECT_TRUE(scrambled->PrinterNotes().List().empty());
}

TEST(Scrambling, QSeriesTakesUpTheScrambledModeAfterIdentifying) {
  auto printer = PrinterFed("QSeries", "1D 49 31");
  EXPECT_EQ(Answers(*printer), "51") << "the identification goes out plain";
  EXPECT_EQ(printer->ScrambleKey(), 0xCB);
  printer->Receive(Hex("D0 8B"));  // ESC @, scrambled
  EXPECT_TRUE(printer->PrinterNotes().List().empty());
}

TEST(Scrambling, SilentQSeriesStaysPlain) {
  auto printer = VirtualPrinter::ForModel("QSeries");
  printer->SetState(PrinterState::kSilent);
  printer->Receive(Hex("1D 49 31"));
  EXPECT_EQ(printer->AnswersWaiting(), 0u);
  EXPECT_EQ(printer->ScrambleKey(), 0);
}

TEST(Scrambling, Stb60HasNoScrambledMode) {
  auto printer = PrinterFed("STB60", "1B F9 CB");
  EXPECT_EQ(printer->ScrambleKey(), 0);
  ASSERT_FALSE(printer->PrinterNotes().List().empty());
  EXPECT_EQ(printer->PrinterNotes().List()[0], "byte 0: unknown command ESC F9");
}

TEST(Status, PurgeDropsUnreadAnswers) {
  auto printer = PrinterFed("TMT70", "10 04 02 10 04 04");
  EXPECT_EQ(printer->DiscardAnswers(), 2);
  EXPECT_EQ(printer->AnswersWaiting(), 0u);
}

}  // namespace
}  // namespace emulator_test
