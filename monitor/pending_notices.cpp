#include "monitor/pending_notices.h"

#include "monitor/session.h"
#include "storage/notice_queue.h"
#include "storage/startup_hooks.h"

namespace {

bool showing = false;  // a box of ours is open: its own loop's ticks show nothing

}  // namespace

void ShowPendingNotices() {
  if (showing) return;
  showing = true;
  Notice notice;
  while (TakeNotice(&notice)) {
    switch (notice.kind) {
      case NoticeKind::kFileProblem:
        if (startupHooks.showFileProblem) startupHooks.showFileProblem(notice.text.c_str(), kFileProblemCaption);
        break;
      case NoticeKind::kOutOfSpace:
        if (sessionHooks.reportOutOfSpace) sessionHooks.reportOutOfSpace();
        break;
      case NoticeKind::kAccountCheck:
        if (sessionHooks.checkUnconfiguredConnections) sessionHooks.checkUnconfiguredConnections();
        break;
    }
  }
  showing = false;
}
