#include <gtest/gtest.h>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

const Variant kFailed = Variant::Integer(-1);

TEST(DocumentInfo, ConvertsTheFieldsOfTheFirstLine) {
  const std::string line = "^a^,^b^,^c^,^d^,^70000^,^01.02.2003^,^04.05.2006^,^An offer^,^12^,^9^,^2^,^1^";
  WithAnswers({Answer({line, "more"}), Answer({}), Answer({"^1^,^2^"}), Framed("Status: Unknown document")},
              [](Page& page) {
                Variant length;
                Variant created;
                Variant changed;
                Variant title;
                Variant fields;
                Variant texts;
                Variant images;
                Variant blobs;
                Variant status;
                const auto ask = [&] {
                  return page.query.TELOGetDocumentInfo("M", "A", 4711, "2", &length, &created, &changed, &title,
                                                        &fields, &texts, &images, &blobs, &status);
                };
                EXPECT_EQ(ask(), Variant::Long(2));
                EXPECT_EQ(page.LastCommand(), "^GetDocumentInfo^,^M^,^A^,^4711^,^2^");
                EXPECT_EQ(length, Variant::Long(70000));
                EXPECT_EQ(created, Variant("01.02.2003"));
                EXPECT_EQ(title, Variant("An offer"));
                EXPECT_EQ(fields, Variant::Integer(12));
                EXPECT_EQ(blobs, Variant::Integer(1));
                EXPECT_EQ(status, Variant(""));
                title = "kept";
                EXPECT_EQ(ask(), Variant::Long(0));
                EXPECT_EQ(title, Variant("kept"));
                EXPECT_EQ(ask(), Variant::Long(1));  // the line is too short, which only the log tells
                EXPECT_NE(page.Log().find("'TELOGetDocumentInfo()': 9 - "), std::string::npos);
                EXPECT_EQ(ask(), kFailed);
                EXPECT_EQ(status, Variant("Unknown document"));
              });
}

TEST(SegmentDescriptions, AreTextWhateverTheirNamesSay) {
  WithAnswers(
      {Answer({"3", "^7^,^Name^,^10^,^2^,^0^,^txt^,^1^,^Title^,^f.txt^,^0^,^L1^,^99^"}), Answer({"0"}), Answer({})},
      [](Page& page) {
        Variant notes;
        Variant id;
        Variant thumbnail;
        EXPECT_EQ(page.query.TELOGetSegmentDescriptionInit("M", "A", "1", "1", Missing, &notes), Variant::Long(1));
        EXPECT_EQ(page.LastCommand(), "^GetSegmentDescription^,^M^,^A^,^1^,^1^,^^");
        EXPECT_EQ(notes, Variant("3"));
        const auto next = [&] {
          return page.query.TELOGetSegmentDescriptionNext(&id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                          nullptr, nullptr, nullptr, &thumbnail);
        };
        EXPECT_EQ(next(), "Name");
        EXPECT_EQ(id, Variant("7"));
        EXPECT_EQ(thumbnail, Variant("99"));
        EXPECT_EQ(next(), "");
        EXPECT_EQ(id, Variant("7"));
        EXPECT_EQ(page.query.TELOGetSegmentDescriptionInit("M", "A", "1", "1", "thumbs"), Variant::Long(0));
        EXPECT_EQ(page.LastCommand(), "^GetSegmentDescription^,^M^,^A^,^1^,^1^,^thumbs^");
        EXPECT_EQ(next(), "");
        notes = "kept";
        EXPECT_EQ(page.query.TELOGetSegmentDescriptionInit("M", "A", "1", "1", Missing, &notes), kFailed);
        EXPECT_EQ(notes, Variant("kept"));  // the answer was empty
      });
}

