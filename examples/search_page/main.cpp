// A whole page as a CGI program: log on, search what the user may see, hit list, document with the hits marked.
// The environment gives what the web server does not: OXAQRY_REMOTE_HOSTS, OXAQRY_USER, OXAQRY_PASSWORD,
// OXAQRY_DATABASE (users as "oxaqry user" makes them), and PAGE_SESSIONS, a directory that only the web server may
// read.
#include <algorithm>
#include <cctype>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <string_view>

#include "client/archive.h"
#include "client/users.h"

namespace {

using namespace oxaqrycln::client;
namespace fs = std::filesystem;
using Form = std::map<std::string, std::string, std::less<>>;

constexpr auto kSessionTime = std::chrono::minutes(20);

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

// Text for HTML, between tags or in a quoted attribute. Whatever comes from a visitor or the archive goes through it.
std::string H(std::string_view text) {
  std::string html;
  for (const char each : text) {
    switch (each) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      case '\n':
        html += "<br>";
        break;
      default:
        html += each;
    }
  }
  return html;
}

std::string UrlText(std::string_view text) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string url;
  for (const char each : text) {
    const auto code = static_cast<unsigned char>(each);
    if (std::isalnum(code) != 0 && code < 0x80) {
      url += each;
    } else {
      url.append({'%', kHex[code >> 4U], kHex[code & 15U]});
    }
  }
  return url;
}

// The fields of "name=value&name=value"; those of cookies have ";" between them.
Form ParseForm(std::string_view text, char separator = '&') {
  Form form;
  while (!text.empty()) {
    const std::string_view field = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(field.size() + 1, text.size()));
    std::string plain;
    for (std::size_t i = 0; i < field.size(); ++i) {
      int code = 0;
      if (field[i] == '%' && i + 2 < field.size() &&
          std::from_chars(field.data() + i + 1, field.data() + i + 3, code, 16).ptr == field.data() + i + 3) {
        plain += static_cast<char>(code);
        i += 2;
      } else {
        plain += field[i] == '+' ? ' ' : field[i];
      }
    }
    const std::size_t equals = std::min(plain.find('='), plain.size());
    const std::size_t start = std::min(plain.find_first_not_of(' '), equals);
    form[plain.substr(start, equals - start)] = plain.substr(std::min(equals + 1, plain.size()));
  }
  return form;
}

// A session is a file under an unguessable name, with the user's ID in it.
class Sessions {
 public:
  static std::string Start(std::int32_t user) {
    std::random_device random;
    std::string id;
    for (int i = 0; i < 8; ++i) id += std::to_string(random()) + "-";
    std::ofstream(File(id)) << user;
    return id;
  }
  // 0 without a session that is still valid.
  static std::int32_t User() {
    const Form cookies = ParseForm(Variable("HTTP_COOKIE"), ';');
    const auto id = cookies.find("session");
    const bool isPlain =
        id != cookies.end() && !id->second.empty() && id->second.find_first_not_of("0123456789-") == std::string::npos;
    std::error_code missing;
    if (!isPlain || fs::file_time_type::clock::now() - fs::last_write_time(File(id->second), missing) > kSessionTime)
      return 0;
    std::int32_t user = 0;
    std::ifstream(File(id->second)) >> user;
    return user;
  }

 private:
  static fs::path File(const std::string& id) { return fs::path(Variable("PAGE_SESSIONS")) / id; }
};

void StartPage(const char* status, std::string_view title) {
  std::cout << "Status: " << status << "\r\nContent-Type: text/html; charset=utf-8\r\nCache-Control: no-store\r\n"
            << "Content-Security-Policy: default-src 'none'; form-action 'self'; frame-ancestors 'none'\r\n\r\n"
            << "<!DOCTYPE html><html lang=\"en\"><title>" << H(title) << "</title><h1>" << H(title) << "</h1>\n";
}

void ShowLogOn(std::string_view message) {
  StartPage("200 OK", "Log on");
  std::cout << "<p>" << H(message) << "</p><form method=\"post\"><label>Name <input name=\"user\"></label> "
            << "<label>Password <input name=\"password\" type=\"password\"></label> <button>Log on</button></form>\n";
}

