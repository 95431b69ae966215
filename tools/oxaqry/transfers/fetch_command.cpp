// The command "fetch": content of a document by way of the blob directory.
#include <ostream>

#include "tools/oxaqry/cli/blob_directory.h"
#include "tools/oxaqry/cli/progress.h"
#include "tools/oxaqry/documents/document_access.h"
#include "tools/oxaqry/transfers/transfer_commands.h"

namespace oxaqrycln::oxaqry {

int Fetch(const Settings& settings, const FetchRequest& request, const Output& output) {
  const auto ask = [&](clsQuery& query, Variant& name, Variant& length, Variant& status) {
    const DocumentKey key(request.document);
    if (request.segment) {
      return query.TELOGetSegmentData(key.channel, key.archive, key.document, key.version, *request.segment, &name,
                                      &length, &status);
    }
    if (request.printField) {
      return query.TELOGetSegmentPrintfile(key.channel, key.archive, key.document, key.version,
                                           FieldFromUtf8(*request.printField), &name, &length, &status);
    }
    if (!request.pages.empty()) {
      return query.TELOGetSegmentMultiTIF(key.channel, key.archive, key.document, key.version,
                                          FieldFromUtf8(request.pages), &name, &length, &status);
    }
    return query.TELOGetSegmentFirstBLOB(key.channel, key.archive, key.document, key.version,
                                         FieldFromUtf8(request.extension), &name, &length, &status);
  };
  const FetchedFile file = FetchFile(settings, request.target, ask, output);
  if (output.json) {
    output.out << PathJson(
        {{"name", ToText(request.document)}, {"file", file.path.string()}, {"bytes", file.byteCount}});
  } else {
    output.out << "Fetched " << file.path.string() << " (" << ByteText(file.byteCount) << ")\n";
  }
  return 0;
}

}  // namespace oxaqrycln::oxaqry
