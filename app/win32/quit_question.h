// The question before Orvalen quits, asked by the main window (tray menu, Exit) and
// by the main status dialog (its Exit): first, when on-line, a warning that the
// session will not be recorded; then Yes or No. Each asks in its own words: only
// the main window's question capitalises the word after "Want".
#pragma once
#include <windows.h>

constexpr char kWindowQuitQuestion[] = "Are You Sure You Want To quit Orvalen ?";
constexpr char kDialogQuitQuestion[] = "Are You Sure You Want to quit Orvalen ?";

// True when the user answers Yes. The warning, owned by warningOwner, comes only
// when onLine is true; the question is owned by questionOwner.
bool AskToQuit(bool onLine, HWND warningOwner, HWND questionOwner, const char* question);
