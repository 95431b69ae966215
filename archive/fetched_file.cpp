#include "archive/fetched_file.h"

#include "archive/stored_name.h"
#include "component/clsQuery.h"
#include "platform/files/files.h"
#include "support/file_helpers.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// The bare name of a file that the query server has put into the blob directory, after its extension was changed. An
// answer that names no file gives "".
std::string ReceivedName(const clsQuery& query, std::string_view answered) {
  if (LastPathPart(answered).empty()) return {};
  std::string name = StoredName(answered);
  const std::string path = query.strBlobPathLocal + "\\" + name;
  if (IsOtherThanFile(path)) throw RuntimeError(error::kBadFileName);
  // With a shorter name the change would cut off a part of the directory's.
  constexpr std::size_t kCutCharacters = 3;
  if (name.size() >= kCutCharacters) name = LastPathPart(ChangeFileExt(path, query.strChangeFileExt));
  return name;
}

void WriteFileOutputs(const clsQuery& query, const ResponseBuffer& buffer, Variant* fileName, Variant* fileLength) {
  // Everything that can fail comes before the first output is written.
  const std::string name = fileName != nullptr ? ReceivedName(query, buffer.Line(1)) : std::string();
  WriteText(fileName, name);
  WriteText(fileLength, buffer.Line(0));
}

}  // namespace

void FetchFile(const clsQuery& query, QueryState& state, std::initializer_list<Variant> elements, NoFile noFile,
               const FileOutputs& outputs, Variant& result) {
  if (!state.Load(elements, outputs.status)) return;
  if (state.buffer.Count() >= 2) {
    WriteFileOutputs(query, state.buffer, outputs.name, outputs.length);
  } else if (noFile == NoFile::kClearsOutputs) {
    WriteText(outputs.name, "");
    if (outputs.length != nullptr) *outputs.length = Variant::Long(0);
  }
  result = Variant::Long(1);
  WriteText(outputs.status, "");
}

}  // namespace oxaqrycln
