#include "app/win32/alarm_page.h"

#include "app/win32/alarm_sound.h"
#include "ui/win32/app_state.h"
#include "app/win32/detail_controls.h"
#include "ui/win32/dialog_colours.h"
#include "app/win32/sheet_page.h"
#include "monitor/alarm.h"
#include "resources/resource_ids.h"
#include "storage/storage.h"

namespace {

struct TimeBox {
  int edit;
  int spin;
  int maximum;
};
constexpr TimeBox kTimeBoxes[] = {
    {IDC_ALARM_REPEAT_HOURS, IDC_ALARM_REPEAT_HOURS_SPIN, static_cast<int>(kAlarmMaxHours)},
    {IDC_ALARM_REPEAT_MINUTES, IDC_ALARM_REPEAT_MINUTES_SPIN, static_cast<int>(kAlarmMaxMinutes)},
    {IDC_ALARM_ONCE_HOURS, IDC_ALARM_ONCE_HOURS_SPIN, static_cast<int>(kAlarmMaxHours)},
    {IDC_ALARM_ONCE_MINUTES, IDC_ALARM_ONCE_MINUTES_SPIN, static_cast<int>(kAlarmMaxMinutes)},
};
constexpr int kRepeatControls[] = {IDC_ALARM_REPEAT_HOURS, IDC_ALARM_REPEAT_MINUTES, IDC_ALARM_REPEAT_HOURS_SPIN,
                                   IDC_ALARM_REPEAT_MINUTES_SPIN};
constexpr int kOnceControls[] = {IDC_ALARM_ONCE_HOURS, IDC_ALARM_ONCE_MINUTES, IDC_ALARM_ONCE_HOURS_SPIN,
                                 IDC_ALARM_ONCE_MINUTES_SPIN};

void EnableGroup(HWND page, const int (&ids)[4], bool enable) {
  for (const int id : ids) EnableControl(page, id, enable);
}

void CreateSpinButtons(HWND page) {
  for (const TimeBox& box : kTimeBoxes) {
    HWND spin = CreateWindowExA(0, UPDOWN_CLASSA, "",
                                WS_CHILD | WS_VISIBLE | WS_BORDER | UDS_WRAP | UDS_SETBUDDYINT | UDS_ALIGNRIGHT |
                                    UDS_ARROWKEYS,
                                0, 0, 8, 8, page, reinterpret_cast<HMENU>(static_cast<INT_PTR>(box.spin)),
                                appWindows.instanceHandle, nullptr);
    if (spin == nullptr) continue;  // the page still works by typing
    SendMessageA(spin, UDM_SETBUDDY, reinterpret_cast<WPARAM>(GetDlgItem(page, box.edit)), 0);
    SendMessageA(spin, UDM_SETRANGE, 0, MAKELPARAM(box.maximum, 0));
  }
}

// The checked one of a pair or a trio of radio buttons; CheckRadioButton over an
// id range would also clear the other groups' buttons that lie in between.
void CheckAlone(HWND page, const int* ids, int count, int checked) {
  for (int i = 0; i < count; ++i) SetChecked(page, ids[i], ids[i] == checked);
}
constexpr int kOnOff[] = {IDC_ALARM_OFF, IDC_ALARM_ON};
constexpr int kModes[] = {IDC_ALARM_REPEAT, IDC_ALARM_ONCE};
constexpr int kActions[] = {IDC_ALARM_SOUND_ONLY, IDC_ALARM_BOX_AND_SOUND, IDC_ALARM_BOX_ONLY};

int ActionButton(uint8_t action) {
  switch (action) {
    case kAlarmSoundOnly:
      return IDC_ALARM_SOUND_ONLY;
    case kAlarmBoxOnly:
      return IDC_ALARM_BOX_ONLY;
    default:
      return IDC_ALARM_BOX_AND_SOUND;
  }
}

void ChooseMode(HWND page, uint8_t mode) {
  alarmState.AlarmModeState = mode;
  EnableGroup(page, kRepeatControls, mode == kAlarmEveryInterval);
  EnableGroup(page, kOnceControls, mode == kAlarmOnceAtEnd);
}

BOOL OnInitDialog(HWND page, LPARAM lParam) {
  KeepPageStorage(page, lParam);
  const Settings& settings = PageStorage(page).settings;
  CreateSpinButtons(page);
  SetDlgItemInt(page, IDC_ALARM_REPEAT_HOURS, static_cast<UINT>(settings.alarmRepeatHours), TRUE);
  SetDlgItemInt(page, IDC_ALARM_REPEAT_MINUTES, static_cast<UINT>(settings.alarmRepeatMinutes), TRUE);
  SetDlgItemInt(page, IDC_ALARM_ONCE_HOURS, static_cast<UINT>(settings.alarmOnceHours), TRUE);
  SetDlgItemInt(page, IDC_ALARM_ONCE_MINUTES, static_cast<UINT>(settings.alarmOnceMinutes), TRUE);

  // Stored values that the page does not offer (a mode other than 30 or 35, an
  // action other than 5, 10 or 15) open as repeating mode with box and sound, and
  // OK keeps what is shown: one button of each group is always checked.
  LoadAlarmPageState(settings);
  CheckAlone(page, kOnOff, 2, alarmState.AlarmOnState != 0 ? IDC_ALARM_ON : IDC_ALARM_OFF);
  EnableDetailControls(page, alarmState.AlarmOnState != 0);
  CheckAlone(page, kModes, 2, alarmState.AlarmModeState == kAlarmOnceAtEnd ? IDC_ALARM_ONCE : IDC_ALARM_REPEAT);
  // A mode never chosen (0, from an older configuration) is shown as repeating
  // but leaves both groups as the on/off choice set them.
  if (settings.alarmMode == kAlarmOnceAtEnd) EnableGroup(page, kRepeatControls, false);
  if (settings.alarmMode == kAlarmEveryInterval) EnableGroup(page, kOnceControls, false);
  CheckAlone(page, kActions, 3, ActionButton(alarmState.AlarmActionState));

  return TRUE;
}

void OnButton(HWND page, int id) {
  switch (id) {
    case IDC_ALARM_OFF:
      CheckAlone(page, kOnOff, 2, IDC_ALARM_OFF);
      EnableDetailControls(page, false);
      alarmState.AlarmOnState = 0;
      break;
    case IDC_ALARM_ON:
      CheckAlone(page, kOnOff, 2, IDC_ALARM_ON);
      EnableDetailControls(page, true);  // both modes' boxes, as the user left them
      alarmState.AlarmOnState = 1;
      break;
    case IDC_ALARM_REPEAT:
      ChooseMode(page, kAlarmEveryInterval);
      break;
    case IDC_ALARM_ONCE:
      ChooseMode(page, kAlarmOnceAtEnd);
      break;
    case IDC_ALARM_SOUND_ONLY:
      alarmState.AlarmActionState = kAlarmSoundOnly;
      break;
    case IDC_ALARM_BOX_AND_SOUND:
      alarmState.AlarmActionState = kAlarmBoxAndSound;
      break;
    case IDC_ALARM_BOX_ONLY:
      alarmState.AlarmActionState = kAlarmBoxOnly;
      break;
    case IDC_ALARM_PREVIEW_SOUND:
      PlayAlarmSound();
      break;
    default:
      break;
  }
}

// A box that holds no number (or one beyond 32 bits) reads as 0.
uint32_t ReadBox(HWND page, int id) {
  BOOL read = FALSE;
  const UINT value = GetDlgItemInt(page, id, &read, FALSE);
  return read ? value : 0;
}

}  // namespace

INT_PTR CALLBACK AlarmPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      return OnInitDialog(page, lParam);
    case WM_COMMAND:
      if (HIWORD(wParam) == BN_CLICKED) OnButton(page, LOWORD(wParam));
      return FALSE;
    case WM_NOTIFY:
      return AnswerSheetNotification(page, lParam, [page] {
        StoreAlarmPage(PageStorage(page).settings, ReadBox(page, IDC_ALARM_REPEAT_HOURS),
                       ReadBox(page, IDC_ALARM_REPEAT_MINUTES), ReadBox(page, IDC_ALARM_ONCE_HOURS),
                       ReadBox(page, IDC_ALARM_ONCE_MINUTES));
      });
    case WM_CTLCOLOREDIT:
      return PaintControl(wParam, kWhite);
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
      return PaintControl(wParam, kDialogGrey);
    default:
      return FALSE;
  }
}
