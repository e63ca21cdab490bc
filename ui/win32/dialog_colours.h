// The look shared by the program's dialogs: black text on grey, green and white
// fields. Each colour's brush is made on its first use and kept for the whole run;
// ReleasePalette, at exit, is the one place they are released.
#pragma once
#include <windows.h>

constexpr COLORREF kDialogGrey = RGB(192, 192, 192);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kLightGreen = RGB(194, 248, 146);
constexpr COLORREF kWhite = RGB(255, 255, 255);

// Answers a WM_CTLCOLOR* message: black text on the given colour, one of the four
// above, and that colour's brush for the rest.
INT_PTR PaintControl(WPARAM deviceContext, COLORREF background);

// The grey answer for the colour messages listed; 0 (system colours) otherwise.
INT_PTR AnswerGreyColours(UINT message, WPARAM deviceContext);

// Releases every brush made; the next use makes it again.
void ReleasePalette();
