// The two files on disk: the configuration block and the session log, with the
// fixed-width text fields both are made of.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "platform/platform_state.h"
#include "platform/program_paths.h"
#include "storage/storage.h"
#include "test_support.h"

namespace {

class SettingsFile : public ProgramStateTest {};

std::vector<int> calls;

TEST_F(SettingsFile, FirstRunWritesTheDefaultBytesAfterMarkingAndInstalling) {
  calls.clear();
  storage_.installHooks.markFirstRun = [] { calls.push_back(1); };
  storage_.installHooks.installProgram = [](Storage& store) {
    calls.push_back(2);
    EXPECT_EQ(store.settings.sessionOpenMarker, 219) << "defaults come before the install";
  };
  EXPECT_FALSE(storage_.CreateSettings(Path("no-such-folder/Orvaconfig.bic").c_str()));
  EXPECT_TRUE(calls.empty()) << "nothing is done in a missing folder";
  EXPECT_FALSE(storage_.LoadSettings(SettingsPath()));
  EXPECT_FALSE(Exists(SettingsPath())) << "a load only reads";
  ASSERT_TRUE(storage_.CreateSettings(SettingsPath()));
  EXPECT_EQ(calls, (std::vector<int>{1, 2}));
  // The marker, 1.0f at 20, the bytes set by default; everything else is zero.
  std::vector<uint8_t> expected(6352, 0);
  std::memcpy(expected.data(), "orvalen_v015", 13);
  const std::vector<std::pair<std::size_t, uint8_t>> setBytes = {
      {22, 0x80}, {23, 0x3F}, {24, 1}, {43, 1}, {45, 2}, {53, 10}, {54, 30}, {55, 30}, {60, 1}, {133, 1}, {134, 219}};
  for (const auto& [offset, value] : setBytes) expected[offset] = value;
  EXPECT_EQ(ReadBytes(SettingsPath()), expected);
  // A longer file (a later release's) keeps its bytes past the block.
  expected.push_back(7);
  WriteBytes(SettingsPath(), expected);
  ASSERT_TRUE(storage_.SaveSettings());
  EXPECT_EQ(ReadBytes(SettingsPath()), expected);
}

// The log is written again only when it changed; the configuration at every save
// (closing the settings sheet rewrites it).
TEST_F(SettingsFile, AnUnchangedLogIsNotWrittenAgain) {
  static int writes;
  writes = 0;
  platformState.fileCalls.open = [](const char* path, const char* mode) {
    writes += mode[0] == 'w';
    return std::fopen(path, mode);
  };
  LogSession("a", 1);
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(storage_.SaveLog(LogFilePath().c_str()) && storage_.SaveSettings());
  EXPECT_EQ(writes, 3);
  EXPECT_TRUE(storage_.SaveLog(Path("other.ovb").c_str()));
  EXPECT_EQ(writes, 4) << "another file is written";
}

class LogFile : public ProgramStateTest {
 protected:
  // A current-format file image with the given count and records.
  // Records one session the way the recorder does.
  uint32_t Record(const char* name) {
    const uint32_t slot = storage_.FindFreeSlot();
    storage_.sessionLog.records[slot].status = InUse;
    storage_.SetRecordName(slot, name);
    return slot;
  }
};

TEST_F(LogFile, DeletedRecordIsReusedBeforeABlankOneAndKeepsItsOldTail) {
  LogSession("a", 1);
  LogSession("a much longer name", 2, 1, 2002, Deleted);
  AppendToLog(SessionRecord{});
  AppendToLog(SessionRecord{});
  EXPECT_EQ(Record("xy"), 1u);
  EXPECT_EQ(storage_.sessionLog.records[1].connectionName[3], 'u') << "bytes behind the new name stay";
  EXPECT_EQ(storage_.sessionLog.records[1].durationSeconds, 2);
  EXPECT_STREQ(storage_.RecordName(1), "xy");
  EXPECT_EQ(storage_.RecordName(2), nullptr) << "only records in use have a name";
  EXPECT_EQ(storage_.RecordName(4), nullptr);
  // Names are cut at 104 characters, inside their record.
  EXPECT_EQ(Record(std::string(300, 'L').c_str()), 2u);
  EXPECT_EQ(std::strlen(storage_.sessionLog.records[2].connectionName), 104u);
  EXPECT_EQ(storage_.sessionLog.records[3].status, Blank) << "next record untouched";
  ASSERT_TRUE(storage_.CreateEmptyLog(Path("a.ovb").c_str()));
  WriteBytes(Path("b.ovb"), LogImage(1, {UsedRecord("B", 5)}));
  ASSERT_TRUE(storage_.LoadLog(Path("b.ovb").c_str()) && storage_.SaveLog(Path("a.ovb").c_str()));
  EXPECT_EQ(ReadBytes(Path("a.ovb")), ReadBytes(Path("b.ovb"))) << "a loaded log is written where it is saved";
}

// What each kind of file on disk loads as: the count, and the status of each record.
TEST_F(LogFile, LoaderTable) {
  SessionRecord unterminated = UsedRecord("", 1);
  std::memset(unterminated.connectionName, 'Z', sizeof unterminated.connectionName);
  std::vector<uint8_t> cut = LogImage(3, {UsedRecord("a", 1), UsedRecord("b", 2)});
  cut.resize(cut.size() - 100);  // record 1 cut in the middle
  std::vector<uint8_t> badLength = LogImage(2, {UsedRecord("a", 1), UsedRecord("b", 2)});
  badLength[4] = 0xFF;
  const std::vector<SessionRecord> five(5, UsedRecord("x", 2));
  const struct {
    const char* what;
    std::vector<uint8_t> bytes;
    std::string statuses;  // one letter per record: U in use, B blank
  } rows[] = {
      {.what = "empty file", .bytes = {}, .statuses = "BB"},
      {.what = "truncated header", .bytes = {5, 0, 0}, .statuses = "BB"},
      {.what = "short file", .bytes = LogImage(10, {five.begin(), five.begin() + 4}), .statuses = "UUUUBBBBBB"},
      {.what = "partly written last record", .bytes = cut, .statuses = "UUB"},
      {.what = "byte length disagreeing with the count", .bytes = badLength, .statuses = "UU"},
      {.what = "implausible count", .bytes = LogImage(4000000000u, {five.begin(), five.begin() + 3}), .statuses = "UUU"},
      {.what = "unterminated name", .bytes = LogImage(1, {unterminated}), .statuses = "U"},
      {.what = "count below the records in the file", .bytes = LogImage(1, five), .statuses = "UUUUU"},
      {.what = "count zero before five records", .bytes = LogImage(0, five), .statuses = "UUUUU"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    WriteBytes(LogFilePath(), row.bytes);
    storage_.sessionLog = SessionLog{};
    ASSERT_TRUE(storage_.LoadLog(LogFilePath().c_str()));
    std::string statuses;
    for (const SessionRecord& record : storage_.sessionLog.records) statuses += record.status == InUse ? 'U' : 'B';
    EXPECT_EQ(statuses, row.statuses);
    EXPECT_EQ(storage_.sessionLog.count, row.statuses.size());
    if (statuses.size() > 1 && statuses[1] == 'U') {
      EXPECT_EQ(storage_.sessionLog.records[1].durationSeconds, 2);
    }
    EXPECT_TRUE(statuses != "U" || std::strlen(storage_.RecordName(0)) == 104u) << "an unterminated name ends inside its record";
    // The next session finds room (two more records if none is free), and the save keeps every record.
    const uint32_t slot = Record("d");
    ASSERT_TRUE(storage_.SaveLog(LogFilePath().c_str()));
    storage_.sessionLog = SessionLog{};
    ASSERT_TRUE(storage_.LoadLog(LogFilePath().c_str()));
    EXPECT_STREQ(storage_.RecordName(slot), "d");
    const std::size_t count = statuses.size() + (statuses.find('B') == std::string::npos ? 2 : 0);
    EXPECT_EQ(storage_.sessionLog.count, count);
    EXPECT_EQ(U32At(ReadBytes(LogFilePath()), 4), count * 192);
  }
  EXPECT_FALSE(storage_.LoadLog(Path("missing.ovb").c_str()));
  EXPECT_FALSE(Exists(Path("missing.ovb"))) << "a load only reads";
}

}  // namespace
