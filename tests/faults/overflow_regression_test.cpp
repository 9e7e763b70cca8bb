// Numbers past every limit in job attributes: the arithmetic on them stays defined (the
// sanitizer build fails on any signed overflow) and the printer gets what the terminal's
// 32-bit arithmetic would send.
#include <gtest/gtest.h>

#include "faults/ticket_run.h"

namespace posprint::test {
namespace {

TEST(NumbersPastTheLimits, BarcodeHeightOfMillionsOfMillimetresWrapsLikeTheTerminal) {
  struct Case {
    const char* name;
    const char* height;
    const char* heightCommand;  // GS h n as sent
  };
  const Case cases[] = {
      {"ten millimetres", "10", "1D 68 50"},
      {"past 32 bits: 2147483647 x 8 dots wraps to ...F8", "99999999999", "1D 68 F8"},
      {"negative: -1 x 8 dots", "-1", "1D 68 F8"},
      {"the smallest int", "-99999999999", "1D 68 00"},
  };
  const Factory factory = PluginFactory("create_KpTMT70");
  ASSERT_NE(factory, nullptr);
  const ModelPrinter& printer = *FindModelPrinter("create_KpTMT70");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ScriptedPort port;
    TicketRun run(factory, printer);
    const std::vector<JobCommand> job = {
        {"INIT_PRINTER", ""},
        {"NEWPRINT", std::string("<BARCODE Type=\"EAN8\" Height=\"") + c.height + "\">1234567</BARCODE>"}};
    const auto outcomes = run.Run(port.Name(), &port, nullptr, job);
    EXPECT_EQ(Line(outcomes), "ok ok");
    EXPECT_NE(outcomes[1].sent.find(std::string("[") + c.heightCommand + "]"), std::string::npos) << outcomes[1].sent;
  }
}

}  // namespace
}  // namespace posprint::test
