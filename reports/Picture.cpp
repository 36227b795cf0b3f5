#include "reports/Picture.h"

#include <png.h>

#include <algorithm>
#include <cstdint>

namespace quillon::reports {
namespace {

constexpr std::uint64_t kMostPixels = 40'000'000;  // a page of 600 dots an inch has fewer

int byteAt(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }
int shortAt(std::string_view bytes, std::size_t at) { return byteAt(bytes, at) << 8 | byteAt(bytes, at + 1); }

// Frames with the codings that readers of PDF know: baseline, extended, progressive.
bool isFrame(int marker) { return marker >= 0xC0 && marker <= 0xC2; }
bool isOtherFrame(int marker) {
  return marker > 0xC2 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

}  // namespace

std::optional<JpegHead> readJpegHead(std::string_view bytes) {
  if (!bytes.starts_with("\xFF\xD8\xFF")) return {};
  JpegHead head;
  bool adobe = false;
  for (std::size_t at = 2; at + 4 <= bytes.size();) {
    if (byteAt(bytes, at) != 0xFF) return {};
    const int marker = byteAt(bytes, at + 1);
    if (marker == 0xFF) {
      ++at;
      continue;
    }
    const std::size_t length = static_cast<std::size_t>(shortAt(bytes, at + 2));
    if (length < 2 || at + 2 + length > bytes.size() || isOtherFrame(marker)) return {};
    if (marker == 0xEE && length >= 14 && bytes.substr(at + 4, 5) == "Adobe") adobe = true;
    if (isFrame(marker)) {
      if (length < 8 || byteAt(bytes, at + 4) != 8) return {};
      head = {shortAt(bytes, at + 7), shortAt(bytes, at + 5), byteAt(bytes, at + 9)};
    }
    if (marker == 0xDA) break;  // the picture itself
    at += 2 + length;
  }
  if (head.width == 0 || head.height == 0) return {};
  if (head.components != 1 && head.components != 3 && head.components != 4) return {};
  head.inverted = adobe && head.components == 4;
  return head;
}

std::optional<Pixels> readPng(std::string_view bytes) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) return {};
  Pixels pixels;
  std::string samples;
  if (std::uint64_t{image.width} * image.height <= kMostPixels) {
    image.format = PNG_FORMAT_RGBA;
    samples.resize(PNG_IMAGE_SIZE(image));
    pixels.width = static_cast<int>(image.width), pixels.height = static_cast<int>(image.height);
    if (png_image_finish_read(&image, nullptr, samples.data(), 0, nullptr) == 0) samples.clear();
  }
  png_image_free(&image);
  if (samples.empty()) return {};
  const std::size_t count = samples.size() / 4;
  pixels.colours.resize(count * 3);
  pixels.opacity.resize(count);
  bool shines = false;
  for (std::size_t i = 0; i < count; ++i) {
    std::copy_n(&samples[i * 4], 3, &pixels.colours[i * 3]);
    pixels.opacity[i] = samples[i * 4 + 3];
    shines = shines || pixels.opacity[i] != '\xFF';
  }
  if (!shines) pixels.opacity.clear();
  return pixels;
}

PicturePlace placeOf(const Element& picture, int width, int height) {
  const Box& box = picture.box;
  const double scale = std::min(static_cast<double>(box.width) / width, static_cast<double>(box.height) / height);
  PicturePlace place{static_cast<double>(box.x), static_cast<double>(box.y), width * scale, height * scale};
  if (picture.style.align != Align::left) {
    const double room = box.width - place.width;
    place.x += picture.style.align == Align::right ? room : room / 2;
  }
  return place;
}

}  // namespace quillon::reports
