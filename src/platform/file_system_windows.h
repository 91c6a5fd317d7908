// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// What the converter uses of std::filesystem, for paths of any letters and any length. Text is UTF-8. Functions with an
/// error code set it as those of the library do; those without one throw filesystem_error.
namespace platform::fs {

using std::filesystem::file_status;
using std::filesystem::file_time_type;
using std::filesystem::file_type;
using std::filesystem::filesystem_error;

/// The library's path, whose text is UTF-8 in both directions, and which knows the names of a share ("\\server\share")
/// or behind "\\?\" for a root: to the library they are folders below that of the current drive.
class path : public std::filesystem::path {
  using Base = std::filesystem::path;

 public:
  path() = default;
  path(const Base& other) : Base(other) {}
  path(Base&& other) noexcept : Base(std::move(other)) {}
  path(std::string_view text);
  path(const std::string& text) : path(std::string_view(text)) {}
  path(const char* text) : path(std::string_view(text)) {}
  path(std::wstring text) : Base(std::move(text)) {}

  std::string string() const;
  std::string generic_string() const;
  path parent_path() const;
  path filename() const { return Base::filename(); }
  path stem() const { return Base::stem(); }
  path extension() const { return Base::extension(); }
  path lexically_normal() const;
  path lexically_relative(const path& base) const;
  bool has_relative_path() const;
  bool has_parent_path() const { return !parent_path().empty(); }
  path& replace_extension(const path& extension = {}) { return Base::replace_extension(extension), *this; }
  path& operator/=(const path& other);
  path& operator+=(const path& other) { return Base::operator+=(other.native()), *this; }

  friend path operator/(const path& a, const path& b) {
    path joined = a;
    return joined /= b;
  }
  template <std::same_as<Base> Other>
  friend path operator/(const path& a, const Other& b) {
    return static_cast<const Base&>(a) / b;
  }
  template <std::same_as<Base> Other>
  friend path operator/(const Other& a, const path& b) {
    return a / static_cast<const Base&>(b);
  }
  friend bool operator==(const path& a, const path& b) { return a.compare(b) == 0; }
  friend std::strong_ordering operator<=>(const path& a, const path& b) { return a.compare(b) <=> 0; }
};

/// A name in a folder, with what the folder says of it.
class directory_entry {
 public:
  directory_entry(fs::path path, uint32_t attributes) : path_(std::move(path)), attributes_(attributes) {}
  const fs::path& path() const { return path_; }
  bool is_directory(std::error_code& failed) const;
  bool is_regular_file(std::error_code& failed) const;
  /// Links are told as links.
  file_status symlink_status() const;
  file_status symlink_status(std::error_code& failed) const { return failed.clear(), symlink_status(); }

 private:
  fs::path path_;
  uint32_t attributes_;
};

/// The entries of a folder, but "." and "..", as they were when it was looked into.
class directory_iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = directory_entry;
  using difference_type = std::ptrdiff_t;
  using pointer = const directory_entry*;
  using reference = const directory_entry&;

  directory_iterator() = default;
  explicit directory_iterator(const path& folder);
  directory_iterator(const path& folder, std::error_code& failed);
  const directory_entry& operator*() const { return (*entries_)[at_]; }
  const directory_entry* operator->() const { return &**this; }
  directory_iterator& operator++();
  directory_iterator& increment(std::error_code& failed);
  bool operator==(const directory_iterator& other) const { return entries_ == other.entries_; }

 private:
  std::shared_ptr<const std::vector<directory_entry>> entries_;  ///< null at the end
  size_t at_ = 0;
};

inline directory_iterator begin(directory_iterator first) { return first; }
inline directory_iterator end(const directory_iterator&) { return {}; }

inline bool exists(file_status status) { return std::filesystem::exists(status); }
inline bool is_directory(file_status status) { return std::filesystem::is_directory(status); }
inline bool is_regular_file(file_status status) { return std::filesystem::is_regular_file(status); }

file_status status(const path& path, std::error_code& failed);
file_status status(const path& path);
file_status symlink_status(const path& path, std::error_code& failed);
file_status symlink_status(const path& path);
bool exists(const path& path, std::error_code& failed);
bool exists(const path& path);
bool is_directory(const path& path, std::error_code& failed);
bool is_directory(const path& path);
bool is_regular_file(const path& path, std::error_code& failed);
bool is_regular_file(const path& path);
uintmax_t file_size(const path& path, std::error_code& failed);
uintmax_t file_size(const path& path);
file_time_type last_write_time(const path& path, std::error_code& failed);
bool equivalent(const path& a, const path& b, std::error_code& failed);

path absolute(const path& path, std::error_code& failed);
path absolute(const path& path);
path canonical(const path& path, std::error_code& failed);
path weakly_canonical(const path& path, std::error_code& failed);
path weakly_canonical(const path& path);
path current_path();
void current_path(const path& folder, std::error_code& failed);

bool create_directory(const path& path);
bool create_directories(const path& path, std::error_code& failed);
bool create_directories(const path& path);
void create_symlink(const path& target, const path& link, std::error_code& failed);
/// Fails for read-only files, whose names could not be removed alone.
void create_hard_link(const path& target, const path& link, std::error_code& failed);
/// The copy has the times of the file, and may be written to.
void copy_file(const path& from, const path& to);
bool remove(const path& path, std::error_code& failed);
bool remove(const path& path);
void remove_all(const path& path, std::error_code& failed);
void resize_file(const path& path, uintmax_t size, std::error_code& failed);

}  // namespace platform::fs

namespace platform {

/// `path` as the streams of the C++ library take it.
std::filesystem::path ForStream(const fs::path& path);

}  // namespace platform
