#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "item/ItemFields.h"

// Fields at fixed places of a chunk, and which field of an item each is.
namespace qm {

enum enChunkFieldForm : std::int32_t {
  cffText,     // 8-bit text, ended by a zero byte or the field, blanks around it not counted
  cffDate,     // "yyyy-mm-dd", with any character between the numbers
  cffTime,     // "hh:mm:ss", likewise
  cffWhole16,  // unsigned 16-bit
};

struct ChunkField {
  std::uint16_t offset;
  std::uint16_t bytes;
  enItemField field;
  std::int32_t index;  // of an indexed field
  enChunkFieldForm form;
};

std::string ChunkText(std::string_view chunk, std::size_t offset, std::size_t bytes);
// Fills the field; text that is too long is cut at a character's edge.
void PutChunkText(std::string& chunk, std::size_t offset, std::size_t bytes, std::string_view text,
                  char fill);

// Replaces the item's fields; a date or time that is blank leaves its own alone, one that is none gives 0.
// The chunk may be shorter than the fields.
void ReadChunkFields(cHDItem& item, std::span<const ChunkField> fields, std::string_view chunk);

// Dates and times that are 0 are left blank.
void WriteChunkFields(const cHDItem& item, std::span<const ChunkField> fields, std::string& chunk, char fill);

}  // namespace qm
