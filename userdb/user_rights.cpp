// What a web user may do, himself and through his groups, one level deep.
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "userdb/sql_values.h"

namespace oxaqrycln {
namespace {

// The condition for the rows of a user and of the groups he is a member of.
std::string OfUserAndGroups(const std::string& id) {
  return " WHERE (UserID=" + id + ") OR (UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=" + id + "))";
}

// How the entries of a list are written.
struct ListForm {
  std::string_view column;
  char opening;
  char closing;
};

// The rows of a statement as a list.
Variant ReadList(QueryState& state, const std::string& statement, const ListForm& form, Variant* output) {
  std::string list;
  std::int32_t count = 0;
  const auto rows = state.Database().Execute(statement);
  for (; !rows->EndOfRows(); rows->MoveNext()) {
    ++count;
    if (!list.empty()) list += ',';
    list += form.opening;
    list += rows->Field(form.column).ToText();
    list += form.closing;
  }
  rows->Close();
  WriteText(output, list);
  return Variant::Long(count);
}

}  // namespace

Variant clsQuery::GetUserRights(const Variant& strUserID, Variant* strRights) {
  QueryState& state = *state_;
  return state.Run("GetUserRights", Variant(), [&](Variant& result) {
    WriteText(strRights, "");
    result = ReadList(state, "SELECT DISTINCT RightID FROM UserRights" + OfUserAndGroups(SqlNumber(strUserID)),
                      {"RightID", '^', '^'}, strRights);
  });
}

Variant clsQuery::GetUserEditRights(const Variant& strUserID, Variant* strEditRights) {
  QueryState& state = *state_;
  return state.Run("GetUserEditRights", Variant(), [&](Variant& result) {
    WriteText(strEditRights, "");
    const auto rows =
        state.Database().Execute("SELECT DISTINCT Archive, SUM(New), SUM(Edit), SUM(Del) FROM UserEditRights" +
                                 OfUserAndGroups(SqlNumber(strUserID)) + " GROUP BY Archive");
    std::string lines;
    std::int32_t count = 0;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
      ++count;
      lines += rows->Field(0).ToText();
      std::int32_t position = 1;
      for (const char* mark : {",N", ",E", ",D"}) {
        const Variant sum = rows->Field(position++);
        if (!sum.IsNull() && sum.ToDouble() > 0) lines += mark;
      }
      lines += "\r\n";
    }
    rows->Close();
    WriteText(strEditRights, lines);
    result = Variant::Long(count);
  });
}

Variant clsQuery::GetUserGroups(const Variant& strUserID, Variant* strGroups) {
  QueryState& state = *state_;
  return state.Run("GetUserGroups", Variant(), [&](Variant& result) {
    WriteText(strGroups, "");
    result = ReadList(state,
                      "SELECT DISTINCT UserName FROM Users, UserGroups WHERE Users.UserID=UserGroups.GroupID AND "
                      "UserGroups.UserID=" +
                          SqlNumber(strUserID),
                      {"UserName", '[', ']'}, strGroups);
  });
}

Variant clsQuery::GetUserArchives(const Variant& strUserID, Variant* strArchives) {
  QueryState& state = *state_;
  return state.Run("GetUserArchives", Variant(), [&](Variant& result) {
    WriteText(strArchives, "");
    result = ReadList(state, "SELECT DISTINCT Archive FROM UserArchives" + OfUserAndGroups(SqlNumber(strUserID)),
                      {"Archive", '^', '^'}, strArchives);
  });
}

Variant clsQuery::GetUserChannels(const Variant& strUserID, Variant* strChannels) {
  QueryState& state = *state_;
  return state.Run("GetUserChannels", Variant(), [&](Variant& result) {
    WriteText(strChannels, "");
    result = ReadList(state, "SELECT DISTINCT Channel FROM UserChannels" + OfUserAndGroups(SqlNumber(strUserID)),
                      {"Channel", '^', '^'}, strChannels);
  });
}

}  // namespace oxaqrycln
