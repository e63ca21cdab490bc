#include <cstring>
#include <string>
#include <vector>

#include "platform/program_paths.h"
#include "storage/session_log.h"
#include "test_support.h"

namespace {

class LogFile : public ProgramStateTest {
 protected:
  std::string LogPath() const { return LogFilePath(); }

  // A current-format file image with the given count and records.
  static std::vector<uint8_t> Image(uint32_t count, const std::vector<SessionRecord>& records) {
    std::vector<uint8_t> bytes(8 + records.size() * sizeof(SessionRecord));
    const uint32_t header[2] = {count, count * 192u};
    std::memcpy(bytes.data(), header, 8);
    if (!records.empty()) std::memcpy(bytes.data() + 8, records.data(), records.size() * sizeof(SessionRecord));
    return bytes;
  }

  static SessionRecord Used(const char* name, int32_t duration) {
    SessionRecord record{};
    record.status = InUse;
    record.durationSeconds = duration;
    std::strcpy(record.connectionName, name);
    return record;
  }

  // Records one session the way the recorder does.
  static uint32_t Record(const char* name) {
    const uint32_t slot = FindFreeSlot();
    sessionLog.records[slot].status = InUse;
    SetRecordName(slot, name);
    return slot;
  }
};

TEST_F(LogFile, FreshLogIs392BytesOfTwoBlankRecords) {
  ASSERT_TRUE(CreateEmptyLog(LogPath().c_str()));
  const std::vector<uint8_t> bytes = ReadBytes(LogPath());
  ASSERT_EQ(bytes.size(), 392u);
  EXPECT_EQ(U32At(bytes, 0), 2u);
  EXPECT_EQ(U32At(bytes, 4), 384u);
  EXPECT_EQ(std::vector<uint8_t>(bytes.begin() + 8, bytes.end()), std::vector<uint8_t>(384, 0));
  EXPECT_EQ(sessionLog.count, 2u);
}

TEST_F(LogFile, RecordFieldsLandAtTheirOffsets) {
  CreateEmptyLog(LogPath().c_str());
  const uint32_t slot = Record("Home ISP");
  SetRecordDate(slot, 1, 2, 3, 2002);
  SetRecordLogOn(slot, 4, 5, 6);
  SetRecordLogOff(slot, 7, 8, 9);
  SetRecordDuration(slot, 1234);
  ASSERT_TRUE(SaveLog(LogPath().c_str()));
  const std::vector<uint8_t> bytes = ReadBytes(LogPath());
  const std::size_t r = 8;
  EXPECT_EQ(bytes[r], 1);
  const uint32_t expected[] = {1, 2, 3, 2002, 4, 5, 6, 7, 8, 9};
  for (std::size_t i = 0; i < 10; ++i) EXPECT_EQ(U32At(bytes, r + 4 + 4 * i), expected[i]) << i;
  EXPECT_EQ(U32At(bytes, r + 48), 1234u);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&bytes[r + 87])), "Home ISP");
}

TEST_F(LogFile, GrowsTwoRecordsAtATimeOnlyWhenFull) {
  CreateEmptyLog(LogPath().c_str());
  EXPECT_EQ(Record("a"), 0u);
  EXPECT_EQ(sessionLog.count, 2u);
  EXPECT_EQ(Record("b"), 1u);
  EXPECT_EQ(sessionLog.count, 2u);
  EXPECT_EQ(Record("c"), 2u);
  EXPECT_EQ(sessionLog.count, 4u);
  EXPECT_EQ(sessionLog.records[3].status, Blank);
  SaveLog(LogPath().c_str());
  EXPECT_EQ(ReadBytes(LogPath()).size(), 8u + 4 * 192);
}

TEST_F(LogFile, DeletedRecordIsReusedBeforeABlankOneAndKeepsItsOldTail) {
  sessionLog.records = {Used("a", 1), Used("a much longer name", 2), SessionRecord{}};
  sessionLog.count = 3;
  sessionLog.records[1].status = Deleted;
  EXPECT_EQ(Record("xy"), 1u);
  EXPECT_STREQ(sessionLog.records[1].connectionName, "xy");
  EXPECT_EQ(sessionLog.records[1].connectionName[3], 'u') << "bytes behind the new name stay";
  EXPECT_EQ(sessionLog.records[1].durationSeconds, 2);
}

TEST_F(LogFile, ClearTurnsEveryRecordDeletedAndKeepsTheLength) {
  sessionLog.records = {Used("a", 1), SessionRecord{}, Used("b", 1)};
  sessionLog.count = 3;
  EXPECT_FALSE(IsLogEmpty());
  ClearLog();
  EXPECT_EQ(sessionLog.count, 3u);
  for (const SessionRecord& record : sessionLog.records) EXPECT_EQ(record.status, Deleted);
  EXPECT_TRUE(IsLogEmpty());
  EXPECT_FALSE(HasNoFreeSlot());
}

