<%@ Language="VBScript" CodePage="1252" %><% Option Explicit %>
<!-- #include file="query.inc" -->
<!-- #include file="layout.inc" -->
<%
Dim query, userName, password, userId, channels, message

If Request.ServerVariables("REQUEST_METHOD") = "POST" Then
  userName = CStr(Request.Form("user"))
  password = CStr(Request.Form("password"))
  If InStr(userName & password, "'") > 0 Then
    ' The component refuses quotes before they reach the database.
    message = "Names and passwords have no quotes."
  Else
    Set query = NewQuery(True)
    userId = query.CheckLogon(userName, password)
    If userId > 0 Then
      query.GetUserChannels userId, channels
      Session("UserName") = userName
      Session("Channels") = "" & channels
      Response.Redirect "channels.asp"
    End If
    message = "The name or the password is wrong."
  End If
End If

StartPage "Log on"
If message <> "" Then Response.Write "<p class=""failure"">" & H(message) & "</p>"
%>
<form method="post" action="default.asp">
<label>Name <input name="user" value="<%= H(userName) %>" autofocus></label>
<label>Password <input name="password" type="password"></label>
<button>Log on</button>
</form>
<% EndPage %>
