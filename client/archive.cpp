#include "client/archive.h"

#include <array>
#include <utility>

#include "client/blob_files.h"
#include "client/query_access.h"
#include "client/text.h"
#include "component/server_check.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::client {
namespace {

bool IsTrue(const Variant& output) {
  const std::string text = UpperCase(output.ToText());
  return !text.empty() && text != "0" && text != "FALSE";
}

std::int32_t Number32(const Variant& output) { return static_cast<std::int32_t>(NumberOf(output)); }

// "10=Title;14=Date" comes as "10,14" and "Title,Date".
std::vector<std::pair<std::string, std::string>> LayoutOf(const std::string& keys, const std::string& values) {
  const std::vector<std::string_view> keyList = Split(keys, ',');
  const std::vector<std::string_view> valueList = Split(values, ',');
  std::vector<std::pair<std::string, std::string>> layout;
  for (std::size_t i = 0; i < keyList.size() && i < valueList.size(); ++i) {
    layout.emplace_back(keyList[i], valueList[i]);
  }
  return layout;
}

std::vector<std::string> ColumnsOf(const std::string& row) {
  std::vector<std::string> columns = Fields(row);
  for (std::string& column : columns) column = ToUtf8(column);
  return columns;
}

// Whether the rights allow no archive. The server would take such an expression for no restriction.
bool AllowNothing(const std::optional<std::string>& folderRights) {
  return folderRights && folderRights->find_first_not_of("; ") == std::string::npos;
}

}  // namespace

Archive::Archive(const Settings& settings) : settings_(settings), access_(std::make_unique<QueryAccess>(settings)) {}

Archive::~Archive() = default;
Archive::Archive(Archive&&) noexcept = default;
Archive& Archive::operator=(Archive&&) noexcept = default;

std::vector<Channel> Archive::Channels() {
  QueryAccess& query = *access_;
  std::vector<Channel> channels;
  query.ForEach(query.Count(query->TELOGetChannelsInit(query.status())), "channel", [&] {
    Variant description;
    const std::string name = query->TELOGetChannelsNext(&description);
    channels.push_back({ToUtf8(name), TextOf(description), {}});
  });
  return channels;
}

std::vector<Channel> Archive::Archives() {
  QueryAccess& query = *access_;
  std::vector<Channel> channels;
  query.ForEach(query.Count(query->TELOGetAllArchivesExtInit(query.status())), "channel", [&] {
    Variant name;
    Variant description;
    const std::int32_t archiveCount = query->TELOGetAllArchivesExtNext(&name, &description).ToLong();
    Channel channel{TextOf(name), TextOf(description), {}};
    query.ForEach(archiveCount, "archive", [&] {
      Variant comment;
      const std::string archive = query->TELOGetAllArchivesExtNextArchive(&comment);
      channel.archives.push_back({ToUtf8(archive), TextOf(comment)});
    });
    channels.push_back(std::move(channel));
  });
  return channels;
}

std::vector<std::string> Archive::Formats(std::string_view channel, std::string_view archive) {
  QueryAccess& query = *access_;
  std::vector<std::string> formats;
  const std::int32_t count = query.Count(query->TELOGetQueryFormatListInit(
      RequestText(channel, "the channel"), RequestText(archive, "the archive"), query.status()));
  query.ForEach(count, "query format", [&] { formats.push_back(ToUtf8(query->TELOGetQueryFormatListNext())); });
  return formats;
}

ArchiveProperties Archive::Properties(std::string_view channel, std::string_view archive) {
  QueryAccess& query = *access_;
  std::array<Variant, 4> can;
  const Variant fifth =
      query->TELOGetArchiveProperties(RequestText(channel, "the channel"), RequestText(archive, "the archive"),
                                      can.data(), &can[1], &can[2], &can[3], query.status());
  query.Count(fifth);
  return {IsTrue(can[0]), IsTrue(can[1]), IsTrue(can[2]), IsTrue(can[3]), TextOf(fifth)};
}

std::vector<Mask> Archive::Masks(std::string_view channel, std::string_view archive) {
  QueryAccess& query = *access_;
  std::vector<Mask> masks;
  const std::int32_t count = query.Count(query->TELOGetMasksInit(RequestText(channel, "the channel"),
                                                                 RequestText(archive, "the archive"), query.status()));
  query.ForEach(count, "mask", [&] {
    Variant name;
    const std::int32_t fieldCount = query->TELOGetMasksNext(&name).ToLong();
    Mask mask{TextOf(name), {}};
    query.ForEach(fieldCount, "mask field", [&] {
      std::array<Variant, 8> out;
      query->TELOGetMasksNextField(out.data(), &out[1], &out[2], &out[3], &out[4], &out[5], &out[6], &out[7]);
      mask.fields.push_back({Number32(out[0]), Number32(out[1]), TextOf(out[2]), TextOf(out[3]), IsTrue(out[4]),
                             TextOf(out[5]), IsTrue(out[6]), TextOf(out[7])});
    });
    masks.push_back(std::move(mask));
  });
  return masks;
}

HitList Archive::Search(const SearchOptions& options) {
  HitList list = ReadHits(options);
  if (!options.sort.empty() && !list.columns().empty()) list.Sort(list.Column(options.sort), options.order);
  return list;
}