TEST_F(LogFile, EmptyAndFullChecksOnAnEmptyArray) {
  EXPECT_TRUE(IsLogEmpty());
  EXPECT_TRUE(HasNoFreeSlot());
  EXPECT_EQ(Record("first"), 0u);
  EXPECT_EQ(sessionLog.count, 2u);
}

TEST_F(LogFile, MarkConnectionDeletedIsCaseSensitiveAndReportsChanges) {
  sessionLog.records = {Used("Home", 1), Used("HOME", 1), Used("Home", 1), SessionRecord{}};
  sessionLog.count = 4;
  EXPECT_TRUE(MarkConnectionDeleted("Home"));
  EXPECT_EQ(sessionLog.records[0].status, Deleted);
  EXPECT_EQ(sessionLog.records[1].status, InUse);
  EXPECT_EQ(sessionLog.records[2].status, Deleted);
  EXPECT_FALSE(MarkConnectionDeleted("Home")) << "nothing left to change";
  EXPECT_TRUE(MarkConnectionDeleted("")) << "Blank records have the empty name";
  EXPECT_EQ(sessionLog.records[3].status, Deleted);
}

TEST_F(LogFile, RecordNameOnlyForRecordsInUse) {
  sessionLog.records = {Used("Home", 1), SessionRecord{}};
  sessionLog.count = 2;
  EXPECT_STREQ(RecordName(0), "Home");
  EXPECT_EQ(RecordName(1), nullptr);
  EXPECT_EQ(RecordName(99), nullptr);
}

TEST_F(LogFile, LongNamesAreCutAt104Characters) {
  CreateEmptyLog(LogPath().c_str());
  const std::string longName(300, 'L');
  const uint32_t slot = Record(longName.c_str());
  EXPECT_EQ(std::strlen(sessionLog.records[slot].connectionName), 104u);
  EXPECT_EQ(sessionLog.records[slot + 1].status, Blank) << "next record untouched";
}

TEST_F(LogFile, RoundTripKeepsEveryByteAndIgnoresAnOldLongerTail) {
  std::vector<uint8_t> old(8 + 2 * 192 + 191, 0x77);  // less than a record past the two
  WriteBytes(LogPath(), old);
  sessionLog.records = {Used("a", 5), Used("b", 6)};
  sessionLog.records[0].reserved2[0] = 9;
  ASSERT_TRUE(SaveLog(LogPath().c_str()));
  EXPECT_EQ(ReadBytes(LogPath()).size(), 8u + 2 * 192) << "the old tail is gone";
  const std::vector<SessionRecord> written = sessionLog.records;
  sessionLog = SessionLog{};
  ASSERT_TRUE(LoadLog(LogPath().c_str()));
  ASSERT_EQ(sessionLog.count, 2u);
  EXPECT_EQ(0, std::memcmp(sessionLog.records.data(), written.data(), 2 * 192));
}

TEST_F(LogFile, ShortFileLoadsTheClaimedCountWithBlankTail) {
  std::vector<SessionRecord> four(4, Used("x", 1));
  WriteBytes(LogPath(), Image(10, four));
  ASSERT_TRUE(LoadLog(LogPath().c_str()));
  ASSERT_EQ(sessionLog.count, 10u);
  EXPECT_EQ(sessionLog.records[3].status, InUse);
  for (uint32_t i = 4; i < 10; ++i) EXPECT_EQ(sessionLog.records[i].status, Blank);
}

TEST_F(LogFile, PartlyWrittenLastRecordIsKept) {
  std::vector<uint8_t> bytes = Image(3, {Used("a", 1), Used("b", 2)});
  bytes.resize(bytes.size() - 100);  // record 1 cut in the middle
  WriteBytes(LogPath(), bytes);
  ASSERT_TRUE(LoadLog(LogPath().c_str()));
  ASSERT_EQ(sessionLog.count, 3u);
  EXPECT_EQ(sessionLog.records[1].status, InUse);
  EXPECT_EQ(sessionLog.records[1].durationSeconds, 2);
}

TEST_F(LogFile, EmptyFileAndMissingFileLoadAsAFreshLog) {
  WriteBytes(LogPath(), {});
  ASSERT_TRUE(LoadLog(LogPath().c_str()));
  EXPECT_EQ(sessionLog.count, 2u);
  EXPECT_EQ(FindFreeSlot(), 0u);

  const std::string missing = Path("missing.ovb");
  sessionLog = SessionLog{};
  EXPECT_FALSE(LoadLog(missing.c_str()));
  EXPECT_FALSE(Exists(missing)) << "a load only reads";
}

TEST_F(LogFile, TruncatedHeaderLoadsAsAFreshLog) {
  WriteBytes(LogPath(), {5, 0, 0});
  ASSERT_TRUE(LoadLog(LogPath().c_str()));
  EXPECT_EQ(sessionLog.count, 2u);
}