TEST(SegmentTexts, JoinTheLinesOfAnItemAndOutliveOtherRequests) {
  WithAnswers({Answer({"^first", "second^", "^third^", "^with ^", "^split^"}), Framed("Status: no"),
               Answer({"^x", "y^"}), Answer({})},
              [](Page& page) {
                Variant status;
                EXPECT_EQ(page.query.TELOGetSegmentTextInit("M", "A", "1", "1", "q", "<b>", "</b>", Missing, "_"),
                          Variant::Long(4));
                EXPECT_EQ(page.LastCommand(), "^GetSegmentText^,^M^,^A^,^1^,^1^,^q^,^<b>^,^</b>^,^_^");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "first\r\nsecond");
                EXPECT_EQ(page.query.TELOGetSegmentTextInit("M", "A", "1", "1", Missing, Missing, Missing, Missing,
                                                            Missing, &status),
                          kFailed);  // leaves the list as it was
                EXPECT_EQ(status, Variant("no"));
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "third");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "with ");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "split");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "");
                page.query.TELOGetSegmentTextInit("M", "A", "1", "1", Missing, Missing, Missing, "|");
                EXPECT_EQ(page.LastCommand(), "^GetSegmentText^,^M^,^A^,^1^,^1^,^^,^^,^^,^^");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "x|y");
                EXPECT_EQ(page.query.TELOGetSegmentTextInit("M", "A", "1", "1"), Variant::Long(0));
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "");
              });
}

// A record line whose 18th field is the text, as far as it stands on this line.
std::string Record(const std::string& index, const std::string& text) {
  return "^M^,^A^,^47^,^2^,^" + index + "^,^3^,^Name^,^70000^,^2^,^80000^,^txt^,^1^,^Title^,^f.txt^,^0^,^L^,^99^,^" +
         text;
}

TEST(Segments, AreReadWithTheirContinuationLines) {
  WithAnswers(
      {Answer({"4", Record("1", "one^"), Record("2", "first"), "second", "^third^", Record("3", "last^")}),
       Answer({"0", Record("1", "open")}), Answer({"0", Record("wrong", "t^"), "^short^,^record^"})},
      [](Page& page) {
        Variant notes;
        Variant channel;
        Variant index;
        Variant length;
        Variant status;
        const auto next = [&] {
          return page.query.TELOGetSegmentsNext(&channel, nullptr, nullptr, nullptr, &index, nullptr, nullptr, &length);
        };
        EXPECT_EQ(page.query.TELOGetSegmentsInit("M", "A", "47", "2", "q", "[", "]", "\n", "_", "thumbs", true, &notes,
                                                 &status),
                  Variant::Long(3));
        EXPECT_EQ(page.LastCommand(), "^GetSegments^,^M^,^A^,^47^,^2^,^q^,^[^,^]^,^_^,^thumbs^,^1^");
        EXPECT_EQ(notes, Variant::Long(4));
        EXPECT_EQ(status, Variant(""));
        EXPECT_EQ(next(), "one");
        EXPECT_EQ(channel, Variant("M"));
        EXPECT_EQ(index, Variant::Integer(1));
        EXPECT_EQ(length, Variant::Long(70000));
        EXPECT_EQ(next(), "first\nsecond\n^third");
        EXPECT_EQ(next(), "last");
        EXPECT_EQ(next(), "");
        EXPECT_EQ(index, Variant::Integer(3));
        page.query.TELOGetSegmentsInit("M", "A", "47", "2", Missing, Missing, Missing, Missing, Missing, Missing, 1);
        EXPECT_EQ(page.LastCommand(), "^GetSegments^,^M^,^A^,^47^,^2^,^^,^^,^^,^^,^^,^0^");
        EXPECT_EQ(next(), "open");
        page.query.TELOGetSegmentsInit("M", "A", "47", "2");
        EXPECT_EQ(next(), "");
        EXPECT_NE(page.Log().find("'TELOGetSegmentsNext()': 13 - "), std::string::npos) << page.Log();
      });
}

TEST(Segments, OfAnEmptyAnswerFailOnlyWhenTheNotesAreAskedFor) {
  WithAnswer({}, [](Page& page) {
    Variant notes = "kept";
    EXPECT_EQ(page.query.TELOGetSegmentsInit("M", "A", "1", "1"), Variant::Long(0));
    EXPECT_EQ(page.query.TELOGetSegmentsNext(), "");
    EXPECT_EQ(page.query.TELOGetSegmentsInit("M", "A", "1", "1", Missing, Missing, Missing, Missing, Missing, Missing,
                                             Missing, &notes),
              kFailed);
    EXPECT_EQ(notes, Variant("kept"));
    EXPECT_NE(page.Log().find("'TELOGetSegmentsInit()': 9 - "), std::string::npos);
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
