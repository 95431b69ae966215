// strParamStatus of the methods that request text from a query server, called through the method table.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "automation/method_table.h"
#include "tests/support/page.h"
#include "values/text_parts.h"

namespace oxaqrycln::testing {
namespace {

// Calls the method with its required inputs and the status output, which is its last parameter.
Variant CallWithStatus(clsQuery& query, const MethodEntry& method, Variant& status) {
  Variant input("1");
  std::vector<Variant*> arguments;
  for (const ParameterEntry& each : method.parameters) {
    const bool isRequired = each.kind == ParameterKind::In || each.kind == ParameterKind::InOut;
    arguments.push_back(isRequired ? &input : nullptr);
  }
  arguments.back() = &status;
  return method.call(query, arguments);
}

constexpr std::string_view kMethods =
    "TELOGetChannelsInit TELOGetAllArchivesInit TELOGetQueryFormatListInit TELOGetAllArchivesExtInit "
    "TELOGetArchiveProperties TELOQueryArchiveInit TELOGetDocumentInfo TELOGetSegmentTextInit "
    "TELOGetSegmentDescriptionInit TELOGetSegmentsInit TELOGetSegmentData TELOGetSegmentFirstBLOB "
    "TELOGetSegmentPrintfile TELOGetSegmentMultiTIF TELODeleteDocument TELOCreateDocument "
    "TELOEditDocument TELOGetNotesInit TELOWriteNote TELODeleteNotes TELOGetMasksInit "
    "OstranaQueryFahrauftraegeInit OstranaUpdateFahrauftraegeStatus";

TEST(StatusOutputs, AreEmptyOnSuccessAndOtherwiseHoldTheServersText) {
  struct Reply {
    const char* name;
    std::string framed;
    const char* status;
  };
  for (const Reply& reply :
       {Reply{"success", Answer({"1,1,1,1,1", "^x^", "0", "^y^"}), ""},  // every method can read it
        Reply{"refused", Framed("Status: Not allowed"), "Not allowed"}}) {
    WithAnswers({reply.framed}, [&](Page& page) {
      for (const std::string_view name : Split(kMethods, ' ')) {
        Variant status("kept");
        const Variant result = CallWithStatus(page.query, *FindMethod(name), status);
        EXPECT_EQ(status.ToText(), reply.status) << name << ": " << reply.name << page.Log();
        EXPECT_EQ(IsSame(result, Variant::Integer(-1)), !status.ToText().empty()) << name << ": " << reply.name;
      }
    });
  }
}

}  // namespace
}  // namespace oxaqrycln::testing
