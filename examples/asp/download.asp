<%@ Language="VBScript" CodePage="1252" %><% Option Explicit %>
<!-- #include file="query.inc" -->
<!-- #include file="layout.inc" -->
<%
' The content of a segment. The archive puts it into the blob directory, from which the page sends it;
' another visitor may be reading the same file, so it stays there.
Const kBlock = 65536
Dim query, segment, fileName, fileLength, status, files, path, content

RequireLogon
TakeDocument
segment = CStr(Request.QueryString("segment"))
If Not IsNumeric(segment) Then ShowFailure "There is no such file."
Set query = NewQuery(False)
If query.TELOGetSegmentData(documentChannel, documentArchive, documentId, documentVersion, segment, fileName, fileLength, _
    status) < 0 Then
  ShowFailure "The file cannot be read: " & status
End If

' In code page 1252 each byte is one character, so a text file object reads and Response writes any bytes.
path = Application("BlobPathLocal") & "\" & fileName
Response.Clear
Response.ContentType = "application/octet-stream"
Response.AddHeader "Content-Disposition", "attachment; filename=""" & Server.URLEncode(fileName) & """"
Set files = Server.CreateObject("Scripting.FileSystemObject")
Set content = files.OpenTextFile(path)
Do While Not content.AtEndOfStream
  Response.Write content.Read(kBlock)
Loop
content.Close
Response.End
%>
