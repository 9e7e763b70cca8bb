// APrinter: the framework's abstract printer, from which every driver derives.
// The host knows a driver only through this class: the virtual operations below,
// in slot order, and the errors recorded with set_last_error.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/clock.h"
#include "platform/nx_string.h"
#include "platform/nx_xml.h"
#include "platform/om_map.h"
#include "platform/parameters.h"
#include "platform/text_builder.h"

struct PortContext;

struct PrinterInfo {
  Nx_Stringa modelName;
  Nx_Stringa componentName;
  Nx_Stringa portName;
  std::uint8_t flagA = 1;
  std::uint8_t flagB = 0;
  char terminator[6] = {};
  std::int32_t timeout1 = 0;
  std::int32_t timeout2 = 0;
};

class APrinter : public IConfigurable {
 public:
  APrinter() = default;
  APrinter(const APrinter&) = delete;
  APrinter& operator=(const APrinter&) = delete;

  // Slot 0.
  ~APrinter() override;
  // Slot 1: each driver reads its own keys.
  void Configure(Nx_Smartp<IParameterCollection> parameters) override = 0;
  // Slot 2.
  virtual void GetComponentName(Nx_Stringa& name);
  // Slot 3.
  virtual bool GetVisible();
  // Slot 4: records a code for the host; every code of a command is kept, in order.
  virtual void set_last_error(int code);
  // Slot 5: ends a ticket; the framework's own calls EndPrint (slot 7) and returns its result.
  virtual bool checkStopPrint();
  // Slot 6: printer status, 100 when ready.
  virtual int CheckStatus() = 0;
  // Slot 7: end of print.
  virtual bool EndPrint() = 0;
  // Slot 8: one command by name.
  virtual bool ExecuteCommand(Nx_XMLParser* parser, const Nx_Stringa& command, IXMLDOMNodePtr node,
                              const Nx_Stringa& portName) = 0;
  // Slots 9 to 14: model-specific record operations on one 8-bit text; 0 where a
  // model has none.
  virtual int PrintFormattedText(const char* record);
  virtual int PrintLogoByName(const char* record);
  virtual int PrintBarcodeRecord(const char* record);
  virtual int PrintSeparatorRecord(const char* record);
  virtual int FeedLinesRecord(const char* record);
  virtual int CutRecord(const char* record);

  // For the host: the codes recorded since the last ClearErrors, in order.
  const std::vector<int>& RecordedErrors() const { return errors_; }
  void ClearErrors() { errors_.clear(); }
  int LastError() const { return errors_.empty() ? 0 : errors_.back(); }

  const PrinterInfo& Info() const { return info; }
  bool IsOpen() const { return isOpen != 0; }

 protected:
  // Code lookups that map keyword-table codes on to a model's values.
  int getFontTypeID(char c);
  int getFontFamilyID(char c);
  int getExpWidthID(char c);
  int getExpHeightID(char c);
  int getBarcodeTypeID(char c);

  PortContext* portContext = nullptr;
  TextBuilder lineBuilder;
  PrinterInfo info;
  std::uint32_t spareWord = 0;
  Nx_Stringa spareText;
  std::int32_t codePage = 0;
  std::uint8_t codePageSet = 0;
  std::int32_t portHandle = -1;
  HANDLE portEvent = nullptr;
  std::uint8_t isOpen = 0;
  OMMap<Nx_Stringa, std::int32_t> ownCommands;
  Nx_XMLParser* parser = nullptr;

 private:
  std::vector<int> errors_;
};
