// The shell's side of the monitor: the sound, the boxes and the account dialog
// its notices come to, once a step has returned.
#pragma once
#include "monitor/monitor_shell.h"

class Storage;

class WindowShell : public MonitorShell {
 public:
  // The account questions save into the storage.
  explicit WindowShell(Storage& store) : store_(store) {}

  void PlayAlarmSound() override;
  void ShowAlarmReminder(const char* text) override;
  void ShowUsageWarning(const char* text) override;
  void ShowOutOfSpace() override;
  void ShowFileProblem(const char* text, const char* caption) override;
  void CheckAccounts() override;
  void ShowConfigureNotice(const char* text, const char* caption) override;
  void ShowNotSetUp(const char* text, const char* caption) override;
  intptr_t RunAccountDialog() override;

 private:
  Storage& store_;
};
