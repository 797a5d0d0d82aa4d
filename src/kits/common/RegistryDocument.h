#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qm {

// The text form of a settings store, and what it holds.
//
//   # a comment
//   [SOFTWARE\Quillmere\AudioSettings]
//   NumberPlayers=4
//   Greeting=" text with blanks at its ends,\nline breaks and \"quotes\" "
//
// Names, values and paths stand as they are unless they begin with a double quote, begin or end with a blank
// or hold control characters (names also: hold "=" or begin like another kind of line); then they are quoted,
// with the escapes \\ \" \n \r \t and \xHH. What cannot be understood is not read and stays in the text, as
// do comments and the order of lines.
class RegistryDocument {
 public:
  RegistryDocument() = default;
  explicit RegistryDocument(std::string_view text);

  std::string Text() const;

  // Owned by the document, until it is changed; nullptr when there is none.
  const std::string* Find(std::string_view path, std::string_view name) const;
  void Set(std::string_view path, std::string_view name, std::string_view value);
  void Remove(std::string_view path, std::string_view name);

  // Adds the names of the keys directly below a path that are not among the names yet.
  void AddSubKeys(std::string_view path, std::vector<std::string>& names) const;

 private:
  struct Line {
    std::string text;                 // as it stands in the file
    std::optional<std::string> name;  // absent in a line that is no value
    std::string value;
  };
  struct Section {
    std::string heading;              // as it stands in the file; "" for what comes before the first one
    std::optional<std::string> path;  // absent when its values belong nowhere
    std::vector<Line> lines;

    bool HasPath(std::string_view sought) const;
    bool HasValues() const;
  };

  Line* FindLine(std::string_view path, std::string_view name);
  Section& SectionFor(std::string_view path);
  void AddLine(std::string_view text);

  std::vector<Section> m_sections{1};
};

}  // namespace qm
