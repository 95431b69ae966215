' Put in front of every script by run_scripts, which defines Server, "127.0.0.1,PORT", and Folder, a directory of this
' script's own. A script ends with Finish: the host stops at an error without a word, and no line tells of success then.
Dim checkCount, failureCount
checkCount = 0
failureCount = 0

Function Shown(value)
  If VarType(value) = 9 Or VarType(value) > 8191 Then
    Shown = VarType(value)
  ElseIf IsNull(value) Then
    Shown = "1 Null"
  Else
    Shown = VarType(value) & " " & value
  End If
End Function

Sub Expect(name, value, expected)
  checkCount = checkCount + 1
  If Shown(value) <> Shown(expected) Then
    failureCount = failureCount + 1
    WScript.Echo "FAILED " & name & ": " & Shown(value) & ", not " & Shown(expected)
  End If
End Sub


Sub ExpectLong(name, value, expected)
  Expect name, value, CLng(expected)
End Sub

Sub ExpectInteger(name, value, expected)
  Expect name, value, CInt(expected)
End Sub

' The last error, under On Error Resume Next.
Sub ExpectError(name, number)
  ExpectLong name, CLng(Err.Number), number
  Err.Clear
End Sub

' An instance as a page makes it, without a database.
Function NewPage(session)
  Dim page
  Set page = CreateObject("OXAQryCln.clsQuery")
  page.strSessionID = session
  page.strTELOUser = "webuser"
  page.lngRequestTimeout = 10
  page.strDebugLogPath = Folder
  page.strBlobPathLocal = Folder
  page.RemoteHosts = Server
  Expect "Init", page.Init(False), True
  Set NewPage = page
End Function

Sub Finish
  WScript.Echo "END " & checkCount & " checks, " & failureCount & " failures"
End Sub
