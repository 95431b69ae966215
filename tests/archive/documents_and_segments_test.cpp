#include <gtest/gtest.h>

#include "tests/support/outputs.h"
#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

TEST(DocumentInfo, ConvertsTheFieldsOfTheFirstLine) {
  const Output outputs[] = {{"lngLaenge", Variant::Long(70000)},    {"strErstelldat", "01.02.2003"},
                            {"strAenderDat", "04.05.2006"},         {"strTitel", "An offer"},
                            {"intFelderGes", Variant::Integer(12)}, {"intTextFelder", Variant::Integer(9)},
                            {"intBildFelder", Variant::Integer(2)}, {"intBlobFelder", Variant::Integer(1)}};
  WithAnswers({Answer({"^a^,^b^,^c^,^d^," + Fields(outputs), "more"}), Answer({}), Answer({"^1^,^2^"}),
               Framed("Status: Unknown document")},
              [&](Page& page) {
                Variant title = "kept";
                Variant status;
                ExpectOutputs(outputs, [&](auto*... each) {
                  EXPECT_EQ(page.query.TELOGetDocumentInfo("M", "A", 4711, "2", each..., &status), Variant::Long(2));
                });
                EXPECT_EQ(page.LastCommand(), "^GetDocumentInfo^,^M^,^A^,^4711^,^2^");
                EXPECT_EQ(status, Variant(""));
                const auto ask = [&] {
                  return page.query.TELOGetDocumentInfo("M", "A", 4711, "2", nullptr, nullptr, nullptr, &title, nullptr,
                                                        nullptr, nullptr, nullptr, &status);
                };
                EXPECT_EQ(ask(), Variant::Long(0));
                EXPECT_EQ(title, Variant("kept"));
                EXPECT_EQ(ask(), Variant::Long(1));  // the line is too short, which only the log shows
                EXPECT_NE(page.Log().find("'TELOGetDocumentInfo()': 9 - "), std::string::npos);
                EXPECT_EQ(ask(), kFailed);
                EXPECT_EQ(status, Variant("Unknown document"));
              });
}

TEST(SegmentDescriptions, AreAllText) {
  const Output outputs[] = {{"intFeldID", "7"},    {"lngTextLaenge", "70000"}, {"intTrefferZahl", "2"},
                            {"lngNCILaenge", "0"}, {"strExt", "txt"},          {"intFeldTyp", "1"},
                            {"strFeldtitel", "T"}, {"strDateiname", "f.txt"},  {"intStatus", "3"},
                            {"strLayoutID", "L1"}, {"lngThumbnailSize", "99"}};
  std::string line = Fields(outputs);
  line.insert(line.find(','), ",^Name^");
  WithAnswers({Answer({"3", line}), Answer({"0"}), Answer({})}, [&](Page& page) {
    Variant notes;
    EXPECT_EQ(page.query.TELOGetSegmentDescriptionInit("M", "A", "1", "1", Missing, &notes), Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^GetSegmentDescription^,^M^,^A^,^1^,^1^,^^");
    EXPECT_EQ(notes, Variant("3"));
    ExpectOutputs(outputs,
                  [&](auto*... each) { EXPECT_EQ(page.query.TELOGetSegmentDescriptionNext(each...), "Name"); });
    Variant id = "kept";
    EXPECT_EQ(page.query.TELOGetSegmentDescriptionNext(&id), "");
    EXPECT_EQ(id, Variant("kept"));
    EXPECT_EQ(page.query.TELOGetSegmentDescriptionInit("M", "A", "1", "1", "thumbs"), Variant::Long(0));
    EXPECT_EQ(page.LastCommand(), "^GetSegmentDescription^,^M^,^A^,^1^,^1^,^thumbs^");
    EXPECT_EQ(page.query.TELOGetSegmentDescriptionNext(), "");
    notes = "kept";
    EXPECT_EQ(page.query.TELOGetSegmentDescriptionInit("M", "A", "1", "1", Missing, &notes), kFailed);
    EXPECT_EQ(notes, Variant("kept"));  // the answer was empty
  });
}

TEST(SegmentTexts, JoinTheLinesOfAnItemAndOutliveOtherRequests) {
  WithAnswers({Answer({"^first", "second^", "^third^", "^with ^", "^split^", "^open", "^goes on^"}),
               Framed("Status: no"), Answer({"^x", "y^"}), Answer({})},
              [](Page& page) {
                Variant status;
                EXPECT_EQ(page.query.TELOGetSegmentTextInit("M", "A", "1", "1", "q", "<b>", "</b>", Missing, "_"),
                          Variant::Long(5));
                EXPECT_EQ(page.LastCommand(), "^GetSegmentText^,^M^,^A^,^1^,^1^,^q^,^<b>^,^</b>^,^_^");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "first\r\nsecond");
                EXPECT_EQ(page.query.TELOGetSegmentTextInit("M", "A", "1", "1", Missing, Missing, Missing, Missing,
                                                            Missing, &status),
                          kFailed);  // leaves the list as it was
                EXPECT_EQ(status, Variant("no"));
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "third");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "with ");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "split");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "open\r\n^goes on");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "");
                page.query.TELOGetSegmentTextInit("M", "A", "1", "1", Missing, Missing, Missing, "|");
                EXPECT_EQ(page.LastCommand(), "^GetSegmentText^,^M^,^A^,^1^,^1^,^^,^^,^^,^^");
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "x|y");
                EXPECT_EQ(page.query.TELOGetSegmentTextInit("M", "A", "1", "1"), Variant::Long(0));
                EXPECT_EQ(page.query.TELOGetSegmentTextNext(), "");
              });
}

