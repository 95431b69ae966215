// archive.h - the archive for page authors: lists, searches, documents and files, with exceptions and UTF-8 texts, on
// top of the class. An archive belongs to the thread that made it.
#ifndef OXAQRYCLN_CLIENT_ARCHIVE_H_
#define OXAQRYCLN_CLIENT_ARCHIVE_H_

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "client/document.h"
#include "client/errors.h"
#include "client/hit_list.h"
#include "client/settings.h"

namespace oxaqrycln::client {

class QueryAccess;

struct ArchiveEntry {
  std::string name;
  std::string comment;
};
struct Channel {
  std::string name;
  std::string description;
  std::vector<ArchiveEntry> archives;  // filled by Archives() only
};

// What the server says may be done in an archive, whatever the rights of the web user.
struct ArchiveProperties {
  bool canCreate = false;
  bool canEdit = false;
  bool canDelete = false;
  bool canIndex = false;
  std::string fifth;  // whose meaning the server alone knows
};

struct SearchOptions {
  std::string query;
  std::int32_t max = 100;        // the most hits that are listed; 0: all
  std::int32_t queryMax = 1000;  // a query with more hits is refused; 0: no limit
  std::string format = {};       // one that Formats() lists; "" for all
  // The archives that may be searched; Users::FolderRights makes it. Without a value the search is not restricted. An
  // empty value allows no archive: the search then has no hits and makes no request.
  std::optional<std::string> folderRights = {};
  std::string layout = {};
  std::string layoutField = {};
  std::string sort = {};  // column to sort by, as HitList::Column takes it; "" keeps the server's order
  Order order = Order::Ascending;
};

struct MaskField {
  std::int32_t tabIndex = 0;
  std::int32_t width = 0;
  std::string align;
  std::string name;
  bool isMandatory = false;
  std::string initialText;
  bool isListOnly = false;
  std::string list;
};
struct Mask {
  std::string name;
  std::vector<MaskField> fields;
};

// Which content of a document is fetched.
class Content {
 public:
  static Content OfSegment(std::int32_t index) { return {Kind::Segment, std::to_string(index)}; }
  // The first stored file, of an extension when one is given.
  static Content FirstFile(std::string extension = {}) { return {Kind::FirstFile, std::move(extension)}; }
  // A file to print, from a query server with the print flag.
  static Content Printable(std::string fieldId) { return {Kind::Printable, std::move(fieldId)}; }
  // One image file of several pages, "1;4-6".
  static Content Pages(std::string pages) { return {Kind::Pages, std::move(pages)}; }

 private:
  friend class Archive;
  enum class Kind { Segment, FirstFile, Printable, Pages };
  Content(Kind kind, std::string argument) : kind_(kind), argument_(std::move(argument)) {}
  Kind kind_;
  std::string argument_;
};

// The contents of one field of a new document or version. A line that begins with "@" gets a blank in front, because
// the server would take it for the end of the field.
struct FieldContent {
  std::int32_t type = 1;
  std::int32_t id = 0;
  std::string text;  // of an image or file field the name of a file in the blob directory
};

struct ServerHealth {
  std::string host;
  std::int32_t port = 0;
  bool isAlive = false;
  std::string text;  // the server's answer, or the error
  std::chrono::milliseconds duration{0};
};

struct TransportOrder {
  std::string id;
  std::string status;
  std::string document;  // id and version of the document that shows it
  std::string version;
  std::vector<std::string> columns;  // what the server adds
};

struct Outliner {
  std::string id;
  std::string name;
};
struct OutlinerNode {
  std::int32_t id = 0;
  std::int32_t level = 0;
  std::string content;
  std::string fieldId;
  std::string description;
  std::string dataType;
  bool isExpanded = false;
  std::int32_t childCount = 0;
};

// Bytes of the running request.
struct Progress {
  std::int64_t sent = 0;
  std::int64_t received = 0;
  std::int64_t announced = 0;  // of the answer; 0 while that is unknown
};

// Every method that makes a request raises Refused, TimedOut, ConnectionFailed, AllServersBusy or Cancelled, and Error
// for an answer that cannot be read; BadArgument for a value that cannot be sent, before any request. A server that
// fails is passed over by later requests of the thread while another one is free. Nothing that was sent is sent again.
class Archive {
 public:
  // Raises BadArgument, also when the thread already uses other query servers; DatabaseFailed when the settings name a
  // database that cannot be opened. Connects to a server with the first request only.
  explicit Archive(const Settings& settings);
  ~Archive();
  Archive(Archive&&) noexcept;
  Archive& operator=(Archive&&) noexcept;

