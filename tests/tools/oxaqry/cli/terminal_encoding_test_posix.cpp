#include "tools/oxaqry/cli/terminal_encoding.h"

#include <gtest/gtest.h>

#include <sstream>

namespace oxaqrycln::oxaqry {
namespace {

TEST(EncodedStream, ConvertsCharactersThatArriveInPieces) {
  std::ostringstream stream;
  std::streambuf* const former = stream.rdbuf();
  {
    const EncodedStream encoded(stream, "ISO-8859-15");
    stream << "Gr\xC3" << '\xBC' << std::flush
           << "\xC3\x9F"
              "e, 5 \xE2\x82\xAC, \xE4\xB8\xAD\xE4\xBA\xBA\n"
           << std::string(5000, 'x');
    stream << "\xE2\x82";
  }
  EXPECT_EQ(stream.rdbuf(), former);
  EXPECT_EQ(stream.str(),
            "Gr\xFC\xDF"
            "e, 5 \xA4, ??\n" +
                std::string(5000, 'x') + "\xE2\x82");
}

TEST(EncodedStream, LeavesTextForAnUnknownEncoding) {
  std::ostringstream stream;
  const EncodedStream encoded(stream, "no such encoding");
  stream << "Gr\xC3\xBC\xC3\x9F"
            "e";
  EXPECT_EQ(stream.str(),
            "Gr\xC3\xBC\xC3\x9F"
            "e");
}

}  // namespace
}  // namespace oxaqrycln::oxaqry
