#include "model_listing.h"

#include "json.h"
#include "model_names.h"

namespace posprint::host {
namespace {

bool HasLetters(const char* text) {
  for (; *text; ++text)
    if ((*text >= 'a' && *text <= 'z') || (*text >= 'A' && *text <= 'Z')) return true;
  return false;
}

// Whether letter case matters is worth saying only for words that have letters.
std::string CaseNote(const CatalogueKey& key) {
  for (const CatalogueValue& word : key.words) {
    if (HasLetters(word.value))
      return key.wordCase == WordCase::kAny ? " (words in any case)" : " (words exactly as written)";
  }
  return "";
}

std::string KeyText(const CatalogueKey& key) {
  const std::string indent = "        ";
  std::string text = "    " + std::string(key.key) + CaseNote(key) + "\n";
  text += indent + "default: " + key.defaultText + "\n";
  for (const CatalogueValue& word : key.words) text += indent + word.value + ": " + word.effect + "\n";
  if (key.numbers) text += indent + key.numbers + ": " + key.numberEffect + "\n";
  text += indent + "any other value: " + key.otherwise + "\n";
  return text;
}

std::string StatusText(const CatalogueStatus& status) {
  std::string code = std::to_string(status.code);
  code.resize(5, ' ');
  return "    " + code + status.meaning + "\n";
}

std::string JsonOrNull(const char* text) { return text ? JsonString(text) : "null"; }

std::string Bool(bool value) { return value ? "true" : "false"; }

std::string ValueJson(const CatalogueValue& value) {
  return "{\"value\":" + JsonString(value.value) + ",\"effect\":" + JsonString(value.effect) +
         ",\"keepsDefault\":" + Bool(value.keepsDefault) + "}";
}

std::string KeyJson(const CatalogueKey& key) {
  std::string json = "{\"key\":" + JsonString(key.key) + ",\"case\":\"" +
                     (key.wordCase == WordCase::kAny ? "any" : "exact") + "\",\"default\":" +
                     JsonString(key.defaultText) + ",\"values\":[";
  for (std::size_t i = 0; i < key.words.size(); ++i) json += (i ? "," : "") + ValueJson(key.words[i]);
  json += "],\"numbers\":" + JsonOrNull(key.numbers) + ",\"numberEffect\":" + JsonOrNull(key.numberEffect) +
          ",\"otherwise\":" + JsonString(key.otherwise) + ",\"otherwiseKeepsDefault\":" +
          Bool(key.otherwiseKeepsDefault) + "}";
  return json;
}

}  // namespace

std::string EscapedTerminator(const char* terminator) {
  std::string text;
  for (; *terminator; ++terminator) {
    if (*terminator == '\r') text += "\\r";
    else if (*terminator == '\n') text += "\\n";
    else text += *terminator;
  }
  return text;
}

std::string ModelText(const CatalogueModel& model) {
  const ModelIdentity& identity = model.Identity();
  std::string text = Narrow(identity.modelName) + ": " + model.printer + "\n";
  text += "  factory " + std::string(identity.factory) + ", component " + Narrow(identity.componentName) + "\n";
  text += "  time-outs " + std::to_string(identity.timeout1) + " / " + std::to_string(identity.timeout2) +
          " ms, lines end in " + EscapedTerminator(identity.terminator) +
          ", own command: " + (identity.ownCommand ? Narrow(identity.ownCommand) : "none") + "\n";
  text += "  page docs/" + std::string(model.page) + "\n";
  text += "  configuration keys, in the order the driver reads them:\n";
  if (model.emptyIsOtherValue)
    text += "    (a key that is sent, even with an empty value, counts; only a key not sent keeps its default)\n";
  for (const CatalogueKey& key : model.keys) text += KeyText(key);
  text += "  status numbers (CHECK):\n";
  for (const CatalogueStatus& status : model.statuses) text += StatusText(status);
  for (const CatalogueStatus& status : CommonStatuses()) text += StatusText(status);
  return text;
}

std::string ModelJson(const CatalogueModel& model) {
  const ModelIdentity& identity = model.Identity();
  std::string json = "{\"model\":" + JsonString(Narrow(identity.modelName)) +
                     ",\"component\":" + JsonString(Narrow(identity.componentName)) +
                     ",\"factory\":" + JsonString(identity.factory) + ",\"timeouts\":[" +
                     std::to_string(identity.timeout1) + "," + std::to_string(identity.timeout2) +
                     "],\"terminator\":" + JsonString(identity.terminator) + ",\"ownCommand\":" +
                     (identity.ownCommand ? JsonString(Narrow(identity.ownCommand)) : "null") +
                     ",\"printer\":" + JsonString(model.printer) + ",\"page\":" +
                     JsonString("docs/" + std::string(model.page)) +
                     ",\"emptyIsOtherValue\":" + Bool(model.emptyIsOtherValue) + ",\"keys\":[";
  for (std::size_t i = 0; i < model.keys.size(); ++i) json += (i ? "," : "") + KeyJson(model.keys[i]);
  json += "],\"statuses\":[";
  bool first = true;
  for (const auto* list : {&model.statuses, &CommonStatuses()}) {
    for (const CatalogueStatus& status : *list) {
      json += (first ? "" : ",") + std::string("{\"code\":") + std::to_string(status.code) +
              ",\"meaning\":" + JsonString(status.meaning) + "}";
      first = false;
    }
  }
  return json + "]}";
}

}  // namespace posprint::host
