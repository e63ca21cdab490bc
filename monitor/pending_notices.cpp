#include "monitor/monitor.h"

#include "monitor/alarm.h"
#include "monitor/monitor_shell.h"
#include "storage/storage.h"
#include "storage/startup_hooks.h"

void Monitor::ShowPendingNotices(MonitorShell& shell) {
  if (showing_) return;
  showing_ = true;
  Notice notice;
  while (store_->notices.Take(&notice)) {
    switch (notice.kind) {
      case NoticeKind::kFileProblem:
        shell.ShowFileProblem(notice.text.c_str(), kFileProblemCaption);
        break;
      case NoticeKind::kOutOfSpace:
        shell.ShowOutOfSpace();
        break;
      case NoticeKind::kAccountCheck:
        shell.CheckAccounts();
        break;
      case NoticeKind::kAlarmReminder:
        ShowAlarmReminder(store_->settings, shell, notice.text.c_str());
        break;
      case NoticeKind::kUsageWarning:
        PlayAlarmSoundIfChosen(store_->settings, shell);
        shell.ShowUsageWarning(notice.text.c_str());
        break;
    }
  }
  showing_ = false;
}