void ShowHits(Archive& archive, const std::string& rights, const std::string& query) {
  HitList hits;
  if (!query.empty()) hits = archive.Search({.query = query, .max = 50, .folderRights = rights});
  StartPage("200 OK", "Search");  // from here on nothing fails
  std::cout << "<form><input name=\"q\" value=\"" << H(query) << "\"> <button>Search</button></form>\n";
  std::cout << "<p>" << hits.size() << " of " << hits.total() << " hits</p><table><tr>";
  for (const std::string& column : hits.columns()) std::cout << "<th>" << H(column);
  std::cout << '\n';
  for (const Hit& hit : hits) {
    const DocumentName& name = hit.document;
    const std::string address = "?channel=" + UrlText(name.channel) + "&archive=" + UrlText(name.archive) +
                                "&id=" + UrlText(name.id) + "&version=" + UrlText(name.version) +
                                "&q=" + UrlText(query);
    std::cout << "<tr>";
    for (const std::string& value : hit.values) {
      std::cout << "<td><a href=\"" << H(address) << "\">" << H(value) << "</a>";
    }
    std::cout << '\n';
  }
  std::cout << "</table>\n";
}

void ShowDocument(Archive& archive, const DocumentName& name, const std::string& query) {
  const Document document = archive.Open(name, query);
  StartPage("200 OK", document.title);
  for (const Segment& segment : document.segments) {
    std::cout << "<h2>" << H(segment.title) << "</h2><p>";
    for (const TextPiece& piece : segment.text.Pieces()) {
      std::cout << (piece.isMarked ? "<mark>" : "") << H(piece.text) << (piece.isMarked ? "</mark>" : "");
    }
    std::cout << "</p>\n";
  }
  for (const Note& note : document.notes)
    std::cout << "<p>" << H(note.author) << " " << H(note.time) << ": " << H(note.text) << "</p>\n";
}

void Run() {
  Settings settings{.hosts = Variable("OXAQRY_REMOTE_HOSTS"),
                    .user = Variable("OXAQRY_USER"),
                    .password = Variable("OXAQRY_PASSWORD"),
                    .database = Variable("OXAQRY_DATABASE")};
  Users users(settings);
  if (Variable("REQUEST_METHOD") == "POST") {
    std::string body(std::min<std::size_t>(std::strtoul(Variable("CONTENT_LENGTH").c_str(), nullptr, 10), 10'000),
                     '\0');
    std::cin.read(body.data(), static_cast<std::streamsize>(body.size()));
    Form form = ParseForm(body);
    const auto user = users.LogOn(form["user"], form["password"]);
    if (!user) return ShowLogOn("Name or password is wrong.");
    std::cout << "Status: 303 See Other\r\nLocation: " << Variable("SCRIPT_NAME")
              << "\r\nSet-Cookie: session=" << Sessions::Start(*user) << "; HttpOnly; SameSite=Strict; Path=/\r\n\r\n";
    return;
  }
  const std::int32_t user = Sessions::User();
  if (user == 0) return ShowLogOn("Please log on.");
  Form form = ParseForm(Variable("QUERY_STRING"));
  settings.database.clear();
  Archive archive(settings);
  const std::string rights = users.FolderRights(user);
  if (form["id"].empty()) return ShowHits(archive, rights, form["q"]);
  // The document comes from the browser, so the user's rights decide, not the hit list that he was shown.
  const std::string channel = "$(#" + form["channel"] + ")";
  const bool isVisible = (";" + rights).find(";" + channel + ";") != std::string::npos ||
                         (";" + rights).find(";" + channel + "\\" + form["archive"] + ";") != std::string::npos;
  if (!isVisible) throw Refused("there is no such document");
  ShowDocument(archive, {form["channel"], form["archive"], form["id"], form["version"]}, form["q"]);
}

}  // namespace

int main() {
  try {
    Run();
  } catch (const TimedOut&) {
    StartPage("504 Gateway Timeout", "The archive does not answer in time. Please try again.");
  } catch (const ConnectionFailed&) {
    StartPage("503 Service Unavailable", "The archive cannot be reached at present.");
  } catch (const AllServersBusy&) {
    StartPage("503 Service Unavailable", "The archive is busy. Please try again.");
  } catch (const DatabaseFailed& error) {
    std::cerr << error.what() << '\n';
    StartPage("500 Internal Server Error", "The user database does not work.");
  } catch (const Refused& error) {
    StartPage("400 Bad Request", error.what());
  } catch (const BadArgument& error) {
    StartPage("400 Bad Request", error.what());
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    StartPage("500 Internal Server Error", "The page failed.");
  }
}
