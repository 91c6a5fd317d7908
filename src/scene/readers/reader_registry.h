// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "scene/model/scene.h"
#include "scene/readers/io_settings.h"

namespace scene {

/// Why a file could not be imported. The numbers of the first
/// two and of the password error are known to hosts.
enum class EImportError {
  eNONE = 0,
  eVERSION_NOT_READABLE = 1,   ///< no version in the file, or one that is newer than any that exists
  eVERSION_NOT_SUPPORTED = 2,  ///< a version older than those that are read
  eFILE_NOT_OPENED = 3,
  eFORMAT_UNKNOWN = 4,
  eFILE_CORRUPTED = 5,
  eOUT_OF_MEMORY = 6,
  ePASSWORD_ERROR = 9  ///< a protected file, and the password is missing or wrong
};

/// Outcome of a reader's step.
struct KFbxImportStatus {
  EImportError error = EImportError::eNONE;
  KString text;

  bool Succeeded() const { return error == EImportError::eNONE; }
};

/// Format version of a file, as 7, 4, 0 for 7.4.
struct KFbxFileVersion {
  int major = 0;
  int minor = 0;
  int revision = 0;
};

/// Told how much of an import is done, from 0 to 1, never less than before. May throw to end it, but not out
/// of a plug-in. Empty when nobody wants to know.
using KFbxProgress = std::function<void(double fraction)>;

/// One open file of a reader's format.
class KFbxOpenFile {
 public:
  virtual ~KFbxOpenFile() = default;
  /// Fills `scene`, and decodes none of its arrays. May be called again after a password error.
  virtual KFbxImportStatus Read(KFbxScene& scene, const KFbxIOSettings& settings) = 0;
};

/// A file format that scenes can be imported from.
class KFbxReader {
 public:
  virtual ~KFbxReader() = default;
  /// Whether a file that starts with `head` (up to 4096 bytes) is of this format.
  virtual bool Detects(std::string_view head) const = 0;
  /// Opens the file. Null, with `status` set, when it cannot be read; `version` is set as far as it is known.
  /// @param progress  of the whole import; reading the open file goes on with it
  virtual std::unique_ptr<KFbxOpenFile> Open(std::string_view path, const KFbxProgress& progress,
                                             KFbxFileVersion& version, KFbxImportStatus& status) const = 0;
  /// The same for a file whose content is `bytes`, which outlive
  /// what is returned. Null unless the reader can.
  virtual std::unique_ptr<KFbxOpenFile> OpenMemory(std::string_view /*path*/, std::string_view /*bytes*/,
                                                   const KFbxProgress& /*progress*/,
                                                   KFbxFileVersion& /*version*/,
                                                   KFbxImportStatus& status) const {
    status = {EImportError::eFILE_NOT_OPENED, "this format is not read from memory"};
    return nullptr;
  }
  /// Name of the format for users.
  virtual const char* FormatName() const { return ""; }
};

/// The readers of a manager. Later ones are asked first, so a plug-in can take over a format.
class KFbxReaderRegistry {
 public:
  void Register(std::unique_ptr<KFbxReader> reader) { readers_.push_back(std::move(reader)); }
  /// The reader for a file that starts with `head`, or null.
  const KFbxReader* Find(std::string_view head) const {
    for (auto reader = readers_.rbegin(); reader != readers_.rend(); ++reader) {
      if ((*reader)->Detects(head)) return reader->get();
    }
    return nullptr;
  }
  size_t GetReaderCount() const { return readers_.size(); }

 private:
  std::vector<std::unique_ptr<KFbxReader>> readers_;
};

/// The one function that a plug-in library exports, under the name of kRegisterReadersSymbol. The library may
/// hold another C++ library than the program, so nothing is thrown out of it: failures are told by a status.
using KFbxRegisterReaders = void (*)(KFbxReaderRegistry& registry);
inline constexpr const char* kRegisterReadersSymbol = "FbxSceneRegisterReaders";

}  // namespace scene
