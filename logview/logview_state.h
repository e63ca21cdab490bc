// What the View Log and Manage Log dialogs keep between two openings: the last
// filter that matched, the text report being built and the last one finished,
// and the editor hook.
#pragma once
#include <cstddef>
#include <string>

#include "storage/session_record.h"

// Connection texts are as wide as a record's name, so a long name can be selected and
// filtered on in full; month and year texts hold 9 characters.
constexpr std::size_t kFilterConnectionSize = kRecordNameSize;
constexpr std::size_t kFilterMonthSize = 10;
constexpr std::size_t kFilterYearSize = 10;

// The three texts of a View Log filter.
struct FilterTexts {
  char connection[kFilterConnectionSize];
  char month[kFilterMonthSize];
  char year[kFilterYearSize];
};

// The value the Manage Log dialog ends with, read by View Log.
enum ManageLogOutcome : int {
  kLogUnchanged = 0,
  kRecordsDeleted = 1,  // also after the "no items" notice of an empty log
  kLogCleared = 3,
};

// ResetLogViewState() brings it back to these values.
struct LogViewState {
  // The filter of the last list that matched something; it outlives the dialog and
  // brings the view back after a filter that matched nothing.
  FilterTexts LastFilter = {};
  // Lines of the sessions being listed; empty between two fillings.
  std::string PendingReport;
  // The complete report of the last filled list; empty until the first filling.
  std::string FinishedReport;
};
extern LogViewState logViewState;

// Starting the editor is the window layer's; without it (unit tests, tools) the
// report is only written.
struct ReportHooks {
  void (*launchEditor)(const char* applicationPath, const char* commandLine) = nullptr;
};
extern ReportHooks reportHooks;

// Back to a fresh start (tests, tools): logViewState and reportHooks.
void ResetLogViewState();
