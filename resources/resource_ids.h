/* Resource and control ids of Orvalen.
 *
 * Read by the C++ sources and by windres, so only plain #defines belong here.
 * Several dialogs reuse the same numbers for different controls; each dialog
 * gets its own names so that code never borrows another dialog's id.
 */
#ifndef ORVALEN_RESOURCE_IDS_H
#define ORVALEN_RESOURCE_IDS_H

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif

/* ---- Dialog templates ---------------------------------------------------- */
#define IDD_MAIN_STATUS   100
#define IDD_GENERAL_PAGE  200
#define IDD_ABOUT         300
#define IDD_WELCOME       400
#define IDD_VIEW_LOG      600
#define IDD_SPLASH        700
#define IDD_ACCOUNTS      900
#define IDD_MANAGE_LOG    1000
#define IDD_ALARM_PAGE    1400
#define IDD_LOG_PAGE      1700
#define IDD_ALARM_NOTICE  1901

/* ---- Tray menu ----------------------------------------------------------- */
#define IDM_TRAY          1500
#define IDM_TRAY_SHOW     1510
#define IDM_TRAY_VIEW_LOG 114
#define IDM_TRAY_HIDE     1520
#define IDM_TRAY_ABOUT    108
#define IDM_TRAY_EXIT     2

/* ---- Icons --------------------------------------------------------------- */
#define IDI_PROGRAM       22   /* 32x32, 256 colours: tray, windows, dialogs */
#define IDI_ACCOUNTS      32   /* Accounts page */
#define IDI_LOG_PAGE      34   /* Log page */
#define IDI_ALARM_PAGE    36   /* Alarm page */
#define IDI_ALARM_ON      1006 /* 32x32, 16 colours */
#define IDI_ALARM_OFF     1007 /* 32x32, 16 colours */

/* ---- Bitmaps ------------------------------------------------------------- */
#define IDB_BANNER        21   /* main status dialog, 285x42 */
#define IDB_SPLASH        23   /* splash, 146x122, 24-bit */
#define IDB_ALARM_NOTICE  45   /* alarm notice picture */
#define IDB_SIDE_PICTURE  102  /* tall picture of About and Welcome */
#define IDB_LOGO          250  /* About and Welcome, 100x40 */

/* ---- Main status dialog (100) -------------------------------------------- */
#define IDC_MAIN_BANNER             121
#define IDC_MAIN_CONFIGURE          106
#define IDC_MAIN_VIEW_LOG           114
#define IDC_MAIN_ABOUT              108
#define IDC_MAIN_DATE_FRAME         105
#define IDC_MAIN_ALARM_ICON         2001
#define IDC_MAIN_DATE_LABEL         102
#define IDC_MAIN_DATE               109
#define IDC_MAIN_TIME_LABEL         103
#define IDC_MAIN_TIME               110
#define IDC_MAIN_SESSION_FRAME      116
#define IDC_MAIN_CONNECTION_CAPTION 123
#define IDC_MAIN_CONNECTION_NAME    124
#define IDC_MAIN_FIRST_CAPTION      104
#define IDC_MAIN_FIRST_VALUE        112
#define IDC_MAIN_SECOND_CAPTION     111
#define IDC_MAIN_SECOND_VALUE       113
#define IDC_MAIN_PROGRAM_ICON       120
#define IDC_MAIN_ACCOUNT_STATUS     1510
#define IDC_MAIN_PREVIOUS_SESSION   601
#define IDC_MAIN_HIDE               125

/* ---- Splash (700) -------------------------------------------------------- */
#define IDC_SPLASH_FRAME    703
#define IDC_SPLASH_PICTURE  21
#define IDC_SPLASH_NOTICE   702
#define IDC_SPLASH_CREDIT   701

