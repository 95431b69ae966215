<%@ Language="VBScript" CodePage="1252" %><% Option Explicit
Dim name, count
Session("count") = Session("count") + 1
Application.Lock
Application("count") = Application("count") + 1
Application.Unlock
Response.Cookies("plain") = "a b;c=d"
Response.Cookies("kept") = "1"
Response.Cookies("kept").Expires = "2030-01-02"
Response.Cookies("kept").Secure = True
%>session=<%= Session("count") %>
application=<%= Application("count") %>
set=<%= Application("greeting") %>
method=<%= Request.ServerVariables("REQUEST_METHOD") %>
script=<%= Request.ServerVariables("SCRIPT_NAME") %>
agent=<%= Request.ServerVariables("HTTP_USER_AGENT") %>
query=<%= Server.HTMLEncode(Request.QueryString("a")) %>
both=<%= Server.HTMLEncode(Request("b")) %>
form=<%= Server.HTMLEncode(Request.Form("f")) %>
cookie=<%= Server.HTMLEncode(Request.Cookies("plain")) %>
empty=<%= IsEmpty(Request.QueryString("nothing")) %>
url=<%= Server.URLEncode("a b&c/" & Chr(228)) %>
map=<%= Server.MapPath("/more/x.txt") %>
names=<% For Each name In Request.QueryString: Response.Write Server.HTMLEncode(name) & "," : Next %>
