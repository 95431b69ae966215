// Files taken out of web forms, and files sent to the query server.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "archive/multipart_body.h"
#include "component/scripting_context.h"
#include "tests/support/page.h"
#include "values/errors.h"

namespace oxaqrycln::testing {
namespace {

// The request of a page, with a body that is given out in pieces of at most pieceSize bytes. The client has announced
// unsent bytes more.
class FormRequest final : public PageRequest {
 public:
  FormRequest(std::string body, std::size_t pieceSize, std::size_t unsent)
      : body_(std::move(body)), pieceSize_(pieceSize), unsent_(unsent) {}
  std::int64_t TotalBytes() const override { return static_cast<std::int64_t>(body_.size() + unsent_); }
  Variant::Bytes BinaryRead(std::int64_t byteCount) override {
    const std::size_t count = std::min({static_cast<std::size_t>(byteCount), pieceSize_, body_.size() - position_});
    Variant::Bytes piece(body_.begin() + static_cast<std::ptrdiff_t>(position_),
                         body_.begin() + static_cast<std::ptrdiff_t>(position_ + count));
    position_ += count;
    if (count == 0 && ++emptyReads_ > 1) throw RuntimeError(error::kInputPastEnd, "read on behind the end");
    return piece;
  }

 private:
  const std::string body_;
  const std::size_t pieceSize_;
  const std::size_t unsent_;
  std::size_t position_ = 0;
  int emptyReads_ = 0;
};

struct FormPage final : ScriptingContext {
  explicit FormPage(std::shared_ptr<PageRequest> form) : request(std::move(form)) {}
  std::shared_ptr<PageRequest> Request() override { return request; }
  std::shared_ptr<PageRequest> request;
};

Variant PageWithForm(const std::string& body, std::size_t pieceSize = 100, std::size_t unsent = 0) {
  return Variant::ObjectRef(std::make_shared<FormPage>(std::make_shared<FormRequest>(body, pieceSize, unsent)));
}

std::string Part(const std::string& boundary, const std::string& disposition, const std::string& content) {
  return boundary + "\r\nContent-Disposition: form-data; name=\"f\"" + disposition + "\r\nContent-Type: x/y\r\n\r\n" +
         content + "\r\n";
}

// A form with the file a.pdf.
std::string FileForm(const std::string& content) { return Part("--B", "; filename=\"a.pdf\"", content) + "--B--"; }

struct Body {
  const char* name;
  std::string body;
  Variant result;
  const char* stored;  // the name that is reported
  std::string content;
  const char* error = "";  // what the log holds about a failure
  std::size_t unsent = 0;
};

class UploadedForm : public ::testing::TestWithParam<std::size_t> {};

TEST_P(UploadedForm, StoresItsFirstFileWhateverTheSizeOfThePieces) {
  const std::string b = "--XyZ";
  const std::string end = b + "--\r\n";
  const std::string file = Part(b, "; filename=\"a.pdf\"", "content");
  const std::string any("\0\xFF\r\n\r\n--Xy\r\n--XyZZ\r\n--XyZ \r--XyZ--", 34);
  const Variant one = Variant::Long(1);
  for (const Body& each :
       {Body{"plain", file + end, one, "a.pdf", "content"},
        Body{"client path", Part(b, "; filename=\"C:\\docs\\a.pdf\"", "1") + end, one, "a.pdf", "1"},
        Body{"other client path", Part(b, "; FileName=\"/home/u/A.pdf\"", "1") + end, one, "A.pdf", "1"},
        Body{"unquoted", Part(b, ";filename=a.txt; x=y", "1") + end, one, "a.txt", "1"},
        Body{"any bytes, boundary texts inside", Part(b, "; filename=\"a\"", any) + end, one, "a", any},
        Body{"empty file", Part(b, "; filename=\"a\"", "") + end, one, "a", ""},
        Body{"second part", Part(b, "", "text") + Part(b, "; filename=\"\"", "") + file + end, one, "a.pdf", "content"},
        Body{"first of two files", file + Part(b, "; filename=\"b\"", "no") + end, one, "a.pdf", "content"},
        Body{"name in another value", Part(b, "; x=\" filename=b\"; filename=\"c\"", "1") + end, one, "c", "1"},
        Body{"boundary with quotes", Part("--'()+_,-./:=?", "; filename=\"a\"", "1") + "--'()+_,-./:=?--", one, "a",
             "1"},
        Body{"no file", Part(b, "; filename=\"\"", "x") + Part(b, "", "y") + end, Variant::Long(0), "kept", ""},
        Body{"only a directory", Part(b, "; filename=\"C:\\docs\\\"", "x") + end, Variant::Long(0), "kept", ""},
        Body{"no closing boundary", file.substr(0, file.size() - 2), kFailed, "kept", ""},
        Body{"cut in the closing boundary", file + b, kFailed, "kept", ""},
        Body{"header only", b + "\r\nContent-Disposition: form-data; filename=\"a\"\r\n", kFailed, "kept", ""},
        Body{"no form", std::string(5000, 'x'), kFailed, "kept", ""},
        Body{"no boundary", "\r\n\r\nx", kFailed, "kept", ""},
        Body{"no body", "", kFailed, "kept", ""},
        Body{"device name", Part(b, "; filename=\"NUL.txt\"", "x") + end, kFailed, "kept", ""},
        Body{"client gone", file, kFailed, "kept", "", "5 - The body of the form ended before", 1000},
        Body{"long header", Part(b, "; filename=\"a\"; x=" + std::string(70'000, 'x'), "x") + end, kFailed, "kept", "",
             "5 - The header of a part"},
        Body{"open quote", Part(b, "; filename=\"a", "x") + end, kFailed, "kept", "",
             "5 - The file name of a form has no closing"}}) {
    WithAnswer({}, [&](Page& page) {
      page.query.OnStartPage(PageWithForm(each.body, GetParam(), each.unsent));
      Variant name = "kept";
      Variant size = "kept";
      EXPECT_EQ(page.query.UploadFile(Missing, &name, &size), each.result) << each.name << page.Log();
      EXPECT_EQ(name, Variant(each.stored)) << each.name;
      const bool stored = each.result == one;
      EXPECT_EQ(std::filesystem::is_empty(page.blobs.path()), !stored) << each.name;
      EXPECT_NE(page.Log().find(each.error), std::string::npos) << each.name << page.Log();
      if (!stored) return;
      EXPECT_EQ(page.blobs.Read(each.stored), each.content) << each.name;
      EXPECT_EQ(size, Variant::Long(static_cast<std::int32_t>(each.content.size()))) << each.name;
    });
  }
}

INSTANTIATE_TEST_SUITE_P(Pieces, UploadedForm, ::testing::Values(1, 7, 1U << 20U));

TEST(UploadFile, PrependsThePrefixReplacesAnOlderFileAndNeedsAPage) {
  WithAnswer({}, [](Page& page) {
    const auto upload = [&](const Variant& prefix, const char* content) {
      page.query.OnStartPage(PageWithForm(FileForm(content)));
      Variant name = "";
      const Variant result = page.query.UploadFile(prefix, &name);
      return IsSame(result, Variant::Long(1)) ? name.ToText() : result.ToText();
    };
    EXPECT_EQ(upload("", "x"), "_a.pdf");
    EXPECT_EQ(upload(42, "first"), "42_a.pdf");
    EXPECT_EQ(upload(42, "second"), "42_a.pdf");
    EXPECT_EQ(page.blobs.Read("42_a.pdf"), "second");
    EXPECT_NE(page.Log().find("Uploading file '" + page.blobs.path() + "\\42_a.pdf'"), std::string::npos);
    for (const char* prefix : {"..\\up", "sub/dir", "C:"}) EXPECT_EQ(upload(prefix, "x"), "-1") << prefix;
    page.query.OnEndPage();
    EXPECT_EQ(page.query.UploadFile(), kFailed);
    EXPECT_NE(page.Log().find("'UploadFile()': 91 - "), std::string::npos);
    const auto context = std::make_shared<FormPage>(nullptr);
    page.query.OnStartPage(context);
    EXPECT_EQ(context.use_count(), 2);
    page.query.OnEndPage();
    EXPECT_EQ(context.use_count(), 1);
    page.query.OnStartPage("no object");
    EXPECT_NE(page.Log().find("'OnStartPage()': 13 - "), std::string::npos);
  });
}

TEST(UploadFile, ThatCannotReplaceADirectoryChangesNothing) {
  WithAnswer({}, [](Page& page) {
    std::filesystem::create_directory(page.blobs.File("a.pdf"));
    page.query.OnStartPage(PageWithForm(FileForm("new")));
    EXPECT_EQ(page.query.UploadFile(), kFailed);
    EXPECT_TRUE(std::filesystem::is_directory(page.blobs.File("a.pdf")));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(page.blobs.path()), {}), 1);
  });
}

TEST(TELOUploadFile, SendsTheRequestALineEndAndTheFile) {
  for (const std::size_t byteCount : {std::size_t{0}, std::size_t{5}, std::size_t{9'000'000}}) {
    std::string content(byteCount, '\0');
    for (std::size_t i = 0; i < byteCount; ++i) content[i] = static_cast<char>(i * 31 >> 3U);
    const std::string request =
        "^S1^,^webuser^,^^,^UploadFile^,^R:\\blobs^,^f.bin^,^" + std::to_string(byteCount) + "^\r\n";
    InOwnThread([&] {
      std::string received;
      Page page({[&](Peer& peer) {
        received = peer.ReadBytes(request.size() + byteCount);
        peer.Send(Answer({}));
        peer.WaitForClose();
      }});
      page.blobs.Write("f.bin", content);
      page.query.strBlobPathRemote = "R:\\blobs";
      Variant status;
      EXPECT_EQ(page.query.TELOUploadFile("somewhere\\f.bin", &status), Variant::Long(1)) << status.ToText();
      EXPECT_EQ(status, Variant(""));
      EXPECT_TRUE(received == request + content);
    });
  }
}

// Answers before it has the whole file.
ScriptedServer::Script AnswersUpload(const std::string& answer) {
  return [answer](Peer& peer) {
    peer.ReadBytes(60);
    peer.Send(answer);
    peer.WaitForClose();
  };
}

TEST(TELOUploadFile, ReportsFailuresAndLeavesTheAnswerThatThePageIsReadingAlone) {
  InOwnThread([] {
    Page page({ScriptedServer::Replies(Answer({"a,1", "b,2"})), AnswersUpload(Framed("Status: No room")),
               [](Peer& peer) {  // closes at once, so that the file cannot be sent to its end
                 peer.ReadBytes(60);
                 peer.Send(Framed("Status: Denied"));
               },
               AnswersUpload(Answer({"x"}))});
    page.blobs.Write("f.bin", std::string(20'000'000, 'x'));  // NOLINT: more than the connection holds
    page.blobs.Write("small.bin", std::string(100, 'x'));
    page.query.TELOGetChannelsInit();
    EXPECT_EQ(page.query.TELOGetChannelsNext(), "a");
    Variant status;
    EXPECT_EQ(page.query.TELOUploadFile("f.bin", &status), kFailed);
    EXPECT_EQ(status, Variant("No room"));
    EXPECT_EQ(page.query.TELOUploadFile("f.bin", &status), kFailed);
    EXPECT_EQ(status, Variant("Denied"));
    EXPECT_EQ(page.query.TELOUploadFile("small.bin", &status), Variant::Long(1));
    EXPECT_EQ(page.query.TELOGetChannelsNext(), "b");
    EXPECT_EQ(page.query.TELOUploadFile("none.bin", &status), kFailed);
    EXPECT_NE(page.Log().find("'TELOUploadFile()': 53 - File not found"), std::string::npos);
    std::filesystem::create_directory(page.blobs.File("directory"));
    EXPECT_EQ(page.query.TELOUploadFile("directory", &status), kFailed);
    mkfifo(page.blobs.File("pipe").c_str(), 0600);
    EXPECT_EQ(page.query.TELOUploadFile("pipe", &status), kFailed);
    const std::string log = page.Log();
    EXPECT_NE(log.find("'TELOUploadFile()': 75 - "), log.rfind("'TELOUploadFile()': 75 - ")) << log;
  });
}

TEST(TELOUploadFile, FailsWhenTheFileBecomesShorterMeanwhile) {
  InOwnThread([] {
    constexpr std::size_t kByteCount = 32U << 20U;  // more than the connection holds
    std::string file;
    Page page({[&](Peer& peer) {
      peer.ReadBytes(60);
      std::filesystem::resize_file(file, 1);
      peer.ReadBytes(kByteCount);
      peer.Send(Answer({}));
    }});
    file = page.blobs.File("f.bin");
    page.blobs.Write("f.bin", "");
    std::filesystem::resize_file(file, kByteCount);
    Variant status;
    EXPECT_EQ(page.query.TELOUploadFile("f.bin", &status), kFailed);
    EXPECT_EQ(status, Variant("Winsock Error (62 - Input past end of file)"));
    EXPECT_NE(page.Log().find("Winsock error occured: 62 - "), std::string::npos) << page.Log();
  });
}

}  // namespace
}  // namespace oxaqrycln::testing
