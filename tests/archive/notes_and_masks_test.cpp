#include <gtest/gtest.h>

#include "tests/support/outputs.h"
#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

TEST(Notes, AreJoinedFromTheirLines) {
  WithAnswers({Answer({"H1", "^text^", "H2", "^first", "", "last^", "H3", "", "x^"}), Answer({"H1", "^never closed"}),
               Answer({"H1"}), Framed("Status: Closed"), Answer({})},
              [](Page& page) {
                EXPECT_EQ(page.query.TELOGetNotesInit("M", "A", "1", "2"), Variant::Long(3));
                EXPECT_EQ(page.LastCommand(), "^GetNotes^,^M^,^A^,^1^,^2^");
                EXPECT_EQ(page.query.TELOGetNotesNext(), "H1,text");
                for (const char* broken : {"never closed", "no text", "refused"}) {
                  EXPECT_EQ(page.query.TELOGetNotesInit("M", "A", "1", "2"), kFailed) << broken;
                }
                EXPECT_NE(page.Log().find("'TELOGetNotesInit()': 9 - "), std::string::npos);
                EXPECT_EQ(page.query.TELOGetNotesNext(), "H2,first\r\n\r\nlast");
                EXPECT_EQ(page.query.TELOGetNotesNext(), "H3,\r\nx");  // a text that begins with an empty line
                EXPECT_EQ(page.query.TELOGetNotesNext(), "");
                EXPECT_EQ(page.query.TELOGetNotesInit("M", "A", "1", "2"), Variant::Long(0));
              });
}

TEST(Notes, AreShortenedWhenWrittenAndAreDeleted) {
  WithAnswers({Answer({}), Answer({}), Framed("Status: Locked")}, [](Page& page) {
    Variant status;
    const std::string longest(8000, 'n');
    const std::string tooLong(8001, 'n');
    EXPECT_EQ(page.query.TELOWriteNote("M", "A", "1", "2", tooLong, Missing, &status), Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^WriteNote^,^M^,^A^,^1^,^2^,^" + longest + "^,^\r\n^");
    EXPECT_EQ(page.query.TELOWriteNote("M", "A", "1", "2", "a|b", "|"), Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^WriteNote^,^M^,^A^,^1^,^2^,^a|b^,^|^");
    EXPECT_EQ(page.query.TELODeleteNotes("M", "A", "1", "2", &status), kFailed);
    EXPECT_EQ(page.LastCommand(), "^DeleteNotes^,^M^,^A^,^1^,^2^");
    EXPECT_EQ(status, Variant("Locked"));
  });
}

TEST(Masks, AreWalkedFieldByFieldRepeatedly) {
  const Output first[] = {{"lngTabIndex", "1"},   {"lngWidth", "20"},      {"strAlign", "left"}, {"strName", "Title"},
                          {"blnMandatory", "-1"}, {"strInitText", "init"}, {"blnListOnly", "0"}, {"strList", "a;b"}};
  WithAnswers({Answer({"no mask", "none here"}),
               Answer({"stray", "@First", Fields(first), "^2^,^5^,^right^,^Date^,^0^,^^,^1^,^^", "@Empty", "@Last",
                       "^short^"})},
              [&](Page& page) {
                Variant name;
                Variant align = "kept";
                const auto nextField = [&] { return page.query.TELOGetMasksNextField(nullptr, nullptr, &align); };
                EXPECT_EQ(page.query.TELOGetMasksInit("M", "None"), Variant::Long(0));
                EXPECT_EQ(page.query.TELOGetMasksNext(), kFailed);
                EXPECT_EQ(page.query.TELOGetMasksInit("M", "A"), Variant::Long(3));
                EXPECT_EQ(page.LastCommand(), "^GetMasks^,^M^,^A^");
                EXPECT_EQ(page.query.TELOGetMasksNext(&name), Variant::Long(2));
                EXPECT_EQ(name, Variant("First"));
                ExpectOutputs(first, [&](auto*... each) {
                  EXPECT_EQ(page.query.TELOGetMasksNextField(each...), Variant::Long(1));
                });
                EXPECT_EQ(nextField(), Variant::Long(0));
                align = "kept";
                EXPECT_EQ(nextField(), kFailed);
                EXPECT_EQ(page.query.TELOGetMasksNext(&name), Variant::Long(0));
                EXPECT_EQ(name, Variant("Empty"));
                EXPECT_EQ(nextField(), kFailed);
                EXPECT_EQ(align, Variant("kept"));
                EXPECT_EQ(page.query.TELOGetMasksNext(), Variant::Long(1));
                EXPECT_EQ(nextField(), kFailed);  // a line without all its fields
                EXPECT_NE(page.Log().find("'TELOGetMasksNextField()': 9 - "), std::string::npos);
                EXPECT_EQ(page.query.TELOGetMasksNext(&name), kFailed);
                EXPECT_EQ(name, Variant(""));
                page.query.TELOGetMasksFirst();
                EXPECT_EQ(page.query.TELOGetMasksNext(&name), Variant::Long(2));
                EXPECT_EQ(name, Variant("First"));
              });
}

}  // namespace
}  // namespace oxaqrycln::testing
