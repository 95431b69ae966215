<%@ Language="VBScript" CodePage="1252" %><%
Session.Abandon
Response.Redirect "default.asp"
%>
