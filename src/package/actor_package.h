// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "core/settings.h"
#include "core/status_channel.h"
#include "core/work_files.h"

namespace ts3d {

class DeflateAhead;
class MemberDeflater;
struct DeflatedMember;

enum class AfterAdding { KeepFile, DeleteFile };

enum class PackageMode { Create, Append };

/// The package that a run writes. What is lost in writing it, its files remember: a damaged one must not stay.
class ActorPackage {
 public:
  /// All of these outlive the package.
  ActorPackage(WorkFiles& files, const Settings& settings, const StatusChannel& status);
  ~ActorPackage();
  ActorPackage(const ActorPackage&) = delete;
  ActorPackage& operator=(const ActorPackage&) = delete;

  /// Opens the package `path`; false when it cannot be opened.
  bool Open(std::string_view path, PackageMode mode);

  /// Copies the file `name` of the model's folder into the package, once in a run. With `DeleteFile` the file
  /// `name` of the current directory is deleted afterwards, which is not the one that was copied when the model
  /// lies elsewhere.
  /// @return 0, also when `name` was added before; otherwise a negative code, after a status line
  int32_t AddFileToPackage(const std::string& name, AfterAdding afterAdding);

  /// Copies the document `path`, which the host has named and no model, into the package as the member `name`.
  /// It stays where it is. The rest as AddFileToPackage.
  int32_t AddDocumentToPackage(const std::string& path, const std::string& name);

  /// To be called before and after the work file `name` is written, which will be a member: where there is a
  /// second processor it is deflated while the next one is written.
  void WorkFileBegins(const std::string& name);
  void WorkFileEnds(const std::string& name);

  /// False when the package is not complete: something of it was lost in writing, or it has more members than
  /// it can tell (65,534).
  bool Close();

 private:
  /// The content of a member.
  struct Source {
    const std::string& name;  ///< of the member
    std::string path;         ///< of the file; empty when the name leads out of the model's folder
    bool isHeld = false;      ///< the bytes are in memory, not in the folder
  };

  Source WorkFileSource(const std::string& name) const;
  bool CloseArchive();

  // add_member.cpp: each gives 0, or a negative code after its status line.
  /// Adds the member, deflated as the settings say. One whose file cannot be read becomes an empty one.
  int32_t AddMember(const Source& source);
  int32_t AddStreamedMember(const Source& source);
  int32_t AddDeflatedMember(const Source& source);
  int32_t OpenMember(const Source& source, const DeflatedMember* packed);
  int32_t WriteToMember(const std::string& name, const char* data, size_t size);
  int32_t FillMember(const Source& source, char* buffer);
  int32_t FinishMember(const std::string& name, int32_t result);
  int32_t ReportNoMemory();
  bool DeflateSource(const Source& source, DeflatedMember& packed, bool& isRead);

  WorkFiles& files_;
  const Settings& settings_;
  const StatusChannel& status_;
  void* archive_ = nullptr;  ///< null: not open
  /// Names of the members that were added, or tried to be.
  using PackagedNameSet = std::set<std::string, std::less<>>;
  PackagedNameSet names_;
  std::unique_ptr<const MemberDeflater> deflater_;  ///< once there is a use for it
  std::unique_ptr<DeflateAhead> ahead_;             ///< the same
};

}  // namespace ts3d
