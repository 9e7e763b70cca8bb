// The fault-injection matrix: every model prints the sample ticket while its port or its
// printer misbehaves, and each command must end with the result and error numbers of the
// model's failure rules (written out in model_faults.h), retry nothing, and return.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "faults/model_faults.h"
#include "faults/ticket_run.h"
#include "support/pty_printer.h"

namespace posprint::test {
namespace {

// Every command of the sample ticket succeeds on a ready printer.
std::string AllOk() {
  std::string line;
  for (std::size_t i = 0; i < SampleTicket().size(); ++i) line += i ? " ok" : "ok";
  return line;
}

// The ticket with the writes of each command, for a failure message.
std::string Transcript(const std::vector<CommandOutcome>& outcomes) {
  std::string text;
  for (std::size_t i = 0; i < outcomes.size(); ++i)
    text += CommandLabel(SampleTicket()[i]) + " -> " + outcomes[i].outcome + ": " + outcomes[i].sent + "\n";
  return text;
}

std::string Garble(const std::string& answer) {
  std::string garbled = answer;
  for (char& c : garbled) c = static_cast<char>(~c);
  return garbled;
}

// Longer than every read time-out of every model (the longest is 6000 ms): the answer
// comes after the driver has stopped waiting for it.
constexpr int kLateMs = 6001;
// Within the shortest answer window (100 ms of the shared status query).
constexpr int kSlowMs = 90;

class Faults : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    factory_ = PluginFactory(GetParam());
    printer_ = FindModelPrinter(GetParam());
    expected_ = FindModelFaults(GetParam());
    if (factory_ == nullptr) GTEST_SKIP() << GetParam() << " is not in the driver plug-in yet";
    if (printer_ == nullptr || expected_ == nullptr)
      GTEST_SKIP() << "no printer or fault row for " << GetParam()
                   << " yet: add them to tests/support/model_printers.cpp and tests/faults/model_faults.h";
  }

  // The ticket on a scripted printer; prepare(port) sets the fault up.
  std::vector<CommandOutcome> Ticket(const std::function<void(ScriptedPort&)>& prepare,
                                     const std::function<void(ScriptedPort&, std::size_t)>& before = nullptr) {
    ScriptedPort port;
    if (prepare) prepare(port);
    TicketRun run(factory_, *printer_);
    return run.Run(port.Name(), &port, [&](std::size_t i) {
      if (before) before(port, i);
    });
  }

  void ExpectTicket(const std::string& expected, const std::vector<CommandOutcome>& outcomes) {
    EXPECT_EQ(Line(outcomes), expected) << Transcript(outcomes);
  }

  Factory factory_ = nullptr;
  const ModelPrinter* printer_ = nullptr;
  const ModelFaults* expected_ = nullptr;
};

// The cable is pulled after START_PRINT: every later read and write fails at once.
constexpr std::size_t kVanishBefore = 3;

TEST_P(Faults, TicketUnderEachFault) {
  using Prepare = std::function<void(ScriptedPort&)>;
  struct Row {
    const char* name;
    Prepare prepare;
    std::string expected;
    std::function<void(ScriptedPort&, std::size_t)> before = nullptr;  // before command i
  };
  // The model's printer answering each burst after delayMs, changed by `transform`.
  const auto play = [rules = printer_->rules](int delayMs, std::string (*transform)(const std::string&)) -> Prepare {
    return [rules, delayMs, transform](ScriptedPort& port) { PlayPrinter(port, rules, delayMs, transform); };
  };
  const Row rows[] = {
      {"ready printer", play(0, nullptr), AllOk()},
      {"answers within the time-out", play(kSlowMs, nullptr), AllOk()},
      {"printer that never answers", nullptr, expected_->silent},
      {"answers after the driver stopped waiting", play(kLateMs, nullptr), expected_->late},
      {"garbled answers", play(0, Garble), expected_->garbled},
      {"port that fails to open", [](ScriptedPort& port) { port.FailOpen(); }, expected_->failOpen},
      {"port vanishes mid-ticket", play(0, nullptr), expected_->vanish, [](ScriptedPort& port, std::size_t i) {
         if (i == kVanishBefore) port.Vanish();
       }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    ExpectTicket(row.expected, Ticket(row.prepare, row.before));
  }
}

TEST_P(Faults, PortThatFailsToCloseStaysOpenAndCanBeClosedAgain) {
  ScriptedPort port;
  PlayPrinter(port, printer_->rules);
  port.FailClose();
  TicketRun run(factory_, *printer_);
  std::string expected = AllOk();
  expected.replace(expected.size() - 2, 2, "2");  // STOP_PRINTER: closing failed
  ExpectTicket(expected, run.Run(port.Name(), &port));
  EXPECT_TRUE(run.Driver().IsOpen());
  EXPECT_TRUE(port.IsOpen());

  port.FailClose(false);
  const std::vector<JobCommand> stop = {{"STOP_PRINTER", ""}};
  ExpectTicket("ok", run.Run(port.Name(), &port, nullptr, stop));
  EXPECT_FALSE(run.Driver().IsOpen());
  EXPECT_FALSE(port.IsOpen());
}

// The words of a ticket line from command `first` on.
std::string Tail(const std::string& line, std::size_t first) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < first && at != std::string::npos; ++i) at = line.find(' ', at + 1);
  return at == std::string::npos ? "" : line.substr(at + 1);
}

