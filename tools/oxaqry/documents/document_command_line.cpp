#include "tools/oxaqry/documents/document_command_line.h"

#include <memory>

#include "tools/oxaqry/cli/command_parser.h"
#include "tools/oxaqry/documents/document_commands.h"

namespace oxaqrycln::oxaqry {
namespace {

void AddShow(CommandParser& parser) {
  const auto request = std::make_shared<ShowRequest>();
  CLI::App* const show = parser.AddQuery(
      "show", "show a document with its segments, texts and notes",
      "Examples:\n  oxaqry show Mail/Inbox/1262 --hosts localhost,2001\n"
      "  oxaqry show Mail/Inbox/1262/2 --query 'price' --hosts localhost,2001\n"
      "  oxaqry show Mail/Inbox/1001 --query oak --mark-on '<b>' --mark-off '</b>' --json --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Show(settings, *request, output); });
  AddDocumentArgument(*show, request->document);
  show->add_option("--query", request->query, "mark the hits of this query in the texts")->type_name("QUERY");
  show->add_option("--mark-on", request->markOn, "what stands before a hit (default: reverse video on a terminal)")
      ->type_name("TEXT");
  show->add_option("--mark-off", request->markOff, "what stands behind a hit")->type_name("TEXT");
}

void AddContents(CLI::App& command, DocumentContents& contents) {
  command.add_option("--field", contents.fields, "type and id of a field; may be repeated")
      ->allow_extra_args(false)
      ->type_name("TYPE:ID");
  command.add_option("--contents", contents.source, "file with the fields' contents, \"-\" for standard input")
      ->required()
      ->type_name("FILE");
  command
      .add_option("--charset", contents.charset,
                  "character set of the contents, which are then handed on as they are (default: UTF-8 is converted)")
      ->type_name("CS");
  command
      .add_option("--import-file", contents.importFile,
                  "write the import file here and keep it (default: one in the blob directory, deleted afterwards)")
      ->type_name("PATH");
}

void AddCreate(CommandParser& parser) {
  const auto request = std::make_shared<CreateRequest>();
  CLI::App* const create = parser.AddQuery(
      "create", "create a document",
      "Examples:\n"
      "  oxaqry create --channel Mail --archive Inbox --title 'Oak shelves' --field 1:7 --contents letter.txt \\\n"
      "    --blob-local /srv/blobs --hosts localhost,2001\n"
      "  echo 'Thank you' | oxaqry create --channel Mail --archive Outbox --title Reply --field 1:7 --contents - \\\n"
      "    --blob-local /srv/blobs --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Create(settings, *request, output); });
  create->add_option("--channel", request->channel, "the channel")->required()->type_name("C");
  create->add_option("--archive", request->archive, "the archive in that channel")->required()->type_name("A");
  create->add_option("--title", request->contents.title, "the document's title")->required()->type_name("T");
  AddContents(*create, request->contents);
}

void AddEdit(CommandParser& parser) {
  const auto request = std::make_shared<EditRequest>();
  CLI::App* const edit = parser.AddQuery(
      "edit", "make a new version of a document",
      "Example:\n  oxaqry edit Mail/Inbox/1301/1 --field 1:7 --contents letter.txt --blob-local /srv/blobs \\\n"
      "    --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Edit(settings, *request, output); });
  AddDocumentArgument(*edit, request->document);
  edit->add_option("--title", request->contents.title, "the new version's title (default: as it is)")->type_name("T");
  AddContents(*edit, request->contents);
}

void AddDelete(CommandParser& parser) {
  const auto request = std::make_shared<DeleteRequest>();
  CLI::App* const command = parser.AddQuery(
      "delete", "delete a document, or one of its versions",
      "Examples:\n  oxaqry delete Mail/Inbox/1301 --hosts localhost,2001\n"
      "  oxaqry delete Mail/Inbox/1301/2 --yes --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return Delete(settings, *request, output); });
  AddDocumentArgument(*command, request->document);
  command->add_flag("--yes", request->yes, "delete without asking");
}

void AddNoteCommands(CommandParser& parser) {
  CLI::App* const note = parser.AddGroup("note", "attach, list or delete the notes of a document",
                                         "Example:\n  oxaqry note list Mail/Inbox/1262 --hosts localhost,2001");
  const auto request = std::make_shared<DeleteRequest>();
  const auto text = std::make_shared<std::string>();
  CLI::App* const add =
      parser.AddQuery(*note, "add", "attach a note to a document",
                      "Examples:\n  oxaqry note add Mail/Inbox/1262 'Answered by phone' --hosts localhost,2001\n"
                      "  oxaqry note add Mail/Inbox/1262 - < note.txt --hosts localhost,2001",
                      [request, text](const Settings& settings, const Output& output) {
                        return AddNote(settings, request->document, *text, output);
                      });
  AddDocumentArgument(*add, request->document);
  add->add_option("TEXT", *text, "the note, at most 8000 characters; \"-\" reads standard input")
      ->required()
      ->type_name("");
  CLI::App* const list = parser.AddQuery(*note, "list", "list the notes of a document",
                                         "Example:\n  oxaqry note list Mail/Inbox/1262 --hosts localhost,2001",
                                         [request](const Settings& settings, const Output& output) {
                                           return ListNotes(settings, request->document, output);
                                         });
  AddDocumentArgument(*list, request->document);
  CLI::App* const remove = parser.AddQuery(
      *note, "delete", "delete all notes of a document",
      "Example:\n  oxaqry note delete Mail/Inbox/1262 --yes --hosts localhost,2001",
      [request](const Settings& settings, const Output& output) { return DeleteNotes(settings, *request, output); });
  AddDocumentArgument(*remove, request->document);
  remove->add_flag("--yes", request->yes, "delete without asking");
}

void AddMasks(CommandParser& parser) {
  const auto names = std::make_shared<ArchiveArguments>();
  AddArchiveArguments(*parser.AddQuery("masks", "list the masks of an archive with their fields",
                                       "Example:\n  oxaqry masks Finance/Invoices --hosts localhost,2001",
                                       [names](const Settings& settings, const Output& output) {
                                         return Masks(settings, names->channel, names->archive, output);
                                       }),
                      *names);
}

}  // namespace

void AddDocumentCommands(CommandParser& parser) {
  AddShow(parser);
  AddCreate(parser);
  AddEdit(parser);
  AddDelete(parser);
  AddNoteCommands(parser);
  AddMasks(parser);
}

}  // namespace oxaqrycln::oxaqry
