// The command contract every driver shares, checked on a probe driver.
#include <gtest/gtest.h>

#include "frame/driver_base.h"
#include "platform/otool.h"
#include "platform/scripted_port.h"

namespace {

class ProbeDriver : public DriverBase {
 public:
  ProbeDriver() : DriverBase(*FindIdentity("create_STB112Driver")) {}
  void Configure(Nx_Smartp<IParameterCollection>) override { NewConfig<int>(); }
  int status = kStatusReady;
  PrinterResult endResult = kSuccess;
  int ends = 0;
  using DriverBase::Context;

 protected:
  bool OpenPrinter() override {
    if (!OpenPort()) return false;
    ApplyTimeouts();
    NewContext(42);
    isOpen = 1;
    return true;
  }
  int QueryStatus() override { return status; }
  PrinterResult EndTicket() override {
    ++ends;
    return endResult;
  }
};

class Dispatch : public ::testing::Test {
 protected:
  bool Run(const wchar_t* command, IXMLDOMNodePtr node = IXMLDOMNodePtr()) {
    driver.ClearErrors();
    return driver.ExecuteCommand(&parser, command, node, port.Name());
  }
  std::vector<int> Errors() const { return driver.RecordedErrors(); }

  posprint::ScriptedPort port;
  Nx_XMLParser parser;
  ProbeDriver driver;
};

TEST_F(Dispatch, UnknownEmptyAndOwnCommandsSucceedSilently) {
  for (const wchar_t* name : {L"", L"PRINT_LOGO", L"STB112_NEWPRINT", L"stb112_newprint"}) {
    EXPECT_TRUE(Run(name));
    EXPECT_TRUE(Errors().empty());
  }
  EXPECT_EQ(port.Opens(), 0);
}

TEST_F(Dispatch, CommandsBeforeInitRecordThree) {
  EXPECT_FALSE(Run(L"CHECK"));
  EXPECT_EQ(Errors(), (std::vector<int>{3, 1}));  // not open, then the status it could not read
  EXPECT_FALSE(Run(L"STOP_PRINT"));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
}

TEST_F(Dispatch, InitOpensOnceAndHandsOverTheTimeouts) {
  EXPECT_TRUE(Run(L"init_printer"));
  EXPECT_TRUE(Run(L"INIT_PRINTER"));
  EXPECT_EQ(port.Opens(), 1);
  int readTimeout = 0, writeTimeout = 0;
  otool_IOCTL(driver.Context()->handle, kPortGetReadTimeout, static_cast<void*>(&readTimeout));
  otool_IOCTL(driver.Context()->handle, kPortGetWriteTimeout, static_cast<void*>(&writeTimeout));
  EXPECT_EQ(readTimeout, 300);
  EXPECT_EQ(writeTimeout, 5000);
}

TEST_F(Dispatch, CloseTwiceSucceedsAFailedCloseRecordsTwoAndAFailedOpen71) {
  ASSERT_TRUE(Run(L"INIT_PRINTER"));
  EXPECT_TRUE(Run(L"STOP_PRINTER"));
  EXPECT_FALSE(port.IsOpen());
  EXPECT_TRUE(Run(L"STOP_PRINTER"));
  EXPECT_TRUE(Errors().empty());
  ASSERT_TRUE(Run(L"INIT_PRINTER"));
  port.FailClose();
  EXPECT_FALSE(Run(L"STOP_PRINTER"));
  EXPECT_EQ(Errors(), (std::vector<int>{2}));
  EXPECT_TRUE(driver.IsOpen());
  ProbeDriver fresh;
  port.FailOpen();
  EXPECT_FALSE(fresh.ExecuteCommand(&parser, L"INIT_PRINTER", IXMLDOMNodePtr(), port.Name()));
  EXPECT_EQ(fresh.RecordedErrors(), (std::vector<int>{71}));
  EXPECT_FALSE(fresh.IsOpen());
}

// CHECK reports the status (below 100 it is 150); STOP_PRINT reports the end of the ticket.
TEST_F(Dispatch, CheckAndStopPrintReportWhatTheDriverSays) {
  ASSERT_TRUE(Run(L"INIT_PRINTER"));
  struct Row { const wchar_t* command; int value; bool ok; std::vector<int> errors; };
  const Row rows[] = {{L"CHECK", 100, true, {}},       {L"CHECK", 102, false, {102}}, {L"CHECK", 0, false, {150}},
                      {L"CHECK", 99, false, {150}},    {L"CHECK", 101, false, {101}}, {L"STOP_PRINT", 1, true, {}},
                      {L"STOP_PRINT", 0, false, {}}, {L"STOP_PRINT", 13, false, {13}}};
  for (const Row& r : rows) {
    (r.command[0] == L'C' ? driver.status : driver.endResult) = r.value;
    EXPECT_EQ(Run(r.command), r.ok) << r.value;
    EXPECT_EQ(Errors(), r.errors) << r.value;
  }
  EXPECT_EQ(driver.ends, 3);
}

TEST_F(Dispatch, FieldsNeedAnOpenPort) {
  ASSERT_TRUE(parser.LoadString("<Job><LINE Char='='/><FOOTER/></Job>", nullptr));
  EXPECT_FALSE(Run(L"NEWPRINT", parser.GetFirstChild(parser.Root(), L"LINE")));
  EXPECT_EQ(Errors(), (std::vector<int>{3}));
  EXPECT_TRUE(Run(L"NewPrint", parser.GetFirstChild(parser.Root(), L"FOOTER")));  // nothing to print
  EXPECT_TRUE(Errors().empty());
}

TEST(Configure, FailedAllocationRecords12AndLeavesNoBlock) {
  ProbeDriver driver;
  posprint::FailNextConfigAllocation();
  driver.Configure(Nx_Smartp<IParameterCollection>(new ParameterCollection()));
  EXPECT_EQ(driver.RecordedErrors(), (std::vector<int>{12}));
  EXPECT_EQ(driver.ConfigBlock(), nullptr);
}

TEST(AtoiText, LeadingDigitsOnly) {
  struct Row { const wchar_t* text; int value; };
  const Row rows[] = {{L"12", 12}, {L" -5", -5}, {L"+7x", 7}, {L"2.5", 2}, {L"abc", 0}, {L"", 0},
                      {L"99999999999", 2147483647}};
  for (const Row& r : rows) EXPECT_EQ(AtoiText(r.text), r.value);
}

}  // namespace
