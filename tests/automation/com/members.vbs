' Every member through late binding, with the types of its results and outputs.
Dim page, a, b, c, d, e, f, g, h, i

' --- Settings and life cycle ---
Set page = CreateObject("oxaqrycln.CLSQUERY.1")
ExpectLong "a number at the start", page.lngRequestTimeout, 0
Expect "a text at the start", page.strSessionID, ""
Expect "a date at the start", page.datUserLoginTime, CDate(0)
page.lngRequestTimeout = "10"
ExpectLong "lngRequestTimeout", page.lngRequestTimeout, 10
page.strSessionID = "S1"
Expect "strSessionID", page.STRsessionid, "S1"
page.strTELOPwd = 12
Expect "strTELOPwd", page.strTELOPwd, "12"
page.strTELOUser = "webuser"
Expect "strTELOUser", page.strTELOUser, "webuser"
page.strBlobPathLocal = Folder
Expect "strBlobPathLocal", page.strBlobPathLocal, Folder
page.strBlobPathRemote = True
Expect "strBlobPathRemote", page.strBlobPathRemote, "True"
page.strBlobPathRemote = ""
page.strDBConnect = Empty
Expect "strDBConnect", page.strDBConnect, ""
page.strDebugLogPath = Folder
Expect "strDebugLogPath", page.strDebugLogPath, Folder
page.strChangeFileExt = ""
Expect "strChangeFileExt", page.strChangeFileExt, ""
page.strDES56Key = "7654321"
Expect "strDES56Key", page.strDES56Key, "7654321"
page.strUserIP = "::1"
Expect "strUserIP", page.strUserIP, "::1"
page.strUserName = "x"
Expect "strUserName", page.strUserName, "x"
page.datUserLoginTime = CDate(46000.75)
Expect "datUserLoginTime", page.datUserLoginTime, CDate(46000.75)
page.RemoteHosts = Server
Expect "Init", page.Init(False), True
Expect "a method without a result", page.OnEndPage, Empty
page.OnStartPage Nothing
page.OnEndPage

' --- Helpers, encryption, log ---
Expect "Encode", page.Encode("secret"), "AC98A69293A4"
Expect "Decode", page.Decode("AC98A69293A4"), "secret"
Expect "EncodeBase64", page.EncodeBase64("secret"), "c2VjcmV0"
Expect "DecodeBase64", page.DecodeBase64("c2VjcmV0"), "secret"
Expect "Encrypt and Decrypt", page.Decrypt(page.Encrypt("secret")), "secret"
Expect "EncryptBase64 and DecryptBase64", page.DecryptBase64(page.EncryptBase64("secret", "1234567"), "1234567"), "secret"
Expect "HelloWorld", page.HelloWorld, "Hello World!"
Expect "WriteLog", page.WriteLog("a line", 2), Empty
Expect "WriteTest", page.WriteTest, Empty
Expect "DeleteFTPObjects", page.DeleteFTPObjects(Folder & "\none\none.txt"), Empty
Expect "LiveCheck", page.LiveCheck(), "OXA development archive server VERSION alive"
Expect "DirectQuery", page.DirectQuery("^CreateDocument^,^x^"), "1271,1"

' --- Web users, without a database ---
ExpectInteger "WriteUserToDB", page.WriteUserToDB("a", "b"), -1
ExpectLong "GetNextDBObjectID", page.GetNextDBObjectID("a", "b"), 0
ExpectLong "CheckLogon", page.CheckLogon("a", "b"), 0
ExpectInteger "ChangePasswd", page.ChangePasswd("a", "b", "c"), 0
ExpectLong "GetUserTELOUser", page.GetUserTELOUser(1, a, b), 0
Expect "GetUserTELOUser, untouched", a, Empty
ExpectLong "GetUserChangePasswd", page.GetUserChangePasswd(1, a), 0
ExpectInteger "GetUserChangePasswd, intChangePasswd", a, 0
ExpectLong "SetUserChangePasswd", page.SetUserChangePasswd(1, True), 0
Expect "GetUserRights", page.GetUserRights(1, a), Empty
Expect "GetUserRights, strRights", a, ""
Expect "GetUserEditRights", page.GetUserEditRights(1, a), Empty
Expect "GetUserGroups", page.GetUserGroups(1, a), Empty
Expect "GetUserArchives", page.GetUserArchives(1, a), Empty
Expect "GetUserChannels", page.GetUserChannels(1, a), Empty
Expect "GetUserDocRights", page.GetUserDocRights(1, "a", "b", a), Empty
Expect "GetUserSearchRights", page.GetUserSearchRights(1, "a", "b", a, b, c), Empty
ExpectInteger "GetOutliner", page.GetOutliner("a", "b", a), -1
ExpectInteger "GetOutlinerContentInit", page.GetOutlinerContentInit(1), -1
Expect "GetOutlinerContentNext", page.GetOutlinerContentNext(a, b, c, d, e, f, g), ""
Expect "GetOutlinerContentReset", page.GetOutlinerContentReset, Empty
ExpectInteger "UpdateOutlinerContent", page.UpdateOutlinerContent(1, True), -1
Expect "GetOutlinerSearchExpr", page.GetOutlinerSearchExpr(1), ""

