// The component's methods with the development archive server: both sides agree on the bytes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "component/clsQuery.h"
#include "tests/support/in_own_thread.h"
#include "tests/tools/devserver/wire_client.h"

namespace oxaqrycln::devserver {
namespace {

void WithQuery(const std::function<void(clsQuery& query, const RunningServer& server)>& body) {
  oxaqrycln::testing::InOwnThread([&] {
    const RunningServer server({}, "none", kSampleDocumentCount);
    clsQuery query;
    query.strTELOUser = "webuser";
    query.strTELOPwd = "secret";
    query.lngRequestTimeout = 10;
    query.strBlobPathLocal = query.strBlobPathRemote = server.BlobPath("").parent_path().string();
    query.RemoteHosts("127.0.0.1," + std::to_string(server.port()));
    ASSERT_TRUE(query.Init(false));
    body(query, server);
  });
}

TEST(Component, ReadsADocumentFromTheServer) {
  WithQuery([](clsQuery& query, const RunningServer&) {
    Variant title;
    Variant fields;
    EXPECT_EQ(query.TELOGetDocumentInfo("Mail", "Inbox", "1262", "", nullptr, nullptr, nullptr, &title, &fields),
              Variant::Long(1));
    EXPECT_EQ(title, Variant("Enquiry about oak shelves"));
    EXPECT_EQ(fields, Variant::Integer(6));
    EXPECT_EQ(query.TELOGetSegmentDescriptionInit("Mail", "Inbox", "1262", ""), Variant::Long(6));
    EXPECT_EQ(query.TELOGetSegmentTextInit("Mail", "Inbox", "1262", "", "oak OR goods", "[", "]", "|"),
              Variant::Long(4));
    EXPECT_EQ(query.TELOGetSegmentTextNext(), "Mia Kr\xE4henb\xFChl");
    for (int skipped = 0; skipped < 2; ++skipped) query.TELOGetSegmentTextNext();
    EXPECT_THAT(query.TELOGetSegmentTextNext(), ::testing::HasSubstr("month.|The [goods] were"));

    EXPECT_EQ(query.TELOGetSegmentsInit("Mail", "Inbox", "1262", "", "goods"), Variant::Long(6));
    std::string names;
    for (int segment = 0; segment < 6; ++segment) {
      Variant name;
      Variant hits;
      query.TELOGetSegmentsNext(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &name, nullptr, &hits);
      names += name.ToText() + hits.ToText() + " ";
    }
    EXPECT_EQ(names, "author0 customer0 date0 text1 page0 file0 ");
    EXPECT_EQ(query.TELOGetSegmentsNext(), "");
  });
}

TEST(Component, ChangesDocumentsThroughTheServer) {
  WithQuery([](clsQuery& query, const RunningServer& server) {
    const std::string import = server.BlobPath("a.imp").string();
    Variant identifier;
    Variant status;
    EXPECT_EQ(query.CreateImportFile(import, "Finance", "Orders", "Pipes", "1,1", "11,16",
                                     "@FIELD,11\r\nAnna\r\n@FIELD,16\r\none\r\ntwo", Missing, &status),
              Variant::Long(1));
    EXPECT_EQ(query.TELOCreateDocument(import, &identifier, &status), Variant::Long(1)) << status.ToText();
    EXPECT_EQ(identifier, Variant("1271,1"));
    EXPECT_EQ(query.TELOEditDocument(import, identifier, &status), Variant::Long(1)) << status.ToText();
    EXPECT_EQ(identifier, Variant("1271,2"));

    EXPECT_EQ(query.TELOWriteNote("Finance", "Orders", "1271", "2", "one\r\ntwo"), Variant::Long(1));
    EXPECT_EQ(query.TELOGetNotesInit("Finance", "Orders", "1271", "2"), Variant::Long(1));
    EXPECT_THAT(query.TELOGetNotesNext(),
                ::testing::AllOf(::testing::StartsWith("webuser,"), ::testing::EndsWith(",one\r\ntwo")));
    EXPECT_EQ(query.TELODeleteNotes("Finance", "Orders", "1271", "2"), Variant::Long(1));
    EXPECT_EQ(query.TELODeleteDocument("Finance", "Orders", "1271", "", &status), Variant::Long(1));
    EXPECT_EQ(query.TELODeleteDocument("Finance", "Orders", "1271", "", &status), Variant::Integer(-1));
    EXPECT_EQ(status, Variant("There is no document '1271' in $(#Finance)\\Orders"));

    Variant mask;
    EXPECT_EQ(query.TELOGetMasksInit("Finance", "Orders"), Variant::Long(2));
    EXPECT_EQ(query.TELOGetMasksNext(&mask), Variant::Long(4));
    EXPECT_EQ(mask, Variant("Standard"));
  });
}

TEST(Component, MovesFilesBothWays) {
  WithQuery([](clsQuery& query, const RunningServer& server) {
    Variant name;
    Variant length;
    Variant status;
    EXPECT_EQ(query.TELOGetSegmentMultiTIF("Mail", "Fax", "1003", "", "1-3", &name, &length, &status),
              Variant::Long(1));
    EXPECT_EQ(std::to_string(std::filesystem::file_size(server.BlobPath(name.ToText()))), length.ToText());

    const std::filesystem::path local = server.BlobPath("local");
    std::filesystem::create_directory(local);
    query.strBlobPathLocal = local.string();
    EXPECT_EQ(query.TELOTransferBLOB(name, length.ToLong(), &status), Variant::Long(1)) << status.ToText();
    EXPECT_EQ(std::to_string(std::filesystem::file_size(local / name.ToText())), length.ToText());
    EXPECT_EQ(query.TELOTransferBLOB("missing.tif", 10, &status), Variant::Integer(-1));
    EXPECT_FALSE(std::filesystem::exists(local / "missing.tif"));

    std::ofstream(local / "up.bin") << std::string(200000, 'u');
    EXPECT_EQ(query.TELOUploadFile("up.bin", &status), Variant::Long(1)) << status.ToText();
    EXPECT_EQ(std::filesystem::file_size(server.BlobPath("up.bin")), 200000U);
  });
}

TEST(Component, WorksOnTransportOrdersAndPrintsHitLists) {
  WithQuery([](clsQuery& query, const RunningServer& server) {
    Variant status;
    Variant document;
    Variant name;
    Variant length;
    EXPECT_EQ(query.OstranaUpdateFahrauftraegeStatus("FA-0002", "loaded", &status), Variant::Long(1))
        << status.ToText();
    EXPECT_EQ(query.OstranaQueryFahrauftraegeInit("FA-0002 OR FA-0003", 10), Variant::Long(2));
    EXPECT_THAT(query.OstranaQueryFahrauftraegeNext(&status, &document),
                ::testing::StartsWith("^FA-0002^,^Nordlicht Optik^,^F\xF8nsby"));
    EXPECT_EQ(status, Variant("loaded"));
    EXPECT_EQ(document, Variant("1003"));
    EXPECT_THAT(query.OstranaQueryFahrauftraegeNext(), ::testing::StartsWith("^FA-0003^,^"));
    EXPECT_EQ(query.OstranaQueryFahrauftraegeNext(), "");
    EXPECT_EQ(query.OstranaGetFahrauftraegeMultiTIFF("FA-0002,FA-0001", &name, &length), Variant::Long(1));
    EXPECT_EQ(std::to_string(std::filesystem::file_size(server.BlobPath(name.ToText()))), length.ToText());

    EXPECT_EQ(query.TELOQueryArchiveInit("*", 0, 0, "", ""), Variant::Long(271));
    EXPECT_EQ(query.FennikPrintHitlistPDF("Everything", &name, &length, &status), Variant::Long(1)) << status.ToText();
    EXPECT_EQ(name, Variant("hitlist.pdf"));
    EXPECT_EQ(std::to_string(std::filesystem::file_size(server.BlobPath(name.ToText()))), length.ToText());
  });
}

}  // namespace
}  // namespace oxaqrycln::devserver
