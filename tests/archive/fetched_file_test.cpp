// Every operation that fetches a file: its request, and the outputs for the file of the answer.
#include "archive/fetched_file.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

struct Operation {
  const char* routine;
  std::function<Variant(clsQuery&, Variant*, Variant*, Variant*)> call;  // the name, its length, the status
  const char* command;
  bool clearsOutputs;  // when the answer names no file
};

const Operation kOperations[] = {
    {"TELOGetSegmentData",
     [](clsQuery& query, auto*... outputs) { return query.TELOGetSegmentData("M", "A", "1", "2", 3, outputs...); },
     "^GetSegmentData^,^M^,^A^,^1^,^2^,^3^,^\\\\srv\\blobs^", false},
    {"TELOGetSegmentFirstBLOB",
     [](clsQuery& query, auto*... outputs) {
       return query.TELOGetSegmentFirstBLOB("M", "A", "1", "2", Missing, outputs...);
     },
     "^GetSegmentFirstBLOB^,^M^,^A^,^1^,^2^,^^,^\\\\srv\\blobs^", false},
    {"TELOGetSegmentFirstBLOB",
     [](clsQuery& query, auto*... outputs) {
       return query.TELOGetSegmentFirstBLOB("M", "A", "1", "2", "pdf", outputs...);
     },
     "^GetSegmentFirstBLOB^,^M^,^A^,^1^,^2^,^pdf^,^\\\\srv\\blobs^", false},
    {"TELOGetSegmentMultiTIF",
     [](clsQuery& query, auto*... outputs) {
       return query.TELOGetSegmentMultiTIF("M", "A", "1", "2", "1;4-6", outputs...);
     },
     "^GetSegmentMultiTIF^,^M^,^A^,^1^,^2^,^1,4,5,6^,^\\\\srv\\blobs^", true},
    {"TELOGetSegmentPrintfile",
     [](clsQuery& query, auto*... outputs) { return query.TELOGetSegmentPrintfile("M", "A", "1", "2", 7, outputs...); },
     "^GetSegmentPrintfile2^,^M^,^A^,^1^,^2^,^7^,^\\\\srv\\blobs^", false},
    {"OstranaGetFahrauftraegeMultiTIFF",
     [](clsQuery& query, auto*... outputs) { return query.OstranaGetFahrauftraegeMultiTIFF("T7,T9;x", outputs...); },
     "^GetFahrauftraegeMultiTIFF^,^T7,T9;x^,^\\\\srv\\blobs^", true},
    {"FennikPrintHitlistPDF",
     [](clsQuery& query, auto*... outputs) { return query.FennikPrintHitlistPDF("Hits", outputs...); },
     "^PrintHitlistPDF^,^Hits^,^^Reference^^,^\\\\srv\\blobs^", false},
};

struct Outcome {
  Variant result;
  Variant name;
  Variant length;
  Variant status;
};

// Calls the operation and compares its outcome.
void ExpectOutcome(clsQuery& query, const Operation& operation, const Outcome& expected) {
  Variant name = "kept";
  Variant length = "kept";
  Variant status = "kept";
  EXPECT_EQ(operation.call(query, &name, &length, &status), expected.result) << operation.routine;
  EXPECT_EQ(name, expected.name) << operation.routine;
  EXPECT_EQ(length, expected.length) << operation.routine;
  EXPECT_EQ(status, expected.status) << operation.routine;
}

// Runs body(page) after a query with an empty hit list; all later requests get the answer.
template <typename Body>
void WithHitList(const std::string& answer, Body&& body) {
  WithAnswers({Answer({"0", "", "0", "^0^", "^Reference^"}), answer}, [&](Page& page) {
    page.query.strBlobPathRemote = "\\\\srv\\blobs";
    page.query.TELOQueryArchiveInit("word", 10, 100, "", "");
    body(page);
  });
}

TEST(FetchedFile, IsRequestedAndReportedByEveryOperation) {
  for (const Operation& each : kOperations) {
    WithHitList(Answer({"7", "D:\\out\\scan.tif"}), [&](Page& page) {
      page.blobs.Write("scan.tif", "content");
      page.query.strChangeFileExt = "TIF-PDF";
      ExpectOutcome(page.query, each, {Variant::Long(1), "scan.PDF", "7", ""});
      EXPECT_EQ(page.LastCommand(), each.command);
      EXPECT_EQ(page.blobs.Read("scan.PDF"), "content") << each.routine;
      // The file is renamed only for a caller that asks for its name.
      page.blobs.Write("scan.tif", "again");
      EXPECT_EQ(each.call(page.query, nullptr, nullptr, nullptr), Variant::Long(1)) << each.routine;
      EXPECT_EQ(page.blobs.Read("scan.tif"), "again") << each.routine;
    });
  }
}

TEST(FetchedFile, ThatIsMissingLeavesOrClearsTheOutputs) {
  for (const Operation& each : kOperations) {
    const Outcome kept{Variant::Long(1), "kept", "kept", ""};
    const Outcome cleared{Variant::Long(1), "", Variant::Long(0), ""};
    const Outcome refused{kFailed, "kept", "kept", "No room"};
    for (const std::string& answer : {Answer({}), Answer({"7"}), Framed("Status: No room\r\n")}) {
      WithHitList(answer, [&](Page& page) {
        const bool isRefused = answer.ends_with("No room\r\n");
        ExpectOutcome(page.query, each, isRefused ? refused : each.clearsOutputs ? cleared : kept);
        EXPECT_EQ(each.call(page.query, nullptr, nullptr, nullptr), isRefused ? kFailed : kept.result) << each.routine;
      });
    }
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
