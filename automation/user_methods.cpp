// The operations on web users, and the encryption services.
#include "automation/method_binding.h"
#include "automation/method_groups.h"

namespace oxaqrycln {

using binding::Method;

std::vector<MethodEntry> WebUsers() {
  constexpr std::string_view kGroup = "Web users";
  return {
      Method<&clsQuery::WriteUserToDB, 2>(
          {"WriteUserToDB", kGroup, "The new user's ID (Long), or -1 (Integer) on failure.",
           "Creates a user, with an account of the archive system when both of its texts are given."},
          "strUser", "strPasswd", "strTELOUser", "strTELOPasswd"),
      Method<&clsQuery::GetNextDBObjectID>(
          {"GetNextDBObjectID", kGroup, "The number (Long), 0 on failure.",
           "One more than the largest number in a column of a table, 1 for an empty one."},
          "strField", "strTable"),
      Method<&clsQuery::CheckLogon, 1>({"CheckLogon", kGroup, "The user's ID (Long), or 0.",
                                        "Looks up the first user of a name, whose password must be the one given."},
                                       "strUser", "strPasswd"),
      Method<&clsQuery::ChangePasswd>({"ChangePasswd", kGroup, "The user's ID (Integer), or 0.",
                                       "Changes a password when the old one is right; an ID above 32767 fails."},
                                      "strUser", "strPasswdOld", "strPasswdNew"),
      Method<&clsQuery::GetUserTELOUser>(
          {"GetUserTELOUser", kGroup, "1 when there is such a user, else 0 (Long).",
           "Reads the user's account of the archive system; the outputs become \"\" without one."},
          "strUserID", "strTELOUser", "strTELOPasswd"),
      Method<&clsQuery::GetUserChangePasswd>(
          {"GetUserChangePasswd", kGroup, "1 when a value was read, else 0 (Long).",
           "Reads whether the user must change the password; intChangePasswd becomes 0 without a value."},
          "strUserID", "intChangePasswd"),
      Method<&clsQuery::SetUserChangePasswd>({"SetUserChangePasswd", kGroup, "1, or 0 on failure (Long).",
                                              "Says whether the user must change the password."},
                                             "strUserID", "intChangePasswd"),
  };
}

std::vector<MethodEntry> UserRights() {
  constexpr std::string_view kGroup = "User rights";
  constexpr std::string_view kResult = "Number of entries (Long), Empty on failure.";
  return {
      Method<&clsQuery::GetUserRights>(
          {"GetUserRights", kGroup, kResult, "The general rights of a user and of the user's groups: \"^3^,^7^\"."},
          "strUserID", "strRights"),
      Method<&clsQuery::GetUserEditRights>(
          {"GetUserEditRights", kGroup, kResult,
           "The rights to create (N), edit (E) and delete (D) for each archive, a line \"archive,N,E,D\" each."},
          "strUserID", "strEditRights"),
      Method<&clsQuery::GetUserGroups>(
          {"GetUserGroups", kGroup, kResult, "The groups of a user: \"[Sales],[Support]\"."}, "strUserID", "strGroups"),
      Method<&clsQuery::GetUserArchives>(
          {"GetUserArchives", kGroup, kResult, "The archives that a user or the user's groups may see: \"^A^,^B^\"."},
          "strUserID", "strArchives"),
      Method<&clsQuery::GetUserChannels>(
          {"GetUserChannels", kGroup, kResult, "The channels that a user or the user's groups may see: \"^A^,^B^\"."},
          "strUserID", "strChannels"),
      Method<&clsQuery::GetUserDocRights>(
          {"GetUserDocRights", kGroup, "Number of conditions (Long), Empty on failure.",
           "The conditions by which documents of an archive are shown to a user, a line "
           "\"^definition^,^field^,^operator^,^value^,^type^\" each, by definition and grade."},
          "strUserID", "strChannel", "strArchive", "strDocRights"),
      Method<&clsQuery::GetUserSearchRights>(
          {"GetUserSearchRights", kGroup, "Number of fields (Long), each counted once, Empty on failure.",
           "How a user's searches in an archive are restricted: values that fields must have, a line "
           "\"^field^,^value^\" each, and the hidden fields and those without a matchcode: \"^3^,^7^\"."},
          "strUserID", "strChannel", "strArchive", "strFixedValues", "strHiddenFields", "strNoMatchcodeFields"),
  };
}

std::vector<MethodEntry> Outliners() {
  constexpr std::string_view kGroup = "Outliners";
  return {
      Method<&clsQuery::GetOutliner>(
          {"GetOutliner", kGroup, "Number of outliners (Long), or -1 (Integer) on failure.",
           "The outliners of an archive, trees of predefined search values, a line \"^ID^,^name^\" each, by name."},
          "strChannel", "strArchive", "strOutliner"),
      Method<&clsQuery::GetOutlinerContentInit, 1>(
          {"GetOutlinerContentInit", kGroup, "Number of nodes (Long), or -1 (Integer) on failure.",
           "Loads the children of a node, or the roots when lngParentID is left out or 0, into a list of their own, "
           "which no other method replaces."},
          "lngOutlinerID", "lngParentID"),
      Method<&clsQuery::GetOutlinerContentNext>(
          {"GetOutlinerContentNext", kGroup, "The node's content, \"\" at the end.",
           "The next node by content: its ID, its level and what the outliner says of the level, whether it is "
           "expanded, and how many children it has."},
          "lngID", "intLevel", "strFieldID", "strDescription", "strDataType", "blnExpand", "lngChildren"),
      Method<&clsQuery::GetOutlinerContentReset>(
          {"GetOutlinerContentReset", kGroup, "", "Goes back to the first node that was loaded."}),
      Method<&clsQuery::UpdateOutlinerContent>(
          {"UpdateOutlinerContent", kGroup, "1 (Long), or -1 (Integer) on failure and without such a node.",
           "Stores for all users whether a node is expanded."},
          "lngID", "blnExpand"),
      Method<&clsQuery::GetOutlinerSearchExpr>(
          {"GetOutlinerSearchExpr", kGroup, "The query, \"\" on failure and without such a node.",
           "The query that finds what a node stands for: the conditions from the root down, "
           "\"field:value AND field:\"value\"\"."},
          "lngID"),
  };
}

std::vector<MethodEntry> Encryption() {
  constexpr std::string_view kGroup = "Encryption";
  constexpr std::string_view kResult = "Text, \"\" on failure.";
  return {
      Method<&clsQuery::EncryptBase64, 1>({"EncryptBase64", kGroup, kResult, "Encrypt, as Base64."}, "strString",
                                          "strParamKey"),
      Method<&clsQuery::Encrypt, 1>(
          {"Encrypt", kGroup, kResult,
           "Single DES, with the first 7 characters of strParamKey or, when it is left out, of strDES56Key."},
          "strString", "strParamKey"),
      Method<&clsQuery::Decrypt, 1>({"Decrypt", kGroup, kResult, "The inverse of Encrypt."}, "strString",
                                    "strParamKey"),
      Method<&clsQuery::DecryptBase64, 1>({"DecryptBase64", kGroup, kResult, "The inverse of EncryptBase64."},
                                          "strString", "strParamKey"),
      Method<&clsQuery::DecodeBase64>({"DecodeBase64", kGroup, kResult, "The bytes of a Base64 text."}, "strString"),
      Method<&clsQuery::EncodeBase64>({"EncodeBase64", kGroup, kResult, "A text as Base64."}, "strString"),
  };
}

}  // namespace oxaqrycln
