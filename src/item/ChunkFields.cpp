#include "item/ChunkFields.h"

#include "item/cHDItem.h"
#include "kits/common/Dates.h"
#include "kits/common/EightBitText.h"
#include "kits/common/LittleEndian.h"
#include "kits/common/Numbers.h"
#include "kits/common/Text.h"

namespace qm {
namespace {

std::string_view Part(std::string_view text, std::size_t position, std::size_t count) {
  return position < text.size() ? text.substr(position, count) : std::string_view();
}

double ReadDate(std::string_view text) {
  const CalendarDate date{ParseWhole(Part(text, 0, 4)), ParseWhole(Part(text, 5, 2)),
                          ParseWhole(Part(text, 8, 2))};
  const bool exists = date.year > 0 && date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31;
  return exists ? DayNumber(date) : 0;
}

double ReadTime(std::string_view text) {
  std::string clock(text);
  for (const std::size_t between : {2u, 5u})
    if (between < clock.size()) clock[between] = ':';
  return TextToSeconds(clock);
}

std::string TextOf(const cHDItem& item, const ChunkField& place) {
  const ItemField& field = ItemFields()[static_cast<std::size_t>(place.field)];
  if (place.form == cffText) return field.text(item, place.index);
  const double number = field.number(item, place.index);
  if (number <= 0) return {};
  return place.form == cffDate ? DateText(static_cast<std::int32_t>(number))
                               : SecondsToText(number, ettClock);
}

void ReadField(cHDItem& item, const ChunkField& place, std::string_view chunk) {
  const ItemField& field = ItemFields()[static_cast<std::size_t>(place.field)];
  if (place.form == cffWhole16) {
    field.setNumber(item, place.index, ReadLittleEndian<std::uint16_t>(chunk, place.offset));
    return;
  }
  std::string text = ChunkText(chunk, place.offset, place.bytes);
  if (place.form == cffText)
    field.setText(item, place.index, std::move(text));
  else if (!text.empty())
    field.setNumber(item, place.index, place.form == cffDate ? ReadDate(text) : ReadTime(text));
}

}  // namespace

std::string ChunkText(std::string_view chunk, std::size_t offset, std::size_t bytes) {
  std::string_view text = Part(chunk, offset, bytes);
  text = text.substr(0, text.find('\0'));
  return TextFromEightBit(Trim(text));
}

void PutChunkText(std::string& chunk, std::size_t offset, std::size_t bytes, std::string_view text,
                  char fill) {
  std::string field = EightBitFromText(text, bytes);
  field.resize(bytes, fill);
  chunk.replace(offset, bytes, field);
}

void ReadChunkFields(cHDItem& item, std::span<const ChunkField> fields, std::string_view chunk) {
  for (const ChunkField& field : fields) ReadField(item, field, chunk);
}

void WriteChunkFields(const cHDItem& item, std::span<const ChunkField> fields, std::string& chunk,
                      char fill) {
  for (const ChunkField& place : fields) {
    if (place.form != cffWhole16) {
      PutChunkText(chunk, place.offset, place.bytes, TextOf(item, place), fill);
      continue;
    }
    const double number = ItemFields()[static_cast<std::size_t>(place.field)].number(item, place.index);
    StoreLittleEndian(chunk.data() + place.offset, static_cast<std::uint16_t>(Limit(number, 0.0, 65535.0)));
  }
}

}  // namespace qm
