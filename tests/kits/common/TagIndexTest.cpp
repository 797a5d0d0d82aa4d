#include "kits/common/TagIndex.h"

#include <gtest/gtest.h>
// rapidcheck takes up what stands before it.
#include <rapidcheck.h>

#include "kits/common/TagText.h"

namespace qm {
namespace {

bool SameAsSearch(const std::string& text, const std::string& key) {
  const TagIndex index(text);
  return index.Value(key) == GetTagValue(text, key) &&
         index.Value(key, etdDecoded) == GetTagValue(text, key, "=", true);
}

TEST(TagIndex, GivesWhatASearchGivesInAnyText) {
  EXPECT_TRUE(rc::check([] {
    // Few characters, so that keys, near-keys and quotes meet often.
    const auto text = *rc::gen::container<std::string>(
        rc::gen::element('a', 'A', 'b', '1', ' ', ' ', '=', '=', '"', '%', '2', '\n'));
    RC_ASSERT(SameAsSearch(
        text, *rc::gen::resize(4, rc::gen::container<std::string>(rc::gen::element('a', 'B', '1', '"')))));
  }));
  for (const char* text : {"", "a", "a=", "=1", " =1", "a=1 A=2", "x=\"a=1 a=2\" a=3", "a==1", "a =1 a=2",
                           " a=1", "a=\"", "b=\" a=\"1\" \"", "ba=1 a=%22 a=2", "a=%22%0d%41"})
    for (const char* key : {"a", "A", "b", "x", "", "aa"})
      EXPECT_TRUE(SameAsSearch(text, key)) << text << "|" << key;
}

}  // namespace
}  // namespace qm
