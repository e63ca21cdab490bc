#!/usr/bin/env bash
# app_exit_online.sh WINE_DIR ORVALEN_EXE STANDIN_DLL DRIVER_EXE DIALUP_SCRIPT ARTIFACT_DIR
#
# Exit from the tray menu while on-line: the warning that the session will not
# be recorded, then the confirmation. No keeps everything running; Yes ends
# the process with 0, records nothing and leaves the session marker at 218 for
# the next start.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source-path=SCRIPTDIR source=app_lib.sh
source "$here/app_lib.sh"
app_setup exit-online "$@"

app_first_run_through_welcome
D=$APP_MAIN_DIALOG
dialog=$APP_DIALOG_HWND
main_window=$(drv wait-window --class Orvalen --any-visibility)

dial connect "Home ISP"
app_wait_online "Home ISP" || app_abort "the dialog shows the session of Home ISP"
app_wait_until 5 app_u8_is "$APP_CONFIG" 134 218 || app_abort "the session marker 218 is on disk"

warning=$(printf 'You are still on-line\nOrvalen will not record session if you quit now.')
question="Are You Sure You Want To quit Orvalen ?"

# The tray menu's Exit arrives at the hidden main window as command IDM_TRAY_EXIT.
exit_until_question() {  # LABEL: Exit, the warning answered OK, the question up
  drv post --class Orvalen --msg WM_COMMAND --wparam "$IDM_TRAY_EXIT" >/dev/null || app_abort "$1: Exit can be posted"
  drv wait-window --title "Orvalen Notification" >/dev/null || app_abort "$1: the on-line warning appears"
  check "$1: the warning is owned by the main status dialog" \
    "$(drv windows | grep -F 'title="Orvalen Notification"' | grep -o 'owner=0x[0-9a-f]*')" "owner=$dialog"
  check "$1: the warning's text" \
    "$(drv answer-box --title "Orvalen Notification" --button ok)" "$warning"
  drv wait-window --class "#32770" --title "" >/dev/null || app_abort "$1: the confirmation appears"
  check "$1: the confirmation's text" "$(drv box-text --title "")" "$question"
  check "$1: the confirmation is owned by the main window" \
    "$(drv windows | grep -F 'class="#32770" title=""' | grep -o 'owner=0x[0-9a-f]*')" "owner=$main_window"
  check "$1: the confirmation has Yes and No" \
    "$(drv children --class "#32770" --title "" | grep -o 'id=[67] class="Button"' | sort | tr '\n' ' ')" \
    'id=6 class="Button" id=7 class="Button" '
}

exit_until_question "Exit, No"
check "Exit, No: the confirmation closes" "$(drv answer-box --title "" --button no)" "$question"
drv wait-gone --class "#32770" --title "" >/dev/null
check_true "Exit, No: the program runs on" app_running
check "Exit, No: still on-line in the dialog" \
  "$(drv wait-text --title "$D" --id "$IDC_MAIN_FIRST_CAPTION" --equals "You've Been Logged on since:")" "You've Been Logged on since:"
check "Exit, No: the main window is still there" \
  "$(drv windows | grep -cF 'class="Orvalen" title="Orvalen"')" 1
elapsed_now=$(drv text --title "$D" --id "$IDC_MAIN_SECOND_VALUE")
next_tick() { [[ "$(drv text --title "$D" --id "$IDC_MAIN_SECOND_VALUE")" != "$elapsed_now" ]]; }
check_true "Exit, No: the dialog still ticks" app_wait_until 5 next_tick

exit_until_question "Exit, Yes"
drv answer-box --title "" --button yes >/dev/null || app_abort "Exit, Yes: the confirmation can be answered"
rc=$(app_wait_exit 10) || rc="still running"
check "Exit, Yes: the process ends with 0" "$rc" 0
check "Exit, Yes: the session marker stays 218" "$(app_u8 "$APP_CONFIG" 134)" 218
check "Exit, Yes: the checkpoint still names the session" "$(app_cstr "$APP_CONFIG" 6292 60)" "Home ISP"
check "Exit, Yes: nothing recorded in the log" \
  "$(app_u32 "$APP_LOG" "$(app_record_offset 0)") $(app_u32 "$APP_LOG" "$(app_record_offset 1)")" "0 0"
check "Exit, Yes: no window of the program left" \
  "$(drv windows | grep -cF -e 'class="Orvalen"' -e "title=\"$D\"")" 0

app_finish
