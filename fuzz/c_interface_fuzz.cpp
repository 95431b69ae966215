// Calls of the C interface in any order, wrong ones included, with any answer. Input: steps of three characters (a
// letter of Do(), the place of a handle, an argument), a line end, the answer to all requests. Every call returns a
// code of the header other than that of an internal error, and every text that it hands out is UTF-8.
#include <array>
#include <cstdint>
#include <string>
#include <thread>

#include "automation/c/oxaqrycln.h"
#include "fuzz/answering_page.h"
#include "values/code_page.h"

using namespace oxaqrycln;
using namespace oxaqrycln::fuzz;

namespace {

constexpr int kMostRequests = 4;  // a request costs more than all other calls
constexpr std::size_t kMostSteps = 96;

// What a caller may do without touching files or a database. The first kRequests send a request.
constexpr std::array kMembers = {"TELOGetAllArchivesExtInit",
                                 "TELOGetChannelsInit",
                                 "TELOGetNotesInit",
                                 "TELOGetSegmentsInit",
                                 "TELOQueryArchiveInit",
                                 "LiveCheck",
                                 "OstranaQueryFahrauftraegeInit",
                                 "TELOGetArchiveProperties",
                                 "TELOGetAllArchivesExtNext",
                                 "TELOGetAllArchivesExtNextArchive",
                                 "TELOGetChannelsNext",
                                 "TELOGetNotesNext",
                                 "TELOGetSegmentsNext",
                                 "TELOQueryArchiveNext",
                                 "TELOSortHitlistInit",
                                 "TELOSortHitlistNext",
                                 "TELOSortHitlist2Init",
                                 "TELOSortHitlist2Next",
                                 "TELODeleteFromHitlist",
                                 "OstranaQueryFahrauftraegeNext",
                                 "HelloWorld",
                                 "Encode",
                                 "EncryptBase64",
                                 "OnStartPage",
                                 "OnEndPage",
                                 "WriteLog",
                                 "lngRequestTimeout",
                                 "strSessionID",
                                 "strTELOUser",
                                 "datUserLoginTime",
                                 "strDES56Key",
                                 "RemoteHosts",
                                 "nothing"};
constexpr std::size_t kRequests = 8;

class Caller {
 public:
  Caller() {
    for (oxaqry_value*& value : values_) Check(oxaqry_value_new(&value));
    MakeFirstQuery();
  }

  void Run(std::string_view answer) {
    const std::string_view steps = CutOff(answer, "\n");
    answerer_.SetAnswer(answer);
    requests_ = 0;
    for (std::size_t at = 0; at + 3 <= steps.size() && at < 3 * kMostSteps; at += 3) {
      Check(Do(steps[at], static_cast<std::uint8_t>(steps[at + 1]), static_cast<std::uint8_t>(steps[at + 2])));
      Require(oxaqry_last_error() != nullptr, "there is always a text of the last error");
    }
    // Everything is as at first, so that an input does the same whatever came before.
    for (std::size_t i = 0; i < queries_.size(); ++i) {
      oxaqry_query_free(queries_[i]);
      if (i != 0) queries_[i] = nullptr;
    }
    for (oxaqry_rows*& rows : rows_) oxaqry_rows_free(std::exchange(rows, nullptr));
    for (oxaqry_value*& value : values_) {
      oxaqry_value_free(value);
      Check(oxaqry_value_new(&value));
    }
    MakeFirstQuery();
  }

 private:
  // One that is ready for requests.
  void MakeFirstQuery() {
    oxaqry_value* value = values_[0];
    const std::string hosts = answerer_.Host();
    Check(oxaqry_query_new(queries_.data()));
    Check(oxaqry_value_set_text(value, hosts.data(), hosts.size(), OXAQRY_UTF8));
    Check(oxaqry_set_variable(queries_[0], MemberOf("RemoteHosts"), value));
    Check(oxaqry_value_set_long(value, 10));
    Check(oxaqry_set_variable(queries_[0], MemberOf("lngRequestTimeout"), value));
    Check(oxaqry_value_set_boolean(value, 0));
    Check(oxaqry_call(queries_[0], MemberOf("Init"), &value, 1, nullptr));
  }
  static std::int32_t Check(std::int32_t code) {
    Require(code <= OXAQRY_OK && code > OXAQRY_E_INTERNAL, oxaqry_last_error());
    return code;
  }
  static std::int32_t MemberOf(std::string_view name) {
    std::int32_t number = 0;
    oxaqry_find_member(name.data(), name.size(), &number);
    return number;
  }
  static std::int32_t SetText(oxaqry_value* value, std::string_view text) {
    return oxaqry_value_set_text(value, text.data(), text.size(), static_cast<std::int32_t>(text.size() % 3));
  }
  // What a borrowed text holds, when the call succeeded.
  static std::int32_t IsUtf8(std::int32_t code, const char* text, std::size_t length) {
    if (code == OXAQRY_OK) Require(FromUtf8({text, length}).has_value(), "what is handed out is UTF-8");
    return code;
  }

  template <typename Handle, std::size_t kCount>
  static Handle*& At(std::array<Handle*, kCount>& handles, std::uint8_t place) {
    return handles[place % kCount];
  }

  // Of the arguments of a call, also a wrong one.
  static std::int32_t CountOf(std::uint8_t place) { return place / 3 % 15 - 1; }

