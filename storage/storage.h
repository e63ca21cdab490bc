// Storage: the one owner of what the program keeps on disk and of what it learnt
// loading and saving it. It holds the settings block (the configuration file),
// the log of sessions, the holds on files that could not be read, the notices
// waiting to be shown, the usage figures remembered between queries and the
// hooks of the installation. The shell makes one at start and hands it to the
// monitor and to each window that shows or changes stored data; tests make one
// each. A new process's start is a new Storage.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "storage/account_figures.h"
#include "storage/accounts.h"
#include "storage/file_holds.h"
#include "storage/notice_queue.h"
#include "storage/session_log.h"
#include "storage/settings.h"
#include "storage/startup_hooks.h"
#include "storage/usage_cache.h"

class Storage {
 public:
  Storage() = default;
  Storage(const Storage&) = delete;  // one owner: it is handed on by reference
  Storage& operator=(const Storage&) = delete;
  Storage(Storage&&) = default;
  Storage& operator=(Storage&&) = default;  // a fresh start: storage = Storage{}

  // --- What is stored, as the windows read and change it -----------------------
  Settings settings{};        // the configuration block, zero-filled until read or set
  SessionLog sessionLog;      // the log, held whole
  NoticeQueue notices;        // what a load, a save or a session step has to tell
  FileHolds holds;            // the files that could not be read, the failures told
  InstallHooks installHooks;  // what a first run does beyond writing the file
  StartupHooks startupHooks;  // the dialogs and system actions of the start
  // Largest number of records the log may grow to; lowered only by tests.
  uint32_t logRecordLimit = kMaxLogRecords;
  // The card balance in seconds of the last pre-paid card computation.
  float cardSecondsRemaining = 0.0f;

  // --- Start-up (startup.cpp) ------------------------------------------------------
  // Loads or creates everything at start-up; owner (the main window) owns the
  // dialogs. False only when an existing configuration file cannot be read: then the
  // defaults are used in memory, the file is held, and the log is loaded as usual.
  bool InitialiseStorage(void* owner);

  // --- The configuration file (settings_file.cpp) --------------------------------
  void ApplyDefaultSettings();
  bool LoadSettings(const char* path);
  // A failure is told once by the save itself (FileHolds); the caller decides the rest.
  [[nodiscard]] bool SaveSettingsTo(const char* path);
  [[nodiscard]] bool SaveSettings();
  // First run: checks that the file can be created, applies the defaults, installs
  // the program and writes the block; the file appears only once written whole.
  bool CreateSettings(const char* path);
  // True when formatMarker is this release's, ignoring letter case.
  bool HasCurrentFormatMarker() const;

  // --- The log (log_operations.cpp) ------------------------------------------------
  // Changes whenever the log's records may have changed. Every operation below that
  // changes a record or the array moves it on, so the usage cache knows when to
  // compute afresh. Code that writes sessionLog.records directly instead (tests
  // building a log by hand) must call NoteLogChanged() afterwards.
  uint64_t LogGeneration() const { return logGeneration_; }
  void NoteLogChanged() { ++logGeneration_; }

  // Reads the file only. Every whole record the file holds is loaded, also past a
  // header count that says fewer.
  bool LoadLog(const char* path);
  // Refused (false, nothing written) while the log is held and still unreadable.
  // A log unchanged since the last successful save to that file writes nothing.
  [[nodiscard]] bool SaveLog(const char* path);
  // After the log's file (path; an older release's when legacy) could not be read:
  // tells the user, holds the log and starts a fresh one in memory for the sessions
  // of this run. The first save that can read the file keeps both.
  void KeepSessionsUntilLogRead(const char* path, bool legacy);
  bool CreateEmptyLog(const char* path);
  // The fixed table of an older release, read whole for ConvertLegacyLog.
  bool LoadLegacyLog(const char* path);
  bool ConvertLegacyLog();

  void AppendBlankRecords();
  bool HasNoFreeSlot() const;
  bool IsLogEmpty() const;
  // Lowest record that is not InUse, growing the log by two first when every record
  // is InUse; kNoSlot only when the log cannot grow.
  uint32_t FindFreeSlot();

  void SetRecordDate(uint32_t index, uint32_t dayOfWeek, uint32_t month, uint32_t day, uint32_t year);
  void SetRecordLogOn(uint32_t index, uint32_t hour, uint32_t minute, uint32_t second);
  void SetRecordLogOff(uint32_t index, uint32_t hour, uint32_t minute, uint32_t second);
  void SetRecordDuration(uint32_t index, int32_t seconds);
  void SetRecordName(uint32_t index, const char* name);
  // The recorder marks the slot FindFreeSlot gave it InUse with this.
  void SetRecordStatus(uint32_t index, RecordStatus status);
  // The record's name when it is InUse, otherwise nullptr.
  const char* RecordName(uint32_t index) const;

