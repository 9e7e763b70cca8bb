#include "frame/model_identity.h"

#include <cstring>

// The odd values are the printers' own: the Q1 reports the model name "QSeries",
// the STB112 reads with a 300 ms time-out, the PLUS ends lines with a bare CR.
const ModelIdentity kModelIdentities[] = {
    {"create_KpITALORA", L"ITALORA", L"KpITALORA", 5000, 5000, "\r\n", L"ITALORA_NEWPRINT"},
    {"create_KpLX300", L"LX300", L"KpLX300", 5000, 5000, "\r\n", L"LX300_NEWPRINT"},
    {"create_KpPLUS", L"PLUS", L"KpPLUS", 5000, 5000, "\r", L"PLUS_NEWPRINT"},
    {"create_Q1Driver", L"QSeries", L"KpQ1", 3000, 3000, "\r\n", nullptr},
    {"create_STB112Driver", L"STB112", L"KpSTB112", 300, 5000, "\r\n", L"STB112_NEWPRINT"},
    {"create_STB60Driver", L"STB60", L"KpSTB60", 5000, 5000, "\r\n", L"STB60_NEWPRINT"},
    {"create_STB80Driver", L"STB80", L"KpSTB80", 5000, 5000, "\r\n", L"STB80_NEWPRINT"},
    {"create_KpTM295", L"TM295", L"KpTM295", 5000, 5000, "\r\n", L"TM295_NEWPRINT"},
    {"create_KpTM300", L"TM300", L"KpTM300", 5000, 5000, "\r\n", L"TM300_NEWPRINT"},
    {"create_KpTMT70", L"TMT70", L"KpTMT70", 6000, 6000, "\r\n", nullptr},
    {"create_KpVKP80II", L"VKP80II", L"KpVKP80II", 5000, 5000, "\r\n", L"VKP80II_NEWPRINT"},
    {"create_KpZEBRA", L"ZEBRA", L"KpZEBRA", 5000, 5000, "\r\n", L"ZEBRA_NEWPRINT"},
};
const std::size_t kModelCount = sizeof kModelIdentities / sizeof kModelIdentities[0];

const ModelIdentity* FindIdentity(const char* factory) {
  for (const ModelIdentity& identity : kModelIdentities)
    if (std::strcmp(identity.factory, factory) == 0) return &identity;
  return nullptr;
}
