#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "reports/OutputFile.h"

namespace quillon::reports {

// The objects of a PDF, written as they come: a header, numbered objects in any order, and the table of where each
// begins. Keeps no object in memory.
class PdfFile {
 public:
  explicit PdfFile(OutputFile& file);
  ~PdfFile();

  // The number of an object that is to be written before the end.
  int reserve();
  void object(int number, std::string_view body);
  // A stream whose dictionary has `entries` beside its length.
  void stream(int number, std::string_view entries, std::string_view bytes);       // compressed here
  void readyStream(int number, std::string_view entries, std::string_view bytes);  // as it is
  void finish(int catalog, int information);

 private:
  struct Deflater;

  void begin(int number);
  void put(std::string_view bytes);

  OutputFile& file_;
  std::unique_ptr<Deflater> deflater_;
  std::vector<std::uint64_t> places_;  // of the objects from 1 on; 0 is not written yet
  std::uint32_t sum_ = 0;              // of all bytes
};

constexpr double kPoints = 0.072;  // PDF's unit, in 1/1000 inch

// Parts of an object's text.
void appendNumber(std::string& out, long number);
void appendNumber(std::string& out, double number);  // with up to three decimals
std::string reference(int number);                   // "12 0 R"
void appendUtf16(std::string& out, char32_t c);      // big-endian, in hexadecimal digits
std::string pdfText(std::string_view text);          // a string that people read

}  // namespace quillon::reports
