#include "logview/manage_log_summary.h"

#include <cstdio>

#include "logview/log_view_lines.h"
#include "storage/account_record.h"
#include "platform/program_paths.h"
#include "storage/storage.h"

namespace {

// Seconds to hours in single precision, as every hour figure of the program.
double Hours(float seconds) { return static_cast<double>(seconds * (1.0f / 3600.0f)); }

// The deletions stay in memory either way; a failure was told by the save itself.
void SaveLogAndSettings(Storage& store) {
  (void)store.SaveLog(LogFilePath().c_str());
  (void)store.SaveSettings();
}

}  // namespace

std::string ManageLogSummaryText(Storage& store, const char* connection) {
  char text[200];
  switch (store.AccountKindOf(connection)) {
    case PrePaidCard:
      std::snprintf(text, sizeof text, "Pre-paid Internet Card\nTotal Time : %.2f Hrs.\nRemaining : %.2f Hrs.",
                    Hours(static_cast<float>(store.TotalSeconds(connection))),
                    Hours(store.CardSecondsRemaining(connection)));
      return text;
    case LimitedAccess:
      std::snprintf(text, sizeof text, "Limited Access\nThis Month: %.2f Hrs\nLogged Total :%.2f Hrs",
                    Hours(static_cast<float>(store.SecondsThisMonth(connection))),
                    Hours(static_cast<float>(store.TotalSeconds(connection))));
      return text + BillingPeriodLine(store, connection);
    case UnlimitedAccess:
      return "Unlimited Access";
    default:  // not chosen, no configured account, or a damaged kind
      return std::string();
  }
}

int DeleteConnectionEntries(Storage& store, const char* connection) {
  const int outcome = store.MarkConnectionDeleted(connection) ? kRecordsDeleted : kLogUnchanged;
  store.DeleteAccount(connection);
  SaveLogAndSettings(store);
  return outcome;
}

int ClearEntireLog(Storage& store) {
  store.ClearLog();
  SaveLogAndSettings(store);
  return kLogCleared;
}
