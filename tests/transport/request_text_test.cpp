#include "transport/request_text.h"

#include <gtest/gtest.h>

#include "support/text_helpers.h"
#include "tests/support/requester.h"

namespace oxaqrycln::testing {
namespace {

TEST(BuildRequest, QuotesEveryElementWhateverItsType) {
  Requester page("");
  struct Case {
    const char* name;
    std::vector<Variant> elements;
    const char* text;
  };
  for (const Case& each : {Case{"no element", {}, ""}, Case{"command alone", {"GetChannels"}, "^GetChannels^"},
                           Case{"numbers", {"QueryArchive", "A", 5, 2.5}, "^QueryArchive^,^A^,^5^,^2.5^"},
                           Case{"empty text", {"X", ""}, "^X^,^^"}, Case{"empty first", {"", "a"}, "^^,^a^"},
                           Case{"Empty, Null and Boolean", {Variant(), Variant::Null(), true}, "^^,^^,^True^"},
                           Case{"separator inside", {"X", "a^,^b"}, "^X^,^a^,^b^"},
                           Case{"stops at what has no text", {"X", Missing, "y"}, "^X^"}}) {
    EXPECT_EQ(BuildRequest(each.elements, page.log), each.text) << each.name;
  }
}

TEST(BuildRequestPre, TakesTheServersOwnAccountWhereItHasOne) {
  Requester page("h,1|h,1,1,u," + Encode("p") + "|h,1,1,v");
  const auto prefix = [&](std::int32_t server) {
    return BuildRequestPre(server, page.apartment->servers, {page.session, page.user, page.password}, page.log);
  };
  EXPECT_EQ(prefix(1), "^S1^,^webuser^,^" + Encode("secret") + "^");
  EXPECT_EQ(prefix(2), "^S1^,^u^,^" + Encode("p") + "^");
  EXPECT_EQ(prefix(3), "^S1^,^v^,^^");  // its own user, so its own empty password
  EXPECT_EQ(prefix(4), "");
}

}  // namespace
}  // namespace oxaqrycln::testing