' --- Channels and archives ---
a = "kept"
ExpectLong "TELOGetChannelsInit", page.TELOGetChannelsInit(a), 5
Expect "TELOGetChannelsInit, strParamStatus", a, ""
Expect "TELOGetChannelsNext", page.TELOGetChannelsNext(a), "B" & Chr(252) & "ro"
Expect "TELOGetChannelsNext, strChannelDescription", a, "Protokolle, Aush" & Chr(228) & "nge"
ExpectLong "TELOGetAllArchivesInit", page.TELOGetAllArchivesInit, 9
Expect "TELOGetAllArchivesNext", page.TELOGetAllArchivesNext(), "$(#B" & Chr(252) & "ro)\Protokolle"
ExpectLong "TELOGetQueryFormatListInit", page.TELOGetQueryFormatListInit("Finance", "Orders"), 4
Expect "TELOGetQueryFormatListNext", page.TELOGetQueryFormatListNext, "Full text"
ExpectLong "TELOGetAllArchivesExtInit", page.TELOGetAllArchivesExtInit, 5
ExpectLong "TELOGetAllArchivesExtNext", page.TELOGetAllArchivesExtNext(a, b), 3
Expect "TELOGetAllArchivesExtNext, strChannel", a, "Mail"
Expect "TELOGetAllArchivesExtNextArchive", page.TELOGetAllArchivesExtNextArchive(a), "Inbox"
Expect "TELOGetAllArchivesExtNextArchive, strComment", a, "Letters received"
Expect "TELOGetAllArchivesExtFirst", page.TELOGetAllArchivesExtFirst, Empty
Expect "TELOGetArchiveProperties", page.TELOGetArchiveProperties("a", "b", a, b, c, d), "30"
Expect "TELOGetArchiveProperties, blnIndex", d, "0"

' --- Query and hit list ---
ExpectLong "TELOQueryArchiveInit", page.TELOQueryArchiveInit("x", 10, 500, "", "", "", "", a, b, c, d, e), 3
Expect "TELOQueryArchiveInit, strLayoutKeys", a, "10,11,14"
Expect "TELOQueryArchiveInit, strLayoutValues", b, "Title,Author,Date"
Expect "TELOQueryArchiveInit, lngTotalHits", c, "2"
Expect "TELOQueryArchiveInit, blnHitlistMultiTIFF", d, True
Expect "TELOQueryArchiveNext, titles", page.TELOQueryArchiveNext(), "^Title^,^Author^,^Date^"
Expect "TELOQueryArchiveNext", page.TELOQueryArchiveNext(a, b, c, d), _
       "^Reply about copper pipes^,^Anna F" & Chr(246) & "rster^,^21.02.2024^"
Expect "TELOQueryArchiveNext, strChannel", a, "Mail"
Expect "TELOQueryArchiveNext, strArchive", b, "Outbox"
Expect "TELOQueryArchiveNext, strDocID", c, "1137"
Expect "TELOQueryArchiveNext, strVer", d, "2"
ExpectLong "TELOSortHitlistInit", page.TELOSortHitlistInit(1), 3
a = page.TELOSortHitlistNext(b)
Expect "TELOSortHitlistNext", page.TELOSortHitlistNext(b, , c), "^Zeichnung copper pipes^,^Anna F" & Chr(246) & "rster^,^26.11.2023^"
Expect "TELOSortHitlistNext, strDocID", c, "1232"
ExpectLong "TELODeleteFromHitlist", page.TELODeleteFromHitlist(1), 1
ExpectLong "TELOSortHitlist2Init", page.TELOSortHitlist2Init("^0^,^0^,^0^,^0^" & vbCrLf & "^R^,^D^,^V^,^T^" & vbCrLf & "^r^,^1^,^1^,^t^", 1), 2
Expect "TELOSortHitlist2Next", page.TELOSortHitlist2Next, "^R^,^D^,^V^,^T^"

