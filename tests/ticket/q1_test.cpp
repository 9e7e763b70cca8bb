// The Q1: identification at the open and the port mode it decides, the purge at the start
// of a ticket, the full cut only, and the status with and without recovery.
#include "drivers/ticket/Q1/nx_q1.h"

#include "ticket_fixture.h"

namespace ticket_test {
namespace {

using Q1Test = TicketTest<Q1::Nx_Q1>;

TEST_F(Q1Test, Identity) {
  EXPECT_EQ(driver.Info().modelName, L"QSeries");
  EXPECT_EQ(driver.Info().componentName, L"KpQ1");
  EXPECT_EQ(driver.Info().timeout1, 3000);
  EXPECT_EQ(driver.Info().timeout2, 3000);
}

TEST_F(Q1Test, IdentificationDecidesThePortMode) {
  struct Case {
    const char* name;
    std::string identity;
    std::uint32_t printerId;
    std::string line;
  };
  const Case cases[] = {
      // GS I 1 plain, then ESC @ and ESC t 0 under key 0xCB.
      {"answers 1: scrambled", "\x01", 1, "1D 49 31 D0 8B D0 BF CB"},
      {"no answer: id 0, scrambled", "", 0, "1D 49 31 D0 8B D0 BF CB"},
      {"answers 255: stays plain", "\xFF", 255, "1D 49 31 1B 40 1B 74 00"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    Clear();
    printer.identity = c.identity;
    Configure({});
    ASSERT_TRUE(Command(L"INIT_PRINTER"));
    EXPECT_EQ(Line(), c.line);
    EXPECT_EQ(driver.Context()->reserved, c.printerId);
    EXPECT_EQ(driver.Context()->lineWidth, 42);
  }
}

class Q1Scrambled : public Q1Test {
 protected:
  void SetUp() override {
    printer.identity = "\x01";
    Open();
    printer.key = 0xCB;  // the printer took up the mode it is told to run in
  }
};

TEST_F(Q1Scrambled, StartPurgesAndSendsNothing) {
  port.Answer("\x55");
  EXPECT_TRUE(Command(L"START_PRINT"));
  EXPECT_EQ(Line(), "");
  EXPECT_EQ(port.PendingAnswers(), 0u);
}

TEST_F(Q1Scrambled, EveryCutIsFull) {
  for (const char* xml : {"<CUT/>", "<CUT Type='CUT_PARTIAL'/>", "<CUT Type='CUT_FULL'/>"}) {
    SCOPED_TRACE(xml);
    Clear();
    EXPECT_TRUE(Field(xml));
    EXPECT_EQ(Read(), "1B 69");
  }
}

TEST_F(Q1Scrambled, EndOfTicket) {
  const std::string feeds = "0A 0A 0A 0A 0A 0A 0A 0A";
  struct Case {
    const char* name;
    Keys keys;
    std::string read;
  };
  const Case cases[] = {
      {"defaults", {}, feeds},
      {"partial is full here", {{L"param_CutType", L"val_Partial"}}, feeds + " 1B 69"},
      {"no feeds, no cut", {{L"param_LinefeedEjection", L"FALSE"}, {L"param_CutType", L"val_No"}}, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Command(L"STOP_PRINTER");
    printer.key = 0;
    Open(c.keys);
    printer.key = 0xCB;
    EXPECT_TRUE(Command(L"STOP_PRINT"));
    EXPECT_EQ(Read(), c.read);
  }
}

TEST_F(Q1Scrambled, StatusDecoding) {
  struct Case {
    const char* name;
    std::string status, extended;
    bool ok;
    std::vector<int> errors;
  };
  const Case cases[] = {
      {"ready", std::string(1, '\0'), std::string(6, '\0'), true, {}},
      {"cover", "\x04", std::string(6, '\0'), false, {105}},
      {"paper out", "\x20", std::string(6, '\0'), false, {102}},
      {"fourth byte 0x08", std::string(1, '\0'), Hex("00 00 00 08 00 00"), false, {104}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    printer.status = c.status;
    printer.extended = c.extended;
    EXPECT_EQ(Command(L"CHECK"), c.ok);
    EXPECT_EQ(Errors(), c.errors);
  }
}

// The stale bytes are purged before the request; the plain printer is then recovered.
TEST_F(Q1Scrambled, UnsolicitedBytesLeadToResync) {
  printer.key = 0;  // reset: plain, and it chatters on power-up
  port.Answer("\x7F\x7F");
  EXPECT_TRUE(Command(L"CHECK"));
  EXPECT_EQ(printer.key, 0xCB);
  EXPECT_GE(port.Purges(), 2);
}

TEST(Q1Plain, NoRecoveryTowardsAPrinterThatRefusedTheScrambledMode) {
  posprint::FakeClock clock;
  posprint::ScopedClock scoped(clock);
  posprint::ScriptedPort port;
  TicketPrinter printer(port);
  printer.identity = "\xFF";
  Nx_XMLParser parser;
  Q1::Nx_Q1 driver;
  ASSERT_TRUE(driver.ExecuteCommand(&parser, L"INIT_PRINTER", IXMLDOMNodePtr(), port.Name()));
  port.ClearWritten();
  printer.silent = true;
  EXPECT_FALSE(driver.ExecuteCommand(&parser, L"CHECK", IXMLDOMNodePtr(), port.Name()));
  EXPECT_EQ(driver.RecordedErrors(), std::vector<int>{101});
  EXPECT_EQ(ToHex(port.Written()), "10 04 02");  // no plain retry, no mode switch
  printer.silent = false;
  driver.ClearErrors();
  EXPECT_TRUE(driver.ExecuteCommand(&parser, L"CHECK", IXMLDOMNodePtr(), port.Name()));
}

}  // namespace
}  // namespace ticket_test
