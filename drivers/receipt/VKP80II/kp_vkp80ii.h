// Nx_KpVKP80II: the VKP80II thermal receipt printer with cutter and ticket presenter,
// on a serial port. Lines end on a bare LF; the status is a six-byte reply; the end of
// a ticket feeds, cuts (when configured) and has the presenter eject the ticket.
#pragma once

#include "drivers/receipt/family/family_driver.h"

namespace VKP80II {

class Nx_KpVKP80II : public ReceiptFamily::ReceiptFamilyDriver {
 public:
  Nx_KpVKP80II();
  void Configure(Nx_Smartp<IParameterCollection> parameters) override;

  // Record operations (the layouts are in docs/records.md). Each returns 1 when done,
  // 0 for a record that is missing or too short (nothing sent), else the error number,
  // which is also recorded with set_last_error.
  int PrintFormattedText(const char* record) override;
  int PrintLogoByName(const char* record) override;
  int PrintBarcodeRecord(const char* record) override;
  int PrintSeparatorRecord(const char* record) override;
  int FeedLinesRecord(const char* record) override;
  int CutRecord(const char* record) override;

 protected:
  int QueryStatus() override;
  PrinterResult EndTicket() override;

  PrinterResult SelectCodePage(int codePage) override;
  PrinterResult SelectTerminator() override;
  PrinterResult Initialise() override;
  PrinterResult ResetFont() override;
  PrinterResult SelectFont(const TextAttributes& attributes) override;
  PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp) override;

  bool FieldCut(IXMLDOMNodePtr node) override;
  bool FieldBarcode(IXMLDOMNodePtr node) override;
  bool FieldMobileBarcode(IXMLDOMNodePtr node) override;

 private:
  // Normal rotation, font reset, code page check and the barcode with its text below.
  PrinterResult PrintBarcodeText(const Nx_Stringa& data, int barcodeType);
  // Records result (when an error number) and hands it back.
  int RecordResult(PrinterResult result);
};

}  // namespace VKP80II
