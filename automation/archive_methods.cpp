// The archive operations that find documents.
#include "automation/method_binding.h"
#include "automation/method_groups.h"

namespace oxaqrycln {

using binding::Method;

std::vector<MethodEntry> ChannelsAndArchives() {
  constexpr std::string_view kGroup = "Channels and archives";
  return {
      Method<&clsQuery::TELOGetChannelsInit>(
          {"TELOGetChannelsInit", kGroup, kCountResult, "Asks for the channels and sorts them in ascending order."},
          "strParamStatus"),
      Method<&clsQuery::TELOGetChannelsNext>(
          {"TELOGetChannelsNext", kGroup, "The channel's name, \"\" at the end.",
           "The next channel; strChannelDescription receives the text after its first comma."},
          "strChannelDescription"),
      Method<&clsQuery::TELOGetAllArchivesInit>(
          {"TELOGetAllArchivesInit", kGroup, kCountResult, "Asks for the archives and sorts them in ascending order."},
          "strParamStatus"),
      Method<&clsQuery::TELOGetAllArchivesNext>(
          {"TELOGetAllArchivesNext", kGroup, "The archive's line, whole, \"\" at the end.", "The next archive."}),
      Method<&clsQuery::TELOGetQueryFormatListInit>(
          {"TELOGetQueryFormatListInit", kGroup, kCountResult, "Asks for the query formats of an archive."},
          "strChannel", "strArchive", "strParamStatus"),
      Method<&clsQuery::TELOGetQueryFormatListNext>({"TELOGetQueryFormatListNext", kGroup,
                                                     "The query format, \"\" at the end.",
                                                     "The next query format, in the server's order."}),
      Method<&clsQuery::TELOGetAllArchivesExtInit>(
          {"TELOGetAllArchivesExtInit", kGroup, "Number of channels (Long), or -1 (Integer) on failure.",
           "Asks for every channel with its archives."},
          "strParamStatus"),
      Method<&clsQuery::TELOGetAllArchivesExtNext>(
          {"TELOGetAllArchivesExtNext", kGroup,
           "Number of archives of the channel (Long), or -1 (Integer) after the last.",
           "Moves to the next channel. The outputs become \"\" at the end."},
          "strChannel", "strChannelDescription"),
      Method<&clsQuery::TELOGetAllArchivesExtNextArchive>(
          {"TELOGetAllArchivesExtNextArchive", kGroup, "The archive's name, \"\" where the next channel begins.",
           "The next archive of the current channel; strComment receives the text after its first comma."},
          "strComment"),
      Method<&clsQuery::TELOGetAllArchivesExtFirst>(
          {"TELOGetAllArchivesExtFirst", kGroup, "", "Goes back to the first channel, without a request."}),
      Method<&clsQuery::TELOGetArchiveProperties>(
          {"TELOGetArchiveProperties", kGroup,
           "The fifth property as text, or -1 (Integer) on failure or an empty answer.",
           "Asks for the properties of an archive; the outputs receive the first four as the server wrote them."},
          "strChannel", "strArchive", "blnCreate", "blnEdit", "blnDelete", "blnIndex", "strParamStatus"),
  };
}

std::vector<MethodEntry> QueryAndHitList() {
  constexpr std::string_view kGroup = "Query and hit list";
  return {
      Method<&clsQuery::TELOQueryArchiveInit, 5>(
          {"TELOQueryArchiveInit", kGroup, "Number of rows (Long), the title row included; negative on failure.",
           "Runs a query. lngMaxLines limits the hit lines, lngQueryMax the hits. lngTotalHits receives the total as "
           "text; strLayoutKeys and strLayoutValues, when both are given, the layout's keys and values joined by "
           "\",\"; blnHitlistMultiTIFF a Boolean."},
          "strQuery", "lngMaxLines", "lngQueryMax", "strQueryFormat", "strFolderRights", "strLayoutFieldID",
          "strLayoutID", "strLayoutKeys", "strLayoutValues", "lngTotalHits", "blnHitlistMultiTIFF", "strParamStatus"),
      Method<&clsQuery::TELOQueryArchiveNext>(
          {"TELOQueryArchiveNext", kGroup, "The row's display columns, \"^column^,^column^\", \"\" at the end.",
           "The next row; the first one holds the titles. The outputs receive the hit's channel, archive, document "
           "id and version as text."},
          "strChannel", "strArchive", "strDocID", "strVer"),
      Method<&clsQuery::TELOSortHitlistInit>(
          {"TELOSortHitlistInit", kGroup,
           "Number of rows (Long), the title row included; -1 (Integer) when there is no such column or no title row.",
           "Sorts the list of the last query's hits by a display column, counted from 1: texts, dates or numbers, as "
           "the server's flags say. The first sort by a column turns the direction of the data round, each further "
           "one that of the last sort."},
          "lngCol"),
      Method<&clsQuery::TELOSortHitlistNext>(
          {"TELOSortHitlistNext", kGroup, "The row's display columns, \"^column^,^column^\", \"\" at the end.",
           "The next row of that list, which outlives other requests; the first one holds the titles. The outputs are "
           "those of TELOQueryArchiveNext."},
          "strChannel", "strArchive", "strDocID", "strVer"),
      Method<&clsQuery::TELOSortHitlist2Init>(
          {"TELOSortHitlist2Init", kGroup,
           "Number of rows (Long), the title row included; -1 (Integer) when there is no such column or no title row.",
           "Sorts lines that the page holds, CR LF between them: flags, titles, hits. They are kept apart from the "
           "list of the last query."},
          "strHitLines", "intSortCol"),
      Method<&clsQuery::TELOSortHitlist2Next>({"TELOSortHitlist2Next", kGroup, "The line, whole, \"\" at the end.",
                                               "The next of these lines; the first one holds the titles."}),
      Method<&clsQuery::TELODeleteFromHitlist>(
          {"TELODeleteFromHitlist", kGroup, "Number of hits left (Long), or -1 (Integer) when there is no such hit.",
           "Removes a hit from the list of the last query; lngLine 1 is the first one in the list's present order."},
          "lngLine"),
  };
}

}  // namespace oxaqrycln
