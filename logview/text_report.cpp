#include "logview/text_report.h"

#include <cstdio>
#include <cstring>

#include "platform/system_clock.h"
#include "platform/binary_file.h"
#include "platform/program_paths.h"
#include "storage/fixed_text.h"

const std::string& AppendReportLine(const char* text, std::size_t length, bool finish) {
  std::string& pending = logViewState.PendingReport;
  pending.append(text, length);
  pending.append("\r\n", 2);
  if (!finish) return pending;
  // Swapping keeps both buffers' capacity for the next filling.
  logViewState.FinishedReport.swap(pending);
  pending.clear();
  return logViewState.FinishedReport;
}

const std::string& AppendReportLine(const char* text, bool finish) {
  return AppendReportLine(text, text != nullptr ? std::strlen(text) : 0, finish);
}

std::string ReportHeader(int count, float totalSeconds) {
  const LocalTime now = ReadLocalTime();
  const float hours = totalSeconds * (1.0f / 3600.0f);
  char line[128];
  std::string header = "Orvalen-generated log\r\n";
  std::snprintf(line, sizeof line, "Generated on : %d / %d / %d\r\n", static_cast<int>(now.month),
                static_cast<int>(now.day), static_cast<int>(now.year));
  header += line;
  std::snprintf(line, sizeof line, "%d connection(s) displayed\r\n", count);
  header += line;
  // A float sum of 32-bit durations stays far below 1e38 / 3600, so 128 bytes suffice
  // for any count of records the log can hold; snprintf cuts safely regardless.
  std::snprintf(line, sizeof line, "%.2f hour(s) is total time used up by displayed connections\r\n",
                static_cast<double>(hours));
  header += line;
  header += "\r\n";
  header += "Details follow:-\r\n";
  header += "==================================================\r\n";
  return header;
}

void PrependReportHeader(int count, float totalSeconds) {
  logViewState.PendingReport.insert(0, ReportHeader(count, totalSeconds));
}

bool WriteTextFile(const char* text, const char* path) {
  const WriteBlock block{text, text != nullptr ? std::strlen(text) : 0};
  return SaveWholeFile(path, &block, 1, false);
}

// The report follows the program folder (tests and tools move it); in the installed
// folder it is written with the capitals the editor's command line has always shown.
std::string ReportFilePath() {
  if (EqualsIgnoringCase(ProgramFolder().c_str(), kInstalledFolder)) return JoinPath(kInstalledFolder, kReportFileName);
  return JoinPath(ProgramFolder(), kReportFileName);
}

std::string EditorApplicationPath() { return JoinPath(WindowsDirectory(), "NOTEPAD.EXE"); }

std::string EditorCommandLine() { return "notepad.exe  " + ReportFilePath(); }

void GenerateTextReport() {
  const std::string path = ReportFilePath();
  WriteTextFile(logViewState.FinishedReport.c_str(), path.c_str());
  if (reportHooks.launchEditor != nullptr) {
    reportHooks.launchEditor(EditorApplicationPath().c_str(), EditorCommandLine().c_str());
  }
}
