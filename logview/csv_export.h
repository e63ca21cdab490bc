// View Log's export: the sessions its filter shows, or their month-by-month (or
// billing period by period) summary, as CSV a spreadsheet opens: a header row,
// RFC 4180 quoting, CRLF line ends, the text's own ANSI bytes, the list separator
// of the Regional Settings, ISO dates, durations as H:MM:SS and in seconds.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "platform/system_clock.h"

class Storage;

struct CsvFormat {
  char separator = ',';  // the Regional Settings' list separator
  char decimal = '.';    // and decimal symbol, for hours and money
};

// The separator and decimal symbol from the Regional Settings' texts: their first
// character, or ',' and '.' when a text is empty or its character would break the
// file (a quote, a line end, or both the same).
CsvFormat MakeCsvFormat(const char* listSeparator, const char* decimalSymbol);

// One field, quoted when it holds the separator, a quote or a line end (quotes doubled).
void AppendCsvField(std::string& line, const char* text, std::size_t length, const CsvFormat& format);

// Indexes of the records the three filter texts show, in record order (as the list).
std::vector<uint32_t> FilteredRecordIndexes(const Storage& store, const char* connection, const char* month,
                                            char* year);

std::string SessionsCsv(const Storage& store, const std::vector<uint32_t>& records, const CsvFormat& format);
// Per connection (letter case ignored, as the figures do) and period, in that
// order: sessions, time, the minutes beyond the included hours and the cost with
// VAT (limited access), the card's hours left at the period's end (a card).
std::string PeriodSummaryCsv(Storage& store, const std::vector<uint32_t>& records, const CsvFormat& format);

// "Orvalen log 2003-03-20.csv".
std::string DefaultExportName(const LocalTime& now);

// Written through the safe save: the old file stays whole until the new one is.
bool WriteExportFile(const char* path, const std::string& text);
