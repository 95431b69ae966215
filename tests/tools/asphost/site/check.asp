<%@ Language="VBScript" CodePage="1252" %><% Option Explicit %>
<!-- #include file="query.inc" -->
<!-- #include file="layout.inc" -->
<% ' Hands what was typed to the component without a look at it.
Dim query
Set query = NewQuery(True)
%>user=<%= query.CheckLogon(CStr(Request.Form("user")), CStr(Request.Form("password"))) %>
