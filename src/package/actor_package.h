// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "core/conversion_job.h"

namespace ts3d {

/// Names of the members that one run has added, or tried to add.
using PackagedNameSet = std::set<std::string, std::less<>>;

enum class AfterAdding { KeepFile, DeleteFile };

enum class PackageMode { Create, Append };

/// Opens the package `path` as the job's package; false when it cannot be opened.
bool OpenActorPackage(ConversionJob& job, std::string_view path, PackageMode mode);

/// Copies the file `name` of the model's folder into the job's package, once in a run. With `DeleteFile` the
/// file `name` of the current directory is deleted afterwards, which is not the one that was copied when the
/// model lies elsewhere.
/// @return 0, also when `name` was added before; otherwise a negative code, after a status line
int32_t AddFileToPackage(ConversionJob& job, PackagedNameSet& packagedNames, const std::string& name,
                         AfterAdding afterAdding);

/// To be called before and after the work file `name` is written, which will be a member: where there is a second
/// processor it is deflated while the next one is written.
void WorkFileBegins(ConversionJob& job, const std::string& name);
void WorkFileEnds(ConversionJob& job, const std::string& name);

/// Copies the document `path`, which the host has named and no model, into the package as the member `name`.
/// It stays where it is. The rest as AddFileToPackage.
int32_t AddDocumentToPackage(ConversionJob& job, PackagedNameSet& packagedNames, const std::string& path,
                             const std::string& name);

/// Closes the job's package; false when it is not complete: something of it was lost in writing, or it has
/// more members than it can tell (65,534).
bool CloseActorPackage(ConversionJob& job);

}  // namespace ts3d
