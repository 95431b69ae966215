// Documents of the archive and their files.
#include <algorithm>
#include <array>
#include <limits>
#include <random>
#include <string_view>
#include <system_error>
#include <utility>

#include "client/archive.h"
#include "client/blob_files.h"
#include "client/query_access.h"
#include "client/text.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::client {
namespace {

namespace fs = std::filesystem;

// Bytes that no text of an archive holds.
constexpr char kMarkOn = '\x01';
constexpr char kMarkOff = '\x02';

struct Key {
  explicit Key(const DocumentName& name)
      : channel(RequestText(name.channel, "the channel")),
        archive(RequestText(name.archive, "the archive")),
        id(RequestText(name.id, "the document")),
        version(RequestText(name.version, "the version")) {}
  std::string channel;
  std::string archive;
  std::string id;
  std::string version;
};

// Takes the marks out of a text of the class.
MarkedText WithoutMarks(const std::string& text) {
  MarkedText marked;
  std::string plain;
  std::size_t start = 0;
  bool isMarked = false;
  for (const char character : text) {
    if (character == kMarkOn && !isMarked) {
      start = plain.size();
      isMarked = true;
    } else if (character == kMarkOff && isMarked) {
      if (plain.size() > start) marked.marks.push_back({start, plain.size() - start});
      isMarked = false;
    } else if (character != kMarkOn && character != kMarkOff) {
      plain += character;  // every character is one byte
    }
  }
  marked.text = ToUtf8(plain);
  return marked;
}

// "author,date time,text": the header ends with the time.
Note NoteOf(std::string_view text) {
  Note note;
  const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
  for (std::size_t at = line.find(','); at != std::string_view::npos; at = line.find(',', at + 1)) {
    const std::string_view time = line.substr(at + 1, line.find(',', at + 1) - at - 1);
    const std::string iso = IsoDate(time);
    if (iso == time) continue;
    note.author = ToUtf8(text.substr(0, at));
    note.time = iso;
    text.remove_prefix(std::min(at + 1 + time.size() + 1, text.size()));
    break;
  }
  note.text = ToUtf8(text);
  std::erase(note.text, '\r');
  return note;
}

Segment SegmentOf(QueryAccess& query, DocumentName& found) {
  std::array<Variant, 17> out;
  const std::string text =
      query->TELOGetSegmentsNext(out.data(), &out[1], &out[2], &out[3], &out[4], &out[5], &out[6], &out[7], &out[8],
                                 &out[9], &out[10], &out[11], &out[12], &out[13], &out[14], &out[15], &out[16]);
  const auto number = [&](std::size_t i) { return static_cast<std::int32_t>(NumberOf(out[i])); };
  if (found.version.empty()) found.version = TextOf(out[3]);
  Segment segment;
  segment.index = number(4);
  segment.fieldId = number(5);
  segment.name = TextOf(out[6]);
  segment.textLength = NumberOf(out[7]);
  segment.hitCount = NumberOf(out[8]);
  segment.contentLength = NumberOf(out[9]);
  segment.extension = TextOf(out[10]);
  segment.type = number(11);
  segment.title = TextOf(out[12]);
  segment.fileName = TextOf(out[13]);
  segment.status = number(14);
  segment.layout = TextOf(out[15]);
  segment.thumbnailSize = NumberOf(out[16]);
  segment.text = WithoutMarks(text);
  return segment;
}

// A text that stays on its line of the import file.
std::string LineText(std::string_view utf8, const char* what) {
  const bool isBroken = std::ranges::any_of(utf8, [](char each) { return static_cast<unsigned char>(each) < 0x20; });
  if (isBroken) throw BadArgument(std::string(what) + " holds a line end or another control character");
  return RequestText(utf8, what);
}

bool IsNumber(std::string_view text) {
  text = Trimmed(text);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// The title shares its line with the list of fields, "title,type:id".
std::string TitleText(std::string_view utf8) {
  std::string title = LineText(utf8, "the title");
  for (TextCut rest = Cut(title, ','); rest.hasSeparator; rest = Cut(rest.after, ',')) {
    const TextCut field = Cut(Cut(rest.after, ',').before, ':');
    if (field.hasSeparator && IsNumber(field.before) && IsNumber(field.after)) {
      throw BadArgument("the title holds what the archive takes for a field: \",1:11\"");
    }
  }
  return title;
}

// The contents of a field: no line of it can be taken for the end of the field.
std::string ContentText(const FieldContent& field) {
  const auto text = FromUtf8(field.text);
  if (!text)
    throw BadArgument("field " + std::to_string(field.id) + " has a character without a place in Windows-1252");
  std::string lines;
  bool isLineStart = true;
  for (const char character : *text) {
    if (isLineStart && character == '@') lines += ' ';
    lines += character;
    isLineStart = character == '\n' || character == '\r';
  }
  return lines;
}

// A file of the blob directory that is removed at the end.
class TemporaryBlob {
 public:
  explicit TemporaryBlob(const fs::path& directory)
      : name_("client-" + std::to_string(std::random_device()()) + std::to_string(std::random_device()()) + ".import"),
        path_(directory / name_) {}
  ~TemporaryBlob() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  TemporaryBlob(const TemporaryBlob&) = delete;
  TemporaryBlob& operator=(const TemporaryBlob&) = delete;

  const std::string& name() const noexcept { return name_; }
  const fs::path& path() const noexcept { return path_; }

 private:
  std::string name_;
  fs::path path_;
};

}  // namespace

Document Archive::Describe(const DocumentName& name) {
  QueryAccess& query = *access_;
  const Key key(name);
  Document document;
  document.name = name;
  std::array<Variant, 8> out;
  const std::int32_t lines =
      query.Count(query->TELOGetDocumentInfo(key.channel, key.archive, key.id, key.version, out.data(), &out[1],
                                             &out[2], &out[3], &out[4], &out[5], &out[6], &out[7], query.status()));
  if (lines == 0) throw Refused("there is no such document");
  query.CheckOwn("the information about the document cannot be read");
  const auto number = [&](std::size_t i) { return static_cast<std::int32_t>(NumberOf(out[i])); };
  document.length = NumberOf(out[0]);
  document.created = IsoDate(TextOf(out[1]));
  document.changed = IsoDate(TextOf(out[2]));
  document.title = TextOf(out[3]);
  document.fieldCount = number(4);
  document.textCount = number(5);
  document.imageCount = number(6);
  document.fileCount = number(7);
  return document;
}

Document Archive::Open(const DocumentName& name, std::string_view queryText) {
  QueryAccess& query = *access_;
  const Key key(name);
  const std::string words = RequestText(queryText, "the query");
  Document document = Describe(name);
  Variant noteCount;
  const std::int32_t count = query.Count(query->TELOGetSegmentsInit(
      key.channel, key.archive, key.id, key.version, words, std::string(1, kMarkOn), std::string(1, kMarkOff), "\n",
      Missing, Missing, Missing, &noteCount, query.status()));
  query.ForEach(count, "segment", [&] { document.segments.push_back(SegmentOf(query, document.name)); });
  if (NumberOf(noteCount) > 0) document.notes = Notes(document.name);
  return document;
}

std::vector<Note> Archive::Notes(const DocumentName& name) {
  QueryAccess& query = *access_;
  const Key key(name);
  std::vector<Note> notes;
  const std::int32_t count =
      query.Count(query->TELOGetNotesInit(key.channel, key.archive, key.id, key.version, query.status()));
  query.ForEach(count, "note", [&] { notes.push_back(NoteOf(query->TELOGetNotesNext())); });
  return notes;
}

std::optional<fs::path> Archive::Fetch(const DocumentName& name, const Content& content) {
  QueryAccess& query = *access_;
  const Key key(name);
  const std::string argument = RequestText(content.argument_, "what is fetched");
  // In the order of Kind.
  using Method = Variant (clsQuery::*)(const Variant&, const Variant&, const Variant&, const Variant&, const Variant&,
                                       Variant*, Variant*, Variant*);
  constexpr std::array<Method, 4> kMethods = {&clsQuery::TELOGetSegmentData, &clsQuery::TELOGetSegmentFirstBLOB,
                                              &clsQuery::TELOGetSegmentPrintfile, &clsQuery::TELOGetSegmentMultiTIF};
  const Method ask = kMethods[static_cast<std::size_t>(content.kind_)];
  return FetchFile(query, settings_, [&](Variant* file, Variant* length) {
    return (query.query().*ask)(key.channel, key.archive, key.id, key.version, argument, file, length, query.status());
  });
}

fs::path Archive::Transfer(std::string_view file, std::int32_t byteCount) {
  QueryAccess& query = *access_;
  const fs::path directory = BlobDirectory(settings_);
  const std::string name = RequestText(file, "the file");
  query.Count(query->TELOTransferBLOB(name, byteCount, query.status()));
  return directory / PathOf(ToUtf8(name.substr(name.find_last_of("\\/") + 1)));
}

void Archive::Upload(const fs::path& file) {
  QueryAccess& query = *access_;
  std::error_code failed;
  if (!fs::is_regular_file(file, failed)) throw BadArgument("there is no file \"" + Utf8Of(file) + "\" to send");
  if (fs::file_size(file) > std::numeric_limits<std::int32_t>::max()) {
    throw BadArgument("\"" + Utf8Of(file) + "\" is larger than 2147483647 bytes");
  }
  if (query->strBlobPathRemote.empty()) throw BadArgument("the settings name no blob directory");
  const fs::path path = fs::absolute(file);
  const std::string name = PathText(path.filename());
  // The class sends files of its local blob directory only.
  struct Restored {
    ~Restored() { directory = std::move(before); }
    std::string& directory;
    std::string before;
  };
  const Restored atEnd{query->strBlobPathLocal, query->strBlobPathLocal};
  query->strBlobPathLocal = PathText(path.parent_path());
  query.Count(query->TELOUploadFile(name, query.status()));
}

DocumentName Archive::Import(std::string_view channel, std::string_view archive, std::string_view title,
                             const std::vector<FieldContent>& fields,
                             const std::function<std::string(const std::string& path)>& ask) {
  QueryAccess& query = *access_;
  std::string types;
  std::string ids;
  std::string contents;
  for (const FieldContent& field : fields) {
    const char* const separator = types.empty() ? "" : ",";
    types += separator + std::to_string(field.type);
    ids += separator + std::to_string(field.id);
    contents += "@FIELD," + std::to_string(field.id) + "\r\n" + ContentText(field) + "\r\n";
  }
  const std::string channelText = LineText(channel, "the channel");
  const std::string archiveText = LineText(archive, "the archive");
  const std::string titleText = TitleText(title);
  const TemporaryBlob file(BlobDirectory(settings_));
  const Variant written =
      query->CreateImportFile(PathText(file.path()), channelText, archiveText, titleText, types, ids, contents);
  if (written.ToLong() < 0) query.CheckOwn("the import file cannot be written");
  const std::string idVersion = ToUtf8(ask(query->strBlobPathRemote + "\\" + file.name()));
  const std::size_t comma = std::min(idVersion.find(','), idVersion.size());
  return {std::string(channel), std::string(archive), idVersion.substr(0, comma),
          idVersion.substr(std::min(comma + 1, idVersion.size()))};
}

DocumentName Archive::Create(std::string_view channel, std::string_view archive, std::string_view title,
                             const std::vector<FieldContent>& fields) {
  QueryAccess& query = *access_;
  return Import(channel, archive, title, fields, [&](const std::string& path) {
    Variant idVersion;
    query.Count(query->TELOCreateDocument(path, &idVersion, query.status()));
    return idVersion.ToText();
  });
}

DocumentName Archive::Edit(const DocumentName& name, std::string_view title, const std::vector<FieldContent>& fields) {
  QueryAccess& query = *access_;
  const Key key(name);
  return Import(name.channel, name.archive, title, fields, [&](const std::string& path) {
    Variant idVersion = key.version.empty() ? key.id : key.id + "," + key.version;
    query.Count(query->TELOEditDocument(path, idVersion, query.status()));
    return idVersion.ToText();
  });
}

void Archive::Delete(const DocumentName& name) {
  QueryAccess& query = *access_;
  const Key key(name);
  query.Count(query->TELODeleteDocument(key.channel, key.archive, key.id, key.version, query.status()));
}

void Archive::AddNote(const DocumentName& name, std::string_view text) {
  constexpr std::size_t kLongest = 8000;
  QueryAccess& query = *access_;
  const Key key(name);
  const std::string note = WithNetworkLineEnds(RequestText(text, "the note"));
  if (note.size() > kLongest) throw BadArgument("a note has at most 8000 characters");
  query.Count(query->TELOWriteNote(key.channel, key.archive, key.id, key.version, note, Missing, query.status()));
}

void Archive::DeleteNotes(const DocumentName& name) {
  QueryAccess& query = *access_;
  const Key key(name);
  query.Count(query->TELODeleteNotes(key.channel, key.archive, key.id, key.version, query.status()));
}

}  // namespace oxaqrycln::client
