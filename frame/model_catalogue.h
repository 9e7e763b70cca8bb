// What a person needs to know to set up each of the twelve models: its configuration keys
// (in the order its driver reads them) with the values the driver knows, their defaults and
// effects, and the status numbers CHECK can report. `posprint models` prints it and
// docs/models.md shows it; tests/catalogue holds it against the drivers, so it cannot drift
// from what they do.
//
// The identity columns (factory, names, time-outs, terminator, own command) are not copied
// here: each entry names its row of kModelIdentities by the factory export.
#pragma once

#include <vector>

#include "frame/model_identity.h"

// How the driver compares a key's words.
enum class WordCase {
  kAny,    // upper-cased first: "false" is "FALSE"
  kExact,  // as written: "VAL_PARTIAL" is not "val_Partial"
};

// One value of a key and what it does.
struct CatalogueValue {
  const char* value;   // as the host sends it
  const char* effect;  // what the driver makes of it, for a person
  bool keepsDefault;   // the configuration is the same as when the key is not sent
};

struct CatalogueKey {
  const char* key;           // "param_CutType"
  WordCase wordCase;         // how the words below are compared
  const char* defaultText;   // what the printer does when the key is not sent
  std::vector<CatalogueValue> words;  // each word the driver looks for
  // The numbers the key takes ("whole millimetres above 0"), or null when it takes none;
  // then what a number does.
  const char* numbers;
  const char* numberEffect;
  // Numbers as a host might send them, each with whether it keeps the default: the
  // limits and the rounding a person would try (not shown; the catalogue test sends them).
  std::vector<CatalogueValue> numberExamples;
  // Any other value: an unknown word, a number out of range, an empty value.
  const char* otherwise;
  bool otherwiseKeepsDefault;
};

struct CatalogueStatus {
  int code;
  const char* meaning;  // for the operator at the printer
};

struct CatalogueModel {
  const char* factory;  // the row of kModelIdentities
  const char* printer;  // what kind of printer it is
  const char* page;     // the operator page under docs/
  std::vector<CatalogueKey> keys;  // in the order the driver reads them
  std::vector<CatalogueStatus> statuses;
  // True where a key sent with an empty value counts as "any other value" (the ticket
  // printers); elsewhere an empty value is as if the key were not sent.
  bool emptyIsOtherValue = false;

  const ModelIdentity& Identity() const { return *FindIdentity(factory); }
};

// Every model, in the order of kModelIdentities.
const std::vector<CatalogueModel>& ModelCatalogue();

// The entry of a factory export, or null.
const CatalogueModel* FindCatalogueModel(const char* factory);

// The statuses every model shares besides its own (150, and 1 after error 3).
const std::vector<CatalogueStatus>& CommonStatuses();
