// transfer_commands.h - the commands that bring files from the archive to this machine, and back.
// As those of commands.h; paths are native, other texts that a person gave UTF-8. A signal that ends a command leaves
// no unfinished file and raises Interrupted.
#ifndef OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMANDS_H_
#define OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMANDS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/oxaqry/cli/document_name.h"
#include "tools/oxaqry/cli/output.h"
#include "tools/oxaqry/transfers/fetched_file.h"

namespace oxaqrycln::oxaqry {

// Which content of a document: at most one of the four, else its first stored file.
struct FetchRequest {
  DocumentName document;
  std::optional<std::int16_t> segment;  // its index
  std::string extension;                // of the first stored file; "" for any
  std::optional<std::string> printField;
  std::string pages;
  FetchTarget target;
};
// Has the server put the content into the blob directory, and moves it from there.
int Fetch(const Settings& settings, const FetchRequest& request, const Output& output);

struct TransferRequest {
  std::string name;
  std::int32_t size = 0;
  std::string output;  // a file or directory; "" for the local blob directory
  bool force = false;
};
// Receives a file of the remote blob directory over the connection.
int Transfer(const Settings& settings, const TransferRequest& request, const Output& output);

struct UploadRequest {
  std::vector<std::string> files;
  bool force = false;
};
// Sends files over the connection into the remote blob directory; those that are not in the local one are put there.
int Upload(const Settings& settings, const UploadRequest& request, const Output& output);

}  // namespace oxaqrycln::oxaqry

#endif  // OXAQRYCLN_TOOLS_OXAQRY_TRANSFERS_TRANSFER_COMMANDS_H_
