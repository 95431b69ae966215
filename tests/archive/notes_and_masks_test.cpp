#include <gtest/gtest.h>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

const Variant kFailed = Variant::Integer(-1);

TEST(Notes, AreJoinedFromTheirLines) {
  WithAnswers({Answer({"H1", "^text^", "H2", "^first", "", "last^"}), Answer({"H1", "^never closed"}), Answer({"H1"}),
               Answer({})},
              [](Page& page) {
                EXPECT_EQ(page.query.TELOGetNotesInit("M", "A", "1", "2"), Variant::Long(2));
                EXPECT_EQ(page.LastCommand(), "^GetNotes^,^M^,^A^,^1^,^2^");
                EXPECT_EQ(page.query.TELOGetNotesNext(), "H1,text");
                for (const char* broken : {"never closed", "no text"}) {
                  EXPECT_EQ(page.query.TELOGetNotesInit("M", "A", "1", "2"), kFailed) << broken;
                }
                EXPECT_NE(page.Log().find("'TELOGetNotesInit()': 9 - "), std::string::npos);
                EXPECT_EQ(page.query.TELOGetNotesNext(), "H2,first\r\n\r\nlast");
                EXPECT_EQ(page.query.TELOGetNotesNext(), "");
                EXPECT_EQ(page.query.TELOGetNotesInit("M", "A", "1", "2"), Variant::Long(0));
              });
}

TEST(Notes, AreWrittenCutAndDeleted) {
  WithAnswers({Answer({}), Answer({}), Framed("Status: Locked")}, [](Page& page) {
    Variant status;
    EXPECT_EQ(page.query.TELOWriteNote("M", "A", "1", "2", std::string(8000, 'n') + "x", Missing, &status),
              Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^WriteNote^,^M^,^A^,^1^,^2^,^" + std::string(8000, 'n') + "^,^\r\n^");
    EXPECT_EQ(page.query.TELOWriteNote("M", "A", "1", "2", "a|b", "|"), Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^WriteNote^,^M^,^A^,^1^,^2^,^a|b^,^|^");
    EXPECT_EQ(page.query.TELODeleteNotes("M", "A", "1", "2", &status), kFailed);
    EXPECT_EQ(page.LastCommand(), "^DeleteNotes^,^M^,^A^,^1^,^2^");
    EXPECT_EQ(status, Variant("Locked"));
  });
}

TEST(Masks, AreWalkedFieldByFieldAndOnceMore) {
  const std::string field = "^1^,^20^,^left^,^Title^,^1^,^init^,^0^,^a;b^";
  WithAnswer({"stray", "@First", field, "^2^,^5^,^right^,^Date^,^0^,^^,^1^,^^", "@Empty", "@Last", "^short^"},
             [&](Page& page) {
               Variant name;
               Variant width = "kept";
               Variant list;
               const auto nextField = [&] {
                 return page.query.TELOGetMasksNextField(nullptr, &width, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                         &list);
               };
               EXPECT_EQ(page.query.TELOGetMasksInit("M", "A"), Variant::Long(3));
               EXPECT_EQ(page.LastCommand(), "^GetMasks^,^M^,^A^");
               EXPECT_EQ(page.query.TELOGetMasksNext(&name), Variant::Long(2));
               EXPECT_EQ(name, Variant("First"));
               EXPECT_EQ(nextField(), Variant::Long(1));
               EXPECT_EQ(width, Variant("20"));
               EXPECT_EQ(list, Variant("a;b"));
               EXPECT_EQ(nextField(), Variant::Long(0));
               width = "kept";
               EXPECT_EQ(nextField(), kFailed);
               EXPECT_EQ(page.query.TELOGetMasksNext(&name), Variant::Long(0));
               EXPECT_EQ(name, Variant("Empty"));
               EXPECT_EQ(nextField(), kFailed);
               EXPECT_EQ(width, Variant("kept"));
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
