#include "logs/cCSVFile.h"

#include <gtest/gtest.h>

#include <cmath>

#include <chrono>

#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "support/SoundFixtures.h"

namespace qm {
namespace {

using namespace test;

class CSVFile : public testing::Test {
 protected:
  TempFolder folder;
  const std::string path = folder.File("a.csv");
};

std::vector<CSVRecord> Records(cCSVFile& file) {
  std::vector<CSVRecord> records;
  CSVRecord record;
  while (file.ReadRecord(record) == csvNone) records.push_back(record);
  return records;
}

TEST_F(CSVFile, WritesHeadersThenRecords) {
  const auto clock = std::make_shared<ManualClock>(std::chrono::system_clock::from_time_t(1'700'000'000));
  const tyLogDateTime now = DateTimeNow(*clock);
  cCSVFile file(clock);
  const CSVApplication program{"Studio", 1, 2, 34};
  EXPECT_EQ(file.WriteHeader(&program), csvWrongMode);
  ASSERT_EQ(file.CreateFile(path, false, "1.5", ","), csvNone);
  EXPECT_EQ(file.WriteHeader(nullptr), csvBadParameter);
  EXPECT_EQ(file.WriteHeader(&program), csvNone);
  EXPECT_EQ(file.WriteCustomHeader("Station", "Köln\r\nWest\nRadio"), csvNone);
  EXPECT_EQ(file.WriteFields({"Ref", "\"Ti\"tle\""}), csvNone);
  EXPECT_EQ(file.WriteRecord({}), csvBadParameter);
  EXPECT_EQ(file.WriteRecord({"a,b", "x\"y", "\"whole\"", "two\r\nlines", "Ω", "\""}), csvNone);
  EXPECT_EQ(file.NumberFields(), 2);
  EXPECT_EQ(file.GetFieldIndex("title"), 1);
  file.CloseFile();
  EXPECT_EQ(ReadBytes(path), "#Software: Studio v1.2.34\r\n#Version: 1.5\r\n#Separator: ,\r\n#Date: " +
                                 DateText(now.Date) + " " + SecondsToText(now.Time, ettClock) +
                                 "\r\n#Station: K\xF6ln West Radio\r\n#Fields: Ref,\"Ti\"tle\"\r\n"
                                 "\"a,b\",\"x\"\"y\",whole,two lines,\xCE\xA9,\"\"\"\"\r\n");
  ASSERT_EQ(file.OpenFile(path), csvNone);
  EXPECT_EQ(file.Software() + "|" + file.FormatVersion(), "Studio v1.2.34|1.5");
  EXPECT_EQ(file.UnknownHeaders(), std::vector<std::string>{"Station: Köln West Radio"});
  EXPECT_EQ(file.FieldName(0) + "|" + file.FieldName(1) + "|" + file.FieldName(2), "|Title|");
  EXPECT_EQ(Records(file), (std::vector<CSVRecord>{{"a,b", "x\"y", "whole", "two lines", "Ω", "\"\""}}));
}

TEST_F(CSVFile, ReadsHeadersInAnyFormAndNamesFromTheFirstLine) {
  struct {
    const char* contents;
    const char* fields;
    std::vector<std::string> unknown;
    std::vector<CSVRecord> records;
  } const cases[] = {
      {"#FIELDS: a;b \n#separator:;\n#note\n1;2,3\n", "a;b", {"note"}, {{"1;2", "3"}}},
      {"a,b\r\n1,2\r\n\r\n3", "a,b", {}, {{"1", "2"}, {}, {"3"}}},
      {"#Fields: a\n\f1\f,,2,\n#not a header\n", "a", {}, {{"1", "", "2"}, {"#not a header"}}},
      {"", "", {}, {}},
      {"x\n\"a\"\",b\",c\n\"\",\"d,e\"\n", "x", {}, {{"a\"", "b\"", "c"}, {"\"", "d,e\""}}},
  };
  for (const auto& each : cases) {
    WriteBytes(path, each.contents);
    cCSVFile file;
    ASSERT_EQ(file.OpenFile(path), csvNone);
    EXPECT_EQ(file.Fields(), each.fields);
    EXPECT_EQ(file.UnknownHeaders(), each.unknown);
    EXPECT_EQ(Records(file), each.records) << each.contents;
    EXPECT_EQ(file.ReadRecordAsString(), "");
  }
}

TEST_F(CSVFile, AppendsHeadersOnlyToWhatHasNone) {
  for (const std::size_t length : {20U, 21U}) {
    WriteBytes(path, std::string(length, 'x'));
    cCSVFile file;
    ASSERT_EQ(file.AppendFile(path, "1"), csvNone);
    EXPECT_EQ(file.WriteFields({"a", "b"}), csvNone);
    EXPECT_EQ(file.NumberFields(), length == 20 ? 2 : 0);
    EXPECT_EQ(file.WriteRecord({"1", "2"}), csvNone);
    file.CloseFile();
    EXPECT_EQ(ReadBytes(path),
              std::string(length, 'x') + (length == 20 ? "#Fields: a,b\r\n" : "") + "1,2\r\n");
  }
}

TEST_F(CSVFile, RefusalsHaveTheirCodesAndTexts) {
  WriteBytes(path, "a\n1\n");
  cCSVFile file;
  CSVRecord record{"left over"};
  EXPECT_EQ(file.ReadRecord(record), csvWrongMode);
  EXPECT_TRUE(record.empty());
  EXPECT_EQ(file.GetErrorSring(csvWrongMode), "There is no file open to read or write from");
  for (const auto opened : {file.CreateFile("", true, ""), file.OpenFile("")})
    EXPECT_EQ(opened, csvBadParameter);
  EXPECT_EQ(file.CreateFile(path, false, ""), csvFileExists);
  EXPECT_EQ(file.CreateFile(folder.File("no/such.csv"), true, ""), csvCannotOpen);
  EXPECT_EQ(file.OpenFile(folder.File("b.csv")), csvNoFile);
  EXPECT_EQ(file.OpenFile(path), csvNone);
  EXPECT_EQ(file.OpenFile(""), csvAlreadyOpen);
  EXPECT_EQ(file.WriteRecord({"x"}), csvWrongMode);
  EXPECT_EQ(file.GetErrorSring(csvWrongMode), "You tried to write to file open for reading");
  file.CloseFile();
  EXPECT_EQ(file.CreateFile(path, true, ""), csvNone);
  EXPECT_EQ(file.AppendFile(path, ""), csvAlreadyOpen);
  EXPECT_EQ(file.ReadRecord(record), csvWrongMode);
  EXPECT_EQ(file.GetErrorSring(csvWrongMode), "You tried to read from a file open for writing");
  EXPECT_EQ(file.GetErrorSring(csvEnd), "Unknown Error Code");
}

TEST_F(CSVFile, TimesComeInManyForms) {
  const std::pair<const char*, float> cases[] = {{"", 0},       {"12.3", 12.03F},   {"12.30", 12.3F},
                                                 {"90", 90},    {"1:23.4", 83.04F}, {"1'23.45", 83.45F},
                                                 {"01:02", 62}, {"01:02:03", 3723}, {"1:02:03.5", 3723.05F},
                                                 {"rubbish", 0}};
  WriteBytes(path, "#Fields: Ref,Length\n");
  cCSVFile file;
  ASSERT_EQ(file.OpenFile(path), csvNone);
  for (const auto& [text, seconds] : cases)
    EXPECT_FLOAT_EQ(file.GetFieldAsTimeFromRecordData("LENGTH", {"r", text}), seconds) << text;
  // Too long for a single
  EXPECT_TRUE(std::isfinite(file.GetFieldAsTimeFromRecordData("Length", {"r", "3:" + std::string(60, '5')})));
  EXPECT_EQ(file.GetFieldFromRecordData("Length", {"r"}), "");
  EXPECT_EQ(file.GetFieldFromRecordData("", {"r", "s"}), "");
}

}  // namespace
}  // namespace qm
