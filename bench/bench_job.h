// A job file (the format of `posprint run`: a root element holding Command elements)
// parsed once, and a driver session that runs it against the memory port.
//
// Commands fall in two groups: the session (INIT_PRINTER, CHECK, STOP_PRINTER), run once
// around a benchmark, and the ticket (everything else: START_PRINT, the NEWPRINT
// elements, STOP_PRINT), run once a timed iteration.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/aprinter.h"
#include "platform/nx_xml.h"

namespace posprint::bench {

struct JobStep {
  Nx_Stringa command;
  IXMLDOMNodePtr node;
  std::string label;  // "NEWPRINT DOUBLEFIELD"
};

class BenchJob {
 public:
  bool Load(const std::string& path, std::string* error);
  bool LoadString(const std::string& xml, std::string* error);

  Nx_XMLParser& Parser() { return parser_; }
  const std::vector<JobStep>& Opening() const { return opening_; }
  const std::vector<JobStep>& Ticket() const { return ticket_; }
  const std::vector<JobStep>& Closing() const { return closing_; }

 private:
  bool Collect(std::string* error);
  Nx_XMLParser parser_;
  std::vector<JobStep> opening_, ticket_, closing_;
};

using Factory = APrinter* (*)();
using Parameters = std::vector<std::pair<std::string, std::string>>;

// A driver made, configured and opened on a port: the session commands of the job run
// in Open() and Close(), the ticket in RunTicket().
class DriverSession {
 public:
  DriverSession(Factory factory, const Parameters& parameters, std::wstring port);
  ~DriverSession();

  // INIT_PRINTER and CHECK of the job; false with the failing step named.
  bool Open(BenchJob& job, std::string* error);
  // START_PRINT ... STOP_PRINT: true when every command succeeded.
  bool RunTicket(BenchJob& job);
  // The first step of the ticket that failed, with the codes recorded (for a message).
  std::string FirstFailure(BenchJob& job);
  void Close(BenchJob& job);
  APrinter& Driver() { return *driver_; }

 private:
  std::unique_ptr<APrinter> driver_;
  Nx_Stringa port_;
  bool open_ = false;
};

}  // namespace posprint::bench
