// How each model's printer answers when it is ready, and a sample ticket that every model
// can print. Shared by the fault-injection tests (tests/faults) and the fuzz harnesses
// (fuzz/), so that a new model needs one row here to be exercised by both.
//
// A printer is a list of rules: when the bytes on the line end with a request, the
// printer answers with its bursts (one burst per read the driver makes). The ticket
// printers that scramble their line (every byte XORed with 0xCB once the driver has
// switched the mode on) are recognised either way: a scrambled request gets scrambled
// answers.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/scripted_port.h"

namespace posprint::test {

struct PrinterRule {
  std::string request;               // the bytes the driver sends, plain
  std::vector<std::string> answers;  // the printer's answers, plain, one burst per read
};

struct ModelPrinter {
  const char* factory;  // the factory export, as in kModelIdentities
  std::vector<std::pair<std::wstring, std::wstring>> parameters;  // configuration for the ticket
  std::vector<PrinterRule> rules;  // a ready printer's answers
};

// The printer of a factory export, or null when no row was written for it yet.
const ModelPrinter* FindModelPrinter(const char* factory);

// The key the scrambling ticket printers use (203, request 1B F9 CB).
constexpr unsigned char kScrambleKey = 0xCB;
std::string Scrambled(std::string bytes, unsigned char key = kScrambleKey);

// The answers of the first rule whose request ends `line` (the bytes sent so far), plain
// or scrambled; empty when nothing is asked.
std::vector<std::string> AnswersTo(const std::vector<PrinterRule>& rules, const std::string& line);

// Makes the scripted port answer like the printer: each burst is queued with delayMs.
// `transform` (may be null) changes every burst before it is queued (garbling).
void PlayPrinter(ScriptedPort& port, const std::vector<PrinterRule>& rules, int delayMs = 0,
                 std::string (*transform)(const std::string&) = nullptr);

// One command of a job: its name and the job element (XML, "" for none).
struct JobCommand {
  std::string name;
  std::string element;
};

// A short ticket with one element of every kind that prints: logo, single and double
// field, line, barcode, line feed and cut, framed by the open, the status check and the
// ticket's start and end, then the close.
const std::vector<JobCommand>& SampleTicket();
// The file name of the ticket's logo, and its bytes (a 16 x 2 dot 1-bit BMP).
constexpr const char* kSampleLogoName = "fault.bmp";
std::vector<unsigned char> SampleLogo();

// "NEWPRINT LOGO" for a command with an element, else the command name.
std::string CommandLabel(const JobCommand& command);

}  // namespace posprint::test
