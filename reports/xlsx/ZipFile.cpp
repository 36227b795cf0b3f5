#include "reports/xlsx/ZipFile.h"

#include <zlib.h>

#include <array>
#include <initializer_list>
#include <new>
#include <stdexcept>

#include "base/Errors.h"

namespace quillon::reports {
namespace {

constexpr int kLevel = 1;  // the quickest; cells are so much alike that the slower ones gain little
constexpr std::uint64_t kMostBytes = 0xFFFFFFFF;
constexpr std::size_t kMostAtOnce = 1 << 20;
constexpr unsigned kVersion = 20, kSizesBehind = 1 << 3 | 1 << 11, kDeflated = 8;  // 1 << 11: names are UTF-8
constexpr unsigned kFirstDay = 1 << 5 | 1;                                         // 1 January 1980: no date is told

void append(std::string& out, int width, std::initializer_list<std::uint64_t> numbers) {
  for (std::uint64_t number : numbers)
    for (int i = 0; i < width; ++i, number >>= 8) out += static_cast<char>(number & 0xFF);
}

}  // namespace

struct ZipFile::Deflater {
  z_stream stream = {};
  std::array<char, 1 << 16> out;

  Deflater() {
    if (deflateInit2(&stream, kLevel, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY) != Z_OK)
      throw std::bad_alloc();
  }
  ~Deflater() { deflateEnd(&stream); }
};

ZipFile::ZipFile(OutputFile& file) : file_(file), deflater_(std::make_unique<Deflater>()) {}

ZipFile::~ZipFile() = default;

std::uint64_t ZipFile::requireRoom(std::uint64_t bytes) const {
  if (bytes > kMostBytes) throw Error("The report is too large for a spreadsheet");
  return bytes;
}

void ZipFile::beginPart(std::string_view name) {
  Part& part = parts_.emplace_back();
  part.name = name;
  part.place = requireRoom(file_.size());
  std::string head = "PK\x03\x04";
  append(head, 2, {kVersion, kSizesBehind, kDeflated, 0, kFirstDay});
  append(head, 4, {0, 0, 0});
  append(head, 2, {name.size(), 0});
  file_.write(head += name);
  deflateReset(&deflater_->stream);
}

void ZipFile::write(std::string_view bytes) {
  for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), kMostAtOnce)))
    pack(bytes.substr(0, kMostAtOnce), false);
}

void ZipFile::pack(std::string_view bytes, bool last) {
  Part& part = parts_.back();
  const auto* from = reinterpret_cast<const Bytef*>(bytes.data());
  if (!bytes.empty())  // crc32 begins anew without bytes
    part.sum = static_cast<std::uint32_t>(crc32(part.sum, from, static_cast<uInt>(bytes.size())));
  part.size = requireRoom(part.size + bytes.size());
  z_stream& stream = deflater_->stream;
  stream.next_in = const_cast<Bytef*>(from);
  stream.avail_in = static_cast<uInt>(bytes.size());
  do {
    stream.next_out = reinterpret_cast<Bytef*>(deflater_->out.data());
    stream.avail_out = static_cast<uInt>(deflater_->out.size());
    if (deflate(&stream, last ? Z_FINISH : Z_NO_FLUSH) == Z_STREAM_ERROR) throw std::logic_error("a torn stream");
    const std::size_t made = deflater_->out.size() - stream.avail_out;
    file_.write(std::string_view(deflater_->out.data(), made));
    part.packed = requireRoom(part.packed + made);
  } while (stream.avail_out == 0);
}

void ZipFile::endPart() {
  pack({}, true);
  const Part& part = parts_.back();
  std::string sizes = "PK\x07\x08";
  append(sizes, 4, {part.sum, part.packed, part.size});
  file_.write(sizes);
}

void ZipFile::addPart(std::string_view name, std::string_view bytes) {
  beginPart(name);
  write(bytes);
  endPart();
}

void ZipFile::finish() {
  const std::uint64_t place = requireRoom(file_.size());
  std::string list;
  for (const Part& part : parts_) {
    list += "PK\x01\x02";
    append(list, 2, {kVersion, kVersion, kSizesBehind, kDeflated, 0, kFirstDay});
    append(list, 4, {part.sum, part.packed, part.size});
    append(list, 2, {part.name.size(), 0, 0, 0, 0});
    append(list, 4, {0, part.place});
    list += part.name;
  }
  const std::uint64_t length = list.size();
  list += "PK\x05\x06";
  append(list, 2, {0, 0, parts_.size(), parts_.size()});
  append(list, 4, {length, place});
  append(list, 2, {0});
  file_.write(list);
}

}  // namespace quillon::reports
