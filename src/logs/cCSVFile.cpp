#include "logs/cCSVFile.h"

#include <algorithm>

#include "kits/common/Clock.h"
#include "kits/common/Dates.h"
#include "kits/common/EightBitText.h"
#include "kits/common/Files.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {

namespace {

constexpr std::int64_t kLongestWithoutHeader = 20;  // bytes

}  // namespace

cCSVFile::cCSVFile(std::shared_ptr<Clock> clock) : m_clock(clock ? std::move(clock) : SystemClock()) {}

cCSVFile::~cCSVFile() {
  CloseFile();
}

void cCSVFile::Reset() {
  m_state = {};
  m_contents.clear();
  m_position = 0;
}

std::string cCSVFile::FieldName(std::int32_t index) const {
  const auto place = static_cast<std::size_t>(index);
  return index >= 1 && place < m_state.fieldNames.size() ? m_state.fieldNames[place] : "";
}

std::int16_t cCSVFile::NumberFields() const {
  if (m_state.fields.empty()) return 0;
  return static_cast<std::int16_t>(std::min<std::size_t>(m_state.fieldNames.size(), INT16_MAX));
}

std::int16_t cCSVFile::GetFieldIndex(const std::string& FieldName) const {
  if (FieldName.empty()) return -1;
  const std::size_t count = std::min<std::size_t>(m_state.fieldNames.size(), INT16_MAX);
  for (std::size_t i = 0; i < count; ++i)
    if (EqualIgnoringCase(m_state.fieldNames[i], FieldName)) return static_cast<std::int16_t>(i);
  return -1;
}

std::string cCSVFile::GetFieldFromRecordData(const std::string& FieldName, const CSVRecord& Record) const {
  const auto index = GetFieldIndex(FieldName);
  return index >= 0 && static_cast<std::size_t>(index) < Record.size()
             ? Record[static_cast<std::size_t>(index)]
             : "";
}

float cCSVFile::GetFieldAsTimeFromRecordData(const std::string& FieldName, const CSVRecord& Record) const {
  return CSVTime(GetFieldFromRecordData(FieldName, Record));
}

std::int32_t cCSVFile::OpenForWriting(const std::string& path, std::ios::openmode mode,
                                      const std::string& formatVersion, const std::string& separator) {
  m_output.clear();
  m_output.open(NativePath(path), mode | std::ios::binary);
  if (!m_output.is_open()) return csvCannotOpen;
  m_state.separator = separator;
  m_state.formatVersion = formatVersion;
  m_state.filename = path;
  m_state.mode = cfmWriting;
  return csvNone;
}

std::int32_t cCSVFile::CreateFile(const std::string& Filename, bool Overwrite,
                                  const std::string& FormatVersion, const std::string& Separator) {
  if (Filename.empty()) return csvBadParameter;
  if (m_state.mode != cfmNone) return csvAlreadyOpen;
  Reset();
  if (FileExists(Filename)) {
    if (!Overwrite) return csvFileExists;
    if (!DeleteFile(Filename)) return csvCannotDelete;
  }
  return OpenForWriting(Filename, std::ios::out, FormatVersion, Separator);
}

std::int32_t cCSVFile::AppendFile(const std::string& Filename, const std::string& FormatVersion,
                                  const std::string& Separator) {
  if (Filename.empty()) return csvBadParameter;
  if (m_state.mode != cfmNone) return csvAlreadyOpen;
  Reset();
  const bool hasContent = FileLength(Filename) > kLongestWithoutHeader;
  const std::int32_t result = OpenForWriting(Filename, std::ios::app, FormatVersion, Separator);
  m_state.headerSuppressed = result == csvNone && hasContent;
  return result;
}

std::int32_t cCSVFile::OpenFile(const std::string& Filename) {
  if (m_state.mode != cfmNone) return csvAlreadyOpen;
  if (Filename.empty()) return csvBadParameter;
  if (!FileExists(Filename)) return csvNoFile;
  Reset();
  if (!ReadWholeFile(Filename, m_contents)) return csvCannotOpen;
  while (!AtEnd()) {
    const std::size_t start = m_position;
    const std::string line = ReadLine();
    if (line.starts_with('#')) {
      TakeHeader(line);
      continue;
    }
    if (m_state.fields.empty())
      m_state.fields = line;
    else
      m_position = start;
    break;
  }
  m_state.fieldNames = SplitCSVFields(m_state.fields, m_state.separator);
  m_state.filename = Filename;
  m_state.mode = cfmReading;
  return csvNone;
}

