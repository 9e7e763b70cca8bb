#include "bench_job.h"

#include "platform/parameters.h"

namespace posprint::bench {
namespace {

bool IsSessionOpening(const Nx_Stringa& name) {
  const Nx_Stringa upper = name.Upper();
  return upper == L"INIT_PRINTER" || upper == L"CHECK";
}

bool IsSessionClosing(const Nx_Stringa& name) { return name.Upper() == L"STOP_PRINTER"; }

}  // namespace

bool BenchJob::Load(const std::string& path, std::string* error) {
  return parser_.LoadFile(path, error) && Collect(error);
}

bool BenchJob::LoadString(const std::string& xml, std::string* error) {
  return parser_.LoadString(xml, error) && Collect(error);
}

bool BenchJob::Collect(std::string* error) {
  opening_.clear();
  ticket_.clear();
  closing_.clear();
  const IXMLDOMNodePtr root = parser_.Root();
  for (IXMLDOMNodePtr command = parser_.GetFirstChild(root, L"Command"); !command.IsNull();
       command = parser_.GetNextNode(command, L"Command")) {
    JobStep step;
    if (!parser_.GetAttributeValue(command, L"name", step.command)) {
      if (error) *error = "a Command without a name";
      return false;
    }
    step.node = parser_.GetFirstChild(command);
    step.label = step.command.ToUtf8();
    if (!step.node.IsNull()) {
      step.label += " " + parser_.GetName(step.node).ToUtf8();
      Nx_Stringa type;  // BARCODE CODE128 and BARCODE QR_CODE are two rows
      if (parser_.GetAttributeValue(step.node, L"Type", type)) step.label += " " + type.ToUtf8();
    }
    if (IsSessionOpening(step.command)) {
      opening_.push_back(std::move(step));
    } else if (IsSessionClosing(step.command)) {
      closing_.push_back(std::move(step));
    } else {
      ticket_.push_back(std::move(step));
    }
  }
  return true;
}

DriverSession::DriverSession(Factory factory, const Parameters& parameters, std::wstring port)
    : driver_(factory()), port_(std::move(port)) {
  auto* collection = new ParameterCollection();
  for (const auto& [key, value] : parameters) collection->Set(Nx_Stringa::FromUtf8(key), Nx_Stringa::FromUtf8(value));
  driver_->Configure(Nx_Smartp<IParameterCollection>(collection));
}

DriverSession::~DriverSession() = default;

bool DriverSession::Open(BenchJob& job, std::string* error) {
  for (const JobStep& step : job.Opening()) {
    driver_->ClearErrors();
    if (!driver_->ExecuteCommand(&job.Parser(), step.command, step.node, port_)) {
      if (error) *error = step.label + " failed, error " + std::to_string(driver_->LastError());
      return false;
    }
  }
  open_ = true;
  return true;
}

bool DriverSession::RunTicket(BenchJob& job) {
  bool ok = true;
  for (const JobStep& step : job.Ticket()) {
    ok &= driver_->ExecuteCommand(&job.Parser(), step.command, step.node, port_);
  }
  return ok;
}

std::string DriverSession::FirstFailure(BenchJob& job) {
  for (const JobStep& step : job.Ticket()) {
    driver_->ClearErrors();
    if (!driver_->ExecuteCommand(&job.Parser(), step.command, step.node, port_)) {
      std::string codes;
      for (int code : driver_->RecordedErrors()) codes += " " + std::to_string(code);
      return step.label + " failed, errors" + codes;
    }
  }
  return "";
}

void DriverSession::Close(BenchJob& job) {
  if (!open_) return;
  for (const JobStep& step : job.Closing()) driver_->ExecuteCommand(&job.Parser(), step.command, step.node, port_);
  open_ = false;
}

}  // namespace posprint::bench
