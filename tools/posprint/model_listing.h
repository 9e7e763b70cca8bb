// How `posprint models` shows a model of the catalogue (frame/model_catalogue.h): a block of
// text for a person, or one JSON object for a program.
//
// Person-readable:
//   TMT70: thermal receipt printer, 80 mm roll, ESC/POS
//     factory create_KpTMT70, component KpTMT70
//     time-outs 6000 / 6000 ms, lines end in \r\n, own command: none
//     page docs/tmt70.md
//     configuration keys, in the order the driver reads them:
//       param_CutType (words exactly as written)
//           default: no cut at the end of a receipt
//           val_Partial: partial cut (1D 56 01) after the line feeds
//           any other value: keeps the default
//     status numbers (CHECK):
//       100  ready
//
// JSON, one object a model, keys in this order:
//   {"model":"TMT70","component":"KpTMT70","factory":"create_KpTMT70","timeouts":[6000,6000],
//    "terminator":"\r\n","ownCommand":null,"printer":"...","page":"docs/tmt70.md",
//    "emptyIsOtherValue":false,
//    "keys":[{"key":"param_CutType","case":"exact","default":"...",
//             "values":[{"value":"val_Partial","effect":"...","keepsDefault":false}],
//             "numbers":null,"numberEffect":null,"otherwise":"keeps the default",
//             "otherwiseKeepsDefault":true}],
//    "statuses":[{"code":100,"meaning":"ready"}]}
#pragma once

#include <string>

#include "frame/model_catalogue.h"

namespace posprint::host {

// The terminator as it is written in C: "\r\n".
std::string EscapedTerminator(const char* terminator);

// The block for one model, every line ending in a newline.
std::string ModelText(const CatalogueModel& model);
// One JSON object, no newline.
std::string ModelJson(const CatalogueModel& model);
// Markdown for docs/models.md: one reference table of every model's keys, then a section a
// model with its identity, its keys in full and its status numbers.
std::string CatalogueMarkdown();

}  // namespace posprint::host
