#include "logview/manage_log_summary.h"

#include <cstdio>

#include "logview/log_view_lines.h"
#include "storage/account_record.h"
#include "storage/accounts.h"
#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "storage/settings.h"

namespace {

// Seconds to hours in single precision, as every hour figure of the program.
double Hours(float seconds) { return static_cast<double>(seconds * (1.0f / 3600.0f)); }

// The deletions stay in memory either way; a failure was told by the save itself.
void SaveLogAndSettings() {
  (void)SaveLog(LogFilePath().c_str());
  (void)SaveSettings();
}

}  // namespace

std::string ManageLogSummaryText(const char* connection) {
  char text[200];
  switch (AccountKindOf(connection)) {
    case PrePaidCard:
      std::snprintf(text, sizeof text, "Pre-paid Internet Card\nTotal Time : %.2f Hrs.\nRemaining : %.2f Hrs.",
                    Hours(static_cast<float>(TotalSeconds(connection))), Hours(CardSecondsRemaining(connection)));
      return text;
    case LimitedAccess:
      std::snprintf(text, sizeof text, "Limited Access\nThis Month: %.2f Hrs\nLogged Total :%.2f Hrs",
                    Hours(static_cast<float>(SecondsThisMonth(connection))),
                    Hours(static_cast<float>(TotalSeconds(connection))));
      return text + BillingPeriodLine(connection);
    case UnlimitedAccess:
      return "Unlimited Access";
    default:  // not chosen, no configured account, or a damaged kind
      return std::string();
  }
}

int DeleteConnectionEntries(const char* connection) {
  const int outcome = MarkConnectionDeleted(connection) ? kRecordsDeleted : kLogUnchanged;
  DeleteAccount(connection);
  SaveLogAndSettings();
  return outcome;
}

int ClearEntireLog() {
  ClearLog();
  SaveLogAndSettings();
  return kLogCleared;
}
