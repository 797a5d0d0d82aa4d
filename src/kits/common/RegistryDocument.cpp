#include "kits/common/RegistryDocument.h"

#include <algorithm>

#include "kits/common/Text.h"

namespace qm {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

struct Escape {
  char letter;
  char character;
};
constexpr Escape kEscapes[] = {{'\\', '\\'}, {'"', '"'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 32 || c == 127;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto* escape = std::ranges::find(kEscapes, c, &Escape::character);
    if (escape != std::end(kEscapes)) {
      (quoted += '\\') += escape->letter;
    } else if (IsControl(c)) {
      ((quoted += "\\x") += kHexDigits[c >> 4]) += kHexDigits[c & 0xF];
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

std::string WrittenText(std::string_view text) {
  const bool plain = Trim(text) == text && !text.starts_with('"') && std::ranges::none_of(text, IsControl);
  return plain ? std::string(text) : Quoted(text);
}

std::string WrittenName(std::string_view name) {
  const bool plain =
      !name.empty() && name.find('=') == std::string_view::npos && std::string_view("[#;").find(name[0]) > 2;
  return plain ? WrittenText(name) : Quoted(name);
}

// Takes the character behind a backslash off the text; false when it is no escape.
bool TakeEscape(std::string_view& text, std::string& result) {
  if (text.empty()) return false;
  if (text[0] == 'x' && text.size() >= 3) {
    const auto digit = [&](std::size_t at) {
      return std::string_view(kHexDigits).find(LowerCase(text.substr(at, 1)));
    };
    const std::size_t high = digit(1), low = digit(2);
    if (high > 15 || low > 15) return false;
    result += static_cast<char>(high * 16 + low);
    text.remove_prefix(3);
    return true;
  }
  const auto* escape = std::ranges::find(kEscapes, text[0], &Escape::letter);
  if (escape == std::end(kEscapes)) return false;
  result += escape->character;
  text.remove_prefix(1);
  return true;
}

// Takes quoted text off the front of the text; nothing when it is not well formed.
std::optional<std::string> TakeQuoted(std::string_view& text) {
  std::string result;
  text.remove_prefix(1);
  while (!text.empty()) {
    const char c = text[0];
    text.remove_prefix(1);
    if (c == '"') return result;
    if (c != '\\') {
      result += c;
    } else if (!TakeEscape(text, result)) {
      return {};
    }
  }
  return {};
}

// All of the text, plain or quoted.
std::optional<std::string> ReadAll(std::string_view text) {
  text = Trim(text);
  if (!text.starts_with('"')) return std::string(text);
  std::optional<std::string> read = TakeQuoted(text);
  return Trim(text).empty() ? read : std::nullopt;
}

// The name in front of the equals sign, which is taken off with it.
std::optional<std::string> TakeName(std::string_view& text) {
  std::optional<std::string> name;
  std::size_t equals = text.find('=');
  if (text.starts_with('"')) {
    name = TakeQuoted(text);
    text = Trim(text);
    equals = text.starts_with('=') ? 0 : std::string_view::npos;
  } else if (equals != std::string_view::npos) {
    name = Trim(text.substr(0, equals));
  }
  if (!name || equals == std::string_view::npos) return {};
  text.remove_prefix(equals + 1);
  return name;
}

std::string_view WithoutEndSeparators(std::string_view path) {
  while (path.starts_with('\\')) path.remove_prefix(1);
  while (path.ends_with('\\')) path.remove_suffix(1);
  return path;
}

}  // namespace

bool RegistryDocument::Section::HasPath(std::string_view sought) const {
  return path && EqualIgnoringCase(*path, WithoutEndSeparators(sought));
}

bool RegistryDocument::Section::HasValues() const {
  return std::ranges::any_of(lines, [](const Line& line) { return line.name.has_value(); });
}

RegistryDocument::RegistryDocument(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    AddLine(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void RegistryDocument::AddLine(std::string_view text) {
  std::string_view rest = Trim(text);
  if (rest.starts_with('[')) {
    Section section{std::string(text), {}, {}};
    if (rest.ends_with(']')) section.path = ReadAll(rest.substr(1, rest.size() - 2));
    if (section.path) section.path = WithoutEndSeparators(*section.path);
    m_sections.push_back(std::move(section));
    return;
  }
  Line line{std::string(text), {}, {}};
  const bool comment = rest.starts_with('#') || rest.starts_with(';');
  if (!comment && !rest.empty()) {
    line.name = TakeName(rest);
    std::optional<std::string> value = ReadAll(rest);
    if (value) {
      line.value = std::move(*value);
    } else {
      line.name.reset();
    }
  }
  m_sections.back().lines.push_back(std::move(line));
}

std::string RegistryDocument::Text() const {
  std::string text;
  for (const Section& section : m_sections) {
    if (&section != &m_sections.front()) text.append(section.heading).append("\n");
    for (const Line& line : section.lines) text.append(line.text).append("\n");
  }
  return text;
}

RegistryDocument::Line* RegistryDocument::FindLine(std::string_view path, std::string_view name) {
  for (Section& section : m_sections) {
    if (!section.HasPath(path)) continue;
    for (Line& line : section.lines) {
      if (line.name && EqualIgnoringCase(*line.name, name)) return &line;
    }
  }
  return nullptr;
}

const std::string* RegistryDocument::Find(std::string_view path, std::string_view name) const {
  const Line* line = const_cast<RegistryDocument*>(this)->FindLine(path, name);
  return line != nullptr ? &line->value : nullptr;
}

RegistryDocument::Section& RegistryDocument::SectionFor(std::string_view path) {
  const auto found =
      std::ranges::find_if(m_sections, [&](const Section& section) { return section.HasPath(path); });
  if (found != m_sections.end()) return *found;
  const std::vector<Line>& above = m_sections.back().lines;
  const bool atTop = m_sections.size() == 1 && above.empty();
  if (!atTop && (above.empty() || !Trim(above.back().text).empty())) m_sections.back().lines.emplace_back();
  const std::string_view bare = WithoutEndSeparators(path);
  return m_sections.emplace_back(Section{'[' + WrittenText(bare) + ']', std::string(bare), {}});
}

void RegistryDocument::Set(std::string_view path, std::string_view name, std::string_view value) {
  if (Line* line = FindLine(path, name)) {
    if (line->value == value) return;
    line->value = value;
    line->text = WrittenName(*line->name) + '=' + WrittenText(value);
    return;
  }
  std::vector<Line>& lines = SectionFor(path).lines;
  // Behind the last value, in front of the blank lines that part this section from the next one.
  const auto last =
      std::find_if(lines.rbegin(), lines.rend(), [](const Line& line) { return !Trim(line.text).empty(); });
  lines.insert(last.base(),
               {WrittenName(name) + '=' + WrittenText(value), std::string(name), std::string(value)});
}

void RegistryDocument::Remove(std::string_view path, std::string_view name) {
  const auto isSought = [&](const Line& line) { return line.name && EqualIgnoringCase(*line.name, name); };
  const auto isBlank = [](const Line& line) { return Trim(line.text).empty(); };
  std::erase_if(m_sections, [&](Section& section) {
    const bool touched = section.HasPath(path) && std::erase_if(section.lines, isSought) > 0;
    return touched && std::ranges::all_of(section.lines, isBlank);
  });
}

void RegistryDocument::AddSubKeys(std::string_view path, std::vector<std::string>& names) const {
  std::string above(WithoutEndSeparators(path));
  if (!above.empty()) above += '\\';
  for (const Section& section : m_sections) {
    if (!section.path || section.path->size() <= above.size() || !section.HasValues()) continue;
    if (!StartsWithIgnoringCase(*section.path, above)) continue;
    const std::string_view below = std::string_view(*section.path).substr(above.size());
    const std::string_view name = below.substr(0, below.find('\\'));
    const auto isSame = [&](const std::string& known) { return EqualIgnoringCase(known, name); };
    if (std::ranges::none_of(names, isSame)) names.emplace_back(name);
  }
}

}  // namespace qm
