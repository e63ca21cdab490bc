// What the General and Log pages of the settings sheet show and store. Plain
// logic, so it is unit-tested; the pages themselves are general_page.cpp and
// log_page.cpp.
#pragma once
#include <cstddef>

// The currency list, in the order it is added; the combo box sorts it.
constexpr std::size_t kCurrencyCount = 15;
extern const char* const kCurrencyNames[kCurrencyCount];

// The General page's boxes at OK.
struct Settings;

struct GeneralPageInput {
  const char* currency = "";  // the combo box's text, any length
  bool use24HourClock = false;
  bool showMainWindowAtStart = false;
  bool runAtStartup = false;
};

// OK on the General page: the currency cut to its 14 characters and the three
// flags as 0 or 1. Mirroring runAtStartup into the registry is the caller's.
void StoreGeneralPage(Settings& settings, const GeneralPageInput& input);

// The Log page opens with "Show All Connections" checked only for filter 1; any
// other stored value shows the previous-connection filter.
bool LogPageShowsAllConnections(const Settings& settings);

// OK on the Log page. With neither radio checked the filter keeps its value.
void StoreLogPage(Settings& settings, bool showAllChecked, bool filterPreviousChecked, bool systemColoursChecked);
