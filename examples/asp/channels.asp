<%@ Language="VBScript" CodePage="1252" %><% Option Explicit %>
<!-- #include file="query.inc" -->
<!-- #include file="layout.inc" -->
<%
Dim query, status, channel, description, archive, comment

RequireLogon
Set query = NewQuery(False)
If query.TELOGetAllArchivesExtInit(status) < 0 Then ShowFailure "The channels cannot be read: " & status

StartPage "Channels"
Do While query.TELOGetAllArchivesExtNext(channel, description) >= 0
  If IsVisible(channel) Then
%><h2><%= H(channel) %></h2>
<p><%= H(description) %></p>
<ul>
<%
    archive = query.TELOGetAllArchivesExtNextArchive(comment)
    Do While archive <> ""
%><li><b><%= H(archive) %></b> <%= H(comment) %></li>
<%
      archive = query.TELOGetAllArchivesExtNextArchive(comment)
    Loop
%></ul>
<%
  End If
Loop
EndPage
%>
