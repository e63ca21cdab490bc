// View Log's export: quoting, the Regional Settings' symbols, the bytes of a
// small file, and the summary's figures against the account arithmetic.
#include <cstdint>
#include <string>
#include <vector>

#include "logview/csv_export.h"
#include "storage/storage.h"
#include "test_support.h"

namespace {

class Export : public ProgramStateTest {};

constexpr const char* kCafe = "Caf\xe9 \"Net\", Ltd";  // the separator, a quote, an ANSI e-acute

TEST(CsvFields, QuotingAndSymbols) {
  const struct {
    const char* text;
    char separator;
    const char* field;
  } rows[] = {{"plain", ',', "plain"},         {"a,b", ',', "\"a,b\""},        {"a,b", ';', "a,b"},
              {"a;b", ';', "\"a;b\""},         {"say \"hi\"", ',', "\"say \"\"hi\"\"\""},
              {"two\r\nlines", ',', "\"two\r\nlines\""}, {"", ',', ""}};
  for (const auto& row : rows) {
    std::string line;
    CsvFormat format;
    format.separator = row.separator;
    AppendCsvField(line, row.text, std::string(row.text).size(), format);
    EXPECT_EQ(line, row.field) << row.text;
  }
  const struct {
    const char *list, *decimal;
    const char* chosen;
  } symbols[] = {{",", ".", ",."}, {";", ",", ";,"}, {"", "", ",."}, {nullptr, nullptr, ",."},
                 {"\"", ".", ",."}, {";", ";", ";."}, {".", ".", ".,"}, {"\t", ",", "\t,"}};
  for (const auto& row : symbols) {
    const CsvFormat format = MakeCsvFormat(row.list, row.decimal);
    EXPECT_EQ(std::string({format.separator, format.decimal}), row.chosen);
  }
}

TEST_F(Export, SessionsFileBytes) {
  clock_.now = {2003, 3, 4, 20, 12, 0, 0};
  ConfigureAccount(0, kCafe, LimitedAccess, 10).periodStartDay = 14;
  AppendToLog(EndedSession(kCafe, {2003, 3, 1}, {23, 0, 0}, {1, 0, 0}, 7200));
  AppendToLog(EndedSession("Home ISP", {2003, 3, 10}, {10, 0, 0}, {10, 1, 5}, 65));
  AppendToLog(EndedSession("Home ISP", {2003, 3, 11}, {10, 0, 0}, {10, 0, 0}, -65));  // a damaged length
  AppendToLog(EndedSession("Home ISP", {2002, 3, 10}, {10, 0, 0}, {10, 1, 5}, 65));  // another year: not shown
  char year[10] = "2003";
  const std::vector<uint32_t> shown = FilteredRecordIndexes(storage_, "All Connections", "ALL", year);
  ASSERT_TRUE(WriteExportFile(Path("export.csv").c_str(), SessionsCsv(storage_, shown, MakeCsvFormat(",", "."))));
  EXPECT_EQ(ReadBytes(Path("export.csv")), ReadBytes(ORVALEN_TEST_DATA "/sessions.csv"));
  EXPECT_EQ(DefaultExportName(clock_.now), "Orvalen log 2003-03-20.csv");
}

// The summary's period rows: the sessions and the plan's figures of each billing period.
TEST_F(Export, SummaryFiguresAreTheAccountArithmetic) {
  clock_.now = {2003, 3, 4, 20, 12, 0, 0};
  ConfigureAccount(0, "Plan", LimitedAccess, 10, 20.0f, 0.05f, 5.0f).periodStartDay = 14;
  ConfigureAccount(1, "Card", PrePaidCard, 30).recharged = MomentStamp{2003, 2, 1, 0, 0, 0, 0};
  ConfigureAccount(2, "Flat", UnlimitedAccess);
  const struct {
    const char* name;
    CalendarDate ended;
    int32_t seconds;
  } sessions[] = {{"Plan", {2003, 3, 13}, 5 * 3600}, {"Plan", {2003, 3, 14}, 6 * 3600},
                  {"plan", {2003, 3, 19}, 5 * 3600 + 59}, {"Card", {2003, 1, 20}, 3600},
                  {"Card", {2003, 2, 20}, 4 * 3600},      {"Card", {2003, 3, 2}, 5 * 3600},
                  {"Flat", {2003, 3, 2}, 90}};
  for (const auto& s : sessions) AppendToLog(EndedSession(s.name, s.ended, {10, 0, 0}, {11, 0, 0}, s.seconds));
  char year[10] = "ALL ";
  const std::string csv = PeriodSummaryCsv(storage_, FilteredRecordIndexes(storage_, "All Connections", "ALL", year),
                                           MakeCsvFormat(";", ","));
  EXPECT_EQ(csv,
            "Connection;Period start;Period end;Sessions;Duration;Seconds;Minutes beyond included;Cost with VAT;"
            "Card hours left\r\n"
            "Card;2003-01-01;2003-01-31;1;1:00:00;3600;;;30,00\r\n"
            "Card;2003-02-01;2003-02-28;1;4:00:00;14400;;;26,00\r\n"
            "Card;2003-03-01;2003-03-31;1;5:00:00;18000;;;21,00\r\n"
            "Flat;2003-03-01;2003-03-31;1;0:01:30;90;;;\r\n"
            "Plan;2003-02-14;2003-03-13;1;5:00:00;18000;0;21,00;\r\n"
            "Plan;2003-03-14;2003-04-13;2;11:00:59;39659;60;24,15;\r\n");
}

}  // namespace
