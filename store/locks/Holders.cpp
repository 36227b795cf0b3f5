#include "store/locks/Holders.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <ctime>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/pages/Page.h"

namespace quillon::store {
namespace {

constexpr const char* kFileName = "Quillon.LCK";
constexpr int kSlots = 250;
constexpr std::size_t kUserCharacters = 40;
constexpr std::uint32_t kMark = 0x314B4C51;  // "QLK1"
constexpr int kNotes = 8;

struct NoteEntry {
  std::uint32_t kind = 0;
  std::uint32_t zero = 0;
  std::uint64_t table = 0;
  std::uint64_t row = 0;
  std::int64_t since = 0;
};
static_assert(sizeof(NoteEntry) == 32);

struct Slot {
  std::uint32_t mark = kMark;
  std::uint8_t userSize = 0;
  std::uint8_t machineSize = 0;
  std::uint16_t zero = 0;
  std::int64_t process = 0;
  std::int64_t since = 0;
  std::uint64_t spare = 0;
  std::array<char, 160> user{};
  std::array<char, 64> machine{};
  std::array<NoteEntry, kNotes> notes{};
};
static_assert(sizeof(Slot) == 512);

std::uint64_t slotByte(int slot) { return kLockBase + static_cast<std::uint64_t>(slot); }
std::uint64_t slotOffset(int slot) { return static_cast<std::uint64_t>(slot) * sizeof(Slot); }

template <std::size_t Size>
std::uint8_t putText(std::array<char, Size>& to, std::string_view text, std::size_t characters) {
  std::string_view cut = firstCharacters(text, characters);
  while (cut.size() > Size) cut = firstCharacters(text, --characters);
  std::ranges::copy(cut, to.begin());
  return static_cast<std::uint8_t>(cut.size());
}

std::vector<Slot> slotsOf(const std::vector<std::byte>& bytes) {
  std::vector<Slot> slots(bytes.size() / sizeof(Slot));
  if (!slots.empty()) std::memcpy(slots.data(), bytes.data(), bytes.size());
  return slots;
}

bool isWritten(const Slot& slot) {
  return slot.mark == kMark && slot.userSize <= slot.user.size() && slot.machineSize <= slot.machine.size();
}

Holder holderOf(const Slot& slot, std::int64_t since) {
  return {{slot.user.data(), slot.userSize}, {slot.machine.data(), slot.machineSize}, slot.process, since};
}

std::string placeOf(const Holder& holder) {
  std::string text = holder.user.empty() ? "another user" : holder.user;
  if (!holder.machine.empty()) text += " on " + holder.machine;
  return text;
}

// What may stand in the way of a lock, the likeliest first.
struct InTheWay {
  LockKind wanted;
  std::array<LockKind, 4> kinds;
};
constexpr std::array<InTheWay, 4> kInTheWay{{
    {LockKind::exclusiveOpen, {LockKind::exclusiveOpen, LockKind::table, LockKind::write, LockKind::record}},
    {LockKind::record, {LockKind::record, LockKind::table, LockKind::write, LockKind::exclusiveOpen}},
    {LockKind::table, {LockKind::table, LockKind::write, LockKind::record, LockKind::exclusiveOpen}},
    {LockKind::write, {LockKind::write, LockKind::table, LockKind::exclusiveOpen, LockKind::exclusiveOpen}},
}};

bool explains(const NoteEntry& note, LockKind kind, const NotedLock& wanted) {
  if (note.kind != static_cast<std::uint32_t>(kind) || note.table != wanted.table) return false;
  const bool bothRecords = kind == LockKind::record && wanted.kind == LockKind::record;
  return !bothRecords || note.row == wanted.row;
}

std::tm localTime(std::int64_t unixSeconds) {
  const auto seconds = static_cast<std::time_t>(unixSeconds);
  std::tm local{};
  ::localtime_r(&seconds, &local);
  return local;
}

}  // namespace

Holders::Holders(const Environment& environment, const std::string& folder) : clock_(environment.clock) {
  try {
    file_ = environment.files.open(folder.empty() ? kFileName : folder + '/' + kFileName, OpenMode::create);
    takeSlot(environment);
  } catch (const StoreError&) {
    // Without a slot this process stays unnamed; with the file at hand it can still name others.
  }
}

void Holders::takeSlot(const Environment& environment) {
  int slot = 0;
  while (slot < kSlots && !file_->lock(slotByte(slot), 1, LockMode::exclusive)) ++slot;
  if (slot == kSlots) return;
  Slot content;
  content.process = environment.process;
  content.since = clock_.unixSeconds();
  content.userSize = putText(content.user, environment.user, kUserCharacters);
  content.machineSize = putText(content.machine, environment.machine, content.machine.size());
  try {
    file_->write(slotOffset(slot), std::as_bytes(std::span(&content, 1)));
  } catch (...) {
    file_->unlock(slotByte(slot), 1);  // what a dead process left there must not speak for this one
    throw;
  }
  slot_ = slot;
}

std::uint64_t Holders::tableHash(std::string_view table) {
  const std::string folded = foldCase(table);
  return hashBytes(folded.data(), folded.size());
}

void Holders::write(int place, const Note* note) noexcept {
  NoteEntry entry;
  if (note != nullptr) {
    entry = {static_cast<std::uint32_t>(note->lock.kind), 0, note->lock.table, note->lock.row, note->since};
  }
  const std::uint64_t offset =
      slotOffset(slot_) + offsetof(Slot, notes) + static_cast<std::size_t>(place) * sizeof(NoteEntry);
  try {
    file_->write(offset, std::as_bytes(std::span(&entry, 1)));
  } catch (...) {
    // Only the words of a message are lost; a disk in trouble speaks up at the next write that matters.
  }
}

void Holders::note(const NotedLock& lock) noexcept {
  if (slot_ < 0) return;
  const auto known = std::ranges::find(notes_, lock, &Note::lock);
  if (known != notes_.end()) {
    ++known->count;
    return;
  }
  std::array<bool, kNotes> taken{};
  for (const Note& note : notes_) {
    if (note.place >= 0) taken[static_cast<std::size_t>(note.place)] = true;
  }
  const auto free = std::ranges::find(taken, false);
  const int place = free == taken.end() ? -1 : static_cast<int>(free - taken.begin());
  notes_.push_back({lock, clock_.unixSeconds(), 1, place});
  if (place >= 0) write(place, &notes_.back());
}

void Holders::forget(const NotedLock& lock) noexcept {
  const auto known = std::ranges::find(notes_, lock, &Note::lock);
  if (known == notes_.end() || --known->count > 0) return;
  const int place = known->place;
  notes_.erase(known);
  if (place < 0) return;
  const auto waiting = std::ranges::find(notes_, -1, &Note::place);
  if (waiting != notes_.end()) waiting->place = place;
  write(place, waiting != notes_.end() ? &*waiting : nullptr);
}

std::vector<std::byte> Holders::readSlots() {
  std::vector<std::byte> bytes(std::min<std::uint64_t>(file_->size(), kSlots * sizeof(Slot)));
  bytes.resize(file_->read(0, bytes.data(), bytes.size()));
  bytes.resize(bytes.size() / sizeof(Slot) * sizeof(Slot));
  return bytes;
}

bool Holders::livesElsewhere(std::size_t slot) {
  return file_->lockedByOther(slotByte(static_cast<int>(slot)), 1, LockMode::exclusive);
}

std::vector<Holder> Holders::others() noexcept {
  std::vector<Holder> found;
  if (file_ == nullptr) return found;
  try {
    const std::vector<Slot> slots = slotsOf(readSlots());
    for (std::size_t i = 0; i < slots.size(); ++i)
      if (isWritten(slots[i]) && livesElsewhere(i)) found.push_back(holderOf(slots[i], slots[i].since));
  } catch (...) {
    // An unreadable file names nobody.
  }
  return found;
}

std::optional<Holder> Holders::find(const NotedLock& wanted) noexcept {
  if (file_ == nullptr) return std::nullopt;
  try {
    const std::vector<Slot> slots = slotsOf(readSlots());
    const auto* row = std::ranges::find(kInTheWay, wanted.kind, &InTheWay::wanted);
    if (row == kInTheWay.end()) return std::nullopt;
    for (const LockKind kind : row->kinds) {
      for (std::size_t i = 0; i < slots.size(); ++i) {
        const Slot& slot = slots[i];
        if (!isWritten(slot)) continue;
        const auto note = std::ranges::find_if(slot.notes, [&](const auto& n) { return explains(n, kind, wanted); });
        if (note == slot.notes.end()) continue;
        if (livesElsewhere(i)) return holderOf(slot, note->since);  // not dead, nor own
      }
    }
  } catch (...) {
    // An unreadable file names nobody.
  }
  return std::nullopt;
}

std::string Holders::describe(const Holder& holder) const {
  const std::tm then = localTime(holder.since);
  const std::tm now = localTime(clock_.unixSeconds());
  const bool today = then.tm_year == now.tm_year && then.tm_yday == now.tm_yday;
  std::array<char, 32> since{};
  std::strftime(since.data(), since.size(), today ? "%H:%M" : "%Y-%m-%d %H:%M", &then);
  return placeOf(holder) + " since " + since.data();
}

std::string inTheWay(Holders* holders, const NotedLock& wanted) {
  constexpr std::size_t kMostNamed = 3;
  constexpr const char* kSomebody = "another user";
  if (holders == nullptr) return kSomebody;
  if (const std::optional<Holder> holder = holders->find(wanted)) return holders->describe(*holder);
  std::vector<Holder> others;
  if (wanted.kind == LockKind::exclusiveOpen) others = holders->others();
  if (others.empty()) return kSomebody;
  std::vector<std::string> names;
  for (const Holder& other : others)
    if (std::string place = placeOf(other); std::ranges::count(names, place) == 0) names.push_back(std::move(place));
  std::string list = names.size() > 1 ? "one of " : "";
  for (std::size_t i = 0; i < std::min(names.size(), kMostNamed); ++i)
    list += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
  if (names.size() > kMostNamed) list += " and " + std::to_string(names.size() - kMostNamed) + " more";
  return list;
}

}  // namespace quillon::store