TEST_F(LogFile, ImplausibleCountKeepsTheRecordsPresentWithoutHugeMemory) {
  WriteBytes(LogPath(), Image(4000000000u, {Used("a", 1), Used("b", 2), Used("c", 3)}));
  ASSERT_TRUE(LoadLog(LogPath().c_str()));
  ASSERT_EQ(sessionLog.count, 3u);
  EXPECT_STREQ(sessionLog.records[2].connectionName, "c");
  // The next session still finds room, and a save leaves a consistent file.
  EXPECT_EQ(Record("d"), 3u);
  ASSERT_TRUE(SaveLog(LogPath().c_str()));
  EXPECT_EQ(U32At(ReadBytes(LogPath()), 0), 5u);
}

TEST_F(LogFile, ByteLengthThatDisagreesWithTheCountIsIgnored) {
  std::vector<uint8_t> bytes = Image(2, {Used("a", 1), Used("b", 2)});
  bytes[4] = 0xFF;
  WriteBytes(LogPath(), bytes);
  ASSERT_TRUE(LoadLog(LogPath().c_str()));
  EXPECT_EQ(sessionLog.count, 2u);
}

TEST_F(LogFile, UnterminatedNameIsEndedInsideItsRecord) {
  SessionRecord record = Used("", 1);
  std::memset(record.connectionName, 'Z', sizeof record.connectionName);
  WriteBytes(LogPath(), Image(1, {record}));
  ASSERT_TRUE(LoadLog(LogPath().c_str()));
  EXPECT_EQ(std::strlen(RecordName(0)), 104u);
}

TEST_F(LogFile, UnreadablePathLeavesTheLogAlone) {
  sessionLog.records = {Used("keep", 1)};
  sessionLog.count = 1;
  EXPECT_FALSE(LoadLog(Path("no-such-folder/x.ovb").c_str()));
  EXPECT_EQ(sessionLog.count, 1u);
  EXPECT_FALSE(SaveLog(Path("no-such-folder/x.ovb").c_str()));
}

TEST_F(LogFile, CreateEmptyLogResetsMemoryEvenWhenItCannotWrite) {
  sessionLog.records = {Used("a", 1)};
  EXPECT_FALSE(CreateEmptyLog(Path("no-such-folder/x.ovb").c_str()));
  EXPECT_EQ(sessionLog.count, 2u);
  EXPECT_TRUE(IsLogEmpty());
}

TEST_F(LogFile, LegacyTableConvertsItsRecordsInUseInSlotOrder) {
  std::vector<SessionRecord> table(kLegacyLogSlots);
  table[0] = Used("zero", 10);
  table[5] = Used("five", 50);
  table[1999] = Used("last", 1999);
  table[7] = Used("deleted", 7);
  table[7].status = Deleted;
  std::vector<uint8_t> bytes(table.size() * 192);
  std::memcpy(bytes.data(), table.data(), bytes.size());
  WriteBytes(LegacyLogPath(), bytes);

  ASSERT_TRUE(LoadLegacyLog(LegacyLogPath().c_str()));
  ASSERT_TRUE(ConvertLegacyLog());
  ASSERT_EQ(sessionLog.count, 5u);
  EXPECT_STREQ(sessionLog.records[0].connectionName, "zero");
  EXPECT_STREQ(sessionLog.records[1].connectionName, "five");
  EXPECT_STREQ(sessionLog.records[2].connectionName, "last");
  EXPECT_EQ(0, std::memcmp(&sessionLog.records[1], &table[5], 192)) << "copied byte for byte";
  EXPECT_EQ(sessionLog.records[3].status, Blank);
  EXPECT_EQ(sessionLog.records[4].status, Blank);
  const std::vector<uint8_t> current = ReadBytes(LogFilePath());
  EXPECT_EQ(current.size(), 8u + 5 * 192);
  EXPECT_EQ(ReadBytes(LegacyLogPath()).size(), 384000u) << "the legacy file is never written";
}

TEST_F(LogFile, ShortLegacyFileLeavesTheRemainingSlotsZero) {
  LegacyLogTable[10] = Used("stale", 1);  // left over from an earlier read
  std::vector<uint8_t> bytes(192);
  const SessionRecord first = Used("only", 3);
  std::memcpy(bytes.data(), &first, 192);
  WriteBytes(LegacyLogPath(), bytes);
  ASSERT_TRUE(LoadLegacyLog(LegacyLogPath().c_str()));
  ConvertLegacyLog();
  EXPECT_EQ(sessionLog.count, 3u);
  EXPECT_STREQ(sessionLog.records[0].connectionName, "only");
}

TEST_F(LogFile, NoFreeSlotWhenTheLogCannotGrow) {
  sessionLog.records = {Used("a", 1), Used("b", 1)};
  sessionLog.count = 2;
  LogRecordLimit = 2;
  EXPECT_EQ(FindFreeSlot(), kNoSlot);
  EXPECT_EQ(sessionLog.count, 2u);
}

}  // namespace
