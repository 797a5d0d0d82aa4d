#pragma once
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "logs/CSVText.h"

namespace qm {

class Clock;

// Result codes of cCSVFile.
enum enCSVError : std::int32_t {
  csvNone = 0,
  csvAlreadyOpen = 1,
  csvBadParameter = 2,
  csvCannotOpen = 3,
  csvWrongMode = 4,  // nothing open, or open for the other direction
  csvCannotDelete = 100,
  csvFileExists = 101,
  csvNoFile = 102,
  csvWriting = 103,
  csvReading = 105,
  csvEnd = 106,
};

enum enCSVFileMode : std::int16_t { cfmNone = 0, cfmReading = 1, cfmWriting = 2 };

// Who writes a file: what its "#Software: " line is made of.
struct CSVApplication {
  std::string ProductName;
  std::int32_t Major = 0;
  std::int32_t Minor = 0;
  std::int32_t Revision = 0;
};

// The system's own delimited text: header lines that begin with "#", then one record a line. Lines are 8-bit
// text, each UTF-8 or Windows-1252. Layout: docs/csv-files.md.
//
// A writer calls CreateFile or AppendFile, WriteHeader, WriteCustomHeader as needed, WriteFields, WriteRecord
// and CloseFile; a reader OpenFile, and ReadRecord until it gives csvEnd. What is written is on its way to
// the file at once; a failure of writing is not told. Host thread.
class cCSVFile {
 public:
  // Without a clock, the system's.
  explicit cCSVFile(std::shared_ptr<Clock> clock = nullptr);
  ~cCSVFile();
  cCSVFile(const cCSVFile&) = delete;
  cCSVFile& operator=(const cCSVFile&) = delete;

  const std::string& Filename() const { return m_state.filename; }
  enCSVFileMode FileMode() const { return m_state.mode; }
  const std::string& FormatVersion() const { return m_state.formatVersion; }
  const std::string& Software() const { return m_state.software; }
  const std::string& DateCreated() const { return m_state.dateCreated; }
  const std::string& Fields() const { return m_state.fields; }

  // Names count from 0, and the first one cannot be reached: "" for it as for a bad index.
  std::string FieldName(std::int32_t index) const;
  std::int16_t NumberFields() const;
  // From 0, ignoring case; -1 when there is none of that name.
  std::int16_t GetFieldIndex(const std::string& FieldName) const;
  // "", and 0 seconds, for a field that the file or the record does not have.
  std::string GetFieldFromRecordData(const std::string& FieldName, const CSVRecord& Record) const;
  float GetFieldAsTimeFromRecordData(const std::string& FieldName, const CSVRecord& Record) const;

  // Lines with "#" that say something else, without it.
  const std::vector<std::string>& UnknownHeaders() const { return m_state.unknownHeaders; }

  // A file that exists is replaced or refused.
  std::int32_t CreateFile(const std::string& Filename, bool Overwrite, const std::string& FormatVersion,
                          const std::string& Separator = ",");
  // A file that has content keeps the headers it has: no more are written.
  std::int32_t AppendFile(const std::string& Filename, const std::string& FormatVersion,
                          const std::string& Separator = ",");
  // Reads the headers. A file without any has the names of its fields in its first line.
  std::int32_t OpenFile(const std::string& Filename);
  void CloseFile();

  std::int32_t WriteHeader(const CSVApplication* Application);
  std::int32_t WriteFields(const CSVRecord& Names);
  std::int32_t WriteCustomHeader(const std::string& Name, const std::string& Value);
  std::int32_t WriteRecord(const CSVRecord& Values);
  std::int32_t ReadRecord(CSVRecord& Record);
  std::string ReadRecordAsString();

  std::string GetErrorSring(std::int32_t Code) const;

 private:
  struct State {
    bool headerSuppressed = false;
    std::string filename;
    enCSVFileMode mode = cfmNone;
    std::string separator = ",";
    std::string formatVersion, software, dateCreated, fields;
    CSVRecord fieldNames{""};
    std::vector<std::string> unknownHeaders;
  };

  void Reset();
  std::int32_t OpenForWriting(const std::string& path, std::ios::openmode mode,
                              const std::string& formatVersion, const std::string& separator);
  bool AtEnd() const { return m_position >= m_contents.size(); }
  std::string ReadLine();
  void TakeHeader(const std::string& line);
  void WriteLine(const std::string& line);
  void WriteHeaderLine(const std::string& name, const std::string& value);
  bool HeadersRefused(std::int32_t& result) const;

  const std::shared_ptr<Clock> m_clock;
  State m_state;
  std::string m_contents;  // of the file being read
  std::size_t m_position = 0;
  std::ofstream m_output;
};

}  // namespace qm
