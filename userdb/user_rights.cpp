// The rights of a web user: the user's own and those of the user's groups, not of groups that contain groups.
#include <cstdint>
#include <string>
#include <string_view>

#include "component/clsQuery.h"
#include "component/query_state.h"
#include "userdb/sql_values.h"

namespace oxaqrycln {
namespace {

// The condition for the rows of a user and of the groups that the user is a member of.
std::string OfUserAndGroups(const std::string& id) {
  return " WHERE (UserID=" + id + ") OR (UserID IN (SELECT GroupID FROM UserGroups WHERE UserID=" + id + "))";
}

// How the entries of a list are written.
struct ListForm {
  std::string_view column;
  char opening;
  char closing;
};

// An output, or none, that is built piece by piece and keeps its pieces when an error ends the method.
class BuiltText {
 public:
  explicit BuiltText(Variant* output) : output_(output) { WriteText(output, ""); }
  void Add(std::string_view text) {
    if (output_ != nullptr) output_->AppendText(text);
  }

 private:
  Variant* const output_;
};

// The rows of a statement as a list.
Variant ReadList(QueryState& state, const std::string& statement, const ListForm& form, BuiltText output) {
  std::int32_t count = 0;
  const auto rows = state.Database().Execute(statement);
  for (; !rows->EndOfRows(); rows->MoveNext()) {
    const std::string separator = count++ == 0 ? "" : ",";
    output.Add(separator + form.opening + rows->Field(form.column).ToText() + form.closing);
  }
  rows->Close();
  return Variant::Long(count);
}

}  // namespace

Variant clsQuery::GetUserRights(const Variant& strUserID, Variant* strRights) {
  return state_->Run(Variant(), [&](QueryState& state, Variant& result) {
    const BuiltText list(strRights);
    result = ReadList(state, "SELECT DISTINCT RightID FROM UserRights" + OfUserAndGroups(SqlNumber(strUserID)),
                      {"RightID", '^', '^'}, list);
  });
}

Variant clsQuery::GetUserEditRights(const Variant& strUserID, Variant* strEditRights) {
  return state_->Run(Variant(), [&](QueryState& state, Variant& result) {
    BuiltText lines(strEditRights);
    const auto rows =
        state.Database().Execute("SELECT DISTINCT Archive, SUM(New), SUM(Edit), SUM(Del) FROM UserEditRights" +
                                 OfUserAndGroups(SqlNumber(strUserID)) + " GROUP BY Archive");
    std::int32_t count = 0;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
      ++count;
      lines.Add(rows->Field(0).ToText());
      std::int32_t position = 1;
      for (const char* mark : {",N", ",E", ",D"}) {
        const Variant sum = rows->Field(position++);
        if (!sum.IsNull() && sum.ToDouble() > 0) lines.Add(mark);
      }
      lines.Add("\r\n");
    }
    rows->Close();
    result = Variant::Long(count);
  });
}

Variant clsQuery::GetUserGroups(const Variant& strUserID, Variant* strGroups) {
  return state_->Run(Variant(), [&](QueryState& state, Variant& result) {
    const BuiltText list(strGroups);
    result = ReadList(state,
                      "SELECT DISTINCT UserName FROM Users, UserGroups WHERE Users.UserID=UserGroups.GroupID AND "
                      "UserGroups.UserID=" +
                          SqlNumber(strUserID),
                      {"UserName", '[', ']'}, list);
  });
}

Variant clsQuery::GetUserArchives(const Variant& strUserID, Variant* strArchives) {
  return state_->Run(Variant(), [&](QueryState& state, Variant& result) {
    const BuiltText list(strArchives);
    result = ReadList(state, "SELECT DISTINCT Archive FROM UserArchives" + OfUserAndGroups(SqlNumber(strUserID)),
                      {"Archive", '^', '^'}, list);
  });
}

Variant clsQuery::GetUserChannels(const Variant& strUserID, Variant* strChannels) {
  return state_->Run(Variant(), [&](QueryState& state, Variant& result) {
    const BuiltText list(strChannels);
    result = ReadList(state, "SELECT DISTINCT Channel FROM UserChannels" + OfUserAndGroups(SqlNumber(strUserID)),
                      {"Channel", '^', '^'}, list);
  });
}

}  // namespace oxaqrycln