// The outputs of a segment, without its text.
const Output kSegment[] = {{"strChannel", "M"},
                           {"strArchive", "A"},
                           {"strDocID", "47"},
                           {"strVer", "2"},
                           {"intFeldIndex", Variant::Integer(5)},
                           {"intFeldID", Variant::Integer(32767)},
                           {"strFeldName", "Name"},
                           {"lngTextLaenge", Variant::Long(70000)},
                           {"intTrefferZahl", Variant::Integer(3)},
                           {"lngNCILaenge", Variant::Long(80000)},
                           {"strExt", "txt"},
                           {"intFeldTyp", Variant::Integer(1)},
                           {"strFeldtitel", "Title"},
                           {"strDateiname", "f.txt"},
                           {"intStatus", Variant::Integer(-4)},
                           {"strLayoutID", "L"},
                           {"lngThumbnailSize", Variant::Long(90000)}};

// The record line of the segment, with the part of its text that is on this line.
std::string Record(const std::string& text) { return Fields(kSegment) + ",^" + text; }

TEST(Segments, AreReadWithTheirContinuationLines) {
  WithAnswers(
      {Answer({"4", Record("one^"), Record("first"), "^second", "third", "^fourth^", Record("last^")}),
       Answer({"0", Record("open"), "end^"}), Answer({"0", Record("lone")}),
       Answer({"0", "^M^,^A^,^47^,^2^,^wrong^,^3^"}), Answer({})},
      [](Page& page) {
        Variant notes;
        Variant status;
        EXPECT_EQ(page.query.TELOGetSegmentsInit("M", "A", "47", "2", "q", "[", "]", "\n", "_", "thumbs", true, &notes,
                                                 &status),
                  Variant::Long(3));
        EXPECT_EQ(page.LastCommand(), "^GetSegments^,^M^,^A^,^47^,^2^,^q^,^[^,^]^,^_^,^thumbs^,^1^");
        EXPECT_EQ(notes, Variant::Long(4));
        EXPECT_EQ(status, Variant(""));
        for (const char* text : {"one", "first\n^second\nthird\n^fourth", "last"}) {
          ExpectOutputs(kSegment, [&](auto*... each) { EXPECT_EQ(page.query.TELOGetSegmentsNext(each...), text); });
        }
        Variant channel = "kept";
        EXPECT_EQ(page.query.TELOGetSegmentsNext(&channel), "");
        EXPECT_EQ(channel, Variant("kept"));
        page.query.TELOGetSegmentsInit("M", "A", "47", "2", Missing, Missing, Missing, Missing, Missing, Missing, 1);
        EXPECT_EQ(page.LastCommand(), "^GetSegments^,^M^,^A^,^47^,^2^,^^,^^,^^,^^,^^,^0^");
        EXPECT_EQ(page.query.TELOGetSegmentsNext(), "open\r\nend");  // the line break of the call before is forgotten
        page.query.TELOGetSegmentsInit("M", "A", "47", "2", "", "", "", "", "", "", false, &notes);
        EXPECT_EQ(page.query.TELOGetSegmentsNext(), "lone");
        page.query.TELOGetSegmentsInit("M", "A", "47", "2");
        Variant index;
        EXPECT_EQ(page.query.TELOGetSegmentsNext(nullptr, nullptr, nullptr, nullptr, &index), "");
        EXPECT_NE(page.Log().find("'TELOGetSegmentsNext()': 13 - "), std::string::npos) << page.Log();
        // An empty answer fails only when the notes are asked for.
        EXPECT_EQ(page.query.TELOGetSegmentsInit("M", "A", "1", "1"), Variant::Long(0));
        EXPECT_EQ(page.query.TELOGetSegmentsNext(), "");
        EXPECT_EQ(page.query.TELOGetSegmentsInit("M", "A", "1", "1", "", "", "", "", "", "", false, &notes), kFailed);
        EXPECT_EQ(notes, Variant::Long(0));
        EXPECT_NE(page.Log().find("'TELOGetSegmentsInit()': 9 - "), std::string::npos);
      });
}

}  // namespace
}  // namespace oxaqrycln::testing
