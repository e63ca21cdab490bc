#include "app/sheet_settings.h"

#include "storage/fixed_text.h"
#include "storage/settings.h"

const char* const kCurrencyNames[kCurrencyCount] = {
    "Dollars", "Pesos", "Naira",   "Yen",     "Euro",   "Schillings", "Ringgit", "Rupees",
    "Rands",   "Francs", "Rubbles", "Riyal", "Shekels", "Lira",       "Pounds"};

void StoreGeneralPage(Settings& settings, const GeneralPageInput& input) {
  CopyFixedText(settings.currencyName, input.currency != nullptr ? input.currency : "");
  settings.use24HourClock = input.use24HourClock ? 1 : 0;
  settings.showMainWindowAtStart = input.showMainWindowAtStart ? 1 : 0;
  settings.runAtStartup = input.runAtStartup ? 1 : 0;
}

bool LogPageShowsAllConnections(const Settings& settings) { return settings.logInitialFilter == 1; }

void StoreLogPage(Settings& settings, bool showAllChecked, bool filterPreviousChecked, bool systemColoursChecked) {
  if (showAllChecked) settings.logInitialFilter = 1;
  else if (filterPreviousChecked) settings.logInitialFilter = 2;
  settings.logSystemColours = systemColoursChecked ? 1 : 0;
}
