#include "frame/driver_base.h"

#include <climits>
#include <cstring>
#include <cwctype>

#include "platform/otool.h"

namespace posprint {
namespace {
bool failNextConfigAllocation = false;
}

void FailNextConfigAllocation() { failNextConfigAllocation = true; }

void* AllocateConfigBlock(std::size_t size) {
  if (failNextConfigAllocation) {
    failNextConfigAllocation = false;
    return nullptr;
  }
  return std::calloc(1, size);
}
}  // namespace posprint

int AtoiText(const Nx_Stringa& text) {
  const wchar_t* p = text.c_str();
  while (*p == L' ' || (*p >= L'\t' && *p <= L'\r')) ++p;
  bool negative = false;
  if (*p == L'+' || *p == L'-') negative = (*p++ == L'-');
  long long value = 0;
  for (; *p >= L'0' && *p <= L'9'; ++p) {
    value = value * 10 + (*p - L'0');
    if (value > INT_MAX) {  // atoi's overflow is undefined; a terminal clamps
      value = negative ? -static_cast<long long>(INT_MIN) : INT_MAX;
      break;
    }
  }
  return static_cast<int>(negative ? -value : value);
}

DriverBase::DriverBase(const ModelIdentity& identity) {
  portContext = nullptr;
  portHandle = -1;
  portEvent = nullptr;
  isOpen = 0;
  info.modelName = identity.modelName;
  info.componentName = identity.componentName;
  info.flagB = 0;
  info.flagA = 1;
  info.timeout1 = identity.timeout1;
  info.timeout2 = identity.timeout2;
  std::strncpy(info.terminator, identity.terminator, sizeof info.terminator - 1);
  if (identity.ownCommand) ownCommands.add(Nx_Stringa(identity.ownCommand), kCmdOwn);
  InitCommandTable();
}

DriverBase::~DriverBase() {
  // A host that destroys an open driver still gets its port back.
  if (isOpen) {
    CloseHandle(portEvent);
    otool_CLOSE(portHandle);
  }
  delete portContext;
  portContext = nullptr;
  for (void* block : configBlocks_) std::free(block);
}

void DriverBase::EnsureConfigured() {
  if (config_) return;
  Configure(Nx_Smartp<IParameterCollection>(new ParameterCollection()));
}

bool DriverBase::ExecuteCommand(Nx_XMLParser* xmlParser, const Nx_Stringa& command, IXMLDOMNodePtr node,
                                const Nx_Stringa& portName) {
  parser = xmlParser;
  info.portName = portName;
  bool result = true;
  switch (LookupCommand(command.c_str())) {
    case kCmdInitPrinter:
      result = isOpen ? true : OpenPrinter();
      break;
    case kCmdStopPrinter:
      result = ClosePrinter();
      break;
    case kCmdCheck: {
      int status = CheckStatus();
      result = status == kStatusReady;
      if (!result) set_last_error(status);
      break;
    }
    case kCmdStartPrint:
      result = StartPrint();
      break;
    case kCmdStopPrint:
      result = StopPrint();
      break;
    case kCmdNewPrint: {
      if (parser) {
        parser->GetName(node, elementName_);
      } else {
        elementName_.Assign(L"");
      }
      result = PrintField(LookupFieldType(elementName_.c_str()), node);
      break;
    }
    default:
      result = OwnCommand(command, node);
      break;
  }
  node.Release();
  return result;
}

bool DriverBase::OwnCommand(const Nx_Stringa& command, IXMLDOMNodePtr) {
  std::int32_t code = 0;
  ownCommands.lookUp(command, code);  // known or not, a command nobody handles succeeds
  return true;
}

bool DriverBase::OpenPort() {
  EnsureConfigured();
  portEvent = CreateEventW(nullptr, 0, 0, nullptr);
  portHandle = otool_OPEN(info.portName.c_str(), 0, portEvent);
  if (portHandle == -1) {
    CloseHandle(portEvent);
    portEvent = nullptr;
    set_last_error(kErrPortOpen);
    return false;
  }
  return true;
}

void DriverBase::ApplyTimeouts() {
  otool_IOCTL(portHandle, kPortSetReadTimeout, static_cast<const void*>(&info.timeout1));
  otool_IOCTL(portHandle, kPortSetWriteTimeout, static_cast<const void*>(&info.timeout2));
}

PortContext& DriverBase::NewContext(int lineWidth) {
  delete portContext;
  portContext = new PortContext();
  portContext->handle = portHandle;
  portContext->lineWidth = lineWidth;
  portContext->SetTerminator(info.terminator);
  portContext->config = config_;
  return *portContext;
}

bool DriverBase::ClosePrinter() {
  if (!isOpen) return true;
  CloseHandle(portEvent);
  portEvent = nullptr;
  if (otool_CLOSE(portHandle) == 0) {
    set_last_error(kErrCloseFailed);
    return false;  // still marked open: the host may try again
  }
  isOpen = 0;
  portHandle = -1;
  return true;
}

int DriverBase::CheckStatus() {
  if (!isOpen) {
    set_last_error(kErrNotOpen);
    return 1;
  }
  int status = QueryStatus();
  return status < kStatusReady ? kStatusBelowRange : status;
}

bool DriverBase::EndPrint() {
  if (!isOpen) {
    set_last_error(kErrNotOpen);
    return false;
  }
  PrinterResult result = EndTicket();
  if (result == kSuccess) return true;
  if (result != kFailure) set_last_error(result);
  return false;
}

bool DriverBase::RequireOpen() {
  if (isOpen) return true;
  set_last_error(kErrNotOpen);
  return false;
}

bool DriverBase::Fail(PrinterResult result, int zeroCode) {
  set_last_error(result == kFailure ? zeroCode : result);
  return false;
}

bool DriverBase::Attribute(IXMLDOMNodePtr node, const wchar_t* name, Nx_Stringa& value) const {
  value = Nx_Stringa();
  return parser && parser->GetAttributeValue(node, name, value);
}

bool DriverBase::AttributeSet(IXMLDOMNodePtr node, const wchar_t* name, Nx_Stringa& value) const {
  return Attribute(node, name, value) && !value.IsEmpty();
}

Nx_Stringa DriverBase::Text(IXMLDOMNodePtr node) const { return parser ? parser->GetText(node) : Nx_Stringa(); }

Nx_Stringa DriverBase::NodeName(IXMLDOMNodePtr node) const {
  return parser ? parser->GetName(node) : Nx_Stringa();
}

const Nx_Stringa& DriverBase::ElementText(IXMLDOMNodePtr node) {
  if (parser) {
    parser->GetText(node, elementText_);
  } else {
    elementText_.Assign(L"");
  }
  return elementText_;
}

bool DriverBase::NodeNameIs(IXMLDOMNodePtr node, const wchar_t* name) {
  if (parser) {
    parser->GetName(node, elementName_);
  } else {
    elementName_.Assign(L"");
  }
  return elementName_ == name;
}

IXMLDOMNodePtr DriverBase::FirstChild(IXMLDOMNodePtr node, const wchar_t* name) const {
  return parser ? parser->GetFirstChild(node, name) : IXMLDOMNodePtr();
}

IXMLDOMNodePtr DriverBase::NextSibling(IXMLDOMNodePtr node, const wchar_t* name) const {
  return parser ? parser->GetNextNode(node, name) : IXMLDOMNodePtr();
}
