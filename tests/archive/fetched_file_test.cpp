// Every operation that fetches a file: its request, and the outputs for the file of the answer.
#include "archive/fetched_file.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

struct Operation {
  std::function<Variant(clsQuery&, Variant*, Variant*, Variant*)> call;  // the name, its length, the status
  const char* command;
  bool clearsOutputs;  // when the answer names no file
};

const Operation kOperations[] = {
    {[](clsQuery& query, auto*... outputs) { return query.TELOGetSegmentData("M", "A", "1", "2", 3, outputs...); },
     "^GetSegmentData^,^M^,^A^,^1^,^2^,^3^,^\\\\srv\\blobs^", false},
    {[](clsQuery& query, auto*... outputs) {
       return query.TELOGetSegmentFirstBLOB("M", "A", "1", "2", Missing, outputs...);
     },
     "^GetSegmentFirstBLOB^,^M^,^A^,^1^,^2^,^^,^\\\\srv\\blobs^", false},
    {[](clsQuery& query, auto*... outputs) {
       return query.TELOGetSegmentFirstBLOB("M", "A", "1", "2", "pdf", outputs...);
     },
     "^GetSegmentFirstBLOB^,^M^,^A^,^1^,^2^,^pdf^,^\\\\srv\\blobs^", false},
    {[](clsQuery& query, auto*... outputs) {
       return query.TELOGetSegmentMultiTIF("M", "A", "1", "2", "1;4-6", outputs...);
     },
     "^GetSegmentMultiTIF^,^M^,^A^,^1^,^2^,^1,4,5,6^,^\\\\srv\\blobs^", true},
    {[](clsQuery& query, auto*... outputs) { return query.TELOGetSegmentPrintfile("M", "A", "1", "2", 7, outputs...); },
     "^GetSegmentPrintfile2^,^M^,^A^,^1^,^2^,^7^,^\\\\srv\\blobs^", false},
    {[](clsQuery& query, auto*... outputs) { return query.OstranaGetFahrauftraegeMultiTIFF("T7,T9;x", outputs...); },
     "^GetFahrauftraegeMultiTIFF^,^T7,T9;x^,^\\\\srv\\blobs^", true},
    {[](clsQuery& query, auto*... outputs) { return query.FennikPrintHitlistPDF("Hits", outputs...); },
     "^PrintHitlistPDF^,^Hits^,^^Reference^^,^\\\\srv\\blobs^", false},
};

using Outcome = std::vector<Variant>;  // the result, the name, its length, the status

Outcome Call(clsQuery& query, const Operation& operation) {
  Outcome outcome(4, "kept");
  outcome[0] = operation.call(query, &outcome[1], &outcome[2], &outcome[3]);
  return outcome;
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
      EXPECT_EQ(Call(page.query, each), (Outcome{Variant::Long(1), "scan.PDF", "7", ""}));
      EXPECT_EQ(page.LastCommand(), each.command);
      EXPECT_EQ(page.blobs.Read("scan.PDF"), "content") << each.command;
      // The file is renamed only for a caller that asks for its name.
      page.blobs.Write("scan.tif", "again");
      EXPECT_EQ(each.call(page.query, nullptr, nullptr, nullptr), Variant::Long(1)) << each.command;
      EXPECT_EQ(page.blobs.Read("scan.tif"), "again") << each.command;
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
        EXPECT_EQ(Call(page.query, each), isRefused ? refused : each.clearsOutputs ? cleared : kept) << each.command;
        EXPECT_EQ(each.call(page.query, nullptr, nullptr, nullptr), isRefused ? kFailed : Variant::Long(1))
            << each.command;
      });
    }
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
