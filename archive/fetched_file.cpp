#include "archive/fetched_file.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "archive/stored_name.h"
#include "component/clsQuery.h"
#include "platform/files/files.h"
#include "support/file_helpers.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// The name, without a path, of a file that the query server has put into the blob directory, after the change of its
// extension; "" if the answer names no file.
std::string ReceivedName(const clsQuery& query, std::string_view answered) {
  if (LastPathPart(answered).empty()) return {};
  std::string name = StoredName(answered);
  const std::string path = query.strBlobPathLocal + "\\" + name;
  if (IsOtherThanFile(path)) throw RuntimeError(error::kBadFileName);
  // In a shorter name the change would replace a part of the directory's name.
  constexpr std::size_t kCutCharacters = 3;
  if (name.size() >= kCutCharacters) name = LastPathPart(ChangeFileExt(path, query.strChangeFileExt));
  return name;
}

void WriteFileOutputs(const clsQuery& query, const ResponseBuffer& buffer, Variant* fileName, Variant* fileLength) {
  // Nothing can fail once the first output has been written.
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
