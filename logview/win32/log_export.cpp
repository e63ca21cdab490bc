#include "logview/win32/log_export.h"

#include <commdlg.h>

#include <string>

#include "logview/csv_export.h"
#include "platform/binary_file.h"
#include "platform/system_clock.h"

namespace {

constexpr char kExportTypes[] =
    "Sessions shown (*.csv)\0*.csv\0Month-by-month summary (*.csv)\0*.csv\0All files (*.*)\0*.*\0";
constexpr DWORD kSummaryType = 2;
constexpr char kExportCaption[] = "Export Log";

std::string LocaleText(LCTYPE what) {
  char text[8] = {};
  if (GetLocaleInfoA(LOCALE_USER_DEFAULT, what, text, sizeof text) == 0) return std::string();
  return text;
}

}  // namespace

void ExportLog(HWND dialog, Storage& store, const char* connection, const char* month, char* year) {
  char path[MAX_PATH] = {};
  lstrcpynA(path, DefaultExportName(ReadLocalTime()).c_str(), MAX_PATH);
  OPENFILENAMEA dialogData = {};
  // The Windows 95 size of the structure: the newer fields are unknown there.
  dialogData.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
  dialogData.hwndOwner = dialog;
  dialogData.lpstrFilter = kExportTypes;
  dialogData.nFilterIndex = 1;
  dialogData.lpstrFile = path;
  dialogData.nMaxFile = MAX_PATH;
  dialogData.lpstrDefExt = "csv";
  dialogData.lpstrTitle = kExportCaption;
  dialogData.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOREADONLYRETURN | OFN_EXPLORER;
  if (!GetSaveFileNameA(&dialogData)) return;  // cancelled

  HCURSOR previous = SetCursor(LoadCursor(nullptr, IDC_WAIT));
  const CsvFormat format = MakeCsvFormat(LocaleText(LOCALE_SLIST).c_str(), LocaleText(LOCALE_SDECIMAL).c_str());
  const std::vector<uint32_t> shown = FilteredRecordIndexes(store, connection, month, year);
  const std::string text = dialogData.nFilterIndex == kSummaryType ? PeriodSummaryCsv(store, shown, format)
                                                                   : SessionsCsv(store, shown, format);
  const bool written = WriteExportFile(path, text);
  SetCursor(previous);
  if (!written) {
    const std::string message = std::string("The file could not be written:\n") + path + "\n" + LastFileError();
    MessageBoxA(dialog, message.c_str(), kExportCaption, MB_OK | MB_ICONEXCLAMATION);
  }
}
