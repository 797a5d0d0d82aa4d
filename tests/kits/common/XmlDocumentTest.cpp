#include "kits/common/XmlDocument.h"

#include <gtest/gtest.h>

#include "kits/common/Files.h"

namespace qm {
namespace {

std::shared_ptr<XmlElement> SmallTree() {
  auto log = std::make_shared<XmlElement>("log");
  log->SetAttribute("station", "A&B \"1\"");
  log->SetAttribute("date", "2024-02-29");
  log->SetAttribute("station", "A<B");
  const auto section = log->AddChild("Section");
  section->AddChild("title", "R&B <live> \xC3\xA9");
  section->AddChildUnless("0", "year", "0");
  section->AddChildUnless("", "year", "0");
  section->AddChild("empty");
  log->AddChild(std::shared_ptr<XmlElement>());
  return log;
}

constexpr char kSmallText[] =
    "<log station=\"A&lt;B\" date=\"2024-02-29\"><Section><title>R&amp;B &lt;live&gt; \xC3\xA9</title>"
    "<year>0</year><empty/></Section></log>";

TEST(XmlDocument, AnElementIsOneLineOfText) {
  const auto log = SmallTree();
  EXPECT_EQ(log->ToText(), kSmallText);
  EXPECT_EQ(log->Attribute("date"), "2024-02-29");
  EXPECT_EQ(log->Attribute("Date"), "");
  EXPECT_EQ(log->Child("SECTION")->Child("title")->Text(), "R&B <live> \xC3\xA9");
  EXPECT_EQ(log->Child("item"), nullptr);
}

TEST(XmlDocument, WhatIsSavedIsLoaded) {
  XmlDocument document;
  EXPECT_EQ(document.ToText(), "");
  document.AddInstruction("xml", "version=\"1.0\"");
  document.AddInstruction("style", "href='a'");
  document.SetRoot(SmallTree());
  EXPECT_TRUE(document.ToText().starts_with("<?xml version=\"1.0\"?>\n<?style href='a'?>\n<log station="));
  const std::string path = TemporaryFileName("xml");
  ASSERT_TRUE(document.Save(path));
  XmlDocument loaded;
  ASSERT_TRUE(loaded.Load(path));
  EXPECT_EQ(loaded.ToText(), document.ToText());
  EXPECT_EQ(loaded.Root()->ToText(), kSmallText);
  EXPECT_EQ(loaded.Instructions().size(), 2u);
  DeleteFile(path);
  EXPECT_FALSE(loaded.Load(path));
  EXPECT_EQ(loaded.Root()->ToText(), kSmallText);
}

TEST(XmlDocument, CharactersThatXmlCannotHoldAreLeftOut) {
  const std::pair<std::string, std::string> cases[] = {{std::string("a\x01\0\x1F\x08z", 6), "az"},
                                                       {"a\tb\nc", "a\tb\nc"},
                                                       {"a\r\nb", "a\nb"},
                                                       {"\xFF\xC3z", "z"},
                                                       {"\xEF\xBF\xBF\xEF\xBF\xBE!", "!"},
                                                       {"\xED\xA0\x80x", "x"},
                                                       {"]]>&amp;<!--", "]]>&amp;<!--"},
                                                       {"\x01", ""}};
  for (const auto& [text, kept] : cases) {
    XmlElement element("e", text);
    element.SetAttribute("a", text.find_first_of("\t\n\r") == text.npos ? text : "");
    XmlDocument back;
    ASSERT_TRUE(back.LoadText(element.ToText())) << element.ToText();
    EXPECT_EQ(back.Root()->Text(), kept);
    EXPECT_EQ(back.Root()->Attribute("a"), element.Attribute("a").empty() ? "" : kept);
  }
}

TEST(XmlDocument, ReadsOtherEncodingsAndKindsOfText) {
  const std::pair<std::string, std::string> cases[] = {
      {"<a>caf\xE9</a>", "<a>caf\xC3\xA9</a>"},
      {"<?xml version=\"1.0\" encoding=\"windows-1252\"?><a>\x80</a>", "<a>\xE2\x82\xAC</a>"},
      {"\xEF\xBB\xBF<a>\xC3\xA9</a>", "<a>\xC3\xA9</a>"},
      {std::string("\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0", 18), "<a>\xC3\xA9</a>"},
      {"<!DOCTYPE a><!-- b --><a x='1'>1<![CDATA[<2>]]><!-- c -->3\r\n</a>", "<a x=\"1\">1&lt;2&gt;3\n</a>"},
      {"<a>\n  <b/>\n</a>", "<a><b/></a>"}};
  for (const auto& [text, root] : cases) {
    XmlDocument document;
    ASSERT_TRUE(document.LoadText(text)) << text;
    EXPECT_EQ(document.Root()->ToText(), root);
  }
}

TEST(XmlDocument, RefusesWhatIsNoDocumentAndKeepsWhatItHad) {
  std::string deep, shallow;
  for (int i = 0; i < 300000; ++i) deep += "<a>";
  for (int i = 0; i < 300000; ++i) deep += "</a>";
  for (int i = 0; i < 200; ++i) shallow = "<a>" + shallow + "</a>";
  XmlDocument document;
  ASSERT_TRUE(document.LoadText(shallow));
  ASSERT_TRUE(document.LoadText("<kept/>"));
  for (const std::string& text :
       std::vector<std::string>{"", "plain", "<a>", "<a></b>", "<a/><b/>", deep, "<a>" + shallow + "</a>"}) {
    EXPECT_FALSE(document.LoadText(text)) << text.substr(0, 20);
    EXPECT_EQ(document.Root()->Name(), "kept");
  }
}

}  // namespace
}  // namespace qm
