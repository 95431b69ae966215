<%@ Language="VBScript" CodePage="1252" %><% Option Explicit %>
<!-- #include file="query.inc" -->
<!-- #include file="layout.inc" -->
<%
' The hit list of a query. sort is the column that it is sorted by; turn=1 reverses the order.
Const kMostHits = 50
Dim query, text, sortColumn, turn, total, multi, keys, values, status

RequireLogon
text = CStr(Request.QueryString("q"))
sortColumn = 0
If IsNumeric(Request.QueryString("sort")) Then sortColumn = CLng(Request.QueryString("sort"))
turn = (Request.QueryString("turn") = "1")

StartPage "Search"
%>
<form method="get" action="search.asp">
<label>Words <input name="q" size="40" value="<%= H(text) %>" autofocus></label>
<button>Search</button>
</form>
<%
If text <> "" Then
  If Not IsPlain(text) Then ShowFailure "A query has no caret."
  If FolderRights() = "" Then ShowFailure "There is no channel that you may search."
  Set query = NewQuery(False)
  If query.TELOQueryArchiveInit(text, kMostHits, 1000, "", FolderRights(), "", "", keys, values, total, multi, status) < 0 Then
    ShowFailure "The search failed: " & status
  End If
  If sortColumn > 0 Then
    If query.TELOSortHitlistInit(sortColumn) < 0 Then ShowFailure "There is no such column."
    If turn Then query.TELOSortHitlistInit sortColumn
  End If
  ShowHits
End If
EndPage

Function SearchAddress(column, turned)
  SearchAddress = "search.asp?q=" & Server.URLEncode(text) & "&sort=" & column
  If turned Then SearchAddress = SearchAddress & "&turn=1"
End Function

Sub ShowHits()
  Dim row, channel, archive, id, version, columns, i, address, shown, words, cells, first
  row = query.TELOSortHitlistNext(channel, archive, id, version)
  columns = ColumnsOf(row)
%><table>
<tr><%
  For i = 0 To UBound(columns)
    address = SearchAddress(i + 1, sortColumn = i + 1 And Not turn)
%><th><a href="<%= H(address) %>"><%= H(columns(i)) %></a></th><%
  Next
%></tr>
<%
  shown = 0
  words = H("&q=" & Server.URLEncode(text))
  row = query.TELOSortHitlistNext(channel, archive, id, version)
  Do While row <> ""
    address = "document.asp?" & DocumentAddress(channel, archive, id, version) & words
    cells = CellsOf(row)
    first = InStr(cells, "</td>")
    Response.Write "<tr><td><a href=""" & address & """>" & Mid(cells, 5, first - 5) & "</a>" & Mid(cells, first) & _
      "</tr>" & vbCrLf
    shown = shown + 1
    row = query.TELOSortHitlistNext(channel, archive, id, version)
  Loop
%></table>
<p><%= shown %> of <%= H(total) %> hits</p>
<%
End Sub

' The columns as cells of a table, encoded all at once: in a list of this length each call counts.
Function CellsOf(row)
  CellsOf = "<td></td>"
  If Len(row) > 2 Then CellsOf = "<td>" & Replace(H(Mid(row, 2, Len(row) - 2)), "^,^", "</td><td>") & "</td>"
End Function

' "^column^,^column^"
Function ColumnsOf(row)
  If Len(row) < 2 Then
    ColumnsOf = Array()
  Else
    ColumnsOf = Split(Mid(row, 2, Len(row) - 2), "^,^")
  End If
End Function
%>
