#pragma once
#include <string>
#include <string_view>
#include <vector>

// The text of records in the system's own delimited files. What is written is escaped for its separator; what
// is read is taken apart at commas, whatever the separator was.
namespace qm {

using CSVRecord = std::vector<std::string>;

// The names of a line of fields.
CSVRecord SplitCSVFields(std::string_view text, std::string_view separator);
std::string JoinCSVFields(const CSVRecord& names, std::string_view separator);

// A line of one record, without its end. A quoted last field keeps its closing quote when it is read, and a
// comma at the end adds no field.
std::string CSVRecordLine(const CSVRecord& values, std::string_view separator);
CSVRecord ParseCSVRecord(std::string_view line);

// Line ends as one blank each.
std::string OnOneLine(std::string text);

// Seconds of a time field: hh:mm:ss.hh with variations, such as "1'23.4" and plain seconds. A single digit
// behind the point counts hundredths: "1:23.4" is 83.04 seconds.
float CSVTime(std::string text);

}  // namespace qm
