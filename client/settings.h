// settings.h - how a page reaches the archive and the web users. All texts of the client layer are UTF-8.
#ifndef OXAQRYCLN_CLIENT_SETTINGS_H_
#define OXAQRYCLN_CLIENT_SETTINGS_H_

#include <chrono>
#include <string>

#include "values/date_time.h"

namespace oxaqrycln::client {

struct Settings {
  std::string hosts = {};  // "host,port[,print flag[,user[,encoded password]]]", joined by "|"
  // Whether each process and thread begins at a place of its own in the list, so that they share the servers evenly;
  // otherwise all of them ask the first server first.
  bool spread = true;
  std::string user = {};  // account of the archive system
  std::string password = {};
  std::chrono::seconds timeout{30};  // for one request, with all servers that are tried
  std::string session = {};          // names the log file, "" for "client"
  std::string logDirectory = {};     // "" logs nothing
  std::string blobLocal = {};        // directory of received files as this machine reaches it
  std::string blobRemote = {};       // the same one as the query servers reach it; "" for the local path
  std::string database = {};         // connection string of the web user database; "" for none
  // "OLD-NEW" rules for the extensions of received files, separated by ","; "" renames none.
  std::string changedExtensions = {};
  // The web user, as the log names him.
  std::string webUser = {};
  std::string webUserAddress = {};
  DateTime webUserLogOn = {};
};

}  // namespace oxaqrycln::client

#endif  // OXAQRYCLN_CLIENT_SETTINGS_H_
