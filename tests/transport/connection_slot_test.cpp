// What the receiver makes of every way in which an answer can arrive, over real sockets.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>

#include "tests/support/process_state.h"
#include "tests/support/requester.h"
#include "tests/support/scripted_server.h"
#include "tests/support/temporary_directory.h"

namespace oxaqrycln::testing {
namespace {

using namespace std::chrono_literals;

using ::testing::Values;

struct Arrival {
  const char* name;
  std::string bytes;
  std::size_t piece;  // bytes a packet
  std::string text;   // what the request must yield
};

void PrintTo(const Arrival& arrival, std::ostream* out) { *out << arrival.name; }

class SoundArrival : public ::testing::TestWithParam<Arrival> {};

TEST_P(SoundArrival, YieldsTheAnnouncedText) {
  const Arrival& arrival = GetParam();
  ScriptedServer server(ScriptedServer::RepliesInPieces(arrival.bytes, arrival.piece));
  Requester page(server.Host());
  ASSERT_TRUE(page.Request("^X^")) << page.error;
  EXPECT_EQ(page.text, arrival.text);
  EXPECT_EQ(page.apartment->controls.Winsock(1).State(), SocketState::Closed);
}

INSTANTIATE_TEST_SUITE_P(
    Receiver, SoundArrival,
    Values(Arrival{"one_packet", "TotalBytes:5\r\nHello", 100, "Hello"},
           Arrival{"body_over_two_packets", "TotalBytes:10\r\nHelloWorld", 20, "HelloWorld"},
           Arrival{"one_byte_at_a_time", "TotalBytes:10\r\nHelloWorld", 1, "HelloWorld"},
           Arrival{"header_cut_in_its_word", "TotalBytes:3\r\nabc", 4, "abc"},
           Arrival{"header_cut_in_its_line_end", "TotalBytes:3\r\nabc", 13, "abc"},
           Arrival{"blanks_around_the_count", "TotalBytes: 3 \r\nabc", 100, "abc"},
           Arrival{"longest_header", "TotalBytes:000000000000000000003\r\nabc", 100, "abc"},
           Arrival{"longest_header_in_pieces", "TotalBytes:000000000000000000003\r\nabc", 33, "abc"},
           Arrival{"nothing_announced", "TotalBytes:0\r\n", 100, ""},
           Arrival{"count_too_small_keeps_the_packet", "TotalBytes:2\r\nabcdef", 100, "abcdef"},
           Arrival{"no_header_ends_with_its_first_packet", "Status: OK\r\na", 100, "Status: OK\r\na"},
           Arrival{"header_word_inside_the_body", Framed("abcTotalBytes:99\r\nrest"), 16, "abcTotalBytes:99\r\nrest"},
           Arrival{"any_byte", std::string("TotalBytes:4\r\n\0\xFF\r\0", 18), 15, std::string("\0\xFF\r\0", 4)}),
    [](const auto& each) { return each.param.name; });

struct Fault {
  const char* name;
  std::string bytes;
  bool resets;          // ends with a reset instead of a close
  const char* error;    // how the error text starts
  const char* logLine;  // what the log must hold besides
  std::size_t piece = 100;
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

class FaultyAnswer : public ::testing::TestWithParam<Fault> {};

TEST_P(FaultyAnswer, EndsInOneErrorAndTheNextRequestWorks) {
  const Fault& fault = GetParam();
  ScriptedServer server({[&](Peer& peer) {
                           peer.ReadRequest();
                           peer.SendInPieces(fault.bytes, fault.piece);
                           if (fault.resets) peer.Reset();
                         },
                         ScriptedServer::Replies(Framed("fine"))});
  Requester page(server.Host());
  EXPECT_FALSE(page.Request("^X^"));
  EXPECT_EQ(page.error.rfind(fault.error, 0), 0U) << page.error;
  EXPECT_NE(page.Log().find(fault.logLine), std::string::npos) << page.Log();
  EXPECT_TRUE(page.Request("^Y^")) << page.error;
  EXPECT_EQ(page.text, "fine");
}

constexpr const char* kResetText = "Winsock Error (10054 - ";
constexpr const char* kReceiverFailed = "Processing error in function 'Winsock_DataArrival()': ";

INSTANTIATE_TEST_SUITE_P(
    Receiver, FaultyAnswer,
    Values(Fault{"closes_without_a_byte", "", false, kResetText, "### <ERROR> Winsock error occured: 10054"},
           Fault{"closes_in_the_header", "TotalBy", false, kResetText, "### <ERROR> Winsock error occured: 10054"},
           Fault{"closes_in_the_body", "TotalBytes:99\r\nabc", false, kResetText,
                 "First string packet received: 3 bytes"},
           Fault{"resets_in_the_body", "TotalBytes:99\r\nabc", true, kResetText, "Releasing server #1"},
           Fault{"count_too_large", "TotalBytes:200000\r\nabc", false, kResetText, "First string packet"},
           Fault{"count_is_text", "TotalBytes:many\r\nabc", false, kResetText, kReceiverFailed},
           Fault{"count_is_text_before_more_packets", "TotalBytes:many\r\nabc", false, kResetText, kReceiverFailed, 17},
           Fault{"count_is_missing", "TotalBytes:\r\nabc", false, kResetText, kReceiverFailed},
           Fault{"count_is_negative", "TotalBytes:-5\r\nabc", false, kResetText, kReceiverFailed},
           Fault{"count_beyond_31_bits", "TotalBytes:2147483648\r\nabc", false, kResetText, kReceiverFailed},
           Fault{"header_never_ends", "TotalBytes:" + std::string(40, '1'), false, kResetText, kReceiverFailed}),
    [](const auto& each) { return each.param.name; });

TEST(Receiver, MakesMemoryOnlyAsTheBytesCome) {
  ScriptedServer server(ScriptedServer::Replies("TotalBytes:2147483647\r\n" + std::string(100'000, 'a')));
  Requester page(server.Host());
  const std::size_t before = ResidentBytes();
  std::size_t most = 0;
  EventLoop& loop = page.apartment->loop;
  const ConnectionSlot& slot = page.apartment->controls.Slot(1);
  const std::function<void()> watch = [&] {
    most = std::max(most, ResidentBytes());
    if (slot.bytesReceived == 100'000) return page.apartment->clock.Advance(20s);
    loop.Post(watch);
  };
  loop.Post(watch);
  EXPECT_FALSE(page.Request("^X^"));
  EXPECT_EQ(page.error, "Timeout of 10 seconds occured while waiting for server response");
  EXPECT_LT(most, before + (8U << 20U));
}

TEST(Receiver, PutsALargeAnswerTogetherWhole) {
  std::string text;
  for (int i = 0; text.size() < 3'000'000; ++i) text += "line " + std::to_string(i) + "\r\n";
  ScriptedServer server(ScriptedServer::RepliesInPieces(Framed(text), 70'001));
  Requester page(server.Host());
  ASSERT_TRUE(page.Request("^X^")) << page.error;
  EXPECT_TRUE(page.text == text);
}

TEST(Receiver, WritesAFileTransferToTheFileOfItsSlot) {
  const TemporaryDirectory directory;
  const std::string content("a\0TotalBytes:1\r\nb", 17);
  ScriptedServer server(ScriptedServer::RepliesInPieces(content, 5));
  Requester page(server.Host());
  OpenFiles& files = page.apartment->controls.Files();
  const FileReceipt receipt{files.OpenForWriting(directory.File("received")),
                            static_cast<std::int32_t>(content.size())};
  EXPECT_TRUE(page.execution.Request({.request = "^TransferBLOB^,^x^", .receipt = receipt}, &page.error)) << page.error;
  files.Close(receipt.file);
  EXPECT_EQ(directory.Read("received"), content);
  EXPECT_NE(page.Log().find("Winsock(1): All packets received: 17 bytes in total"), std::string::npos);
}

}  // namespace
}  // namespace oxaqrycln::testing