HitList Archive::ReadHits(const SearchOptions& options) {
  QueryAccess& query = *access_;
  HitList list;
  Variant keys;
  Variant values;
  Variant total;
  Variant isMultiTiff;
  if (AllowNothing(options.folderRights)) return list;
  if (options.max < 0 || options.queryMax < 0) throw BadArgument("the limits of a search are 0 or more");
  const std::int32_t rows = query.Count(query->TELOQueryArchiveInit(
      RequestText(options.query, "the query"), options.max, options.queryMax, RequestText(options.format, "the format"),
      RequestText(options.folderRights.value_or(""), "the folder rights"),
      RequestText(options.layoutField, "the layout field"), RequestText(options.layout, "the layout"), &keys, &values,
      &total, &isMultiTiff, query.status()));
  list.total_ = NumberOf(total);
  list.isMultiPageImage_ = isMultiTiff.ToBoolean();
  list.layout_ = LayoutOf(TextOf(keys), TextOf(values));
  // Back to the first line, for the one with the flags of the columns; the rows follow it.
  constexpr int kFlagLine = 3;
  query->TELOGetAllArchivesExtFirst();
  for (int line = 0; line <= kFlagLine; ++line) list.flags_ = query->TELOGetAllArchivesNext();
  bool isTitle = true;
  query.ForEach(rows, "hit", [&] {
    Variant channel;
    Variant archive;
    Variant id;
    Variant version;
    std::vector<std::string> columns = ColumnsOf(query->TELOQueryArchiveNext(&channel, &archive, &id, &version));
    if (std::exchange(isTitle, false)) {
      list.columns_ = std::move(columns);
    } else {
      list.hits_.push_back({{TextOf(channel), TextOf(archive), TextOf(id), TextOf(version)}, std::move(columns)});
    }
  });
  return list;
}

std::vector<Outliner> Archive::Outline(std::string_view channel, std::string_view archive) {
  QueryAccess& query = *access_;
  Variant lines;
  query.FromDatabase(
      query->GetOutliner(RequestText(channel, "the channel"), RequestText(archive, "the archive"), &lines));
  std::vector<Outliner> outliners;
  for (std::vector<std::string>& fields : Records(lines, 2)) {
    outliners.push_back({std::move(fields[0]), std::move(fields[1])});
  }
  return outliners;
}

std::vector<OutlinerNode> Archive::Nodes(std::string_view outlinerId, std::int32_t parent) {
  QueryAccess& query = *access_;
  const Variant count =
      query.FromDatabase(query->GetOutlinerContentInit(RequestText(outlinerId, "the outliner"), parent));
  std::vector<OutlinerNode> nodes;
  for (std::int32_t i = 0; i < count.ToLong(); ++i) {
    std::array<Variant, 7> out;
    std::string content =
        ToUtf8(query->GetOutlinerContentNext(out.data(), &out[1], &out[2], &out[3], &out[4], &out[5], &out[6]));
    query.CheckOwn("a node cannot be read");
    nodes.push_back({Number32(out[0]), Number32(out[1]), std::move(content), TextOf(out[2]), TextOf(out[3]),
                     TextOf(out[4]), IsTrue(out[5]), Number32(out[6])});
  }
  return nodes;
}

std::string Archive::NodeQuery(std::int32_t node) {
  QueryAccess& query = *access_;
  return ToUtf8(query.FromDatabase(query->GetOutlinerSearchExpr(node)).ToText());
}

std::string Archive::Live() { return access_->Answer(access_->query().LiveCheck()); }

std::vector<std::string> Archive::Direct(std::string_view command) {
  QueryAccess& query = *access_;
  const auto text = FromUtf8(command);
  if (!text) throw BadArgument("the command has a character without a place in Windows-1252");
  const std::string answer = query.Answer(query->DirectQuery(*text));
  std::vector<std::string> lines;
  for (const std::string_view line : Split(answer, '\n')) lines.emplace_back(Trimmed(line, "\r"));
  return lines;
}

void Archive::TestBlobDirectory() {
  BlobDirectory(settings_);
  access_->query().WriteTest();
  access_->CheckOwn("no file can be written into the blob directory");
}

std::vector<ServerHealth> Archive::Health() {
  const QueryWatch& watch = access_->watch();
  const std::string hosts = FromUtf8(settings_.hosts).value_or("");  // the archive was made with it
  std::vector<ServerHealth> health;
  for (ServerCheck& check : CheckServers(access_->query(), hosts, [&] { return watch.IsCancelled(); })) {
    health.push_back({ToUtf8(check.host), check.port, check.isAlive, ToUtf8(check.text), check.duration});
  }
  return health;
}

void Archive::OnProgress(std::function<void(const Progress&)> call) {
  if (!call) return access_->watch().OnWait(nullptr);
  access_->watch().OnWait([call = std::move(call)](const RequestProgress& bytes) {
    call({bytes.sent, bytes.received, bytes.announced});
  });
}

void Archive::OnRequest(std::function<void(const RequestReport&)> call) { access_->OnRequest(std::move(call)); }

void Archive::Cancel() noexcept { access_->watch().Cancel(); }
void Archive::Resume() noexcept { access_->watch().Resume(); }

}  // namespace oxaqrycln::client