void cCSVFile::TakeHeader(const std::string& line) {
  const std::pair<const char*, std::string*> known[] = {{"software", &m_state.software},
                                                        {"version", &m_state.formatVersion},
                                                        {"date", &m_state.dateCreated},
                                                        {"separator", &m_state.separator},
                                                        {"fields", &m_state.fields}};
  const std::size_t colon = line.find(':');
  if (colon != line.npos)
    for (const auto& [name, value] : known)
      if (EqualIgnoringCase(std::string_view(line).substr(1, colon - 1), name)) {
        *value = Trim(std::string_view(line).substr(colon + 1));
        return;
      }
  m_state.unknownHeaders.push_back(line.substr(1));
}

void cCSVFile::CloseFile() {
  m_output.close();
  Reset();
}

std::string cCSVFile::ReadLine() {
  const std::size_t end = std::min(m_contents.find('\n', m_position), m_contents.size());
  std::string line = m_contents.substr(m_position, end - m_position);
  m_position = end + 1;
  std::erase(line, '\r');
  return TextFromEightBit(line);
}

void cCSVFile::WriteLine(const std::string& line) {
  m_output << EightBitFromText(line) << "\r\n";
  m_output.flush();
}

void cCSVFile::WriteHeaderLine(const std::string& name, const std::string& value) {
  WriteLine("#" + name + ": " + value);
}

// Nothing is to be written, and that is the answer.
bool cCSVFile::HeadersRefused(std::int32_t& result) const {
  result = m_state.headerSuppressed || m_state.mode == cfmWriting ? csvNone : csvWrongMode;
  return m_state.headerSuppressed || result != csvNone;
}

std::int32_t cCSVFile::WriteHeader(const CSVApplication* Application) {
  if (std::int32_t result = 0; HeadersRefused(result)) return result;
  if (Application == nullptr) return csvBadParameter;
  m_state.software = Application->ProductName + " v" + NumberText(Application->Major) + "." +
                     NumberText(Application->Minor) + "." + NumberText(Application->Revision);
  const tyLogDateTime now = DateTimeNow(*m_clock);
  WriteHeaderLine("Software", m_state.software);
  WriteHeaderLine("Version", m_state.formatVersion);
  WriteHeaderLine("Separator", m_state.separator);
  WriteHeaderLine("Date", DateText(now.Date) + " " + SecondsToText(now.Time, ettClock));
  return csvNone;
}

std::int32_t cCSVFile::WriteFields(const CSVRecord& Names) {
  if (std::int32_t result = 0; HeadersRefused(result)) return result;
  m_state.fields = JoinCSVFields(Names, m_state.separator);
  WriteHeaderLine("Fields", m_state.fields);
  m_state.fieldNames = SplitCSVFields(m_state.fields, m_state.separator);
  return csvNone;
}

std::int32_t cCSVFile::WriteCustomHeader(const std::string& Name, const std::string& Value) {
  if (std::int32_t result = 0; HeadersRefused(result)) return result;
  WriteHeaderLine(Name, OnOneLine(Value));
  return csvNone;
}

std::int32_t cCSVFile::WriteRecord(const CSVRecord& Values) {
  if (m_state.mode != cfmWriting) return csvWrongMode;
  if (Values.empty()) return csvBadParameter;
  WriteLine(CSVRecordLine(Values, m_state.separator));
  return csvNone;
}

std::int32_t cCSVFile::ReadRecord(CSVRecord& Record) {
  Record.clear();
  if (m_state.mode != cfmReading) return csvWrongMode;
  if (AtEnd()) return csvEnd;
  Record = ParseCSVRecord(ReadRecordAsString());
  return csvNone;
}

std::string cCSVFile::ReadRecordAsString() {
  if (m_state.mode != cfmReading || AtEnd()) return "";
  std::string line = ReadLine();
  std::erase(line, '\f');
  return line;
}

std::string cCSVFile::GetErrorSring(std::int32_t Code) const {
  constexpr const char* kWrongMode[] = {"There is no file open to read or write from",
                                        "You tried to write to file open for reading",
                                        "You tried to read from a file open for writing"};
  switch (Code) {
    case csvNone:
      return "No Error";
    case csvAlreadyOpen:
      return "You already have a CSV file open.";
    case csvBadParameter:
      return "Invalid Parameter";
    case csvCannotOpen:
      return "";
    case csvWrongMode:
      return kWrongMode[m_state.mode];
    case csvCannotDelete:
      return "The file you are overwriting could not be deleted.";
    case csvFileExists:
      return "The file you are opening already exists";
    case csvNoFile:
      return "The file does not exist";
    case csvWriting:
      return "Error writing data to the file";
    case csvReading:
      return "Error reading data from the file";
    default:
      return "Unknown Error Code";
  }
}

}  // namespace qm
