#include <cstring>
#include <vector>

#include "storage/settings.h"
#include "test_support.h"

namespace {

class SettingsFile : public ProgramStateTest {};

std::vector<int> calls;

TEST_F(SettingsFile, PathIsTheWindowsDirectoryAndOrvaconfig) {
  EXPECT_EQ(std::string(SettingsPath()), Path("Orvaconfig.bic"));
}

TEST_F(SettingsFile, FirstRunWritesTheDefaultBytesAndZeroElsewhere) {
  ASSERT_TRUE(CreateSettings(SettingsPath()));
  const std::vector<uint8_t> bytes = ReadBytes(SettingsPath());
  ASSERT_EQ(bytes.size(), 6352u);
  EXPECT_EQ(0, std::memcmp(bytes.data(), "orvalen_v015", 13));
  EXPECT_EQ(F32At(bytes, 20), 1.0f);
  EXPECT_EQ(U32At(bytes, 24), 1u);
  EXPECT_EQ(U32At(bytes, 60), 1u);
  const std::vector<std::pair<std::size_t, uint8_t>> setBytes = {
      {43, 1}, {44, 0}, {45, 2}, {52, 0}, {53, 10}, {54, 30}, {55, 30}, {133, 1}, {134, 219}};
  for (const auto& [offset, value] : setBytes) EXPECT_EQ(bytes[offset], value) << "offset " << offset;

  // Everything else is zero: mask out the bytes named above and compare.
  std::vector<uint8_t> rest = bytes;
  std::memset(rest.data(), 0, 13);
  for (std::size_t offset : {20u, 21u, 22u, 23u, 24u, 60u}) rest[offset] = 0;
  for (const auto& entry : setBytes) rest[entry.first] = 0;
  EXPECT_EQ(rest, std::vector<uint8_t>(6352, 0));
}

TEST_F(SettingsFile, FirstRunMarksTheRunAndInstallsBeforeWriting) {
  calls.clear();
  installHooks.markFirstRun = [] { calls.push_back(1); };
  installHooks.installProgram = [] {
    calls.push_back(2);
    EXPECT_EQ(settings.sessionOpenMarker, 219) << "defaults come before the install";
  };
  ASSERT_TRUE(CreateSettings(SettingsPath()));
  EXPECT_EQ(calls, (std::vector<int>{1, 2}));
}

TEST_F(SettingsFile, CreateInAMissingFolderDoesNothing) {
  calls.clear();
  installHooks.installProgram = [] { calls.push_back(2); };
  EXPECT_FALSE(CreateSettings(Path("no-such-folder/Orvaconfig.bic").c_str()));
  EXPECT_TRUE(calls.empty());
  EXPECT_EQ(settings.formatMarker[0], '\0');
}

TEST_F(SettingsFile, SaveAndLoadRoundTripEveryByte) {
  for (std::size_t i = 0; i < sizeof settings; ++i) reinterpret_cast<uint8_t*>(&settings)[i] = static_cast<uint8_t>(i * 7);
  const Settings written = settings;
  ASSERT_TRUE(SaveSettings());
  std::memset(&settings, 0, sizeof settings);
  ASSERT_TRUE(LoadSettings(SettingsPath()));
  EXPECT_EQ(0, std::memcmp(&settings, &written, sizeof settings));
}

TEST_F(SettingsFile, ShortFileLoadsPartlyAndKeepsTheRestInMemory) {
  WriteBytes(SettingsPath(), std::vector<uint8_t>(100, 0xAB));
  settings.sessionOpenMarker = 219;
  ASSERT_TRUE(LoadSettings(SettingsPath()));
  EXPECT_EQ(reinterpret_cast<uint8_t*>(&settings)[99], 0xAB);
  EXPECT_EQ(settings.sessionOpenMarker, 219);
}

TEST_F(SettingsFile, SavingNeverShortensALongerFile) {
  std::vector<uint8_t> longer(7000, 0xEE);
  WriteBytes(SettingsPath(), longer);
  ApplyDefaultSettings();
  ASSERT_TRUE(SaveSettings());
  const std::vector<uint8_t> bytes = ReadBytes(SettingsPath());
  ASSERT_EQ(bytes.size(), 7000u);
  EXPECT_EQ(bytes[6352], 0xEE);
  EXPECT_EQ(bytes[134], 219);
}

TEST_F(SettingsFile, LoadingOnlyReadsAndCreatesNothing) {
  EXPECT_FALSE(LoadSettings(SettingsPath()));
  EXPECT_FALSE(Exists(SettingsPath()));
}

TEST_F(SettingsFile, MarkerMatchesIgnoringLetterCaseOnly) {
  std::strcpy(settings.formatMarker, "ORVALEN_V015");
  EXPECT_TRUE(HasCurrentFormatMarker());
  std::strcpy(settings.formatMarker, "orvalen_v014");
  EXPECT_FALSE(HasCurrentFormatMarker());
  std::memset(settings.formatMarker, 'o', sizeof settings.formatMarker);  // no terminator
  EXPECT_FALSE(HasCurrentFormatMarker());
}

TEST_F(SettingsFile, DefaultsLeaveOtherFieldsAlone) {
  std::strcpy(settings.currencyName, "Euro");
  settings.accounts[3].hours = 12;
  ApplyDefaultSettings();
  EXPECT_STREQ(settings.currencyName, "Euro");
  EXPECT_EQ(settings.accounts[3].hours, 12u);
}

}  // namespace
