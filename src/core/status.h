// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "core/conversion_job.h"

namespace ts3d {

/// Sends one status line to the host as it stands; does nothing without a status callback.
void StatusLog(const ConversionJob& job, const char* text);
inline void StatusLog(const ConversionJob& job, const std::string& text) { StatusLog(job, text.c_str()); }

/// Sends the coded warning "***" + `tag` + ":" + `text`.
void ReportTagged(const ConversionJob& job, std::string_view text, std::string_view tag);

/// Joins up to five pieces of a message.
std::string ComposeMessage(std::string_view first, std::string_view second, std::string_view third = {},
                           std::string_view fourth = {}, std::string_view fifth = {});

/// Sends `text`, cut to 1022 characters, and a line feed to the system's debug output.
void DebugTrace(std::string_view text);

}  // namespace ts3d