// The same on a real pseudo-terminal whose far end (the printer) hangs up. The answers
// before the hang-up travel in real time, so only what follows it is compared: a busy
// machine may make the printer's thread miss the status window.
TEST_P(Faults, PseudoTerminalClosedByTheFarEndMidTicket) {
  PtyPrinter printer([rules = printer_->rules](const std::string& received) {
    std::string answer;
    for (const std::string& burst : AnswersTo(rules, received)) answer += burst;
    return answer;
  });
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  TicketRun run(factory_, *printer_);
  const std::wstring portName(printer.PortName().begin(), printer.PortName().end());
  const auto outcomes = run.Run(portName, nullptr, [&](std::size_t i) {
    if (i == kVanishBefore) printer.Hangup();
  });
  EXPECT_EQ(Tail(Line(outcomes), kVanishBefore), Tail(expected_->vanish, kVanishBefore));
  EXPECT_EQ(outcomes.front().outcome, "ok");  // INIT_PRINTER
}

// A short write at each write of the ticket in turn: the command that made it ends as
// the model's rules say and makes no write after it unless that write is unchecked;
// every other command ends as on a ready printer, and no write is repeated.
TEST_P(Faults, ShortWriteAtEachWriteInTurn) {
  const auto baseline = Ticket([this](ScriptedPort& port) { PlayPrinter(port, printer_->rules); });
  ASSERT_EQ(Line(baseline), AllOk()) << Transcript(baseline);
  ASSERT_EQ(expected_->shortWrites.size(), SampleTicket().size());

  int firstWrite = 1;
  for (std::size_t k = 0; k < baseline.size(); ++k) {
    const std::vector<ShortWriteOutcome> words = ParseShortWrites(expected_->shortWrites[k]);
    ASSERT_EQ(static_cast<int>(words.size()), baseline[k].writes)
        << CommandLabel(SampleTicket()[k]) << ": one word a write\n" << Transcript(baseline);
    for (int i = 0; i < baseline[k].writes; ++i) {
      const int n = firstWrite + i;
      SCOPED_TRACE(CommandLabel(SampleTicket()[k]) + ", its write " + std::to_string(i + 1) + " (write " +
                   std::to_string(n) + " of the ticket) short");
      const auto outcomes = Ticket([&](ScriptedPort& port) {
        PlayPrinter(port, printer_->rules);
        port.ShortWriteAt(n, 0);
      });
      EXPECT_EQ(outcomes[k].outcome, words[i].outcome) << Transcript(outcomes);
      EXPECT_EQ(outcomes[k].writes, words[i].goesOn ? baseline[k].writes : i + 1 + words[i].more)
          << Transcript(outcomes);
      for (std::size_t j = 0; j < outcomes.size(); ++j) {
        if (j != k) {
          EXPECT_EQ(outcomes[j].outcome, "ok") << CommandLabel(SampleTicket()[j]);
        }
      }
    }
    firstWrite += baseline[k].writes;
  }
}

INSTANTIATE_TEST_SUITE_P(EveryModel, Faults, ::testing::ValuesIn(FactoryNames()), ModelName);

}  // namespace
}  // namespace posprint::test
