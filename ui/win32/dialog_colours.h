// The grey look shared by the program's dialogs: grey background, black text.
#pragma once
#include <windows.h>

constexpr COLORREF kDialogGrey = RGB(192, 192, 192);

// Answers a WM_CTLCOLOR* message with the given colours and brush.
INT_PTR PaintControl(WPARAM deviceContext, COLORREF background, HBRUSH brush);

// The grey answer for the colour messages listed; 0 (system colours) otherwise.
INT_PTR AnswerGreyColours(UINT message, WPARAM deviceContext, HBRUSH greyBrush);
