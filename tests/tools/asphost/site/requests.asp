<%@ Language="VBScript" CodePage="1252" %><% Option Explicit %>
<!-- #include file="query.inc" -->
<!-- #include file="layout.inc" -->
<% ' Makes the requests of an example page, or none for count=0: nothing is made of their answers.
Dim query, result, a, b, c, d, e, status

Sub Ask(kind)
  Select Case kind
    Case "channels"
      result = query.TELOGetAllArchivesExtInit(status)
    Case "search"
      result = query.TELOQueryArchiveInit("copper", 50, 1000, "", FolderRights(), "", "", a, b, c, d, status)
    Case "document"
      result = query.TELOGetSegmentsInit("Mail", "Inbox", "1262", "2", "price", "(", ")", vbCrLf, " ", "", False, a, status)
      If result > 0 Then result = query.TELOGetNotesInit("Mail", "Inbox", "1262", "2", status) + 1
    Case "download"
      result = query.TELOGetSegmentData("Mail", "Inbox", "1262", "2", 6, a, b, status)
  End Select
  If result <= 0 Then Err.Raise 1000, "page", "A request failed: " & status
End Sub

Set query = NewQuery(False)
If Request.QueryString("count") = "1" Then Ask CStr(Request.QueryString("kind"))
%>
