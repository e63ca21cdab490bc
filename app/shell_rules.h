// What the hidden main window does with a tray menu command and with a second
// start's request, as plain rules: the window carries them out.
#pragma once

// A command of the tray menu.
enum class MenuAction { kShowMainDialog, kShowAbout, kOpenViewLog, kHideMainDialog, kAskToQuit };
// Exit, and on purpose any id the menu does not have: the older release quit on
// an id it did not know (after the question), and its users rely on that.
MenuAction MenuActionFor(int commandId);

// A second start asks for the program, and is told which window to bring forward.
enum class ForwardWindow { kNone, kWaitingBox, kMainDialog };
struct ActivateAnswer {
  bool showMainDialog;
  ForwardWindow forward;
};
// Once the start-up is done the main status dialog is shown. A box that waits
// (Welcome, a notice, a question) comes forward first, else the dialog when shown.
ActivateAnswer AnswerActivate(bool startupDone, bool boxWaiting, bool mainDialogShown);
