<%@ Language="VBScript" CodePage="1252" %><% Option Explicit %>
<!-- #include file="query.inc" -->
<!-- #include file="layout.inc" -->
<%
' A document: its texts with the hits of a query marked, its files, its notes. Takes new notes.
Dim query, text, noteText, segmentCount, notes, status, markOn, markOff

RequireLogon
TakeDocument
text = CStr(Request("q"))
If Not IsPlain(text) Then text = ""
' Two characters that no text has; they become tags after the text has been encoded.
markOn = Chr(1)
markOff = Chr(2)
Set query = NewQuery(False)
If Request.ServerVariables("REQUEST_METHOD") = "POST" Then AddNote

segmentCount = query.TELOGetSegmentsInit(documentChannel, documentArchive, documentId, documentVersion, text, markOn, markOff, _
  vbCrLf, " ", "", False, notes, status)
If segmentCount < 0 Then ShowFailure "The document cannot be read: " & status
StartPage documentChannel & ", " & documentArchive & ", document " & documentId
ShowSegments
ShowNotes
EndPage

Function ThisDocument()
  ThisDocument = DocumentAddress(documentChannel, documentArchive, documentId, documentVersion)
End Function

' A text as HTML, with the hits marked and its line ends kept.
Function Marked(segmentText)
  Dim html
  html = Replace(H(segmentText), markOn, "<mark>")
  html = Replace(html, markOff, "</mark>")
  Marked = Replace(html, vbCrLf, "<br>")
End Function

Sub ShowSegments()
  Dim i, body, channel, archive, id, version, index, field, name, length, hits, contentLength, ext, kind, title
  For i = 1 To segmentCount
    body = query.TELOGetSegmentsNext(channel, archive, id, version, index, field, name, length, hits, contentLength, ext, _
      kind, title)
%><section>
<h2><%= H(title) %></h2>
<% If body <> "" Then %><p><%= Marked(body) %></p>
<% End If
    If contentLength > 0 Then
%><p><a href="download.asp?<%= H(ThisDocument() & "&segment=" & index) %>">Download, <%= H(contentLength) %> bytes</a></p>
<%  End If %></section>
<%
  Next
End Sub

' The notes take the place of the document's texts in the component, so they are read last.
Sub ShowNotes()
  Dim count, i, note, comma
  count = query.TELOGetNotesInit(documentChannel, documentArchive, documentId, documentVersion, status)
%><h2>Notes</h2>
<%
  For i = 1 To count
    note = query.TELOGetNotesNext()
    comma = InStr(InStr(note, ",") + 1, note, ",")  ' behind author and date
%><blockquote><small><%= H(Left(note, comma - 1)) %></small><br><%= Marked(Mid(note, comma + 1)) %></blockquote>
<%
  Next
%><form method="post" action="document.asp?<%= H(ThisDocument()) %>">
<textarea name="note" rows="3" cols="60"></textarea>
<button>Add note</button>
</form>
<%
End Sub

Sub AddNote()
  noteText = CStr(Request.Form("note"))
  If noteText = "" Or Not IsPlain(noteText) Then ShowFailure "A note has a text without a caret."
  If query.TELOWriteNote(documentChannel, documentArchive, documentId, documentVersion, noteText, vbCrLf, status) < 0 Then
    ShowFailure "The note cannot be added: " & status
  End If
  Response.Redirect "document.asp?" & ThisDocument()
End Sub
%>
