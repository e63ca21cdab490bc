// The detail controls that the Alarm page and the Accounts page switch together.
#pragma once
#include <windows.h>

// Enables or disables every control of kDetailControlIds that the page has; ids
// the page does not have are skipped.
void EnableDetailControls(HWND page, bool enable);
