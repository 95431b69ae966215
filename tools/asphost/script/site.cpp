#include "tools/asphost/script/site.h"

#include <algorithm>
#include <memory>

#include "tools/asphost/script/script_values.h"

namespace oxaqrycln::asphost {
namespace {

constexpr LONGLONG kLargestFile = 64 << 20;
constexpr std::size_t kMostSources = 500;

struct HandleCloser {
  void operator()(void* handle) const noexcept { CloseHandle(handle); }
};

}  // namespace

OwnedVariant ApplicationState::Get(const std::wstring& name) const {
  const std::lock_guard lock(mutex_);
  return values_.Get(name);
}

std::vector<std::wstring> ApplicationState::Names() const {
  const std::lock_guard lock(mutex_);
  return values_.Names();
}

void ApplicationState::AwaitTurn(std::unique_lock<std::mutex>& lock, Owner owner, TimePoint deadline) {
  const auto isFree = [&] { return owner_ == nullptr || owner_ == owner; };
  if (!unlocked_.wait_until(lock, deadline, isFree)) {
    throw ScriptError{kIllegalCall, L"Application is locked by another page"};
  }
}

void ApplicationState::Change(Owner owner, TimePoint deadline, const std::function<void(ValueStore&)>& change) {
  std::unique_lock lock(mutex_);
  AwaitTurn(lock, owner, deadline);
  change(values_);
}

void ApplicationState::Lock(Owner owner, TimePoint deadline) {
  std::unique_lock lock(mutex_);
  AwaitTurn(lock, owner, deadline);
  owner_ = owner;
}

void ApplicationState::Unlock(Owner owner) {
  const std::lock_guard lock(mutex_);
  if (owner_ != owner) return;
  owner_ = nullptr;
  unlocked_.notify_all();
}

std::wstring Site::DiskPath(const std::string& sitePath) const {
  std::wstring path = options.folder + L"\\" + ToWide(sitePath, CP_UTF8);
  std::ranges::replace(path, L'/', L'\\');
  return path;
}

std::optional<std::string> Site::Read(const std::string& sitePath) const {
  const HANDLE opened = CreateFileW(DiskPath(sitePath).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return std::nullopt;
  const std::unique_ptr<void, HandleCloser> file(opened);
  LARGE_INTEGER size{};
  if (GetFileSizeEx(opened, &size) == 0 || size.QuadPart > kLargestFile) return std::nullopt;
  std::string content(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD count = 0;
  if (ReadFile(opened, content.data(), static_cast<DWORD>(content.size()), &count, nullptr) == 0) return std::nullopt;
  content.resize(count);
  return content;
}

std::optional<std::string> Site::ReadSource(const std::string& sitePath) {
  WIN32_FILE_ATTRIBUTE_DATA file{};
  if (GetFileAttributesExW(DiskPath(sitePath).c_str(), GetFileExInfoStandard, &file) == 0) return std::nullopt;
  const ULONGLONG changed = (ULONGLONG{file.ftLastWriteTime.dwHighDateTime} << 32) | file.ftLastWriteTime.dwLowDateTime;
  {
    const std::lock_guard lock(sourcesMutex_);
    const auto known = sources_.find(sitePath);
    const bool isSame = known != sources_.end() && known->second.changed == changed &&
                        known->second.content.size() == file.nFileSizeLow && file.nFileSizeHigh == 0;
    if (isSame) return known->second.content;
  }
  auto content = Read(sitePath);
  const std::lock_guard lock(sourcesMutex_);
  if (sources_.size() >= kMostSources) sources_.clear();
  if (content) sources_.insert_or_assign(sitePath, Source{changed, *content});
  return content;
}

}  // namespace oxaqrycln::asphost
