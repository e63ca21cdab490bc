// The splash at every start, About, and the Welcome of the first run.
#pragma once
#include <windows.h>

INT_PTR CALLBACK SplashDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK AboutDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK WelcomeDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
