#include "report.h"

#include "json.h"

namespace posprint::host {
namespace {

std::string CodePoint(wchar_t character) {
  char text[16];
  std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned>(character));
  return text;
}

std::string Utf8Of(wchar_t character) { return Nx_Stringa(std::wstring(1, character)).ToUtf8(); }

}  // namespace

std::size_t DisplayWidth(const std::string& utf8) {
  std::size_t width = 0;
  for (char c : utf8) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++width;
  }
  return width;
}

std::string Label(const CommandResult& result) {
  std::string label = result.name.empty() ? "\"\"" : result.name;
  if (!result.element.empty()) label += " " + result.element;
  return label;
}

std::string HumanLine(const CommandResult& result, std::size_t labelWidth) {
  std::string line = Label(result);
  const std::size_t width = DisplayWidth(line);
  line += std::string(width < labelWidth ? labelWidth - width + 1 : 1, ' ');
  line += result.ok ? "ok" : "FAILED";
  if (!result.errors.empty()) {
    line += result.ok ? "      errors " : "  errors ";
    for (std::size_t i = 0; i < result.errors.size(); ++i) {
      if (i) line += ", ";
      line += std::to_string(result.errors[i]);
    }
  }
  return line;
}

std::string JsonLine(const CommandResult& result, std::size_t job) {
  std::string line = job ? "{\"job\":" + std::to_string(job) + "," : "{";
  line += "\"command\":" + JsonString(result.name) + ",\"ok\":" + (result.ok ? "true" : "false") + ",\"errors\":[";
  for (std::size_t i = 0; i < result.errors.size(); ++i) {
    if (i) line += ",";
    line += std::to_string(result.errors[i]);
  }
  line += "]";
  if (!result.unprintable.empty()) {
    line += ",\"warnings\":[";
    for (std::size_t i = 0; i < result.unprintable.size(); ++i) {
      if (i) line += ",";
      line += "{\"character\":" + JsonString(Utf8Of(result.unprintable[i])) + ",\"codepoint\":\"" +
              CodePoint(result.unprintable[i]) + "\"}";
    }
    line += "]";
  }
  return line + "}";
}

std::string WarningLine(const CommandResult& result) {
  if (result.unprintable.empty()) return "";
  std::string line = "posprint: warning: " + Label(result) + ": printed as '?', not in the printer's code page:";
  for (wchar_t character : result.unprintable) line += " \"" + Utf8Of(character) + "\" " + CodePoint(character);
  return line;
}

void Reporter::StartJob(std::size_t index, std::size_t count, const std::string& path) {
  if (count < 2) return;
  if (json_) {
    job_ = index;
    return;
  }
  std::fprintf(out_, "job %zu of %zu: %s\n", index, count, path.c_str());
  std::fflush(out_);
}

void Reporter::Report(const CommandResult& result) {
  const std::string warning = WarningLine(result);
  if (!warning.empty()) {
    std::fprintf(err_, "%s\n", warning.c_str());
    std::fflush(err_);
  }
  const std::string line = json_ ? JsonLine(result, job_) : HumanLine(result, labelWidth_);
  std::fprintf(out_, "%s\n", line.c_str());
  std::fflush(out_);
}

}  // namespace posprint::host
