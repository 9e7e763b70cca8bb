// What each model's failure rules give for the sample ticket (support/model_printers.h)
// under each fault. One row a model; the words are those of ticket_run.h, one a command
// of the ticket:
//   INIT_PRINTER CHECK START_PRINT LOGO SINGLEFIELD DOUBLEFIELD LINE BARCODE LINEFEED CUT
//   STOP_PRINT STOP_PRINTER
#pragma once

#include <cstring>
#include <vector>

namespace posprint::test {

struct ModelFaults {
  const char* factory;
  // A short write at each write of a command in turn (ParseShortWrites), a command a string.
  std::vector<const char*> shortWrites;
  const char* silent;    // the printer never answers
  const char* late;      // every answer comes after the driver stopped waiting for it
  const char* garbled;   // every answer byte inverted
  const char* failOpen;  // otool_OPEN fails
  const char* vanish;    // the port is gone from the LOGO on (cable pulled after START_PRINT)
};

inline const std::vector<ModelFaults>& AllModelFaults() {
  static const std::vector<ModelFaults> rows = {
      // TMT70.
      {"create_KpTMT70",
       {"ok> ok ok", "101*2", "", "ok>*3 13+1*3 ok", "16*2 6", "16*2 6", "16*2 22", "ok+8 ok>*2 7*7", "0*2", "ok",
        "ok>*8 ok", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 105 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 ok 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok ok ok"},
      // ZEBRA.
      {"create_KpZEBRA",
       {"ok>*14", "101", "fail*2 ok", "13*3", "16*2 6*2", "16*2 6*6", "16*2 22*2", "7*4", "ok", "", "fail", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 3 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 ok ok fail ok"},
  };
  return rows;
}

inline const ModelFaults* FindModelFaults(const char* factory) {
  for (const ModelFaults& row : AllModelFaults())
    if (std::strcmp(row.factory, factory) == 0) return &row;
  return nullptr;
}

}  // namespace posprint::test
