#include "store/journal/Journal.h"

#define XXH_STATIC_LINKING_ONLY  // the streaming state by value
#include <xxhash.h>

#include <algorithm>
#include <array>

#include "store/Errors.h"
#include "store/Planted.h"
#include "store/vfs/File.h"
#include "store/vfs/FileNames.h"

namespace quillon::store {
namespace {

constexpr std::uint64_t kEndMark = 0x444E455243455251;
constexpr std::size_t kTableEntry = 96;
constexpr std::size_t kPageEntry = 12;
constexpr std::size_t kNameSize = kTableEntry - 17;
constexpr std::size_t kTrailer = 16;
constexpr std::uint64_t kRoomStep = 256 * 1024;
constexpr std::uint32_t kMaxTables = 4096;

template <typename T>
void put(std::string& out, T value) {
  out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

Bytes bytesOf(const std::string& text) { return std::as_bytes(std::span(text.data(), text.size())); }

}  // namespace

Journal::Journal(FileSystem& files, const std::string& folder, std::uint64_t newCompanyId)
    : file_(files.open(findFile(files, folder, kJournalName), OpenMode::create)) {
  head_.companyId = head_.key = newCompanyId;
}

Journal::~Journal() = default;

bool Journal::readRecord(const JournalSpot& spot, JournalRecord& record) {
  std::array<std::byte, kRecordHead> head;
  if (file_->read(spot.offset, head.data(), kRecordHead) != kRecordHead) return false;
  if (loadAt<std::uint64_t>(head.data(), 0) != kRecordMagic ||
      loadAt<std::uint64_t>(head.data(), 8) != head_.companyId ||
      loadAt<std::uint64_t>(head.data(), 16) != spot.epoch || loadAt<std::uint64_t>(head.data(), 32) != spot.commit)
    return false;
  record.offset = spot.offset;
  record.commit = loadAt<std::uint64_t>(head.data(), 24);
  record.previous = spot.commit;
  record.length = loadAt<std::uint64_t>(head.data(), 40);
  const auto tables = loadAt<std::uint32_t>(head.data(), 48);
  const auto pages = loadAt<std::uint32_t>(head.data(), 52);
  const std::uint64_t directory = std::uint64_t{tables} * kTableEntry + std::uint64_t{pages} * kPageEntry;
  const std::uint64_t size = file_->size();
  if (record.commit <= spot.commit || tables > kMaxTables || record.length > size ||
      spot.offset > size - record.length || directory + kRecordHead + kTrailer > record.length)
    return false;
  std::vector<std::byte> bytes(directory);
  if (file_->read(spot.offset + kRecordHead, bytes.data(), directory) != directory) return false;
  if (loadAt<std::uint64_t>(head.data(), 56) != hashBytes(bytes.data(), directory, hashBytes(head.data(), 56)))
    return false;
  record.tables.resize(tables);
  record.pages.resize(pages);
  record.dataOffset = spot.offset + kRecordHead + directory;
  const std::byte* at = bytes.data();
  for (JournalTable& table : record.tables) {
    table.fileId = loadAt<std::uint64_t>(at, 0);
    table.stampBefore = loadAt<std::uint64_t>(at, 8);
    const auto length = std::min<std::size_t>(loadAt<std::uint8_t>(at, 16), kNameSize);
    table.name.assign(reinterpret_cast<const char*>(at) + 17, length);
    at += kTableEntry;
  }
  std::uint64_t data = 0;
  for (JournalPage& page : record.pages) {
    page.table = loadAt<std::uint16_t>(at, 0);
    page.role = loadAt<std::uint8_t>(at, 2);
    page.whole = loadAt<std::uint8_t>(at, 3) != 0;
    page.number = loadAt<PageNo>(at, 4);
    page.bytes = loadAt<std::uint32_t>(at, 8);
    if (page.table >= tables || page.role > 2 || page.bytes > 2 * kPageSize || (page.whole && page.bytes != kPageSize))
      return false;
    data += page.bytes;
    at += kPageEntry;
  }
  return record.dataOffset + data + kTrailer <= record.end();
}

bool Journal::recordIsWhole(const JournalRecord& record) {
  XXH3_state_t state;
  XXH3_64bits_reset(&state);
  std::vector<std::byte> buffer(std::min<std::uint64_t>(record.length, 1 << 20));
  const std::uint64_t hashed = record.length - kTrailer;
  for (std::uint64_t done = 0; done < hashed;) {
    const std::size_t part = std::min<std::uint64_t>(buffer.size(), hashed - done);
    if (file_->read(record.offset + done, buffer.data(), part) != part) return false;
    XXH3_64bits_update(&state, buffer.data(), part);
    done += part;
  }
  std::array<std::byte, kTrailer> trailer;
  if (file_->read(record.end() - kTrailer, trailer.data(), kTrailer) != kTrailer) return false;
  return loadAt<std::uint64_t>(trailer.data(), 0) == XXH3_64bits_digest(&state) &&
         loadAt<std::uint64_t>(trailer.data(), 8) == (kEndMark ^ record.commit);
}

void Journal::readPages(const JournalRecord& record, const std::function<bool(const JournalPage&)>& wanted,
                        const std::function<void(const JournalPage&, const std::byte*)>& page) {
  std::array<std::byte, 2 * kPageSize> buffer;
  std::uint64_t at = record.dataOffset;
  for (const JournalPage& entry : record.pages) {
    if (wanted(entry)) {
      if (file_->read(at, buffer.data(), entry.bytes) != entry.bytes)
        throw StoreError(Code::ioFailed, std::string("'") + kJournalName + "' is cut short.");
      page(entry, buffer.data());
    }
    at += entry.bytes;
  }
}

// Head and directory of a record.
std::string Journal::recordHead(const JournalSpot& spot, std::uint64_t commit, const std::vector<JournalTable>& tables,
                                const std::vector<JournalPage>& pages) const {
  std::string directory;
  directory.reserve(tables.size() * kTableEntry + pages.size() * kPageEntry);
  for (const JournalTable& table : tables) {
    put(directory, table.fileId);
    put(directory, table.stampBefore);
    const std::string name = table.name.substr(0, kNameSize);
    put(directory, static_cast<std::uint8_t>(name.size()));
    directory += name;
    directory.append(kNameSize - name.size(), '\0');
  }
  std::uint64_t dataSize = 0;
  for (const JournalPage& page : pages) {
    put(directory, page.table);
    put(directory, page.role);
    put(directory, static_cast<std::uint8_t>(page.whole ? 1 : 0));
    put(directory, page.number);
    put(directory, page.bytes);
    dataSize += page.bytes;
  }
  const std::uint64_t padding = (8 - (directory.size() + dataSize) % 8) % 8;
  const std::uint64_t length = kRecordHead + directory.size() + dataSize + padding + kTrailer;
  std::string buffer;
  buffer.reserve(std::min<std::uint64_t>(length, (1 << 20) + 2 * kPageSize));
  put(buffer, kRecordMagic);
  put(buffer, head_.companyId);
  put(buffer, spot.epoch);
  put(buffer, commit);
  put(buffer, spot.commit);
  put(buffer, length);
  put(buffer, static_cast<std::uint32_t>(tables.size()));
  put(buffer, static_cast<std::uint32_t>(pages.size()));
  put(buffer, hashBytes(directory.data(), directory.size(), hashBytes(buffer.data(), buffer.size())));
  return buffer += directory;
}

JournalSpot Journal::append(const JournalSpot& spot, std::uint64_t commit, const std::vector<JournalTable>& tables,
                            const std::vector<JournalPage>& pages,
                            const std::function<const std::byte*(std::size_t)>& data) {
  if (tables.size() > kMaxTables)
    throw StoreError(Code::limitReached, "A change over more than " + std::to_string(kMaxTables) +
                                             " tables cannot be saved. Make it in parts.");
  std::string buffer = recordHead(spot, commit, tables, pages);
  const std::uint64_t length = loadAt<std::uint64_t>(reinterpret_cast<const std::byte*>(buffer.data()), 40);
  std::uint64_t dataSize = 0;
  for (const JournalPage& page : pages) dataSize += page.bytes;
  const std::size_t padding = length - kTrailer - buffer.size() - dataSize;
  // The sync of the head may have failed, also in another process; the first record of its epoch makes it safe.
  if (spot.offset == kJournalStart) writeHead(head_);
  ensureRoom(spot.offset + length);

  XXH3_state_t state;
  XXH3_64bits_reset(&state);
  bool written = false;
  try {
    std::uint64_t at = spot.offset;
    const auto flush = [&] {
      file_->write(at, bytesOf(buffer));
      at += buffer.size();
      buffer.clear();
    };
    std::size_t hashed = 0;
    const auto hash = [&] {
      XXH3_64bits_update(&state, buffer.data() + hashed, buffer.size() - hashed);
      hashed = buffer.size();
    };
    for (std::size_t i = 0; i < pages.size(); ++i) {
      buffer.append(reinterpret_cast<const char*>(data(i)), pages[i].bytes);
      if (buffer.size() < (1 << 20)) continue;
      hash();
      flush();
      hashed = 0;
    }
    buffer.append(padding, '\0');
    hash();
    put(buffer, static_cast<std::uint64_t>(XXH3_64bits_digest(&state)));
    put(buffer, kEndMark ^ commit);
    flush();
    written = true;
    if (!planted(Bug::skippedSync)) file_->sync();
  } catch (const IoError& error) {
    blank(spot.offset, error.what(), written);
    throw;
  }
  return {spot.epoch, spot.offset + length, commit};
}

// The record must not come to life later: its magic goes, and where a sync was tried that has to reach the disk too.
void Journal::blank(std::uint64_t offset, const std::string& why, bool synced) {
  try {
    const std::array<std::byte, 8> zeros{};
    file_->write(offset, zeros);
    if (synced) file_->sync();
  } catch (const IoError&) {
    throw StoreError(Code::outcomeUnknown,
                     why +
                         "\rWhether the last change was saved is known only when the company is opened again. "
                         "Close the company and open it again.");
  }
}

void Journal::ensureRoom(std::uint64_t end) {
  // A room smaller than before means that another process has given space back.
  room_ = file_->size();
  if (end <= room_) return;
  const std::uint64_t wanted = (end + kRoomStep - 1) / kRoomStep * kRoomStep;
  file_->reserve(wanted);
  if (end - room_ < 4 * kRoomStep) {
    // Real zeros: syncs of space that was only set aside cost twice as much.
    const std::vector<std::byte> zeros(kRoomStep);
    for (std::uint64_t at = room_; at < wanted; at += kRoomStep)
      file_->write(at, Bytes(zeros).first(std::min<std::uint64_t>(kRoomStep, wanted - at)));
  }
  room_ = wanted;
}

// A record may stand in the system's memory only, and a sync that failed once has forgotten it: another sync tells
// nothing unless the bytes are written again. A record behind that was blanked must stay so for the same reason.
void Journal::secure(const JournalSpot& from, const JournalSpot& end) {
  std::array<std::byte, kRecordHead> behind{};
  file_->read(end.offset, behind.data(), behind.size());
  const bool blanked = loadAt<std::uint64_t>(behind.data(), 0) == 0 && behind != std::array<std::byte, kRecordHead>{};
  if (from.offset == end.offset && !blanked) return;
  std::vector<std::byte> bytes(std::min<std::uint64_t>(end.offset - from.offset, 1 << 20));
  for (std::uint64_t at = from.offset; at < end.offset;) {
    const std::size_t part = file_->read(at, bytes.data(), std::min<std::uint64_t>(bytes.size(), end.offset - at));
    if (part == 0) break;
    file_->write(at, Bytes(bytes).first(part));
    at += part;
  }
  if (blanked) file_->write(end.offset, std::array<std::byte, kRecordHead>{});
  file_->sync();
}

void Journal::shrink() {
  if (file_->size() > kJournalStart + 2 * kRoomStep) file_->truncate(kJournalStart + kRoomStep);
}

}  // namespace quillon::store
