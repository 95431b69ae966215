<%@ Language="VBScript" CodePage="1252" %><% Option Explicit %>
<!-- #include file="query.inc" -->
<!-- #include file="layout.inc" -->
<%
' Takes a file from the visitor and hands it to the archive's blob directory.
Dim query, fileName, fileSize, status

RequireLogon
StartPage "Upload"
If Request.ServerVariables("REQUEST_METHOD") = "POST" Then
  Set query = NewQuery(False)
  ' The component reads the form itself: it has known the request since OnStartPage.
  Select Case query.UploadFile(Session.SessionID, fileName, fileSize)
    Case 1
      If query.TELOUploadFile(fileName, status) < 0 Then ShowFailure "The archive did not take the file: " & status
%><p>Stored <b><%= H(fileName) %></b>, <%= fileSize %> bytes.</p>
<%
    Case 0
      ShowFailure "Choose a file first."
    Case Else
      ShowFailure "The file cannot be stored."
  End Select
End If
%>
<form method="post" action="upload.asp" enctype="multipart/form-data">
<input type="file" name="file">
<button>Upload</button>
</form>
<% EndPage %>
