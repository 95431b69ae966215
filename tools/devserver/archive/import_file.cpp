#include "tools/devserver/archive/import_file.h"

#include <algorithm>
#include <array>

#include "tools/devserver/protocol/answer_text.h"
#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::string_view kCharSet = "@CHARSET,";
constexpr std::string_view kDatabase = "@DB,$(#";
constexpr std::string_view kFolder = "@FOLDER,FT:";
constexpr std::string_view kField = "@FIELD,";
constexpr std::size_t kMostSets = 100;
constexpr std::size_t kMostFields = 200;
constexpr std::int64_t kHighestFieldId = 32767;
constexpr std::size_t kLongestText = 1U << 20U;

[[noreturn]] void Fail(const std::string& text) { throw ServerError("Import file: " + text); }

std::vector<std::string_view> Lines(std::string_view bytes) {
  std::vector<std::string_view> lines = Split(bytes, '\n');
  for (std::string_view& line : lines) {
    if (line.ends_with('\r')) line.remove_suffix(1);
  }
  return lines;
}

class Converter {
 public:
  explicit Converter(std::string_view charSet) {
    constexpr std::array<std::string_view, 6> kSingleByte = {"", "ANSI", "WINDOWS-1252", "1252", "ISO-8859-1", "ASCII"};
    const std::string name = UpperCase(charSet);
    isUtf8_ = name == "UTF-8" || name == "UTF8";
    if (!isUtf8_ && std::find(kSingleByte.begin(), kSingleByte.end(), name) == kSingleByte.end()) {
      Fail("unknown character set '" + Printable(charSet) + "'");
    }
  }
  std::string operator()(std::string_view text) const {
    if (!isUtf8_) return std::string(text);
    auto converted = FromUtf8(text);
    if (!converted) Fail("'" + Printable(text) + "' is not UTF-8 text of Windows-1252 characters");
    return *converted;
  }

 private:
  bool isUtf8_;
};

// A segment of the pair "type:ID"; nothing for any other text.
std::optional<Segment> ParsePair(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const auto type = ParseNumber(text.substr(0, colon));
  const auto id = ParseNumber(text.substr(colon + 1));
  if (!type || !id) return std::nullopt;
  if (*type < 1 || *type > 3) Fail("field type " + std::to_string(*type) + " is not 1, 2 or 3");
  if (*id < 1 || *id > kHighestFieldId) Fail("field ID " + std::to_string(*id) + " is not between 1 and 32767");
  Segment segment;
  segment.fieldId = *id;
  segment.type = static_cast<SegmentType>(*type);
  return segment;
}

// A title may hold commas, so the pairs are taken from the end.
void ParseFolder(std::string_view text, ImportSet& set, const Converter& convert) {
  for (std::size_t comma = text.rfind(','); comma != std::string_view::npos; comma = text.rfind(',')) {
    auto field = ParsePair(text.substr(comma + 1));
    if (!field) break;
    set.segments.push_back(std::move(*field));
    text = text.substr(0, comma);
    if (set.segments.size() > kMostFields) Fail("more than " + std::to_string(kMostFields) + " fields");
  }
  std::ranges::reverse(set.segments);
  set.title = CleanText(convert(text));
}

class ImportParser {
 public:
  explicit ImportParser(std::string_view bytes) : lines_(Lines(bytes)) {}

  bool AtEnd() {
    while (next_ < lines_.size() && lines_[next_].empty()) ++next_;
    return next_ == lines_.size();
  }

  ImportSet Set() {
    const bool hasCharSet = lines_[next_].starts_with(kCharSet);
    const Converter convert(hasCharSet ? lines_[next_++].substr(kCharSet.size()) : std::string_view());
    ImportSet set;
    const std::string_view place = Take(kDatabase, "@DB,$(#CHANNEL)\\ARCHIVE");
    const std::size_t close = place.find(")\\");
    if (close == std::string_view::npos) Fail("the line @DB,$(#CHANNEL)\\ARCHIVE is expected");
    set.place = {convert(place.substr(0, close)), convert(place.substr(close + 2))};
    ParseFolder(Take(kFolder, "@FOLDER,FT:TITLE"), set, convert);
    Contents(set, convert);
    return set;
  }

 private:
  std::string_view Take(std::string_view begin, const std::string& what) {
    if (next_ == lines_.size() || !lines_[next_].starts_with(begin)) Fail("the line " + what + " is expected");
    return lines_[next_++].substr(begin.size());
  }

  bool SetGoesOn() const {
    return next_ < lines_.size() && !lines_[next_].starts_with(kCharSet) && !lines_[next_].starts_with(kDatabase);
  }

  void Contents(ImportSet& set, const Converter& convert) {
    std::string text;
    std::size_t field = 0;
    bool named = false;
    for (; SetGoesOn(); ++next_) {
      const std::string_view line = lines_[next_];
      if (!line.starts_with(kField)) {
        text.append(convert(line)).append("\n");
        continue;
      }
      EndField(set, named ? field++ : 0, text, named);
      named = true;
      const auto id = ParseNumber(line.substr(kField.size()));
      if (field >= set.segments.size() || id != set.segments[field].fieldId) {
        Fail("'" + Printable(line) + "' does not follow the order of the folder line");
      }
    }
    EndField(set, field, text, named || !set.segments.empty());
    for (const Segment& segment : set.segments) {
      if (segment.type != SegmentType::kText && segment.fileName.empty()) {
        Fail("field " + std::to_string(segment.fieldId) + " names no file");
      }
    }
  }

  static void EndField(ImportSet& set, std::size_t field, std::string& text, bool belongs) {
    std::string content = CleanText(text);
    text.clear();
    if (!belongs) {
      if (!content.empty()) Fail("there is content before the first @FIELD line");
      return;
    }
    if (content.size() > kLongestText) Fail("a text is longer than " + std::to_string(kLongestText) + " characters");
    Segment& segment = set.segments[field];
    (segment.type == SegmentType::kText ? segment.text : segment.fileName) = std::move(content);
  }

  std::vector<std::string_view> lines_;
  std::size_t next_ = 0;
};

}  // namespace

std::vector<ImportSet> ParseImportFile(std::string_view bytes) {
  std::vector<ImportSet> sets;
  ImportParser parser(bytes);
  while (!parser.AtEnd()) {
    if (sets.size() == kMostSets) Fail("more than " + std::to_string(kMostSets) + " documents");
    sets.push_back(parser.Set());
  }
  if (sets.empty()) Fail("it is empty");
  return sets;
}

}  // namespace oxaqrycln::devserver