/* ---- About (300) --------------------------------------------------------- */
#define IDC_ABOUT_SIDE_PICTURE    121
#define IDC_ABOUT_LOGO            301
#define IDC_ABOUT_PLATFORMS       303
#define IDC_ABOUT_CREDIT_LABEL    309
#define IDC_ABOUT_CREDIT_NAME     307
#define IDC_ABOUT_NOTICE          216
#define IDC_ABOUT_FRAME           304
#define IDC_ABOUT_DESCRIPTION     305
#define IDC_ABOUT_CONTACT_TEXT    306
#define IDC_ABOUT_CONTACT_FRAME   311
#define IDC_ABOUT_CONTACT_ADDRESS 310
#define IDC_ABOUT_CLOSE           1

/* ---- Welcome (400) ------------------------------------------------------- */
#define IDC_WELCOME_LOGO         301
#define IDC_WELCOME_SIDE_PICTURE 121
#define IDC_WELCOME_FRAME        405
#define IDC_WELCOME_TEXT_FIRST   401
#define IDC_WELCOME_TEXT_SECOND  402
#define IDC_WELCOME_TEXT_THIRD   403
#define IDC_WELCOME_PROCEED      1

/* ---- General page (200) -------------------------------------------------- */
#define IDC_GENERAL_STARTUP_FRAME    208
#define IDC_GENERAL_RUN_AT_STARTUP   210
#define IDC_GENERAL_SHOW_MAIN_WINDOW 219
#define IDC_GENERAL_OPERATION_FRAME  201
#define IDC_GENERAL_24_HOUR_CLOCK    217
#define IDC_GENERAL_DATABASE_FRAME   212
#define IDC_GENERAL_CURRENCY_LABEL   214
#define IDC_GENERAL_CURRENCY         202
#define IDC_GENERAL_CURRENCY_HINT    206

/* ---- Log page (1700) ----------------------------------------------------- */
#define IDC_LOGPAGE_FRAME           1704
#define IDC_LOGPAGE_SHOW_ALL        1702
#define IDC_LOGPAGE_FILTER_PREVIOUS 1703
#define IDC_LOGPAGE_SYSTEM_COLOURS  1701

/* ---- Alarm page (1400) --------------------------------------------------- */
#define IDC_ALARM_EXPLANATION       1424
#define IDC_ALARM_OFF               1401
#define IDC_ALARM_ON                1402
#define IDC_ALARM_MODE_FRAME        1420
#define IDC_ALARM_REPEAT            1407
#define IDC_ALARM_REPEAT_HOURS      1403
#define IDC_ALARM_REPEAT_HOURS_LABEL   1410
#define IDC_ALARM_REPEAT_MINUTES    1412
#define IDC_ALARM_REPEAT_MINUTES_LABEL 1411
#define IDC_ALARM_ONCE              1408
#define IDC_ALARM_ONCE_HOURS        1415
#define IDC_ALARM_ONCE_HOURS_LABEL  1414
#define IDC_ALARM_ONCE_MINUTES      1418
#define IDC_ALARM_ONCE_MINUTES_LABEL 1416
#define IDC_ALARM_ACTION_FRAME      1406
#define IDC_ALARM_SOUND_ONLY        1404
#define IDC_ALARM_BOX_AND_SOUND     1405
#define IDC_ALARM_BOX_ONLY          1422
#define IDC_ALARM_PREVIEW_SOUND     1421
#define IDC_ALARM_DETAIL_FRAME      1423
/* Up-down controls, created by the page at run time (not in the template). */
#define IDC_ALARM_REPEAT_HOURS_SPIN   1409
#define IDC_ALARM_REPEAT_MINUTES_SPIN 1413
#define IDC_ALARM_ONCE_HOURS_SPIN     1417
#define IDC_ALARM_ONCE_MINUTES_SPIN   1419

/* ---- Alarm notice (1901) ------------------------------------------------- */
#define IDC_NOTICE_CLOSE   1
#define IDC_NOTICE_MESSAGE 1510
#define IDC_NOTICE_PICTURE 121

