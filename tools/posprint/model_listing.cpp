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

// --- markdown ---

// Table cells may not hold a bare '|'.
std::string Cell(const std::string& text) {
  std::string cell;
  for (char c : text) cell += c == '|' ? std::string("\\|") : std::string(1, c);
  return cell;
}

std::string Code(const std::string& text) { return "`" + text + "`"; }

std::string CaseWord(const CatalogueKey& key) {
  return key.wordCase == WordCase::kAny ? "any case" : "exact case";
}

// The values a key takes, as one cell: each word with its effect, then the numbers.
std::string ValuesCell(const CatalogueKey& key, bool withEffects) {
  std::string cell;
  for (const CatalogueValue& word : key.words) {
    if (!cell.empty()) cell += withEffects ? "; " : ", ";
    cell += Code(word.value);
    if (withEffects) cell += ": " + std::string(word.effect);
  }
  if (!withEffects && !CaseNote(key).empty()) cell += " (" + CaseWord(key) + ")";
  if (key.numbers) {
    if (!cell.empty()) cell += withEffects ? "; " : ", or ";
    cell += key.numbers;
    if (withEffects) cell += ": " + std::string(key.numberEffect);
  }
  return Cell(cell);
}

std::string Capitalised(std::string text) {
  if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
  return text;
}

std::string ModelName(const CatalogueModel& model) { return Narrow(model.Identity().modelName); }

std::string Anchor(const CatalogueModel& model) {
  std::string anchor;
  for (char c : ModelName(model)) anchor += (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
  return anchor;
}

std::string ReferenceTable() {
  std::string text = "| Model | Key | Values | Default |\n|---|---|---|---|\n";
  for (const CatalogueModel& model : ModelCatalogue()) {
    for (const CatalogueKey& key : model.keys) {
      text += "| [" + ModelName(model) + "](#" + Anchor(model) + ") | " + Code(key.key) + " | " +
              ValuesCell(key, false) + " | " + Cell(key.defaultText) + " |\n";
    }
  }
  return text;
}

std::string ModelSection(const CatalogueModel& model) {
  const ModelIdentity& identity = model.Identity();
  std::string text = "## " + ModelName(model) + "\n\n";
  text += Capitalised(model.printer) + ". Operator page: [" + model.page + "](" + model.page + ").\n\n";
  text += "| Factory | Model name | Component | Time-outs (ms) | Lines end in | Own command |\n";
  text += "|---|---|---|---|---|---|\n";
  text += "| " + Code(identity.factory) + " | " + Code(Narrow(identity.modelName)) + " | " +
          Code(Narrow(identity.componentName)) + " | " + std::to_string(identity.timeout1) + " / " +
          std::to_string(identity.timeout2) + " | " + Code(EscapedTerminator(identity.terminator)) + " | " +
          (identity.ownCommand ? Code(Narrow(identity.ownCommand)) : "none") + " |\n\n";
  text += "Configuration keys, in the order the driver reads them";
  text += model.emptyIsOtherValue ? " (a key sent with an empty value counts as any other value; only a key "
                                    "not sent keeps its default):\n\n"
                                  : ":\n\n";
  text += "| Key | Default | Values | Words compared | Any other value |\n|---|---|---|---|---|\n";
  for (const CatalogueKey& key : model.keys) {
    const std::string compared = CaseNote(key).empty() ? "" : CaseWord(key);
    text += "| " + Code(key.key) + " | " + Cell(key.defaultText) + " | " + ValuesCell(key, true) + " | " + compared +
            " | " + Cell(key.otherwise) + " |\n";
  }
  text += "\nStatus numbers of `CHECK`:\n\n| Status | Meaning |\n|---|---|\n";
  for (const CatalogueStatus& status : model.statuses)
    text += "| " + std::to_string(status.code) + " | " + Cell(status.meaning) + " |\n";
  return text;
}

}  // namespace

std::string CatalogueMarkdown() {
  std::string text = "## Every key at a glance\n\n" + ReferenceTable();
  for (const CatalogueModel& model : ModelCatalogue()) text += "\n" + ModelSection(model);
  text += "\n## Status numbers every model shares\n\n| Status | Meaning |\n|---|---|\n";
  for (const CatalogueStatus& status : CommonStatuses())
    text += "| " + std::to_string(status.code) + " | " + Cell(status.meaning) + " |\n";
  return text;
}

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
