' Several instances on one thread: each has its own settings and records.
Dim pages(7), i
For i = 0 To 7
  Set pages(i) = NewPage("instance" & i)
Next
For i = 0 To 7
  ExpectLong "channels of " & i, pages(i).TELOGetChannelsInit, 5
Next
For i = 0 To 7
  Expect "session of " & i, pages(i).strSessionID, "instance" & i
  Expect "first channel of " & i, pages(i).TELOGetChannelsNext, "B" & Chr(252) & "ro"
  Set pages(i) = Nothing
Next
For i = 1 To 200
  Set pages(0) = NewPage("again")
  Set pages(0) = Nothing
Next
Finish
