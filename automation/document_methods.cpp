// The archive operations on documents, transport orders, and printing.
#include "automation/method_binding.h"
#include "automation/method_groups.h"

namespace oxaqrycln {

using binding::Method;

std::vector<MethodEntry> DocumentsAndSegments() {
  constexpr std::string_view kGroup = "Documents and segments";
  return {
      Method<&clsQuery::TELOGetDocumentInfo>(
          {"TELOGetDocumentInfo", kGroup, "Number of lines of the answer (Long), or -1 (Integer) on failure.",
           "Asks for a document's length (Long), dates and title, and its numbers of fields in all, of text, image and "
           "stored-file fields (Integer)."},
          "strChannel", "strArchive", "strDocID", "strVer", "lngLaenge", "strErstelldat", "strAenderDat", "strTitel",
          "intFelderGes", "intTextFelder", "intBildFelder", "intBlobFelder", "strParamStatus"),
      Method<&clsQuery::TELOGetSegmentDescriptionInit, 4>(
          {"TELOGetSegmentDescriptionInit", kGroup, kCountResult,
           "Asks for the descriptions of a document's segments; lngNotes receives its number of notes as text."},
          "strChannel", "strArchive", "strDocID", "strVer", "strParamThumbnailPath", "lngNotes", "strParamStatus"),
      Method<&clsQuery::TELOGetSegmentDescriptionNext>(
          {"TELOGetSegmentDescriptionNext", kGroup, "The segment's name, \"\" at the end.",
           "The next segment. All outputs are text."},
          "intFeldID", "lngTextLaenge", "intTrefferZahl", "lngNCILaenge", "strExt", "intFeldTyp", "strFeldtitel",
          "strDateiname", "intStatus", "strLayoutID", "lngThumbnailSize"),
      Method<&clsQuery::TELOGetSegmentTextInit, 4>(
          {"TELOGetSegmentTextInit", kGroup, "Number of texts (Long), or -1 (Integer) on failure.",
           "Asks for a document's texts with the hits of strQuery between strMarkOn and strMarkOff. strCRLF stands "
           "between the lines of a text, CR LF when left out. The texts outlive other requests."},
          "strChannel", "strArchive", "strDocID", "strVer", "strQuery", "strMarkOn", "strMarkOff", "strCRLF",
          "strBlank", "strParamStatus"),
      Method<&clsQuery::TELOGetSegmentTextNext>(
          {"TELOGetSegmentTextNext", kGroup, "The text, \"\" at the end.", "The next text."}),
      Method<&clsQuery::TELOGetSegmentsInit, 4>(
          {"TELOGetSegmentsInit", kGroup, "Number of segments (Long), or -1 (Integer) on failure.",
           "Asks for a document's segments with descriptions and texts; lngNotes receives its number of notes (Long). "
           "strParamCRLF stands between the lines of a text, CR LF when left out; only True switches blnIncludeERF "
           "on."},
          "strChannel", "strArchive", "strDocID", "strVer", "strQuery", "strMarkOn", "strMarkOff", "strParamCRLF",
          "strBlank", "strThumbnailPath", "blnIncludeERF", "lngNotes", "strParamStatus"),
      Method<&clsQuery::TELOGetSegmentsNext>(
          {"TELOGetSegmentsNext", kGroup, "The segment's text, \"\" at the end.",
           "The next segment. Outputs named int... receive an Integer, lng... a Long, str... a text."},
          "strChannel", "strArchive", "strDocID", "strVer", "intFeldIndex", "intFeldID", "strFeldName", "lngTextLaenge",
          "intTrefferZahl", "lngNCILaenge", "strExt", "intFeldTyp", "strFeldtitel", "strDateiname", "intStatus",
          "strLayoutID", "lngThumbnailSize"),
  };
}

std::vector<MethodEntry> Content() {
  constexpr std::string_view kGroup = "Content";
  return {
      Method<&clsQuery::TELOGetSegmentData>(
          {"TELOGetSegmentData", kGroup, kDoneResult,
           "Has the server put a segment's content into the blob directory; strFileName receives the file's bare name "
           "after strChangeFileExt was applied, lngFileLen its length as text."},
          "strChannel", "strArchive", "strDocID", "strVer", "intFieldIndex", "strFileName", "lngFileLen",
          "strParamStatus"),
      Method<&clsQuery::TELOGetSegmentFirstBLOB, 4>(
          {"TELOGetSegmentFirstBLOB", kGroup, kDoneResult,
           "The same for the first stored file, of an extension when one is given."},
          "strChannel", "strArchive", "strDocID", "strVer", "strParamFileExt", "strFileName", "lngFileLen",
          "strParamStatus"),
      Method<&clsQuery::TELOGetSegmentPrintfile>(
          {"TELOGetSegmentPrintfile", kGroup, kDoneResult,
           "The same for a file to print, from query servers with the print flag only."},
          "strChannel", "strArchive", "strDocID", "strVer", "strFieldID", "strFileName", "lngFileLen",
          "strParamStatus"),
      Method<&clsQuery::TELOGetSegmentMultiTIF>(
          {"TELOGetSegmentMultiTIF", kGroup, kDoneResult,
           "The same for an image file of several pages, \"1;4-6\"; without one the outputs become \"\" and 0 (Long)."},
          "strChannel", "strArchive", "strDocID", "strVer", "strPages", "strFileName", "lngFileLen", "strParamStatus"),
      Method<&clsQuery::TELOTransferBLOB>(
          {"TELOTransferBLOB", kGroup, kDoneResult,
           "Receives a file of lngFileLen bytes over the connection into strBlobPathLocal. A failure leaves nothing "
           "of it behind and an older file of that name in place."},
          "strFile", "lngFileLen", "strParamStatus"),
  };
}

std::vector<MethodEntry> DocumentChanges() {
  constexpr std::string_view kGroup = "Creating, editing, deleting";
  constexpr std::string_view kLinesResult = "Number of lines of the answer (Long), or -1 (Integer) on failure.";
  return {
      Method<&clsQuery::TELODeleteDocument>(
          {"TELODeleteDocument", kGroup, kDoneResult, "Deletes a document or one of its versions."}, "strChannel",
          "strArchive", "strDocID", "strVer", "strParamStatus"),
      Method<&clsQuery::CreateImportFile, 7>(
          {"CreateImportFile", kGroup, kDoneResult,
           "Appends the description of a document to a file; sends no request. The lists of field types and ids are "
           "separated by \",\", the contents written as they are."},
          "strImportFile", "strChannel", "strArchive", "strTitle", "strParamFieldTypes", "strParamFieldIDs",
          "strFieldContents", "strCharSet", "strParamStatus"),
      Method<&clsQuery::TELOCreateDocument>(
          {"TELOCreateDocument", kGroup, kLinesResult,
           "Has the server create a document from an import file, named as the server reaches it; strDocIDVer receives "
           "its id and version."},
          "strImportFile", "strDocIDVer", "strParamStatus"),
      Method<&clsQuery::TELOEditDocument>(
          {"TELOEditDocument", kGroup, kLinesResult,
           "The same for a new version of the document that strDocIDVer names, which receives the new id and version."},
          "strImportFile", "strDocIDVer", "strParamStatus"),
  };
}

std::vector<MethodEntry> Upload() {
  constexpr std::string_view kGroup = "Upload";
  return {
      Method<&clsQuery::TELOUploadFile>(
          {"TELOUploadFile", kGroup, kDoneResult,
           "Sends a file of strBlobPathLocal to the query server, into its blob directory."},
          "strFile", "strParamStatus"),
      Method<&clsQuery::UploadFile, 0>(
          {"UploadFile", kGroup, "1 when a file was stored, 0 when the form held none (Long), -1 (Integer) on failure.",
           "Stores the first file of the form in the page's request in strBlobPathLocal under the last part of its "
           "name, with strSubDir and \"_\" in front when given. The outputs receive the stored name and the size in "
           "bytes (Long)."},
          "strSubDir", "strFileNameParam", "lngFileSizeParam"),
  };
}

std::vector<MethodEntry> NotesAndMasks() {
  constexpr std::string_view kGroup = "Notes and masks";
  return {
      Method<&clsQuery::TELOGetNotesInit>(
          {"TELOGetNotesInit", kGroup, "Number of notes (Long), or -1 (Integer) on failure.",
           "Asks for a document's notes, which take the place of the texts of TELOGetSegmentTextInit."},
          "strChannel", "strArchive", "strDocID", "strVer", "strParamStatus"),
      Method<&clsQuery::TELOGetNotesNext>({"TELOGetNotesNext", kGroup, "The note, \"\" at the end.",
                                           "The next note: its header, \",\" and its text with CR LF between lines."}),
      Method<&clsQuery::TELOWriteNote, 5>(
          {"TELOWriteNote", kGroup, kDoneResult,
           "Attaches the first 8000 characters of a note. strParamCRLF tells the server which text stands for a line "
           "break, CR LF when left out."},
          "strChannel", "strArchive", "strDocID", "strVer", "strNote", "strParamCRLF", "strParamStatus"),
      Method<&clsQuery::TELODeleteNotes>({"TELODeleteNotes", kGroup, kDoneResult, "Deletes all notes of a document."},
                                         "strChannel", "strArchive", "strDocID", "strVer", "strParamStatus"),
      Method<&clsQuery::TELOGetMasksInit>(
          {"TELOGetMasksInit", kGroup, "Number of masks (Long), or -1 (Integer) on failure.",
           "Asks for the masks of an archive."},
          "strChannel", "strArchive", "strParamStatus"),
      Method<&clsQuery::TELOGetMasksNext>(
          {"TELOGetMasksNext", kGroup, "Number of fields of the mask (Long), or -1 (Integer) after the last.",
           "Moves to the next mask; strMaskName receives its name, \"\" after the last."},
          "strMaskName"),
      Method<&clsQuery::TELOGetMasksNextField>(
          {"TELOGetMasksNextField", kGroup,
           "Number of fields that follow in the mask (Long), or -1 (Integer) when there was none.",
           "The next field of the mask, its properties as the server wrote them."},
          "lngTabIndex", "lngWidth", "strAlign", "strName", "blnMandatory", "strInitText", "blnListOnly", "strList"),
      Method<&clsQuery::TELOGetMasksFirst>(
          {"TELOGetMasksFirst", kGroup, "", "Goes back to the first mask, without a request."}),
  };
}

std::vector<MethodEntry> TransportOrdersAndPrinting() {
  constexpr std::string_view kGroup = "Transport orders and printing";
  return {
      Method<&clsQuery::OstranaQueryFahrauftraegeInit>(
          {"OstranaQueryFahrauftraegeInit", kGroup, kCountResult,
           "Asks for the transport orders that a query of the server's own language finds, lngMaxLines at most."},
          "strQuery", "lngMaxLines", "strParamStatus"),
      Method<&clsQuery::OstranaQueryFahrauftraegeNext>(
          {"OstranaQueryFahrauftraegeNext", kGroup,
           "The order's id and further columns, \"^id^,^column^\", \"\" at the end.",
           "The next order; the outputs receive its status, and the id and version of its document, as text. A line "
           "with fewer than four fields is an error and stays the next one."},
          "strStatus", "strDocID", "strVer"),
      Method<&clsQuery::OstranaGetFahrauftraegeMultiTIFF>(
          {"OstranaGetFahrauftraegeMultiTIFF", kGroup, kDoneResult,
           "Has the server put the page images of orders into the blob directory as one image file; outputs as those "
           "of TELOGetSegmentMultiTIF."},
          "strOrderIDs", "strFileName", "lngFileLen", "strParamStatus"),
      Method<&clsQuery::OstranaUpdateFahrauftraegeStatus>(
          {"OstranaUpdateFahrauftraegeStatus", kGroup, kDoneResult, "Gives an order another status."}, "strOrderID",
          "strStatus", "strParamStatus"),
      Method<&clsQuery::FennikPrintHitlistPDF>(
          {"FennikPrintHitlistPDF", kGroup, kDoneResult,
           "Has the server print the hit list of the last query to a PDF file in the blob directory; outputs as those "
           "of TELOGetSegmentData. Fails without a request when there is no title row."},
          "strTitle", "strFileName", "lngFileLen", "strParamStatus"),
  };
}

}  // namespace oxaqrycln
