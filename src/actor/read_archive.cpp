// SPDX-License-Identifier: MIT
#include <algorithm>
#include <map>

#include "actor/memory_archive.h"
#include "actor/package_contents.h"

namespace actor {
namespace {

constexpr size_t kChunk = 1 << 16;
constexpr uint64_t kEncrypted = 1;

std::string DateOf(const tm_unz& date) {
  const auto part = [](auto number) { return static_cast<int>(number); };
  const int month = part(date.tm_mon) + 1, day = part(date.tm_mday);
  // Archives without dates say the 0th of month 0.
  if (day < 1 || month < 1 || month > 12) return {};
  return FormatDate(part(date.tm_year), month, day, part(date.tm_hour), part(date.tm_min));
}

class ArchiveReader {
 public:
  ArchiveReader(std::string_view bytes, const ReadLimits& limits, PackageContents& contents,
                std::string& error)
      : archive_(bytes), size_(bytes.size()), limits_(limits), members_(contents.members), error_(error) {}

  bool Read() {
    if (!archive_.Handle()) return Refuse("it is not a package (not a zip archive)");
    if (!ListMembers()) return false;
    MarkSuperseded();
    for (size_t i = 0; i < members_.size(); ++i) {
      if (!Unpack(members_[i], positions_[i])) return false;
    }
    return true;
  }

 private:
  bool Refuse(std::string reason) {
    error_ = std::move(reason);
    return false;
  }

  bool ListMembers() {
    uint64_t packed = 0;
    int result = unzGoToFirstFile(archive_.Handle());
    for (; result == UNZ_OK; result = unzGoToNextFile(archive_.Handle())) {
      if (members_.size() == limits_.members) return Refuse("it holds too many files");
      if (!ListCurrent()) return Refuse("its list of files is damaged");
      if (members_.back().name.find('\0') != std::string::npos)
        return Refuse("a name in it holds a zero byte");
      packed += std::min<uint64_t>(members_.back().packedSize, size_ + 1);
      // Files that share their bytes unpack to more than the archive could hold.
      if (packed > size_) return Refuse("its files overlap or lie beyond its end");
    }
    return result == UNZ_END_OF_LIST_OF_FILE || Refuse("its list of files is damaged");
  }

  bool ListCurrent() {
    unz_file_info64 info{};
    if (unzGetCurrentFileInfo64(archive_.Handle(), &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK) {
      return false;
    }
    Member& member = members_.emplace_back();
    member.name.resize(info.size_filename);
    member.packedSize = info.compressed_size;
    member.date = DateOf(info.tmu_date);
    member.sound = (info.flag & kEncrypted) == 0;
    return unzGetCurrentFileInfo64(archive_.Handle(), &info, member.name.data(), info.size_filename, nullptr,
                                   0, nullptr, 0) == UNZ_OK &&
           unzGetFilePos64(archive_.Handle(), &positions_.emplace_back()) == UNZ_OK;
  }

  void MarkSuperseded() {
    std::map<std::string_view, Member*> last;
    for (Member& member : members_) {
      Member*& known = last[member.name];
      if (known) known->superseded = true;
      known = &member;
    }
  }

  /// False when the member is beyond the limits; a damaged one is marked.
  bool Unpack(Member& member, unz64_file_pos& position) {
    member.sound = member.sound && unzGoToFilePos64(archive_.Handle(), &position) == UNZ_OK &&
                   unzOpenCurrentFile(archive_.Handle()) == UNZ_OK;
    if (!member.sound) return true;
    const bool accepted = UnpackOpen(member);
    // Closing compares the checksum, when all was read.
    if (unzCloseCurrentFile(archive_.Handle()) != UNZ_OK) member.sound = false;
    if (!member.sound || member.superseded) std::string().swap(member.bytes);
    return accepted;
  }

  bool UnpackOpen(Member& member) {
    std::string chunk(kChunk, '\0');
    for (;;) {
      const int read = unzReadCurrentFile(archive_.Handle(), chunk.data(), kChunk);
      if (read < 0) member.sound = false;
      if (read <= 0) break;
      member.size += static_cast<uint64_t>(read);
      total_ += static_cast<uint64_t>(read);
      if (member.size > limits_.memberBytes || total_ > limits_.totalBytes) {
        return Refuse("\"" + member.name + "\" unpacks to more than a package may hold");
      }
      if (total_ > limits_.ratioFrom && (total_ - limits_.ratioFrom) / limits_.ratio > size_) {
        return Refuse("it unpacks to far more than its packed size");
      }
      if (!member.superseded && limits_.keepsBytes) member.bytes.append(chunk, 0, static_cast<size_t>(read));
    }
    // Less than declared can pass the checksum of nothing.
    unz_file_info64 info{};
    unzGetCurrentFileInfo64(archive_.Handle(), &info, nullptr, 0, nullptr, 0, nullptr, 0);
    member.sound = member.sound && info.uncompressed_size == member.size;
    return true;
  }

  MemoryArchive archive_;
  uint64_t size_;
  const ReadLimits& limits_;
  std::vector<Member>& members_;
  std::string& error_;
  std::vector<unz64_file_pos> positions_;
  uint64_t total_ = 0;
};

}  // namespace

bool ReadPackageBytes(std::string_view bytes, const ReadLimits& limits, PackageContents& contents,
                      std::string& error) {
  contents = {};
  if (ArchiveReader(bytes, limits, contents, error).Read()) return true;
  contents = {};
  return false;
}

}  // namespace actor
