// DriverBase: what every driver shares on top of APrinter: identity, configuration
// block, the command dispatch, open and close, and the print-job renderers (the
// TMT70's behaviour, which other models override where they differ).
#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "frame/keywords.h"
#include "frame/model_identity.h"
#include "frame/port_context.h"
#include "frame/printer_result.h"
#include "platform/aprinter.h"

namespace posprint {
// Tests make the next configuration allocation fail, as on a terminal out of memory.
void FailNextConfigAllocation();
void* AllocateConfigBlock(std::size_t size);
}  // namespace posprint

// Decimal text by the atoi rule: optional blanks and sign, leading digits; else 0.
int AtoiText(const Nx_Stringa& text);

// The text attribute codes of a field (keyword-table codes).
struct TextAttributes {
  int rotation = kRotation0;
  int font = kFontNormal;
  int height = kHeight1;
  int width = kWidth1;
  int style = kStyleNormal;
};

class DriverBase : public APrinter {
 public:
  explicit DriverBase(const ModelIdentity& identity);
  ~DriverBase() override;

  int CheckStatus() override;
  bool EndPrint() override;
  bool ExecuteCommand(Nx_XMLParser* parser, const Nx_Stringa& command, IXMLDOMNodePtr node,
                      const Nx_Stringa& portName) override;

  // For tests and the host: the context of the open port (null until INIT_PRINTER).
  PortContext* Context() const { return portContext; }
  const void* ConfigBlock() const { return config_; }
  std::size_t ConfigSize() const { return configSize_; }

 protected:
  // --- configuration ---
  // A new zero-initialised block from malloc; records 12 and returns null on failure.
  // Earlier blocks stay valid (an open port keeps pointing at its own) until destruction.
  template <class Config>
  Config* NewConfig() {
    static_assert(std::is_trivially_destructible<Config>::value, "configuration blocks are freed, not destroyed");
    void* memory = posprint::AllocateConfigBlock(sizeof(Config));
    if (!memory) {
      set_last_error(kErrConfigAlloc);
      return nullptr;
    }
    configBlocks_.push_back(memory);
    config_ = memory;
    configSize_ = sizeof(Config);
    return new (memory) Config();
  }
  template <class Config>
  Config& ConfigAs() { return *static_cast<Config*>(config_); }
  // Configures with defaults when the host never called Configure.
  void EnsureConfigured();

  // --- model operations ---
  virtual bool OpenPrinter() = 0;          // INIT_PRINTER on a closed driver
  virtual int QueryStatus() = 0;           // CheckStatus on an open port
  virtual PrinterResult EndTicket() = 0;   // EndPrint on an open port
  virtual bool StartPrint() { return true; }
  virtual bool StopPrint() { return checkStopPrint(); }
  // A name that is not in the command table: found in ownCommands or not, true.
  virtual bool OwnCommand(const Nx_Stringa& command, IXMLDOMNodePtr node);
  bool ClosePrinter();

  // The common first step of an open: the event and otool_OPEN (71 on failure). Then the
  // model hands over the two time-outs (ApplyTimeouts) and creates its context.
  bool OpenPort();
  void ApplyTimeouts();
  // A new context (the previous one is deleted) on the open handle, with the driver's
  // terminator and the current configuration block.
  PortContext& NewContext(int lineWidth);
  PortContext& Port() { return *portContext; }

  // --- print job (NEWPRINT) ---
  virtual bool PrintField(int fieldType, IXMLDOMNodePtr node);
  virtual bool FieldCut(IXMLDOMNodePtr node);
  virtual bool FieldLineFeed(IXMLDOMNodePtr node);
  virtual bool FieldLine(IXMLDOMNodePtr node);
  virtual bool FieldBarcode(IXMLDOMNodePtr node);
  virtual bool FieldLogo(IXMLDOMNodePtr node);
  virtual bool FieldDoubleField(IXMLDOMNodePtr node);
  virtual bool FieldSingleField(IXMLDOMNodePtr node);
  virtual bool FieldMobileField(IXMLDOMNodePtr node);
  virtual bool FieldMobileBarcode(IXMLDOMNodePtr node);

