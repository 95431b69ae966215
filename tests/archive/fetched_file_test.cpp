// What the operations outside of the content family do with the file of an answer: that it is the same.
#include "archive/fetched_file.h"

#include <gtest/gtest.h>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

const Variant kFailed = Variant::Integer(-1);

struct Outputs {
  Variant name = "kept";
  Variant length = "kept";
  Variant status = "kept";
};

struct Operation {
  const char* routine;
  Variant (*call)(clsQuery& query, Outputs* outputs);
  const char* command;
  bool clearsOutputs;  // when the answer names no file
};

const Operation kOperations[] = {
    {"OstranaGetFahrauftraegeMultiTIFF",
     [](clsQuery& query, Outputs* outputs) {
       if (outputs == nullptr) return query.OstranaGetFahrauftraegeMultiTIFF("T7,T9;x");
       return query.OstranaGetFahrauftraegeMultiTIFF("T7,T9;x", &outputs->name, &outputs->length, &outputs->status);
     },
     "^GetFahrauftraegeMultiTIFF^,^T7,T9;x^,^\\\\srv\\blobs^", true},
    {"FennikPrintHitlistPDF",
     [](clsQuery& query, Outputs* outputs) {
       if (outputs == nullptr) return query.FennikPrintHitlistPDF("Hits");
       return query.FennikPrintHitlistPDF("Hits", &outputs->name, &outputs->length, &outputs->status);
     },
     "^PrintHitlistPDF^,^Hits^,^^Reference^^,^\\\\srv\\blobs^", false},
};

// Runs body(page) with a hit list of its title row, and an answer for what follows.
template <typename Body>
void WithHitList(const std::string& answer, Body&& body) {
  WithAnswers({Answer({"0", "", "0", "^0^", "^Reference^"}), answer}, [&](Page& page) {
    page.query.strBlobPathRemote = "\\\\srv\\blobs";
    page.query.TELOQueryArchiveInit("word", 10, 100, "", "");
    body(page);
  });
}

TEST(FetchedFile, IsAskedForAndToldByEveryOperation) {
  for (const Operation& each : kOperations) {
    WithHitList(Answer({"7", "D:\\out\\scan.tif"}), [&](Page& page) {
      const TemporaryDirectory blobs;
      blobs.Write("scan.tif", "content");
      page.query.strBlobPathLocal = blobs.path();
      page.query.strChangeFileExt = "TIF-PDF";
      Outputs outputs;
      EXPECT_EQ(each.call(page.query, &outputs), Variant::Long(1)) << each.routine;
      EXPECT_EQ(page.LastCommand(), each.command);
      EXPECT_EQ(outputs.name, Variant("scan.PDF")) << each.routine;
      EXPECT_EQ(outputs.length, Variant("7")) << each.routine;
      EXPECT_EQ(outputs.status, Variant("")) << each.routine;
      EXPECT_EQ(blobs.Read("scan.PDF"), "content") << each.routine;
      // Nobody who leaves the name out has the file renamed.
      blobs.Write("scan.tif", "again");
      EXPECT_EQ(each.call(page.query, nullptr), Variant::Long(1)) << each.routine;
      EXPECT_EQ(blobs.Read("scan.tif"), "again") << each.routine;
    });
  }
}

TEST(FetchedFile, OfAHostileNameIsRefused) {
  for (const Operation& each : kOperations) {
    for (const char* name : {"..", "out\\..", "out/.", "com1.tif", "a:b", "scan.tif.", "a\tb"}) {
      WithHitList(Answer({"7", name}), [&](Page& page) {
        Outputs outputs;
        EXPECT_EQ(each.call(page.query, &outputs), kFailed) << each.routine << ' ' << name;
        EXPECT_EQ(outputs.name, Variant("kept")) << each.routine << ' ' << name;
        EXPECT_EQ(outputs.length, Variant("kept")) << each.routine << ' ' << name;
        EXPECT_NE(page.Log().find(std::string("'") + each.routine + "()': 52 - "), std::string::npos) << page.Log();
      });
    }
  }
}

TEST(FetchedFile, ThatIsNotThereLeavesOrClearsTheOutputs) {
  for (const Operation& each : kOperations) {
    for (const std::vector<std::string>& lines : {std::vector<std::string>{}, {"7"}}) {
      WithHitList(Answer(lines), [&](Page& page) {
        Outputs outputs;
        EXPECT_EQ(each.call(page.query, &outputs), Variant::Long(1)) << each.routine;
        EXPECT_EQ(outputs.name, Variant(each.clearsOutputs ? "" : "kept")) << each.routine;
        EXPECT_EQ(outputs.length, each.clearsOutputs ? Variant::Long(0) : Variant("kept")) << each.routine;
        EXPECT_EQ(outputs.status, Variant("")) << each.routine;
        EXPECT_EQ(each.call(page.query, nullptr), Variant::Long(1)) << each.routine;
      });
    }
    WithHitList(Framed("Status: No room\r\n"), [&](Page& page) {
      Outputs outputs;
      EXPECT_EQ(each.call(page.query, &outputs), kFailed) << each.routine;
      EXPECT_EQ(outputs.status, Variant("No room")) << each.routine;
      EXPECT_EQ(outputs.name, Variant("kept")) << each.routine;
      EXPECT_EQ(outputs.length, Variant("kept")) << each.routine;
      EXPECT_EQ(each.call(page.query, nullptr), kFailed) << each.routine;
    });
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
