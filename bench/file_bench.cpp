// Files of 64 MiB over the connection and from a form compared with plain loops; the cost of a segment in a long walk.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "bench/bench_query.h"
#include "bench/plain_client.h"
#include "component/scripting_context.h"
#include "platform/files/files.h"

namespace oxaqrycln::bench {
namespace {

constexpr std::size_t kFileSize = 64U << 20U;

// Removed at the end of the program, with all files.
const std::string& BlobDirectory() {
  struct Directory {
    Directory() : path((std::filesystem::temp_directory_path() / ("oxaqrycln-bench-" + std::string(6, 'X'))).string()) {
      if (mkdtemp(path.data()) == nullptr) std::abort();
    }
    ~Directory() { std::filesystem::remove_all(path); }
    std::string path;
  };
  static Directory directory;
  return directory.path;
}

struct FileQuery : BenchQuery {
  FileQuery() {
    query.strBlobPathLocal = BlobDirectory();
    query.strBlobPathRemote = "R:";
  }
};

const std::string& FileName() {
  static const std::string name = "blob-" + std::to_string(kFileSize);
  return name;
}

void SetBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kFileSize));
}

void PlainTransfer(benchmark::State& state) {
  const std::string request = "^S1^,^webuser^,^^,^TransferBLOB^,^R:\\" + FileName() + "^";
  for (auto _ : state) {
    if (!PlainReceiveFile(TheServer().port(), request, BlobDirectory() + "/" + FileName(), kFileSize)) {
      state.SkipWithError("cut short");
    }
  }
  SetBytes(state);
}
BENCHMARK(PlainTransfer)->UseRealTime();

void ComponentTransfer(benchmark::State& state) {
  FileQuery page;
  for (auto _ : state) {
    if (page.query.TELOTransferBLOB(FileName(), static_cast<std::int32_t>(kFileSize)) != Variant::Long(1)) {
      state.SkipWithError("the transfer failed");
    }
  }
  SetBytes(state);
}
BENCHMARK(ComponentTransfer)->UseRealTime();

void PrepareUpload() {
  std::ofstream(BlobDirectory() + "/upload.bin", std::ios::binary) << std::string(kFileSize, 'u');
}

void PlainUpload(benchmark::State& state) {
  PrepareUpload();
  const std::string request =
      "^S1^,^webuser^,^^,^UploadFile^,^R:^,^upload.bin^,^" + std::to_string(kFileSize) + "^\r\n";
  for (auto _ : state) {
    if (!PlainSendFile(TheServer().port(), request, BlobDirectory() + "/upload.bin")) state.SkipWithError("refused");
  }
  SetBytes(state);
}
BENCHMARK(PlainUpload)->UseRealTime();

void ComponentUpload(benchmark::State& state) {
  PrepareUpload();
  FileQuery page;
  for (auto _ : state) {
    if (page.query.TELOUploadFile("upload.bin") != Variant::Long(1)) state.SkipWithError("the upload failed");
  }
  SetBytes(state);
}
BENCHMARK(ComponentUpload)->UseRealTime();

class Form final : public PageRequest {
 public:
  explicit Form(const std::string& body) : body_(body) {}
  std::int64_t TotalBytes() const override { return static_cast<std::int64_t>(body_.size()); }
  Variant::Bytes BinaryRead(std::int64_t byteCount) override {
    const auto from = body_.begin() + position_;
    const std::int64_t count = std::min(byteCount, TotalBytes() - position_);
    position_ += count;
    return {from, from + count};
  }

 private:
  const std::string& body_;
  std::int64_t position_ = 0;
};

struct FormPage final : ScriptingContext {
  std::shared_ptr<PageRequest> Request() override { return std::make_shared<Form>(*body); }
  const std::string* body = nullptr;
};

const std::string& FormBody() {
  static const std::string body = [] {
    std::string content(kFileSize, '\0');
    std::uint64_t random = 1;
    for (char& each : content) {
      random = random * 6364136223846793005U + 1442695040888963407U;
      each = static_cast<char>(random >> 56U);
    }
    return "--boundary\r\nContent-Disposition: form-data; name=\"f\"; filename=\"form.bin\"\r\n\r\n" + content +
           "\r\n--boundary--\r\n";
  }();
  return body;
}

void PlainForm(benchmark::State& state) {
  const std::string& body = FormBody();
  for (auto _ : state) {
    Form form(body);
    OutputFile file(BlobDirectory() + "/form.bin");
    for (auto piece = form.BinaryRead(1 << 20); !piece.empty(); piece = form.BinaryRead(1 << 20)) {
      file.Write({reinterpret_cast<const char*>(piece.data()), piece.size()});
    }
    file.Close();
  }
  SetBytes(state);
}
BENCHMARK(PlainForm)->UseRealTime();

void ComponentForm(benchmark::State& state) {
  const auto context = std::make_shared<FormPage>();
  context->body = &FormBody();
  FileQuery page;
  for (auto _ : state) {
    page.query.OnStartPage(context);
    if (page.query.UploadFile() != Variant::Long(1)) state.SkipWithError("the form was refused");
  }
  SetBytes(state);
}
BENCHMARK(ComponentForm)->UseRealTime();

void SegmentWalk(benchmark::State& state) {
  const auto segments = static_cast<std::int32_t>(state.range(0));
  BenchQuery page;
  Variant index;
  Variant name;
  for (auto _ : state) {
    state.PauseTiming();
    const Variant count = page.query.TELOGetSegmentsInit("Mail", "Inbox", "segments:" + std::to_string(segments), 1);
    state.ResumeTiming();
    std::int32_t walked = 0;
    while (!page.query.TELOGetSegmentsNext(nullptr, nullptr, nullptr, nullptr, &index, nullptr, &name).empty())
      ++walked;
    if (count != Variant::Long(segments) || walked != segments) state.SkipWithError("segments are missing");
  }
  state.SetItemsProcessed(state.iterations() * segments);
}
BENCHMARK(SegmentWalk)->Arg(1000)->Arg(100'000)->UseRealTime();

}  // namespace
}  // namespace oxaqrycln::bench
