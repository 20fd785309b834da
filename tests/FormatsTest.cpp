// The table of file formats.

#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/formats/Format.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

namespace qd::test {
namespace {

using namespace workbench;

TEST(Formats, AreDocumentedAsTheyAre) {
  const std::string page = ScratchFolder::ReadAt(SourceFolder() + "/docs/formats.md");
  std::string rows;
  for (const Format* format : Formats()) {
    rows += "| " + std::string(format->Name()) + " |";
    for (const std::string_view ending : format->Endings()) rows += " " + std::string(ending);
    const Carries carry = format->Carry();
    for (const bool has : {format->CanWrite(), carry.shapes, carry.names, carry.colours, carry.assembly,
                           carry.nestedSets, carry.emptySets, carry.looseNodes, carry.materials}) {
      rows += has ? " | yes" : " | no";
    }
    rows += " |\n";
  }
  EXPECT_NE(page.find("|---|\n" + rows + "\n"), std::string::npos) << rows;
}

TEST(Formats, AreFoundByEveryEndingWhateverItsCase) {
  std::set<std::string_view> seen;
  for (const Format* format : Formats()) {
    for (const std::string_view ending : format->Endings()) {
      EXPECT_TRUE(seen.insert(ending).second) << ending;
      std::string upper(ending);
      for (char& letter : upper) letter = static_cast<char>(std::toupper(letter));
      EXPECT_EQ(FormatOfPath("folder.x/name" + std::string(ending)), format);
      EXPECT_EQ(FormatOfPath("name" + upper), format);
    }
  }
  EXPECT_EQ(FormatOfPath("name.xyz"), nullptr);
  EXPECT_EQ(FormatOfPath("step"), nullptr);
  EXPECT_EQ(FormatOfPath(".step"), nullptr);  // a name, not an ending
}

}  // namespace
}  // namespace qd::test
