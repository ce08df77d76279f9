// The defaults of the kernel's services, for a kernel that nobody embeds.
#include "util/services.h"

#include <cstdarg>
#include <cstdio>
#include <filesystem>

namespace {

KernelServices* installed = nullptr;

bool is_file(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

} // namespace

FoundFile KernelServices::FindFile(const char* name, const char* current_absolute, const char* current_relative) {
  FoundFile found;
  found.reported.reset(Strings::save(name));
  if (is_file(name)) {
    found.full.reset(Strings::save(name));
    return found;
  }
  const char* current = current_absolute ? current_absolute : current_relative;
  if (!current) return found;
  const std::filesystem::path beside = std::filesystem::path(current).parent_path() / name;
  if (is_file(beside)) {
    found.full.reset(Strings::save(beside.c_str()));
    found.reported.reset(Strings::save(beside.c_str()));
  }
  return found;
}

const char* KernelServices::VerilogVersionName(unsigned dialect) {
  static constexpr const char* names[] = {"VERILOG_1995", "VERILOG_2001", "SYSTEMVERILOG_2005"};
  return dialect >= 1 && dialect <= 3 ? names[dialect - 1] : "";
}

const char* KernelServices::MessageLevelName(unsigned level) {
  static constexpr const char* names[] = {"LOW", "MEDIUM", "HIGH"};
  return level <= 2 ? names[level] : "";
}

KernelServices& KernelServices::Get() {
  static KernelServices defaults;
  return installed ? *installed : defaults;
}

void KernelServices::Set(KernelServices* services) { installed = services; }

void kestrin_debug(const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  const int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  if (length >= 0) {
    std::string text(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, args);
    KernelServices::Get().Debug(text.c_str());
  }
  va_end(args);
}