/* ---- Accounts page / account dialog (900) -------------------------------- */
#define IDC_ACCOUNTS_BANNER               1510
#define IDC_ACCOUNTS_LIST_FRAME           901
#define IDC_ACCOUNTS_CHOOSE_LABEL         123
#define IDC_ACCOUNTS_CONNECTION           601
#define IDC_ACCOUNTS_KIND_FRAME           903
#define IDC_ACCOUNTS_UNLIMITED            906
#define IDC_ACCOUNTS_CARD_FRAME           909
#define IDC_ACCOUNTS_CARD                 904
#define IDC_ACCOUNTS_CARD_HOURS_LABEL     217
#define IDC_ACCOUNTS_CARD_HOURS           114
#define IDC_ACCOUNTS_LIMITED_FRAME        910
#define IDC_ACCOUNTS_LIMITED              905
#define IDC_ACCOUNTS_MONTHLY_CHARGE_LABEL 913
#define IDC_ACCOUNTS_MONTHLY_CHARGE       119
#define IDC_ACCOUNTS_BASIC_HOURS_LABEL    915
#define IDC_ACCOUNTS_BASIC_HOURS          203
#define IDC_ACCOUNTS_EXCESS_LABEL         917
#define IDC_ACCOUNTS_EXCESS_PER_MINUTE    204
#define IDC_ACCOUNTS_VAT_LABEL            922
#define IDC_ACCOUNTS_VAT                  117
#define IDC_ACCOUNTS_HELP                 1422
#define IDC_ACCOUNTS_OK                   1
#define IDC_ACCOUNTS_CANCEL               2
#define IDC_ACCOUNTS_APPLY                902
/* Added after the first release, in free room of the template: */
#define IDC_ACCOUNTS_PERIOD_DAY_LABEL     930
#define IDC_ACCOUNTS_PERIOD_DAY           931
#define IDC_ACCOUNTS_WARN_PERCENT_LABEL   932
#define IDC_ACCOUNTS_WARN_PERCENT         933
#define IDC_ACCOUNTS_WARN_COST_LABEL      934
#define IDC_ACCOUNTS_WARN_COST            935
#define IDC_ACCOUNTS_RECHARGED            936

/* ---- View Log (600) ------------------------------------------------------ */
#define IDC_VIEWLOG_CLOSE            1
#define IDC_VIEWLOG_MANAGE           2
#define IDC_VIEWLOG_TOTAL_LABEL      602
#define IDC_VIEWLOG_TOTAL            111
#define IDC_VIEWLOG_ACCOUNT          202
#define IDC_VIEWLOG_COUNT_LABEL      1510
#define IDC_VIEWLOG_LIST             601
#define IDC_VIEWLOG_COUNT            218
#define IDC_VIEWLOG_MONTH            109
#define IDC_VIEWLOG_MONTH_LABEL      609
#define IDC_VIEWLOG_YEAR_LABEL       610
#define IDC_VIEWLOG_YEAR             611
#define IDC_VIEWLOG_TOTAL_FRAME      603
#define IDC_VIEWLOG_CONNECTION       124
#define IDC_VIEWLOG_CONNECTION_LABEL 607
#define IDC_VIEWLOG_FILTER_FRAME     605
#define IDC_VIEWLOG_REPORT           1000
#define IDC_VIEWLOG_EXPORT           630  /* added after the first release */

/* ---- Manage Log (1000) --------------------------------------------------- */
#define IDC_MANAGE_LIST_FRAME        1001
#define IDC_MANAGE_LIST              601
#define IDC_MANAGE_INSTRUCTION       1003
#define IDC_MANAGE_DELETE            123
#define IDC_MANAGE_CLEAR             114
#define IDC_MANAGE_CLOSE             1
#define IDC_MANAGE_INSTRUCTION_FRAME 1007
#define IDC_MANAGE_SUMMARY           1510

#endif /* ORVALEN_RESOURCE_IDS_H */
