// site_path.h - which file of the site a path names, and what may be sent of it.
// A site path has no leading slash, "/" between names and no "." or ".."; it never leaves the folder of the site.
#ifndef OXAQRYCLN_TOOLS_ASPHOST_PAGES_SITE_PATH_H_
#define OXAQRYCLN_TOOLS_ASPHOST_PAGES_SITE_PATH_H_

#include <optional>
#include <string>
#include <string_view>

namespace oxaqrycln::asphost {

// The site path of a request's path, percent signs already decoded. A path that ends with "/" names its default.asp.
// Nothing for a path with "..", a hidden name, or a name that the file system reads in another way than it is written.
std::optional<std::string> SitePathOfRequest(std::string_view path);

// The site path that an include or MapPath names: from the root with a leading "/" or "\", else from the folder of the
// site path `from`. ".." may be used inside the site. Nothing when it leaves the site.
std::optional<std::string> ResolveSitePath(std::string_view from, std::string_view path);

// Whether a site path names a page that is run.
bool IsPage(std::string_view sitePath);

// The content type of a file that is sent as it is; nothing for all others, sources among them.
std::optional<std::string_view> StaticContentType(std::string_view sitePath);

}  // namespace oxaqrycln::asphost

#endif  // OXAQRYCLN_TOOLS_ASPHOST_PAGES_SITE_PATH_H_