  std::int32_t Do(char letter, std::uint8_t place, std::uint8_t argument) {
    oxaqry_query*& query = At(queries_, place);
    oxaqry_value*& value = At(values_, place);
    oxaqry_value* const other = At(values_, argument);
    oxaqry_rows*& rows = At(rows_, place);
    const std::size_t which = argument % kMembers.size();
    const std::int32_t member = MemberOf(kMembers[which]);
    const auto number = static_cast<std::int32_t>(argument) - 8;
    const char* text = "";
    std::size_t length = 0;
    std::int32_t code = OXAQRY_OK;
    switch (letter) {
      case 'n':
        oxaqry_query_free(query);
        return oxaqry_query_new(argument == 0 ? nullptr : &query);
      case 'f':
        return oxaqry_query_free(query);
      case 'F':
        std::thread([&] { code = argument % 2 == 0 ? oxaqry_query_free(query) : oxaqry_value_free(value); }).join();
        return code;
      case 'v':
        oxaqry_value_free(value);
        return oxaqry_value_new(&value);
      case 'w':
        return oxaqry_value_free(value);
      case 'x':
        return oxaqry_cancel(query);
      case 'y':
        return oxaqry_resume(query);
      case 'c':
        if (which < kRequests && requests_++ >= kMostRequests) return OXAQRY_OK;
        return answerer_.Ask(
            [&] { return oxaqry_call(query, member, values_.data() + place % 3, CountOf(place), other); });
      case 'C':
        return which < kRequests ? OXAQRY_OK : CallForTexts(query, member, place % 3, CountOf(place), other);
      case 'R':
        oxaqry_rows_free(rows);
        return which < kRequests ? OXAQRY_OK : Fetch(query, member, number, &rows);
      case 'r':
        return Read(rows);
      case 'D':
        return oxaqry_rows_free(rows);
      case 's':
        return oxaqry_set_variable(query, member, other);
      case 'g':
        return oxaqry_get_variable(query, member, other);
      case 't':
        code = oxaqry_value_get_text(value, number % 3, &text, &length);
        return number % 3 == OXAQRY_UTF8 ? IsUtf8(code, text, length) : code;
      case 'o':
        return IsUtf8(oxaqry_outcome_text(query, &text, &length), text, length);
      case 'h':
        return IsUtf8(oxaqry_handled_error(query, nullptr, &text, &length), text, length);
      case 'a':
        return oxaqry_attempt(query, number, &text, &length, nullptr, nullptr, nullptr, nullptr);
      case 'S':
        return oxaqry_server(query, number, &text, &length, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
      default:
        return SetValue(letter, value, argument);
    }
  }

  std::int32_t CallForTexts(oxaqry_query* query, std::int32_t member, std::size_t first, std::int32_t count,
                            oxaqry_value* result) {
    std::array<const char*, 14> texts{};
    std::array<std::size_t, 14> lengths{};
    const std::int32_t code = oxaqry_call_for_texts(query, member, values_.data() + first, count, result, OXAQRY_UTF8,
                                                    texts.data(), lengths.data());
    const std::size_t given = code == OXAQRY_OK ? static_cast<std::size_t>(count) + 1 : 0;
    for (std::size_t i = 0; i < given; ++i) IsUtf8(code, texts.at(i), lengths.at(i));
    return code;
  }

  std::int32_t SetValue(char letter, oxaqry_value* value, std::uint8_t argument) {
    const std::string text(argument, static_cast<char>(argument));
    std::int32_t number = 0;
    std::int64_t seconds = 0;
    switch (letter) {
      case '0':
        return oxaqry_value_set_null(value);
      case '1':
        return oxaqry_value_set_long(value, argument - 2);
      case '2':
        return oxaqry_value_set_double(value, 1e300 / (argument - 48) * 1e10);
      case '3':
        return oxaqry_value_set_date(value, static_cast<std::int64_t>(std::uint64_t{argument} << (argument % 64U)));
      case '4':
        return oxaqry_value_set_bytes(value, text.data(), text.size());
      case '5':
        return oxaqry_value_set_request(value, text.data(), text.size());
      case '6':
        return oxaqry_value_get_long(value, &number);
      case '7':
        return oxaqry_value_get_date(value, &seconds);
      default:
        return SetText(value, text);
    }
  }

  std::int32_t Fetch(oxaqry_query* query, std::int32_t member, std::int32_t max, oxaqry_rows** rows) {
    constexpr std::array<std::int32_t, 3> kColumns = {1, 0, 2};
    const std::int32_t count = max % 4;
    return oxaqry_fetch_rows(query, member, max, kColumns.data(), count, max % 2, max % 3, rows);
  }

  std::int32_t Read(oxaqry_rows* rows) {
    std::int32_t rowCount = 0;
    std::int32_t columnCount = 0;
    const char* block = nullptr;
    const std::uint32_t* offsets = nullptr;
    const std::int32_t code = oxaqry_rows_read(rows, &rowCount, &columnCount, &block, &offsets);
    for (std::int32_t i = 0; code == OXAQRY_OK && i < rowCount * columnCount; ++i) {
      Require(offsets[i] <= offsets[i + 1], "offsets ascend");
      Require(std::string(block + offsets[i], block + offsets[i + 1]).size() == offsets[i + 1] - offsets[i],
              "the texts can be read");
    }
    return code;
  }

  Answerer answerer_;
  int requests_ = 0;
  std::array<oxaqry_query*, 3> queries_{};
  std::array<oxaqry_value*, 18> values_{};
  std::array<oxaqry_rows*, 2> rows_{};
};

}  // namespace

void oxaqrycln::fuzz::Run(std::string_view input) {
  static auto* const caller = new Caller;  // NOLINT: its handles end with their thread
  caller->Run(input);
}
