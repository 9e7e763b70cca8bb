#include "drivers/label/ZEBRA/kp_zebra.h"

#include <cstdint>
#include <limits>

#include "frame/factory.h"
#include "platform/otool.h"

namespace ZEBRA {

KpZEBRA::KpZEBRA() : DriverBase(*FindIdentity("create_KpZEBRA")) {}

// --- configuration ---

namespace {

// Positions and sizes in millimetres stay within what ZPL accepts for them.
constexpr std::uint64_t kMaxDots = 32000;
constexpr std::uint32_t kMinWidthDots = 2;
constexpr std::uint32_t kMaxMagnification = 20;
constexpr int kMaxTearOffAdjust = 120;

// param_Resolution: 6, 12 or 24 dots per mm (152, 300, 600 dpi); anything else 8 (203 dpi).
std::int8_t DotsPerMm(const Nx_Stringa& value) {
  if (value == L"6") return 6;
  if (value == L"12") return 12;
  if (value == L"24") return 24;
  return 8;
}

// param_Speed in mm per second, as the terminal offers it, to inches per second.
std::uint32_t InchesPerSecond(const Nx_Stringa& value) {
  if (value == L"76.2") return 3;
  if (value == L"101.6") return 4;
  if (value == L"127.0") return 5;
  if (value == L"152.4") return 6;
  return 2;  // 50.8 and anything else
}

std::uint64_t Dots(int millimetres, std::int8_t dotsPerMm) {
  return static_cast<std::uint64_t>(millimetres) * static_cast<std::uint64_t>(dotsPerMm);
}

std::uint32_t AtMost(std::uint64_t value, std::uint64_t limit) {
  return static_cast<std::uint32_t>(value > limit ? limit : value);
}

}  // namespace

// Millimetre keys become dots at the configured resolution, so the resolution is read
// first. A number that atoi reads as 0 (or below) keeps the default.
void KpZEBRA::Configure(Nx_Smartp<IParameterCollection> parameters) {
  ZplState* state = NewConfig<ZplState>();
  if (!state) return;
  ParameterCollection none;
  const IParameterCollection& keys = parameters ? *parameters : none;
  auto word = [&keys](const wchar_t* key) { return ParameterText(keys, key).Upper(); };
  auto number = [&keys](const wchar_t* key) { return AtoiText(ParameterText(keys, key)); };

  state->mediaType = word(L"param_PrintFoilType") == L"TRUE" ? 'T' : 'D';
  state->printMode = word(L"param_Peel_Tear") == L"PEEL_OFF" ? 'P' : 'T';
  state->dotsPerMm = DotsPerMm(word(L"param_Resolution"));
  const std::int8_t dpm = state->dotsPerMm;

  state->labelWidth = 100 * static_cast<std::uint32_t>(dpm);
  if (int mm = number(L"param_WidthLabel"); mm > 0) {
    // No upper limit: the printer clips at its own print width.
    std::uint32_t dots = AtMost(Dots(mm, dpm), std::numeric_limits<std::uint32_t>::max());
    state->labelWidth = dots < kMinWidthDots ? kMinWidthDots : dots;
  }
  state->labelLength = 70 * static_cast<std::uint32_t>(dpm);
  if (int mm = number(L"param_LenghtLabel"); mm > 0) {
    std::uint32_t dots = AtMost(Dots(mm, dpm), kMaxDots);
    state->labelLength = dots == 0 ? 1 : dots;
  }
  if (int adjust = number(L"param_Peeling"); adjust != 0) {
    state->tearOffAdjust = adjust > kMaxTearOffAdjust ? kMaxTearOffAdjust
                           : adjust < -kMaxTearOffAdjust ? -kMaxTearOffAdjust : adjust;
  }
  state->printSpeed = InchesPerSecond(word(L"param_Speed"));
  if (int mm = number(L"param_Displacement"); mm > 0) state->logoDisplacement = AtMost(Dots(mm, dpm), kMaxDots);
  if (int mm = number(L"param_Origin_Y"); mm > 0) state->originY = AtMost(Dots(mm, dpm), kMaxDots);
  if (int mm = number(L"param_Origin_X"); mm > 0) state->originX = AtMost(Dots(mm, dpm), kMaxDots);
  if (int factor = number(L"param_MagFactor"); factor > 0) {
    state->magnification = AtMost(static_cast<std::uint64_t>(factor), kMaxMagnification);
  }
}

// --- open, status, label ---

// The port, its time-outs, a context of 42 characters a line (until the set-up computes
// the label's own), CR LF, the printer set-up, then the normal font.
bool KpZEBRA::OpenPrinter() {
  if (!OpenPort()) return false;
  ApplyTimeouts();
  PortContext& ctx = NewContext(42);
  zpl_ResetTerminator(ctx);
  zpl_Init(ctx);
  isOpen = 1;
  zpl_FontNormal(ctx);
  return true;
}

// The status character's code: 100 ready, 101 error, 105 paused, 110 head temperature,
// 112 paper out.
int KpZEBRA::QueryStatus() { return static_cast<unsigned char>(zpl_QueryStatus(Port())); }

// STOP_PRINT ends the label through the framework's checkStopPrint and EndPrint; a
// failed ^XZ gives false without an error number.
PrinterResult KpZEBRA::EndTicket() { return zpl_EndLabel(Port()); }

bool KpZEBRA::StartPrint() {
  if (!RequireOpen()) return false;
  return zpl_StartLabel(Port()) == kSuccess;
}

// ZEBRA_NEWPRINT with an XONXOFF element switches the port to software flow control.
bool KpZEBRA::OwnCommand(const Nx_Stringa& command, IXMLDOMNodePtr node) {
  std::int32_t code = 0;
  if (!ownCommands.lookUp(command, code) || code != kCmdOwn) return true;
  if (NodeName(node).Upper() == L"XONXOFF") otool_IOCTL(portHandle, kPortSetState, kPortStateXonXoff);
  return true;
}

}  // namespace ZEBRA

POSPRINT_FACTORY(create_KpZEBRA, ZEBRA::KpZEBRA)
