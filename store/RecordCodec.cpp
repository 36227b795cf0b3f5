#include "store/RecordCodec.h"

#include <bit>

#include "base/Text.h"
#include "store/Errors.h"
#include "store/FieldScalar.h"

namespace quillon::store {
namespace {

constexpr unsigned kMoreLength = 0x80;  // of a length's first byte: a second one follows

// The length in front of a text; no bytes when there is no sound one.
struct Length {
  std::size_t text = 0, bytes = 0;
};

Length lengthAt(std::span<const std::byte> bytes, std::size_t offset) {
  if (offset >= bytes.size()) return {};
  const auto low = static_cast<std::size_t>(bytes[offset]);
  if (low < kMoreLength) return {low, 1};
  if (offset + 1 >= bytes.size()) return {};
  const auto high = static_cast<std::size_t>(bytes[offset + 1]);
  if (high == 0 || high >= kMoreLength) return {};
  return {(low & ~std::size_t{kMoreLength}) | high << 7, 2};
}

void appendText(std::string_view text, std::string& out) {
  if (text.size() < kMoreLength) {
    out += static_cast<char>(text.size());
  } else {
    out += static_cast<char>((text.size() & 0x7F) | kMoreLength);
    out += static_cast<char>(text.size() >> 7);
  }
  out += text;
}

std::string_view asText(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

BlobRef refOf(std::uint64_t place, std::uint64_t hash) {
  return {static_cast<std::uint32_t>(place), static_cast<std::uint32_t>(place >> 32), hash};
}

BlobRef loadRef(const std::byte* from) {
  const auto word = [from](std::size_t at) {
    return static_cast<std::uint64_t>(loadScalar(FieldType::currency, from + at));
  };
  return refOf(word(0), word(8));
}

bool spareBitsAreZero(const RecordLayout& layout, std::span<const std::byte> bytes) {
  const unsigned used = static_cast<unsigned>(layout.fieldCount()) % 8;
  return used == 0 || static_cast<unsigned>(bytes[layout.bitmapSize() - 1]) >> used == 0;
}

// Calls visit(i, start, size) for each field that is not null, a text's length left out, until it answers false. True
// when all were visited and fill the bytes exactly. What is visited lies inside them.
template <typename Visit>
bool walkFields(const RecordLayout& layout, std::span<const std::byte> bytes, Visit visit) {
  const RecordView record(layout, bytes);
  std::size_t offset = layout.bitmapSize();
  for (int i = 0; i < layout.fieldCount(); ++i) {
    if (record.isNull(i)) continue;
    std::size_t size = layout.width(i);
    if (size == RecordLayout::kVariable) {
      const Length length = lengthAt(bytes, offset);
      if (length.bytes == 0) return false;
      offset += length.bytes;
      size = length.text;
    }
    if (size > bytes.size() - offset || !visit(i, offset, size)) return false;
    offset += size;
  }
  return offset == bytes.size();
}

bool isSoundField(const FieldDef& field, std::span<const std::byte> bytes) {
  if (isBlobType(field.type)) return true;
  if (field.type != FieldType::string) return isSound(field.type, loadScalar(field.type, bytes.data()));
  const std::string_view text = asText(bytes);
  const auto most = static_cast<std::size_t>(field.size);
  return isValidUtf8(text) && (text.size() <= most || lengthInCharacters(text) <= most);
}

[[noreturn]] void raiseDamagedRecord(const RecordLayout& layout) {
  throw StoreError(Code::damaged, "A record of table " + layout.table() + " is damaged; repair the table");
}

[[noreturn]] void raiseWrongType(const RecordLayout& layout, int i) {
  throw StoreError(Code::badValue,
                   "The field " + layout.field(i).name + " of table " + layout.table() + " is of another type");
}

// The value in the bytes of a field that is neither null nor of a blob type.
Value decode(const RecordLayout& layout, int i, std::span<const std::byte> bytes) {
  const FieldType type = layout.field(i).type;
  if (type == FieldType::string) return asText(bytes);
  if (isBlobType(type)) raiseWrongType(layout, i);
  const std::int64_t scalar = loadScalar(type, bytes.data());
  if (!isSound(type, scalar)) raiseDamagedRecord(layout);
  return valueOf(type, scalar);
}

}  // namespace

RecordLayout::RecordLayout(const TableDef& table)
    : table_(table.name), fields_(table.fields), bitmapSize_((table.fields.size() + 7) / 8) {
  maxSize_ = bitmapSize_;
  for (const FieldDef& field : fields_) {
    widths_.push_back(widthOf(field.type));
    const auto characters = static_cast<std::size_t>(field.size);
    maxSize_ += field.type == FieldType::string ? 2 + 4 * characters : widths_.back();
  }
}

RecordView::RecordView(const RecordLayout& layout, std::span<const std::byte> bytes)
    : layout_(layout), bytes_(bytes), atOffset_(layout.bitmapSize()) {
  if (bytes.size() < layout.bitmapSize()) raiseDamaged();
}

void RecordView::raiseDamaged() const { raiseDamagedRecord(layout_); }

RecordView::Extent RecordView::extent(int i) const {
  if (i < atField_) {
    atField_ = 0;
    atOffset_ = layout_.bitmapSize();
  }
  for (; atField_ < i; ++atField_) {
    if (isNull(atField_)) continue;
    if (const std::size_t width = layout_.width(atField_); width != RecordLayout::kVariable) {
      atOffset_ += width;
      continue;
    }
    const Length length = lengthAt(bytes_, atOffset_);
    if (length.bytes == 0) raiseDamaged();
    atOffset_ += length.bytes + length.text;
  }
  Extent found{atOffset_, layout_.width(i)};
  if (found.size == RecordLayout::kVariable) {
    const Length length = lengthAt(bytes_, atOffset_);
    if (length.bytes == 0) raiseDamaged();
    found = {atOffset_ + length.bytes, length.text};
  }
  if (found.start > bytes_.size() || found.size > bytes_.size() - found.start) raiseDamaged();
  return found;
}

std::span<const std::byte> RecordView::raw(int i) const {
  if (isNull(i)) return {};
  const Extent found = extent(i);
  return bytes_.subspan(found.start, found.size);
}

Value RecordView::get(int i) const { return isNull(i) ? Value{} : decode(layout_, i, raw(i)); }

std::string_view RecordView::text(int i) const {
  if (layout_.field(i).type != FieldType::string) raiseWrongType(layout_, i);
  return asText(raw(i));
}

std::int64_t RecordView::integer(int i) const {
  const FieldType type = layout_.field(i).type;
  if (type == FieldType::string || type == FieldType::floating || isBlobType(type)) raiseWrongType(layout_, i);
  return isNull(i) ? 0 : loadScalar(type, raw(i).data());
}

double RecordView::real(int i) const {
  const FieldType type = layout_.field(i).type;
  if (type != FieldType::floating) raiseWrongType(layout_, i);
  return isNull(i) ? 0 : std::bit_cast<double>(loadScalar(type, raw(i).data()));
}

BlobRef RecordView::blobRef(int i) const {
  if (!isBlobType(layout_.field(i).type)) raiseWrongType(layout_, i);
  return isNull(i) ? BlobRef{} : loadRef(raw(i).data());
}

bool RecordView::wellFormed(const RecordLayout& layout, std::span<const std::byte> bytes) {
  if (bytes.size() < layout.bitmapSize() || !spareBitsAreZero(layout, bytes)) return false;
  return walkFields(layout, bytes, [&layout, bytes](int i, std::size_t start, std::size_t size) {
    return isSoundField(layout.field(i), bytes.subspan(start, size));
  });
}

RowBuffer::RowBuffer(const RecordLayout& layout)
    : layout_(&layout), slots_(static_cast<std::size_t>(layout.fieldCount())) {}

void RowBuffer::clear() {
  for (Slot& one : slots_) {
    one.source = Source::null;
    one.modified = false;
  }
  anyModified_ = false;
}

void RowBuffer::load(std::span<const std::byte> bytes) {
  clear();
  const bool whole = walkFields(*layout_, bytes, [this](int i, std::size_t start, std::size_t size) {
    Slot& loaded = slots_[static_cast<std::size_t>(i)];
    loaded.source = Source::loaded;
    loaded.start = static_cast<std::uint32_t>(start);
    loaded.size = static_cast<std::uint32_t>(size);
    return true;
  });
  if (!whole) {
    clear();
    raiseDamagedRecord(*layout_);
  }
  loaded_.assign(asText(bytes));
}

RowBuffer::Slot& RowBuffer::change(int i) {
  Slot& changed = slots_[static_cast<std::size_t>(i)];
  changed.modified = true;
  anyModified_ = true;
  return changed;
}

Value RowBuffer::get(int i) const {
  const Slot& from = slot(i);
  if (from.source == Source::null) return {};
  const FieldType type = layout_->field(i).type;
  if (type == FieldType::string) return text(i);
  if (from.source == Source::own && !isBlobType(type)) return valueOf(type, from.scalar);
  return decode(*layout_, i, std::as_bytes(std::span(loaded_)).subspan(from.start, from.size));
}

std::string_view RowBuffer::text(int i) const {
  if (layout_->field(i).type != FieldType::string) raiseWrongType(*layout_, i);
  const Slot& from = slot(i);
  if (from.source == Source::null) return {};
  return from.source == Source::own ? from.text : std::string_view(loaded_).substr(from.start, from.size);
}

BlobRef RowBuffer::blobRef(int i) const {
  if (!isBlobType(layout_->field(i).type)) raiseWrongType(*layout_, i);
  const Slot& from = slot(i);
  if (from.source == Source::null) return {};
  if (from.source == Source::own) return refOf(static_cast<std::uint64_t>(from.scalar), from.hash);
  return loadRef(std::as_bytes(std::span(loaded_)).data() + from.start);
}

void RowBuffer::set(int i, const Value& value) {
  if (value.isNull()) return setNull(i);
  const FieldDef& field = layout_->field(i);
  if (field.type == FieldType::string) {
    const std::string& text = textOf(field, layout_->table(), value, Purpose::field);
    change(i).text = text;
  } else {
    const std::int64_t scalar = scalarOf(field, layout_->table(), value, Purpose::field);
    change(i).scalar = scalar;
  }
  slots_[static_cast<std::size_t>(i)].source = Source::own;
}

void RowBuffer::setNull(int i) { change(i).source = Source::null; }

void RowBuffer::setBlobRef(int i, const BlobRef& ref) {
  if (!isBlobType(layout_->field(i).type)) raiseWrongType(*layout_, i);
  Slot& changed = change(i);
  changed.source = Source::own;
  changed.scalar = static_cast<std::int64_t>(std::uint64_t{ref.length} << 32 | ref.firstBlock);
  changed.hash = ref.hash;
}

void RowBuffer::clearModified() {
  for (Slot& one : slots_) one.modified = false;
  anyModified_ = false;
}

void RowBuffer::encode(std::string& out) const {
  out.assign(layout_->bitmapSize(), '\0');
  for (int i = 0; i < layout_->fieldCount(); ++i) {
    const Slot& from = slot(i);
    if (from.source == Source::null) {
      const auto at = static_cast<unsigned>(i);
      out[at / 8] = static_cast<char>(static_cast<unsigned char>(out[at / 8]) | 1U << (at % 8));
      continue;
    }
    const FieldType type = layout_->field(i).type;
    if (type == FieldType::string) {
      appendText(text(i), out);
    } else if (from.source == Source::loaded) {
      out.append(loaded_, from.start, from.size);
    } else {
      appendScalar(isBlobType(type) ? FieldType::currency : type, from.scalar, out);
      if (isBlobType(type)) appendScalar(FieldType::currency, static_cast<std::int64_t>(from.hash), out);
    }
  }
}

std::string RowBuffer::encode() const {
  std::string out;
  encode(out);
  return out;
}

}  // namespace quillon::store
