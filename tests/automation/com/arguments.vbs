' Arguments that are left out, given by value and by reference; the errors that automation demands.
Dim page, kept, status, list(2), other
Set page = NewPage("arguments")

kept = "kept"
ExpectInteger "a refused request", page.TELOEditDocument("refused.imp", kept, status), -1
Expect "a value that is read and replaced, after a failure", kept, "kept"
Expect "the status of a refused request", status, "Not allowed"
ExpectLong "a variable as an output", page.TELOCreateDocument("x", kept), 1
Expect "a variable as an output is written", kept, "1271,1"
list(1) = 5
ExpectLong "an element of an array as an output", page.TELOCreateDocument("x", list(1)), 1
Expect "an element of an array as an output is written", list(1), "1271,1"
kept = "kept"
ExpectLong "a value in place of an output", page.TELOCreateDocument("x", (kept)), 1
Expect "a value in place of an output is not written", kept, "kept"
ExpectLong "an output left out in the middle", page.TELOCreateDocument("x", , status), 1
Expect "the output after it", status, ""
ExpectLong "a constant in place of outputs", page.TELOCreateDocument("x", "y", 3), 1
Set other = CreateObject("OXAQryCln.clsQuery")
ExpectLong "an object as the start of an output", page.TELOCreateDocument("x", other), 1
Expect "the object is replaced", other, "1271,1"
kept = Null
ExpectLong "Null as the start of an output", page.TELOCreateDocument("x", kept), 1
Expect "Null is replaced", kept, "1271,1"

Sub FillIn(ByRef output)
  status = page.TELOCreateDocument("x", output)
End Sub
kept = "kept"
FillIn kept
Expect "a reference that is passed on", kept, "1271,1"

' The same variable as an input and as an output.
kept = "Finance"
ExpectLong "input and output in one", page.TELOGetDocumentInfo(kept, "b", "1", "2", , , , kept), 1
Expect "input and output in one is written", kept, "Invoice for a harbour crane"

Class Named
  Public Default Property Get Value
    Value = "secret"
  End Property
End Class
Class Plain
  Public Value
End Class
Expect "an object stands for its default property", page.Encode(New Named), "AC98A69293A4"
Expect "an object without a default property", page.Encode(New Plain), ""

Expect "an Integer", page.EncodeBase64(CInt(12)), page.EncodeBase64("12")
Expect "a Long", page.EncodeBase64(CLng(70000)), page.EncodeBase64("70000")
Expect "a Byte", page.EncodeBase64(CByte(200)), page.EncodeBase64("200")
Expect "a Single", page.EncodeBase64(CSng(0.1)), page.EncodeBase64("0.1")
Expect "a Double", page.EncodeBase64(CDbl(0.25)), page.EncodeBase64("0.25")
Expect "a Currency", page.EncodeBase64(CCur(1.5)), page.EncodeBase64("1.5")
Expect "a Boolean", page.EncodeBase64(True), page.EncodeBase64("True")
Expect "Empty", page.EncodeBase64(Empty), ""

On Error Resume Next
kept = page.NoSuchMember
ExpectError "an unknown member", 438
kept = page.RemoteHosts
ExpectError "a property that can only be assigned is read", 438
page.HelloWorld = "x"
ExpectError "a method is assigned", 438
kept = page.Encode()
ExpectError "a required argument is missing", 449
kept = page.TELOGetQueryFormatListInit("a", , status)
ExpectError "a required argument is left out", 449
kept = page.TELOQueryArchiveInit("a", 1, 1, "")
ExpectError "the last required argument is missing", 449
kept = page.Encode("a", "b")
ExpectError "an argument too many", 450
kept = page.HelloWorld(1)
ExpectError "an argument of a method without any", 450
page.lngRequestTimeout = "ten"
ExpectError "a text for a number", 13
page.lngRequestTimeout = Null
ExpectError "Null for a number", 13
page.lngRequestTimeout = 3000000000
ExpectError "a number that does not fit", 6
kept = page.Encode(list)
ExpectError "an array for a text", 13
kept = page.lngRequestTimeout
ExpectLong "a refused assignment changes nothing", kept, 10

Finish
