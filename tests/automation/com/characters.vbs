' Every character of the code page goes into the component and comes back, in texts, outputs and requests.
Dim page, code, all, encrypted, answer
Set page = NewPage("characters")
For code = 0 To 255
  all = all & Chr(code)
  page.strUserName = Chr(code)
  Expect "character " & code, page.strUserName, Chr(code)
Next
ExpectLong "length", Len(all), 256
page.strUserName = all
Expect "all characters in a variable", page.strUserName, all
Expect "all characters through a method", page.DecodeBase64(page.EncodeBase64(all)), all
Expect "their bytes", Left(page.EncodeBase64(all), 16), "AAECAwQFBgcICQoL"
Expect "the bytes of 128 and 255", page.EncodeBase64(Chr(128) & Chr(255)), "gP8="
' The server answers with the command part that it received.
all = Mid(all, 33)
answer = page.DirectQuery("^Echo^,^" & all & "^")
Expect "all characters over the wire", answer, "^Echo^,^" & all & "^"
Finish
