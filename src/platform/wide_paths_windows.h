// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace platform {

/// `text` in the system's letters. What is no UTF-8, name by name, is taken for the host's code page (path_reading.h).
std::wstring WideText(std::string_view text);

/// `wide` as UTF-8.
std::string Utf8Text(std::wstring_view wide);

/// The absolute path of `path`, without "." and ".."; empty when there is none.
std::wstring AbsoluteWidePath(const std::wstring& path);

/// `path` as the system's calls take it, which end shorter paths at 260 characters.
std::wstring CallPath(const std::wstring& path);
inline std::wstring CallPath(std::string_view path) { return CallPath(WideText(path)); }

/// The system's last error as a value of `errno`, which is set to it.
int SetErrno();

/// The same as an error code.
inline std::error_code LastErrorCode() { return {SetErrno(), std::generic_category()}; }

}  // namespace platform
