#include "app/win32/detail_controls.h"

#include "resources/resource_ids.h"
#include "ui/win32/controls.h"

namespace {

// The first eight are the Accounts page's detail fields, the rest the Alarm page's.
constexpr int kDetailControlIds[] = {
    IDC_ACCOUNTS_MONTHLY_CHARGE_LABEL, IDC_ACCOUNTS_EXCESS_LABEL,    IDC_ACCOUNTS_BASIC_HOURS_LABEL,
    IDC_ACCOUNTS_VAT_LABEL,            IDC_ACCOUNTS_MONTHLY_CHARGE,  IDC_ACCOUNTS_BASIC_HOURS,
    IDC_ACCOUNTS_EXCESS_PER_MINUTE,    IDC_ACCOUNTS_VAT,             IDC_ALARM_REPEAT,
    IDC_ALARM_ONCE,                    IDC_ALARM_REPEAT_HOURS,       IDC_ALARM_REPEAT_MINUTES,
    IDC_ALARM_ONCE_HOURS,              IDC_ALARM_ONCE_MINUTES,       IDC_ALARM_SOUND_ONLY,
    IDC_ALARM_BOX_AND_SOUND,           IDC_ALARM_BOX_ONLY,           IDC_ALARM_PREVIEW_SOUND,
    IDC_ALARM_REPEAT_HOURS_SPIN,       IDC_ALARM_REPEAT_MINUTES_SPIN, IDC_ALARM_ONCE_HOURS_SPIN,
    IDC_ALARM_ONCE_MINUTES_SPIN};

}  // namespace

void EnableDetailControls(HWND page, bool enable) {
  for (const int id : kDetailControlIds) EnableControl(page, id, enable);
}
