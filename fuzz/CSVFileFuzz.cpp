// Any bytes as a delimited text file: read to its end, and what was read written and read again.
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "logs/cCSVFile.h"

namespace {

void Require(bool kept) {
  if (!kept) std::abort();
}

// A record keeps its fields in text that its separator and its quotes cannot upset.
void WriteAndReadAgain(const qm::CSVRecord& record) {
  qm::CSVRecord plain;
  for (std::string field : record) {
    std::erase(field, '"');
    std::erase(field, ',');
    plain.push_back("x" + field);
  }
  if (!plain.empty()) Require(qm::ParseCSVRecord(qm::CSVRecordLine(plain, ",")) == plain);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const int memory = memfd_create("csv", 0);
  static const std::string path = "/proc/self/fd/" + std::to_string(memory);
  Require(memory >= 0 && ftruncate(memory, 0) == 0);
  Require(pwrite(memory, data, size, 0) == static_cast<ssize_t>(size));
  qm::cCSVFile file;
  Require(file.OpenFile(path) == qm::csvNone);
  Require(file.NumberFields() >= 0 && file.FieldName(0).empty());
  qm::CSVRecord record;
  while (file.ReadRecord(record) == qm::csvNone) {
    for (const std::string& field : record) Require(std::isfinite(qm::CSVTime(field)));
    WriteAndReadAgain(record);
  }
  return 0;
}
