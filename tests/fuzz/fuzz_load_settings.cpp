// A start-up on any configuration file beside a small log: InitialiseStorage,
// RecoverInterruptedSession and CheckUnconfiguredConnections as the main window
// runs them, then the account figures the dialogs show. Nothing recorded in the
// log is lost, a session left open is recorded once from its checkpoint, and the
// file on disk never becomes shorter.
#include <cstring>
#include <filesystem>

#include "fuzz_support.h"
#include "logview/log_view_lines.h"
#include "monitor/monitor.h"
#include "monitor/monitor_shell.h"
#include "monitor/unconfigured_connections.h"
#include "storage/accounts.h"
#include "storage/fixed_text.h"
#include "platform/program_paths.h"
#include "storage/storage.h"
#include "storage/startup.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshProgramState();
  Storage store;
  SessionRecord logged{};  // a log of one session and a Blank record
  logged.status = InUse;
  logged.month = 1;
  logged.year = 2002;
  logged.durationSeconds = 3600;
  std::strcpy(logged.connectionName, "Home ISP");
  store.sessionLog.records = {logged, SessionRecord{}};
  Require(store.SaveLog(LogFilePath().c_str()), "the log is written");
  store.sessionLog = SessionLog{};
  const std::string path = WriteInput("Orvaconfig.bic", data, size);

  Settings input{};
  std::memcpy(&input, data, std::min(size, sizeof input));

  Require(store.InitialiseStorage(nullptr), "a readable configuration starts");
  Monitor(store).RecoverInterruptedSession();
  MonitorShell shell;
  (void)CheckUnconfiguredConnections(store, shell);

  // Whatever the marker says, the current log on disk is the one loaded.
  Require(SameRecord(store.sessionLog.records.at(0), logged), "the logged session is kept");
  if (input.sessionOpenMarker == kSessionOpen) {
    // The checkpoint of the very session already logged is not recorded again,
    // nor one without a name, a real date or real times.
    const bool sameStart =
        input.checkpointLogOn.hour == logged.logOnHour && input.checkpointLogOn.minute == logged.logOnMinute &&
        input.checkpointLogOn.second == logged.logOnSecond &&
        std::strncmp(input.checkpointName, logged.connectionName, kCheckpointNameSize) == 0;
    const auto isTime = [](const TimeOfDay& time) { return time.hour < 24 && time.minute < 60 && time.second < 60; };
    const bool whole = input.checkpointName[0] != '\0' && input.checkpointMonth >= 1 && input.checkpointMonth <= 12 &&
                       input.checkpointDay >= 1 && input.checkpointDay <= 31 && input.checkpointYear >= 1980 &&
                       input.checkpointYear <= 9999 && input.checkpointDayOfWeek <= 6 &&
                       isTime(input.checkpointLogOn) && isTime(input.checkpointTime);
    uint32_t used = 0;
    for (const SessionRecord& record : store.sessionLog.records) used += record.status == InUse ? 1 : 0;
    Require(used == 2 || (used == 1 && (!whole || sameStart)), "the open session is recorded once");
    Require(store.settings.sessionOpenMarker == kNoSessionOpen, "and the marker is cleared");
    if (used == 2) {
      const SessionRecord& recovered = store.sessionLog.records.at(1);
      Require(whole, "only a whole checkpoint is recorded");
      Require(recovered.durationSeconds == static_cast<int32_t>(input.checkpointElapsed) ||
                  (recovered.durationSeconds >= 0 && recovered.durationSeconds < 86400),
              "from its checkpoint, or its damaged length repaired from its times");
      Require(recovered.durationSeconds >= 0, "never negative");
      Require(std::strncmp(recovered.connectionName, input.checkpointName, kCheckpointNameSize) == 0,
              "under its checkpoint name, cut to the field");
    }
  }
  Require(std::filesystem::file_size(path) >= std::max<std::size_t>(size, sizeof(Settings)),
          "the configuration file never shrinks");

  for (const AccountRecord& account : store.settings.accounts) {
    char name[kAccountNameSize + 1] = {};
    std::memcpy(name, account.connectionName, FixedTextLength(account.connectionName, kAccountNameSize));
    UsageSummary summary;
    store.ComputeUsage(name, summary);
    Require(!AccountSummaryText(store, name).empty(), "every account has a summary text");
  }
  return 0;
}
