// PrinterResult: what an output or command-layer function returns. 1 success, 0 failure
// (a short write or a value out of range), any other value an error number that the
// driver hands to set_last_error.
#pragma once

using PrinterResult = int;

enum ResultCode : int {
  kFailure = 0,
  kSuccess = 1,
};

// Error numbers recorded with set_last_error.
enum ErrorCode : int {
  kErrCloseFailed = 2,
  kErrNotOpen = 3,
  kErrNoRightField = 5,
  kErrTextLine = 6,
  kErrBarcode = 7,
  kErrLogoNameEmpty = 8,
  kErrLogoNotBmp = 9,
  kErrLogoCannotOpen = 10,
  kErrNoMemory = 11,
  kErrConfigAlloc = 12,
  kErrLogoPrint = 13,
  kErrBarcodeKind = 15,
  kErrTextAttributes = 16,
  kErrBarcodeTooLong = 17,
  kErrBarcodeEmpty = 18,
  kErrPatternLine = 22,
  kErrPortOpen = 71,
};

// Printer status values (CheckStatus); each model uses a subset.
enum PrinterStatus : int {
  kStatusReady = 100,
  kStatusNoAnswer = 101,
  kStatusPaperOut = 102,
  kStatus103 = 103,
  kStatus104 = 104,
  kStatusCoverOpen = 105,
  kStatusPrinterError = 108,
  kStatus110 = 110,
  kStatus111 = 111,
  kStatusPaperEnd = 112,
  kStatusPaperNearEnd = 113,
  kStatus116 = 116,
  kStatusBelowRange = 150,  // any status below 100 is reported as this
};