  // Model commands the generic renderers call.
  virtual PrinterResult SelectFont(const TextAttributes& attributes);
  // The rotation of text and logos (ESC { upside-down here); printers that cannot turn
  // what they print send nothing.
  virtual PrinterResult SelectRotation(int rotation);
  virtual PrinterResult CutCommand();
  virtual PrinterResult PrintLogoImage(const std::vector<std::uint8_t>& bmp);
  // Text in the printer's code page (models that switch code pages override this).
  virtual std::string PrinterText(const Nx_Stringa& text);

  // The line layouts the text renderers use (the ticket printers shift them).
  virtual PrinterResult PrintTwoColumns(int leftMargin, int rightMargin, std::string_view left,
                                        std::string_view right, char fill);
  virtual PrinterResult PrintTextLine(std::string_view text);     // centred
  virtual PrinterResult PrintRule(std::string_view pattern);      // pattern across the line
  // Left (60, 64), right (63, 66) or centred (any other) text on one line.
  virtual PrinterResult PrintAlignedText(int alignment, std::string_view text);

  // SINGLEFIELD: the alignment when Justify is empty, and which alignments are printed
  // as a two-column line.
  virtual int SingleFieldDefaultAlignment() const { return kAlignCenter; }
  virtual bool IsSideAlignment(int alignment) const { return alignment == kAlignLeft || alignment == kAlignRight; }

  // The shared text attribute set-up: offsets (when asked), rotation, then SelectFont.
  virtual bool ApplyTextAttributes(IXMLDOMNodePtr node, bool withOffsets);
  TextAttributes ReadTextAttributes(IXMLDOMNodePtr node) const;

  // BARCODE attributes: Type, Height (times heightScale dots), ModuleWidth, HRI.
  struct BarcodeAttributes {
    int type = kBarcodeCode128;
    int height = 80;
    int moduleWidth = 3;
    int textPosition = kTextBelow;
  };
  BarcodeAttributes ReadBarcodeAttributes(IXMLDOMNodePtr node, int heightScale) const;
  // The HRI words, compared as written: no, sopra, sotto, sotto_sopra, sopra_sotto.
  int ReadHriPosition(IXMLDOMNodePtr node) const;

  // The double-field renderer (also SINGLEFIELD with a side alignment).
  bool RenderDoubleField(IXMLDOMNodePtr node);
  // Loads a logo by the rules of the LOGO field: 1, or 8, 9, 10, 11.
  PrinterResult LoadLogo(const Nx_Stringa& fileName, std::vector<std::uint8_t>& bmp);
  // Records a failed field result: `result` itself, or `zeroCode` when it is 0.
  bool Fail(PrinterResult result, int zeroCode);
  // Records 3 and returns false when the port is not open.
  bool RequireOpen();

  // --- job element access ---
  bool Attribute(IXMLDOMNodePtr node, const wchar_t* name, Nx_Stringa& value) const;
  // Present and not empty.
  bool AttributeSet(IXMLDOMNodePtr node, const wchar_t* name, Nx_Stringa& value) const;
  Nx_Stringa Text(IXMLDOMNodePtr node) const;
  Nx_Stringa NodeName(IXMLDOMNodePtr node) const;
  // The element's text in a string the driver keeps, valid until the next call: for text
  // that is converted for the printer at once, without an allocation a field.
  const Nx_Stringa& ElementText(IXMLDOMNodePtr node);
  // The element's name, as written, is exactly `name`.
  bool NodeNameIs(IXMLDOMNodePtr node, const wchar_t* name);
  IXMLDOMNodePtr FirstChild(IXMLDOMNodePtr node, const wchar_t* name) const;
  IXMLDOMNodePtr NextSibling(IXMLDOMNodePtr node, const wchar_t* name) const;

  void* config_ = nullptr;
  std::size_t configSize_ = 0;

 private:
  std::vector<void*> configBlocks_;
  // Kept from field to field so that their storage is reused.
  Nx_Stringa elementName_;
  Nx_Stringa elementText_;
};
