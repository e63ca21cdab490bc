// The plain-text report of the View Log list: built while the list fills, written
// to "Log File.txt" in the program folder and opened in the text editor on request.
#pragma once
#include <string>

#include "logview/logview_state.h"

constexpr char kReportFileName[] = "Log File.txt";
constexpr char kReportRule[] = "***********************************************";

// Appends text and CR LF to PendingReport. With finish, PendingReport becomes
// FinishedReport and is emptied. Returns FinishedReport (finish) or PendingReport;
// a reference, not a copy, so building a long report stays linear.
const std::string& AppendReportLine(const char* text, bool finish);
// Same, for text of a known length that need not be NUL-terminated.
const std::string& AppendReportLine(const char* text, std::size_t length, bool finish);

// Puts the seven header lines in front of PendingReport, dated with the local date
// of now.
void PrependReportHeader(int count, float totalSeconds);

// The seven header lines, each ending in CR LF.
std::string ReportHeader(int count, float totalSeconds);

// Replaces the file with the text without its NUL. A new file each time: no
// tail of an older, longer report is kept, nor of one a held file left as
// "<name>.new".
bool WriteTextFile(const char* text, const char* path);

std::string ReportFilePath();          // the program folder + "Log File.txt"
std::string EditorApplicationPath();   // the Windows directory + "NOTEPAD.EXE"
std::string EditorCommandLine();       // "notepad.exe  " and the report path, unquoted

// Replaces the report file with FinishedReport and starts the editor,
// whether or not the file was written. Results are ignored.
void GenerateTextReport();
