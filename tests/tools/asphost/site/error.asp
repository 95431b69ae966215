<%@ Language="VBScript" %><% Option Explicit %>
<!-- #include file="more/broken.inc" -->
<p>before</p>
<% If Request("where") = "include" Then
  Break "x"
End If
If Request("where") = "raised" Then Err.Raise 1000, "page", "<script>alert(1)</script>"
If Request("where") = "object" Then Set Session("x") = Request
If Request("where") = "outside" Then Response.Write Server.MapPath("../../secret.txt")
If Request("where") = "header" Then Response.AddHeader "X-Split", "a" & vbCrLf & "Set-Cookie: b=c"
If Request("where") = "long" Then
  Server.ScriptTimeout = 1
  Do While True
    Response.Write "x"
  Loop
End If %>
<p>after</p>
