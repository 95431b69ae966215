#include <gtest/gtest.h>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

TEST(ImportFile, IsContinuedWithTheDescriptionOfADocumentOrFails) {
  struct Case {
    const char* name;
    const char* types;
    const char* identifiers;
    Variant charSet;
    const char* text;
  };
  for (const Case& each :
       {Case{"all", "1,2", "7,9", "ANSI", "@CHARSET,ANSI\r\n@DB,$(#C1)\\A1\r\n@FOLDER,FT:Invoice,1:7,2:9\r\nbody\r\n"},
        Case{"surplus types, no charset", "1,2,3", "7,9", Missing,
             "@DB,$(#C1)\\A1\r\n@FOLDER,FT:Invoice,1:7,2:9\r\nbody\r\n"},
        Case{"empty charset", "1", "7", "", "@CHARSET,\r\n@DB,$(#C1)\\A1\r\n@FOLDER,FT:Invoice,1:7\r\nbody\r\n"},
        Case{"no fields", "", "7", Missing, "@DB,$(#C1)\\A1\r\n@FOLDER,FT:Invoice\r\nbody\r\n"}}) {
    WithAnswer({}, [&](Page& page) {
      const TemporaryDirectory directory;
      for (const int times : {1, 2}) {
        Variant status = "kept";
        EXPECT_EQ(page.query.CreateImportFile(directory.path() + "\\i.imp", "C1", "A1", "Invoice", each.types,
                                              each.identifiers, "body", each.charSet, &status),
                  Variant::Long(1))
            << each.name;
        EXPECT_EQ(status, Variant("")) << each.name;
        EXPECT_EQ(directory.Read("i.imp"), times == 1 ? each.text : std::string(each.text) + each.text) << each.name;
      }
      EXPECT_NE(page.Log().find("Creating import file '" + directory.path() + "\\i.imp'"), std::string::npos);
      EXPECT_EQ(page.query.CreateImportFile(directory.path() + "\\none\\i.imp", "C", "A", "T", "", "", "b"), kFailed);
      EXPECT_NE(page.Log().find("'CreateImportFile()': 76 - Path not found"), std::string::npos) << page.Log();
      EXPECT_EQ(page.server.Connections(), 0);
    });
  }
}

TEST(Documents, AreCreatedEditedAndDeleted) {
  WithAnswers({Answer({"4711,1"}), Answer({"4711,2", "more"}), Answer({}), Answer({}), Answer({})}, [](Page& page) {
    Variant version;
    EXPECT_EQ(page.query.TELOCreateDocument("in.imp", &version), Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^CreateDocument^,^in.imp^");
    EXPECT_EQ(version, Variant("4711,1"));
    EXPECT_EQ(page.query.TELOEditDocument("in.imp", version), Variant::Long(2));
    EXPECT_EQ(page.LastCommand(), "^EditDocument^,^in.imp^,^4711,1^");
    EXPECT_EQ(version, Variant("4711,2"));
    EXPECT_EQ(page.query.TELOEditDocument("in.imp", version), kFailed);  // an empty answer
    EXPECT_EQ(version, Variant("4711,2"));
    EXPECT_NE(page.Log().find("'TELOEditDocument()': 9 - "), std::string::npos);
    EXPECT_EQ(page.query.TELOCreateDocument("in.imp"), Variant::Long(0));
    EXPECT_EQ(page.query.TELODeleteDocument("M", "A", 4711, 2), Variant::Long(1));
    EXPECT_EQ(page.LastCommand(), "^DeleteDocument^,^M^,^A^,^4711^,^2^");
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
