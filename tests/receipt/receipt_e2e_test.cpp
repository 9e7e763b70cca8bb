// posprint run from end to end, one ticket per model: the host loads the driver from the
// plug-in and a pseudo-terminal plays the printer, answering its status requests. These
// run with the real clock: the VKP80II's open and end of ticket take five seconds.
#include "receipt_fixture.h"
#include "support/end_to_end.h"

namespace receipt_test {
namespace {

using namespace posprint::test;

TEST(ReceiptEndToEnd, Vkp80iiTicketWithCutAndPresenter) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 14"), Hex("10 0F 00 00 00 00")}}));
  const std::string format = "1B 7B 00 1B 56 00 1B C1 00 1B 21 01";
  RunJob(printer,
         {"VKP80II", {"param_CutType=val_Full"},
          {"INIT_PRINTER", "CHECK", "START_PRINT", "NEWPRINT " + Single("Grazie €"),
           "NEWPRINT <BARCODE Type=\"EAN13\">400638133393</BARCODE>", "STOP_PRINT", "STOP_PRINTER"}},
         Hex("1B 74 00 1B 40 1B C1 00 1B 21 01 1D 50 00 00 10 04 14")                // INIT_PRINTER, CHECK
             + Hex(format + " 1B 74 13") + std::string(17, ' ') + "Grazie \xD5\n"   // the euro sign: PC858
             + Hex(format + " 1B 74 00 1D 48 02 1B 61 01 1D 6B 02") + "400638133393" + Hex("00 0D 1B 61 00")
             + Hex("0A 0A 0A 0A 0A 0A 0A 1B 69 1D 65 03 0C"));                      // feeds, cut, presenter
}

TEST(ReceiptEndToEnd, Tm300TicketEndsWhenThePrinterIsReadyAgain) {
  // CHECK is answered; the request after the cut meets a busy, silent printer; the next one is answered.
  PtyPrinter printer([requests = 0](const std::string& received) mutable -> std::string {
    return EndsWith(received, Hex("1B 76")) && ++requests != 2 ? Hex("00") : "";
  });
  RunJob(printer,
         {"TM300", {"param_CutType=val_Partial", "param_RollEjection=FALSE"},
          {"INIT_PRINTER", "CHECK",
           "NEWPRINT <DOUBLEFIELD Char=\".\"><LeftField>Pane</LeftField><RightField>1.20</RightField></DOUBLEFIELD>",
           "NEWPRINT <BARCODE>123</BARCODE>", "STOP_PRINT", "STOP_PRINTER"}},
         Hex("1B 74 00 1B 40 1B 76 1B 7B 00 1B 21 00") + "Pane" + std::string(25, '.') + "1.20\r\n" +
             Hex("1B 6D 1B 76 1B 76"));  // partial cut, then asked until ready
}

TEST(ReceiptEndToEnd, Tm295SlipWithItfBarcode) {
  PtyPrinter printer(AnswerRequests({{Hex("1B 76"), Hex("00")}}));
  const std::string band = Hex("1B 2A 00 30 00") + ColumnBytes(kItf12Columns) + "\r\n";
  RunJob(printer,
         {"TM295", {"param_BarcodeWidth=1", "param_BarcodeHeight=2"},
          {"INIT_PRINTER", "TM295_NEWPRINT <XONXOFF/>", "CHECK", "NEWPRINT " + Single("Grazie"),
           "NEWPRINT <BARCODE Type=\"ITF2OF5\">12</BARCODE>", "STOP_PRINT", "STOP_PRINTER"}},
         Hex("1B 74 00 1B 40 1B 71 00 1B 76 1B 7B 00 1B 21 00") + std::string(14, ' ') + "Grazie\r\n" +
             Hex("1B 7B 00 1B 21 00 1B 33 08") + band + band + Hex("1B 32") +  // the ITF band twice
             Hex("1B 76 1B 46 31 0C"));                                           // ready: eject
}

}  // namespace
}  // namespace receipt_test
