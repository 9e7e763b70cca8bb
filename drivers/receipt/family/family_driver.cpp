#include "drivers/receipt/family/family_driver.h"

#include "frame/output.h"
#include "platform/codepage.h"

namespace ReceiptFamily {

ReceiptFamilyDriver::ReceiptFamilyDriver(const ModelIdentity& identity, const FamilyTraits& traits)
    : DriverBase(identity), traits_(traits) {}

PrinterResult ReceiptFamilyDriver::ResetFont() { return ResetPrintMode(Port()); }

bool ReceiptFamilyDriver::OpenPrinter() {
  if (!OpenPort()) return false;
  ApplyTimeouts();
  NewContext(traits_.openLineWidth);
  codePage = CodepageTranslator::kPC437;
  codePageSet = 1;
  SelectCodePage(codePage);
  SelectTerminator();
  Initialise();
  isOpen = 1;
  return true;
}

void ReceiptFamilyDriver::CheckCodePage(const Nx_Stringa& text) {
  if (!codePageSet || !portContext) return;
  const int fits = text.FindCodePageIn({CodepageTranslator::kPC437, CodepageTranslator::kPC858});
  if (fits != codePage && SelectCodePage(fits) == kSuccess) codePage = fits;
}

std::string ReceiptFamilyDriver::PrinterText(const Nx_Stringa& text) {
  CheckCodePage(text);
  return text.GetAscii(codePage);
}

bool ReceiptFamilyDriver::ApplyTextAttributes(IXMLDOMNodePtr node, bool withOffsets) {
  Nx_Stringa value;
  if (withOffsets && AttributeSet(node, L"OffsetY", value) && FeedLines(Port(), AtoiText(value)) != kSuccess)
    return false;
  TextAttributes attributes = ReadTextAttributes(node);
  if (SetRotation(Port(), attributes.rotation, traits_.rotationWithTurn) != kSuccess) return false;
  if (withOffsets && AttributeSet(node, L"OffsetX", value) && WriteSpaces(Port(), AtoiText(value)) != kSuccess)
    return false;
  return SelectFont(attributes) == kSuccess;
}

PrinterResult ReceiptFamilyDriver::PrintLogoFile(const Nx_Stringa& fileName) {
  std::vector<std::uint8_t> bmp;
  PrinterResult loaded = LoadLogo(fileName, bmp);
  if (loaded != kSuccess) return loaded;
  if (!isOpen) return kErrNotOpen;
  PrinterResult printed = PrintLogoImage(bmp);
  return printed == kFailure ? kErrLogoPrint : printed;
}

bool ReceiptFamilyDriver::FieldLogo(IXMLDOMNodePtr node) {
  if (!RequireOpen()) return false;
  Nx_Stringa fileName, rotation;
  Attribute(node, L"FileName", fileName);
  Attribute(node, L"Rotation", rotation);
  ResetFont();
  SetRotation(Port(), LookupRotation(rotation.c_str()), traits_.rotationWithTurn);
  PrinterResult result = PrintLogoFile(fileName);
  return result == kSuccess || Fail(result, kErrLogoPrint);
}

Nx_Stringa ReceiptFamilyDriver::RecordText(const char* text) {
  std::wstring wide;
  for (const char* p = text; p && *p; ++p) {
    wide += CodepageTranslator::Decode(CodepageTranslator::kAnsi, static_cast<std::uint8_t>(*p));
  }
  return Nx_Stringa(std::move(wide));
}

}  // namespace ReceiptFamily
