// What the monitor needs the user to see or answer. The shell implements it and
// hands it to Monitor::ShowPendingNotices, which calls it only once a step has
// returned: nothing inside a tick, a save or a recovery can reach a box. A call
// left as it is here shows nothing.
#pragma once
#include <cstdint>

class MonitorShell {
 public:
  virtual ~MonitorShell() = default;

  virtual void PlayAlarmSound() {}  // kAlarmSoundPath, asynchronously
  // The alarm's notice window (IDD_ALARM_NOTICE), modal; returns when it closes.
  virtual void ShowAlarmReminder(const char* /*text*/) {}
  // The same window, captioned kUsageWarningCaption.
  virtual void ShowUsageWarning(const char* /*text*/) {}
  virtual void ShowOutOfSpace() {}  // "Out of space to record session"
  // What went wrong with one of the program's files: a plain box without an owner.
  virtual void ShowFileProblem(const char* /*text*/, const char* /*caption*/) {}

  // After a recorded session: the questions about connections without an account,
  // which the program's shell asks with CheckUnconfiguredConnections through the
  // three calls below.
  virtual void CheckAccounts() {}
  // A box owned by the main window, exclamation icon, OK only.
  virtual void ShowConfigureNotice(const char* /*text*/, const char* /*caption*/) {}
  // A box with no owner, OK only.
  virtual void ShowNotSetUp(const char* /*text*/, const char* /*caption*/) {}
  // IDD_ACCOUNTS, modal, owned by the main window; non-zero when it saved the account.
  virtual intptr_t RunAccountDialog() { return 0; }
};
