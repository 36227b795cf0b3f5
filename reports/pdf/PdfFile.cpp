#include "reports/pdf/PdfFile.h"

#include <zlib.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <new>
#include <stdexcept>

#include "base/Text.h"

namespace quillon::reports {
namespace {

// The quickest level: a page of text becomes a fifth of its size, and the slower ones gain a tenth more.
constexpr int kLevel = 1;
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

}  // namespace

struct PdfFile::Deflater {
  z_stream stream = {};
  std::string out;

  Deflater() {
    if (deflateInit(&stream, kLevel) != Z_OK) throw std::bad_alloc();
  }
  ~Deflater() { deflateEnd(&stream); }

  std::string_view compress(std::string_view bytes) {
    deflateReset(&stream);
    out.resize(deflateBound(&stream, bytes.size()));
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw std::logic_error("a stream longer than its bound");
    return std::string_view(out).substr(0, stream.total_out);
  }
};

PdfFile::PdfFile(OutputFile& file) : file_(file), deflater_(std::make_unique<Deflater>()) {
  put("%PDF-1.7\n%\xE2\xE3\xCF\xD3\n");  // the second line tells transfers that the file is no text
}

PdfFile::~PdfFile() = default;

void PdfFile::put(std::string_view bytes) {
  sum_ = static_cast<std::uint32_t>(
      crc32(sum_, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
  file_.write(bytes);
}

int PdfFile::reserve() {
  places_.push_back(0);
  return static_cast<int>(places_.size());
}

void PdfFile::begin(int number) {
  std::uint64_t& place = places_.at(static_cast<std::size_t>(number - 1));
  if (place != 0) throw std::logic_error("an object of a PDF is written twice");
  place = file_.size();
  std::string head;
  appendNumber(head, long{number});
  put(head += " 0 obj\n");
}

void PdfFile::object(int number, std::string_view body) {
  begin(number);
  put(body);
  put("\nendobj\n");
}

void PdfFile::stream(int number, std::string_view entries, std::string_view bytes) {
  std::string all = "/Filter/FlateDecode";
  readyStream(number, all += entries, deflater_->compress(bytes));
}

void PdfFile::readyStream(int number, std::string_view entries, std::string_view bytes) {
  begin(number);
  std::string head = "<</Length ";
  appendNumber(head, static_cast<long>(bytes.size()));
  put((head += entries) += ">>stream\n");
  put(bytes);
  put("\nendstream\nendobj\n");
}

void PdfFile::finish(int catalog, int information) {
  const std::uint64_t table = file_.size();
  std::array<char, 64> line;
  const auto putLine = [&](int length) { put(std::string_view(line.data(), static_cast<std::size_t>(length))); };
  putLine(std::snprintf(line.data(), line.size(), "xref\n0 %zu\n0000000000 65535 f \n", places_.size() + 1));
  for (const std::uint64_t place : places_) {
    if (place == 0) throw std::logic_error("an object of a PDF is missing");
    putLine(std::snprintf(line.data(), line.size(), "%010llu 00000 n \n", static_cast<unsigned long long>(place)));
  }
  // Told apart from other files by what it holds, so that the same report is the same file.
  const auto length =
      std::snprintf(line.data(), line.size(), "%08X%016llX", sum_, static_cast<unsigned long long>(table));
  const std::string id(line.data(), static_cast<std::size_t>(length));
  put("trailer\n<</Size " + std::to_string(places_.size() + 1) + "/Root " + reference(catalog) + "/Info " +
      reference(information) + "/ID[<" + id + "><" + id + ">]>>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n");
}

void appendNumber(std::string& out, long number) {
  std::array<char, 24> digits;
  out.append(digits.data(), std::to_chars(digits.begin(), digits.end(), number).ptr);
}

void appendNumber(std::string& out, double number) {
  std::array<char, 64> digits;
  const char* end = std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed, 3).ptr;
  while (end[-1] == '0') --end;
  if (end[-1] == '.') --end;
  out.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

std::string reference(int number) { return std::to_string(number) + " 0 R"; }

void appendUtf16(std::string& out, char32_t c) {
  const auto unit = [&out](char32_t value) {
    for (int shift = 12; shift >= 0; shift -= 4) out += kHexDigits[value >> shift & 15];
  };
  if (c < 0x10000) return unit(c);
  unit(0xD800 + ((c - 0x10000) >> 10));
  unit(0xDC00 + ((c - 0x10000) & 0x3FF));
}

std::string pdfText(std::string_view text) {
  std::string out = "<FEFF";
  for (std::size_t at = 0; at < text.size();) appendUtf16(out, nextCodePoint(text, at));
  return out += ">";
}

}  // namespace quillon::reports
