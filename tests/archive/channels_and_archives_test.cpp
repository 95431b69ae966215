#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/page.h"

namespace oxaqrycln::testing {
namespace {

const Variant kUntouched = "untouched";

TEST(Channels, AreSortedAndSplitAtTheFirstComma) {
  WithAnswer({"Mail,Incoming, all", "alpha", "Beta,b"}, [](Page& page) {
    Variant status = kUntouched;
    EXPECT_EQ(page.query.TELOGetChannelsInit(&status), Variant::Long(3));
    EXPECT_EQ(status, Variant(""));
    EXPECT_EQ(page.LastCommand(), "^GetChannels^");
    Variant description;
    EXPECT_EQ(page.query.TELOGetChannelsNext(&description), "alpha");
    EXPECT_EQ(description, Variant(""));
    EXPECT_EQ(page.query.TELOGetChannelsNext(), "Beta");
    EXPECT_EQ(page.query.TELOGetChannelsNext(&description), "Mail");
    EXPECT_EQ(description, Variant("Incoming, all"));
    EXPECT_EQ(page.query.TELOGetChannelsNext(&description), "");
    EXPECT_EQ(description, Variant("Incoming, all"));
  });
}

TEST(Archives, AreSortedWholeLinesAndFormatsKeepTheServersOrder) {
  WithAnswer({"b,x", "A,y"}, [](Page& page) {
    EXPECT_EQ(page.query.TELOGetAllArchivesInit(), Variant::Long(2));
    EXPECT_EQ(page.query.TELOGetAllArchivesNext(), "A,y");
    EXPECT_EQ(page.query.TELOGetAllArchivesNext(), "b,x");
    EXPECT_EQ(page.query.TELOGetAllArchivesNext(), "");
    EXPECT_EQ(page.query.TELOGetQueryFormatListInit("C", 5), Variant::Long(2));
    EXPECT_EQ(page.LastCommand(), "^GetQueryFormatList^,^C^,^5^");
    EXPECT_EQ(page.query.TELOGetQueryFormatListNext(), "b,x");
    EXPECT_EQ(page.query.TELOGetQueryFormatListNext(), "A,y");
    EXPECT_EQ(page.query.TELOGetQueryFormatListNext(), "");
  });
}

TEST(ExtendedArchives, AreWalkedChannelByChannelRepeatedly) {
  WithAnswer({"#Mail,Letters, in", "In,open", "Out", "#Empty,none", "#Last,one", "Only,x"}, [](Page& page) {
    clsQuery& query = page.query;
    EXPECT_EQ(query.TELOGetAllArchivesExtInit(), Variant::Long(3));
    for (int round = 0; round < 2; ++round) {
      Variant channel;
      Variant description;
      Variant comment = kUntouched;
      EXPECT_EQ(query.TELOGetAllArchivesExtNext(&channel, &description), Variant::Long(2));
      EXPECT_EQ(channel, Variant("Mail"));
      EXPECT_EQ(description, Variant("Letters, in"));
      EXPECT_EQ(query.TELOGetAllArchivesExtNextArchive(&comment), "In");
      EXPECT_EQ(comment, Variant("open"));
      EXPECT_EQ(query.TELOGetAllArchivesExtNextArchive(&comment), "Out");
      EXPECT_EQ(comment, Variant(""));
      EXPECT_EQ(query.TELOGetAllArchivesExtNextArchive(), "");  // a channel begins here
      EXPECT_EQ(query.TELOGetAllArchivesExtNext(&channel), Variant::Long(0));
      EXPECT_EQ(channel, Variant("Empty"));
      EXPECT_EQ(query.TELOGetAllArchivesExtNext(&channel), Variant::Long(1));  // archives are passed over
      EXPECT_EQ(query.TELOGetAllArchivesExtNext(&channel, &description), kFailed);
      EXPECT_EQ(channel, Variant(""));
      EXPECT_EQ(description, Variant(""));
      EXPECT_EQ(page.Log().find("Processing error"), std::string::npos) << page.Log();
      query.TELOGetAllArchivesExtFirst();
    }
  });
}

TEST(ExtendedArchives, FailThroughTheirHandlersAtTheEndAndWithoutAComma) {
  WithAnswer({"#NoComma", "a"}, [](Page& page) {
    clsQuery& query = page.query;
    EXPECT_EQ(query.TELOGetAllArchivesExtInit(), Variant::Long(1));
    Variant channel;
    Variant description;
    EXPECT_EQ(query.TELOGetAllArchivesExtNext(&channel), kFailed);
    EXPECT_NE(page.Log().find("Processing error in function 'TELOGetAllArchivesExtNext()': 5 - "), std::string::npos);
    EXPECT_EQ(query.TELOGetAllArchivesExtNext(nullptr, &description), Variant::Long(1));
    EXPECT_EQ(description, Variant("#NoComma"));
    EXPECT_EQ(query.TELOGetAllArchivesExtNextArchive(), "a");
    Variant comment = kUntouched;
    EXPECT_EQ(query.TELOGetAllArchivesExtNextArchive(&comment), "");
    EXPECT_EQ(comment, Variant(""));
    EXPECT_NE(page.Log().find("'TELOGetAllArchivesExtNextArchive()': 9 - Subscript out of range"), std::string::npos);
  });
}

TEST(ArchiveProperties, AreReturnedAsText) {
  WithAnswers({Answer({"1,0,,x,index"}), Answer({}), Answer({"1,0,1"})}, [](Page& page) {
    Variant out[5];
    const auto read = [&] {
      out[3] = kUntouched;
      out[4] = kUntouched;
      return page.query.TELOGetArchiveProperties("C", "A", &out[0], &out[1], &out[2], &out[3], &out[4]);
    };
    EXPECT_EQ(read(), Variant("index"));
    EXPECT_EQ(page.LastCommand(), "^GetArchiveProperties^,^C^,^A^");
    EXPECT_THAT(out, ::testing::ElementsAre("1", "0", "", "x", ""));
    EXPECT_EQ(read(), kFailed);  // an empty answer
    EXPECT_EQ(out[4], Variant(""));
    EXPECT_EQ(read(), kFailed);  // too few fields: those that are there were written
    EXPECT_THAT(out, ::testing::ElementsAre("1", "0", "1", kUntouched, kUntouched));
    EXPECT_NE(page.Log().find("'TELOGetArchiveProperties()': 9 - "), std::string::npos);
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
