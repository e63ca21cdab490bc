#include "app/shell_rules.h"

#include "resources/resource_ids.h"

MenuAction MenuActionFor(int commandId) {
  switch (commandId) {
    case IDM_TRAY_SHOW:
      return MenuAction::kShowMainDialog;
    case IDM_TRAY_ABOUT:
      return MenuAction::kShowAbout;
    case IDM_TRAY_VIEW_LOG:
      return MenuAction::kOpenViewLog;
    case IDM_TRAY_HIDE:
      return MenuAction::kHideMainDialog;
    default:
      return MenuAction::kAskToQuit;
  }
}

ActivateAnswer AnswerActivate(bool startupDone, bool boxWaiting, bool mainDialogShown) {
  const bool dialogShown = startupDone || mainDialogShown;
  return {.showMainDialog = startupDone,
          .forward = boxWaiting ? ForwardWindow::kWaitingBox
                     : dialogShown ? ForwardWindow::kMainDialog
                                   : ForwardWindow::kNone};
}
