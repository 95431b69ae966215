// Web users: their accounts, logon and passwords.
#include <cstdint>
#include <string>

#include "component/clsQuery.h"
#include "component/query_state.h"
#include "support/text_helpers.h"
#include "userdb/sql_values.h"
#include "values/errors.h"

// A parameter has the same name as the public variable strTELOUser, which no method here uses.
#pragma GCC diagnostic ignored "-Wshadow"

namespace oxaqrycln {
namespace {

const Variant& RequireGiven(const Variant& value) {
  if (value.IsMissing()) throw RuntimeError(error::kArgumentNotOptional);
  return value;
}

std::string EncodedText(const Connection& database, const Variant& password) {
  return SqlText(database, Encode(RequireGiven(password).ToText()));
}

std::int32_t NextId(QueryState& state, const std::string& field, const std::string& table) {
  const auto rows = state.Database().Execute("SELECT MAX(" + field + ") FROM " + table);
  const Variant largest = rows->Field(0);
  rows->Close();
  return largest.IsNull() ? 1 : Variant(largest.ToDouble() + 1).ToLong();
}

// A stored password that fails to decode never matches, not even the empty one.
bool IsStoredPassword(const QueryState& state, const Variant& stored, const Variant& given) {
  if (stored.IsNull() || given.IsNull()) return false;
  const std::string text = given.ToText();
  return Trap(state.log, "Decode", false, [&](bool& result) { result = Decode(stored.ToText()) == text; });
}

}  // namespace

Variant clsQuery::WriteUserToDB(const Variant& strUser, const Variant& strPasswd, const Variant& strTELOUser,
                                const Variant& strTELOPasswd) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    Connection& database = state.Database();
    const std::string user = SqlText(database, strUser);
    const std::string password = EncodedText(database, strPasswd);
    const bool hasAccount = !strTELOUser.IsMissing() && !strTELOPasswd.IsMissing();
    const std::string account =
        hasAccount ? ", " + SqlText(database, strTELOUser) + ", " + EncodedText(database, strTELOPasswd) : "";
    const Variant id = Trap(state.log, "GetNextDBObjectID", Variant(),
                            [&](Variant& next) { next = NextId(state, "UserID", "Users"); });
    if (id.IsEmpty()) return;
    database.Execute("INSERT INTO Users(UserID,UserName,Passwd" +
                     std::string(hasAccount ? ",TELOUser,TELOPasswd" : "") + ") VALUES (" + id.ToText() + ", " + user +
                     ", " + password + account + ")");
    result = id;
  });
}

Variant clsQuery::GetNextDBObjectID(const Variant& strField, const Variant& strTable) {
  return state_->Run(Variant::Long(0), [&](QueryState& state, Variant& result) {
    result = Variant::Long(NextId(state, SqlName(strField), SqlName(strTable)));
  });
}

Variant clsQuery::CheckLogon(const Variant& strUser, const Variant& strPasswd) {
  return state_->Run(Variant::Long(0), [&](QueryState& state, Variant& result) {
    Connection& database = state.Database();
    const auto rows = database.Execute("SELECT UserID, Passwd FROM Users WHERE UserName=" + SqlText(database, strUser));
    if (!rows->EndOfRows() && (strPasswd.IsMissing() || IsStoredPassword(state, rows->Field("Passwd"), strPasswd))) {
      result = Variant::Long(rows->Field("UserID").ToLong());
    }
    rows->Close();
  });
}

Variant clsQuery::ChangePasswd(const Variant& strUser, const Variant& strPasswdOld, const Variant& strPasswdNew) {
  return state_->Run(Variant::Integer(0), [&](QueryState& state, Variant& result) {
    Connection& database = state.Database();
    const std::string password = EncodedText(database, strPasswdNew);
    // Kept: an ID above 32767 does not fit, and its password stays.
    const std::int16_t number = CheckLogon(strUser, RequireGiven(strPasswdOld)).ToInteger();
    if (number < 1) return;
    database.Execute("UPDATE Users SET Passwd=" + password + " WHERE UserName=" + SqlText(database, strUser));
    result = Variant::Integer(number);  // a page must not report a change that the database refused
  });
}

Variant clsQuery::GetUserTELOUser(const Variant& strUserID, Variant* strTELOUser, Variant* strTELOPasswd) {
  return state_->Run(Variant::Long(0), [&](QueryState& state, Variant& result) {
    const auto rows =
        state.Database().Execute("SELECT TELOUser, TELOPasswd FROM Users WHERE UserID=" + SqlNumber(strUserID));
    if (!rows->EndOfRows()) {
      const Variant user = rows->Field("TELOUser");
      const Variant password = rows->Field("TELOPasswd");
      const bool hasBoth = !user.IsNull() && !password.IsNull();
      const std::string decoded = Trap(state.log, "Decode", std::string(), [&](std::string& text) {
        if (hasBoth) text = Decode(password.ToText());
      });
      WriteText(strTELOUser, hasBoth ? user.ToText() : "");
      WriteText(strTELOPasswd, decoded);
      result = Variant::Long(1);
    }
    rows->Close();
  });
}

Variant clsQuery::GetUserChangePasswd(const Variant& strUserID, Variant* intChangePasswd) {
  return state_->Run(Variant::Long(0), [&](QueryState& state, Variant& result) {
    if (intChangePasswd != nullptr) *intChangePasswd = Variant::Integer(0);
    const auto rows = state.Database().Execute("SELECT ChangePasswd FROM Users WHERE UserID=" + SqlNumber(strUserID));
    if (!rows->EndOfRows()) {
      const Variant flag = rows->Field("ChangePasswd");
      if (!flag.IsNull()) {
        if (intChangePasswd != nullptr) *intChangePasswd = flag;
        result = Variant::Long(1);
      }
    }
    rows->Close();
  });
}

Variant clsQuery::SetUserChangePasswd(const Variant& strUserID, const Variant& intChangePasswd) {
  return state_->Run(Variant::Long(0), [&](QueryState& state, Variant& result) {
    const bool isBoolean = intChangePasswd.type() == Variant::Type::Boolean;
    const Variant flag = isBoolean ? Variant(intChangePasswd.ToBoolean() ? 1 : 0) : intChangePasswd;
    state.Database().Execute("UPDATE Users SET ChangePasswd=" + SqlNumber(flag) +
                             " WHERE UserID=" + SqlNumber(strUserID));
    result = Variant::Long(1);
  });
}

}  // namespace oxaqrycln