  // --- Lists ---
  // Sorted by name, whatever the letter case.
  std::vector<Channel> Channels();
  // Every channel with its archives, in the server's order.
  std::vector<Channel> Archives();
  std::vector<std::string> Formats(std::string_view channel, std::string_view archive);
  ArchiveProperties Properties(std::string_view channel, std::string_view archive);
  std::vector<Mask> Masks(std::string_view channel, std::string_view archive);

  // --- Searching and reading ---
  HitList Search(const SearchOptions& options);
  // The document without its segments and notes. Raises Refused when there is no such document.
  Document Describe(const DocumentName& name);
  // query marks its hits in the texts. Raises Refused when there is no such document.
  Document Open(const DocumentName& name, std::string_view query = {});
  std::vector<Note> Notes(const DocumentName& name);

  // --- Files; they need Settings::blobLocal ---
  // Has the server put a file into the blob directory: its path there, or nothing when there is no such content. The
  // caller removes it. Raises Error when the file is not there or has another length than the server says.
  std::optional<std::filesystem::path> Fetch(const DocumentName& name, const Content& content);
  // The same for the hits of a search, printed as a PDF file with the title on each page.
  std::optional<std::filesystem::path> PrintHits(const SearchOptions& options, std::string_view title);
  // Receives a file of the server's blob directory over the connection, complete or not at all.
  std::filesystem::path Transfer(std::string_view file, std::int32_t byteCount);
  // Sends a file, wherever it is, into the server's blob directory under its own name.
  void Upload(const std::filesystem::path& file);

  // --- Changing ---
  // Create and Edit write an import file under a name of its own into the blob directory, and remove it.
  DocumentName Create(std::string_view channel, std::string_view archive, std::string_view title,
                      const std::vector<FieldContent>& fields);
  // A new version, in place of the newest one, which name states.
  DocumentName Edit(const DocumentName& name, std::string_view title, const std::vector<FieldContent>& fields);
  // All versions when the name has none.
  void Delete(const DocumentName& name);
  void AddNote(const DocumentName& name, std::string_view text);
  void DeleteNotes(const DocumentName& name);

  // --- Transport orders ---
  // At most max orders, all for 0. The query is in the server's own query language; "*" selects every order.
  std::vector<TransportOrder> Orders(std::string_view query = "*", std::int32_t max = 0);
  void SetOrderStatus(std::string_view order, std::string_view status);
  // The page images of orders as one file, as Fetch does it.
  std::optional<std::filesystem::path> FetchOrders(const std::vector<std::string>& orders);

  // --- Outliners; they need Settings::database and raise DatabaseFailed ---
  std::vector<Outliner> Outline(std::string_view channel, std::string_view archive);
  // The roots for the parent 0.
  std::vector<OutlinerNode> Nodes(std::string_view outlinerId, std::int32_t parent = 0);
  // The query that finds the documents of a node; "" for one without a condition.
  std::string NodeQuery(std::int32_t node);

  // --- Servers ---
  // What a server answers when it is asked whether it is alive.
  std::string Live();
  // Asks each server of the list whether it is alive, up to 16 at once. Cancel ends it.
  std::vector<ServerHealth> Health();
  // Sends a command as it is, "^Command^,^parameter^". Returns the lines of the answer.
  std::vector<std::string> Direct(std::string_view command);
  // Writes a test file into the local blob directory and removes it. Raises Error when that fails. Makes no request.
  void TestBlobDirectory();
  // Called about ten times a second while a request waits; may call Cancel. It must not raise.
  void OnProgress(std::function<void(const Progress&)> call);
  // Called after each request but those of Health, whatever became of it.
  void OnRequest(std::function<void(const RequestReport&)> call);
  // From any thread: ends the running request, or the next one, with Cancelled, until Resume is called.
  void Cancel() noexcept;
  void Resume() noexcept;

 private:
  // Of a search, in the server's order.
  HitList ReadHits(const SearchOptions& options);
  DocumentName Import(std::string_view channel, std::string_view archive, std::string_view title,
                      const std::vector<FieldContent>& fields,
                      const std::function<std::string(const std::string& path)>& ask);

  Settings settings_;
  std::unique_ptr<QueryAccess> access_;
};

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_ARCHIVE_H_
