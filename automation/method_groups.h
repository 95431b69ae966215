// method_groups.h - the groups of the method table that fill sources of their own, each in the order of clsQuery.h.
#ifndef OXAQRYCLN_AUTOMATION_METHOD_GROUPS_H_
#define OXAQRYCLN_AUTOMATION_METHOD_GROUPS_H_

#include <string_view>
#include <vector>

#include "automation/method_table.h"

namespace oxaqrycln {

inline constexpr std::string_view kCountResult = "Number of records (Long), or -1 (Integer) on failure.";
inline constexpr std::string_view kDoneResult = "1 (Long), or -1 (Integer) on failure.";

std::vector<MethodEntry> WebUsers();
std::vector<MethodEntry> UserRights();
std::vector<MethodEntry> Outliners();
std::vector<MethodEntry> ChannelsAndArchives();
std::vector<MethodEntry> QueryAndHitList();
std::vector<MethodEntry> DocumentsAndSegments();
std::vector<MethodEntry> Content();
std::vector<MethodEntry> DocumentChanges();
std::vector<MethodEntry> Upload();
std::vector<MethodEntry> NotesAndMasks();
std::vector<MethodEntry> Encryption();
std::vector<MethodEntry> TransportOrdersAndPrinting();

}  // namespace oxaqrycln

#endif  // OXAQRYCLN_AUTOMATION_METHOD_GROUPS_H_
