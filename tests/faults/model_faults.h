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
      {"create_KpITALORA",
       {"ok*2", "101", "fail", "13*2", "6", "6*2", "22", "7", "", "", "fail", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 3 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 6 6 22 7 ok ok fail ok"},
      {"create_KpLX300",
       {"ok*3", "", "", "ok> 13 13+1*3 ok", "16 6", "16 6", "16 22", "7*3", "0*2", "", "fail", ""},
       "ok ok ok ok ok ok ok ok ok ok ok ok",
       "ok ok ok ok ok ok ok ok ok ok ok ok",
       "ok ok ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 ok 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok fail ok"},
      {"create_KpPLUS",
       {"ok*2", "101*2", "", "ok>*2 13 13+1*3 ok", "16*2 6", "16*2 6", "16*2 22", "ok+8 ok>*2 7*7", "0*2", "ok", "fail*2", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 ok 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok fail ok"},
      // QSeries.
      {"create_Q1Driver",
       {"ok>*3", "101*2", "", "ok>*2 13*5", "16 6", "16 6", "16 22", "ok+8 ok>*2 7*7", "0*2", "ok", "ok>*8", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 105 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 3 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok ok ok"},
      {"create_STB112Driver",
       {"ok> ok*4", "101*2", "", "ok>*2 13*5", "16 6", "16 6", "16 22", "ok+4 ok>*2 7*3", "0*2", "ok*3", "ok>*8 ok", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 105 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 3 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok ok ok"},
      {"create_STB60Driver",
       {"ok> ok*2", "101", "", "ok>*3 13+1*3 ok", "16 6", "16 6", "16 22", "ok+4 ok>*2 7*3", "0*2", "", "ok>*10", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 102 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 3 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok ok ok"},
      {"create_STB80Driver",
       {"ok> ok*2", "101*2", "fail", "ok>*2 13*5", "16 6", "16 6", "16 22", "ok+8 ok>*2 7*7", "0*2", "ok", "ok>*8 ok", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 105 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 3 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok ok ok"},
      {"create_KpTM295",
       {"ok> ok ok", "101", "", "ok>*3 13+1*3 ok", "16*2 6", "16*2 6", "16*2 22", "ok>*2 7*11", "0*2", "", "101 fail*2", ""},
       "ok 101 ok ok ok ok ok ok ok ok 101 ok",
       "ok 101 ok ok ok ok ok ok ok ok 101 ok",
       "ok 102 ok ok ok ok ok ok ok ok 102 ok",
       "71 3,1 ok 3 3 3 3 3 3 ok 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok 101 ok"},
      {"create_KpTM300",
       {"ok> ok", "101", "", "ok>*3 13+1*3 ok", "16*2 6", "16*2 6", "16*2 22", "", "0*2", "", "ok>*10 ok+1", ""},
       "ok 101 ok ok ok ok ok ok ok ok 101 ok",
       "ok 101 ok ok ok ok ok ok ok ok 101 ok",
       "ok 102 ok ok ok ok ok ok ok ok 102 ok",
       "71 3,1 ok 3 3 3 3 ok 3 ok 3 ok",
       "ok ok ok 13 16 16 16 ok 0 ok 101 ok"},
      {"create_KpVKP80II",
       {"ok> ok*4", "101", "", "ok+7 ok> ok+5 ok> 13*5", "16*4 6", "16*4 6", "16*4 22", "ok+7 ok> ok+5 ok> 7*5", "0*2", "", "ok>*9", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 ok 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok ok ok"},
      {"create_KpTMT70",
       {"ok> ok ok", "101*2", "", "ok>*3 13+1*3 ok", "16*2 6", "16*2 6", "16*2 22", "ok+8 ok>*2 7*7", "0*2", "ok",
        "ok>*8 ok", ""},
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 101 ok ok ok ok ok ok ok ok ok ok",
       "ok 105 ok ok ok ok ok ok ok ok ok ok",
       "71 3,1 ok 3 3 3 3 3 3 3 3 ok",
       "ok ok ok 13 16 16 16 7 0 ok ok ok"},
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
