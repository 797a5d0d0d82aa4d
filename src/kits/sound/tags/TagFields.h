#pragma once
#include <array>
#include <cstdint>
#include <string>

// What tags inside audio files say about a piece of audio, whatever kind of tag holds it.
namespace qm {

enum enTagField : std::int32_t {
  etfTitle,
  etfArtist,
  etfURL,
  etfPublisher,
  etfComposer,
  etfPerformer,
  etfOriginator,
  etfGenre,
  etfYear,
  etfComment,
};
inline constexpr std::int32_t kTagFields = 10;

// "Title" and so on.
const char* TagFieldName(enTagField field);

// The fields' texts, "" for none. A year is its digits.
class TagFields {
 public:
  const std::string& Text(enTagField field) const { return m_texts[static_cast<std::size_t>(field)]; }
  void SetText(enTagField field, std::string text) {
    m_texts[static_cast<std::size_t>(field)] = std::move(text);
  }
  std::int32_t Year() const;
  void SetYear(std::int32_t year);  // 0 and less: none

 private:
  std::array<std::string, kTagFields> m_texts;
};

// Two texts that say the same in a field: a date says the same as its year.
bool SameTagText(enTagField field, const std::string& first, const std::string& second);

// Genres by the numbers of ID3v1.
inline constexpr std::int32_t kNoGenre = 0;
inline constexpr std::int32_t kOtherGenre = 12;
inline constexpr std::int32_t kUnlistedGenre = 255;
// Ignoring case; kUnlistedGenre for a name that has no number, kNoGenre for "".
std::int32_t GenreNumber(const std::string& name);
std::string GenreName(std::int32_t number);  // "" for a number that has no name

}  // namespace qm