  bool MarkConnectionDeleted(const char* name);
  void ClearLog();

  // --- Accounts and usage (account_queries.cpp) ------------------------------------
  // Usage is never stored: every query of this part walks the whole log again. The
  // displays that ask many times a second use the Cached ones below.

  // The entry's writable name field (32 bytes); nullptr when k is not 0 to 49.
  char* AccountName(int k);
  // Lowest entry whose name equals name byte for byte, configured or not; kNoAccount
  // when there is none. An empty name matches nothing: empty entries are free ones.
  int AccountIndexByName(const char* name) const;
  // As AccountIndexByName, but only entries the user has configured.
  int FindAccount(const char* name) const;
  // Puts the name into the lowest free entry unless an entry already has it or all
  // fifty are taken. The kind and figures of a reused entry are left as they are.
  void AddAccountName(const char* name);
  // Frees the first entry with that name (its kind and figures stay); false when none.
  bool DeleteAccount(const char* name);

  // Fills the summary for the connection and returns the card's remaining seconds
  // (kind 1), this month's cost (kind 2), 1.0 (kind 3) or 0.0. Log records match the
  // name ignoring letter case; the account must match it exactly and be configured.
  float ComputeUsage(const char* name, UsageSummary& summary);
  // The window of the connection's configured account on the given day: its billing
  // period for limited access with a start day, its recharge for a card.
  UsageWindow UsageWindowFor(const char* name, const LocalTime& now) const;
  // The account's current billing period; false when it has none (calendar months).
  bool CurrentBillingPeriod(const char* name, BillingPeriod& period) const;
  // ComputeUsage in its two halves: the log's part, a walk of the whole log ...
  LogUsageSums SumLogUsage(const char* name, const UsageWindow& window) const;
  // ... and the account's part: the summary and the result of ComputeUsage.
  float UsageFromLogSums(const char* name, const LogUsageSums& sums, UsageSummary& summary);

  // Each runs ComputeUsage afresh and returns one figure.
  uint32_t AccountKindOf(const char* name);
  int32_t AllottedAmount(const char* name);
  int32_t SecondsThisMonth(const char* name);
  int32_t TotalSeconds(const char* name);
  float CardSecondsRemaining(const char* name);  // meaningful for a pre-paid card only

  // OK / Apply of the Accounts page for the chosen connection: false, changing
  // nothing, when no connection is chosen (empty name) or it has no account entry.
  bool SaveAccountInput(const char* connectionName, const AccountPageInput& input);

  // --- The same figures remembered between queries (account_queries.cpp) ---------
  float CachedComputeUsage(const char* name, UsageSummary& summary);
  uint32_t CachedAccountKindOf(const char* name);
  int32_t CachedAllottedAmount(const char* name);
  int32_t CachedSecondsThisMonth(const char* name);
  int32_t CachedTotalSeconds(const char* name);
  float CachedCardSecondsRemaining(const char* name);
  UsageCache& Cache() { return usageCache_; }

 private:
  void SetFreshLog();
  SessionRecord* RecordToChange(uint32_t index);
  bool ReadLogFile(const char* path, std::vector<SessionRecord>* records) const;
  std::vector<SessionRecord> LegacyRecords() const;
  void KeepRunSessionsOver(std::vector<SessionRecord> records);
  bool ReadHeldLogAgain(const char* path);
  UsageSummary UsageOf(const char* name);
  UsageSummary CachedUsageOf(const char* name);

  uint64_t logGeneration_ = 1;
  // The fixed table of 2000 records an older release's log is read into, once,
  // for its conversion.
  std::vector<SessionRecord> LegacyLogTable;
  bool heldFromLegacy_ = false;             // the held log waits for an older release's file
  // What the last successful save wrote (0: nothing yet): a save of the same
  // generation to the same file writes nothing.
  uint64_t savedGeneration_ = 0;
  std::string savedPath_;
  UsageCache usageCache_;
};

// One set of the five usage queries, so a display can be built from either family:
// the program uses the cached one, the benchmarks compare it with the fresh one.
struct UsageQueries {
  uint32_t (Storage::*accountKindOf)(const char* name);
  int32_t (Storage::*allottedAmount)(const char* name);
  int32_t (Storage::*secondsThisMonth)(const char* name);
  int32_t (Storage::*totalSeconds)(const char* name);
  float (Storage::*cardSecondsRemaining)(const char* name);
};
extern const UsageQueries kCachedUsage;
extern const UsageQueries kFreshUsage;
