// The window side of the unconfigured-connection notice: its message boxes and
// the account dialog it opens.
#pragma once

// Points unconfiguredHooks at the message boxes and IDD_ACCOUNTS.
void UseWindowsAccountNotice();