' --- Documents and segments ---
ExpectLong "TELOGetDocumentInfo", page.TELOGetDocumentInfo("a", "b", "1", "2", a, b, c, d, e, f, g, h, i), 1
ExpectLong "TELOGetDocumentInfo, lngLaenge", a, 1009
Expect "TELOGetDocumentInfo, strErstelldat", b, "14.08.2026"
Expect "TELOGetDocumentInfo, strTitel", d, "Invoice for a harbour crane"
ExpectInteger "TELOGetDocumentInfo, intFelderGes", e, 7
ExpectLong "TELOGetSegmentDescriptionInit", page.TELOGetSegmentDescriptionInit("a", "b", "1", "2", , a), 7
Expect "TELOGetSegmentDescriptionInit, lngNotes", a, "0"
Expect "TELOGetSegmentDescriptionNext", page.TELOGetSegmentDescriptionNext(a, b, c, d, e, f, g, h, i), "author"
Expect "TELOGetSegmentDescriptionNext, intFeldID", a, "11"
ExpectLong "TELOGetSegmentTextInit", page.TELOGetSegmentTextInit("a", "b", "1", "2"), 5
Expect "TELOGetSegmentTextNext", page.TELOGetSegmentTextNext(), "[Mia]_Kr" & Chr(228) & "henb" & Chr(252) & "hl"
ExpectLong "TELOGetSegmentsInit", page.TELOGetSegmentsInit("a", "b", "1", "2"), 7
Expect "TELOGetSegmentsNext", page.TELOGetSegmentsNext(a, b, c, d, e, f, g, h), "Mia Kr" & Chr(228) & "henb" & Chr(252) & "hl"
ExpectInteger "TELOGetSegmentsNext, intFeldIndex", e, 1
ExpectLong "TELOGetSegmentsNext, lngTextLaenge", h, 14

' --- Content, changes, upload ---
ExpectLong "TELOGetSegmentData", page.TELOGetSegmentData("a", "b", "1", "2", 5, a, b), 1
Expect "TELOGetSegmentData, strFileName", a, "1003_1_5.tif"
Expect "TELOGetSegmentData, lngFileLen", b, "776"
ExpectLong "TELOGetSegmentFirstBLOB", page.TELOGetSegmentFirstBLOB("a", "b", "1", "2", "csv", a), 1
Expect "TELOGetSegmentFirstBLOB, strFileName", a, "1094_2_7.csv"
ExpectLong "TELOGetSegmentPrintfile", page.TELOGetSegmentPrintfile("a", "b", "1", "2", "16", a), 1
ExpectLong "TELOGetSegmentMultiTIF", page.TELOGetSegmentMultiTIF("a", "b", "1", "2", "1;3-4", a, b), 1
ExpectLong "TELOTransferBLOB", page.TELOTransferBLOB("1094_2_7.csv", 60), 1
ExpectLong "TELODeleteDocument", page.TELODeleteDocument("a", "b", "1", "2"), 1
ExpectLong "CreateImportFile", page.CreateImportFile(Folder & "\order.imp", "a", "b", "c", "1", "11", "x"), 1
ExpectLong "TELOUploadFile", page.TELOUploadFile("order.imp", a), 1
ExpectLong "TELOCreateDocument", page.TELOCreateDocument("order.imp", a), 1
Expect "TELOCreateDocument, strDocIDVer", a, "1271,1"
ExpectLong "TELOEditDocument", page.TELOEditDocument("order.imp", a), 1
Expect "TELOEditDocument, strDocIDVer", a, "1271,2"
ExpectInteger "UploadFile", page.UploadFile("", a), -1

' --- Notes, masks, orders, printing ---
ExpectLong "TELOGetNotesInit", page.TELOGetNotesInit("a", "b", "1", "2"), 1
Expect "TELOGetNotesNext", Left(page.TELOGetNotesNext, 24), "webuser,28.05.2023 09:15"
ExpectLong "TELOWriteNote", page.TELOWriteNote("a", "b", "1", "2", "note"), 1
ExpectLong "TELODeleteNotes", page.TELODeleteNotes("a", "b", "1", "2"), 1
ExpectLong "TELOGetMasksInit", page.TELOGetMasksInit("a", "b"), 2
ExpectLong "TELOGetMasksNext", page.TELOGetMasksNext(a), 4
Expect "TELOGetMasksNext, strMaskName", a, "Standard"
ExpectLong "TELOGetMasksNextField", page.TELOGetMasksNextField(a, b, c, d, e, f, g, h), 3
Expect "TELOGetMasksNextField, lngTabIndex", a, "1"
Expect "TELOGetMasksFirst", page.TELOGetMasksFirst, Empty
ExpectLong "OstranaQueryFahrauftraegeInit", page.OstranaQueryFahrauftraegeInit("x", 10), 1
Expect "OstranaQueryFahrauftraegeNext", page.OstranaQueryFahrauftraegeNext(a, b, c), "^17^,^Berlin^"
Expect "OstranaQueryFahrauftraegeNext, strStatus", a, "open"
ExpectLong "OstranaGetFahrauftraegeMultiTIFF", page.OstranaGetFahrauftraegeMultiTIFF("17", a, b), 1
ExpectLong "OstranaUpdateFahrauftraegeStatus", page.OstranaUpdateFahrauftraegeStatus("17", "done"), 1
a = page.TELOQueryArchiveInit("x", 10, 500, "", "")
ExpectLong "FennikPrintHitlistPDF", page.FennikPrintHitlistPDF("Hits", a, b), 1

Set page = Nothing
Finish
