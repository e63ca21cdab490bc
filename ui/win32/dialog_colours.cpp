#include "ui/win32/dialog_colours.h"

namespace {

constexpr COLORREF kPaletteColours[] = {kDialogGrey, kGreen, kLightGreen, kWhite};
HBRUSH paletteBrushes[sizeof kPaletteColours / sizeof kPaletteColours[0]] = {};

HBRUSH PaletteBrush(COLORREF colour) {
  for (std::size_t i = 0; i < sizeof kPaletteColours / sizeof kPaletteColours[0]; ++i) {
    if (kPaletteColours[i] != colour) continue;
    if (paletteBrushes[i] == nullptr) paletteBrushes[i] = CreateSolidBrush(colour);
    return paletteBrushes[i];
  }
  return nullptr;  // not a palette colour: the system's
}

}  // namespace

INT_PTR PaintControl(WPARAM deviceContext, COLORREF background) {
  HDC dc = reinterpret_cast<HDC>(deviceContext);
  SetBkColor(dc, background);
  SetTextColor(dc, RGB(0, 0, 0));
  return reinterpret_cast<INT_PTR>(PaletteBrush(background));
}

INT_PTR AnswerGreyColours(UINT message, WPARAM deviceContext) {
  switch (message) {
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      return PaintControl(deviceContext, kDialogGrey);
    default:
      return 0;
  }
}

void ReleasePalette() {
  for (HBRUSH& brush : paletteBrushes) {
    if (brush != nullptr) DeleteObject(brush);
    brush = nullptr;
  }
}
