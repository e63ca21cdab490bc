#include "ui/win32/dialog_colours.h"

INT_PTR PaintControl(WPARAM deviceContext, COLORREF background, HBRUSH brush) {
  HDC dc = reinterpret_cast<HDC>(deviceContext);
  SetBkColor(dc, background);
  SetTextColor(dc, RGB(0, 0, 0));
  return reinterpret_cast<INT_PTR>(brush);
}

INT_PTR AnswerGreyColours(UINT message, WPARAM deviceContext, HBRUSH greyBrush) {
  switch (message) {
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      return PaintControl(deviceContext, kDialogGrey, greyBrush);
    default:
      return 0;
  }
}
