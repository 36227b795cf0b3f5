#include "reports/pdf/PdfPictures.h"

#include "reports/Picture.h"

namespace quillon::reports {
namespace {

std::string imageEntries(int width, int height, std::string_view colours) {
  std::string out = "/Type/XObject/Subtype/Image/BitsPerComponent 8/Width " + std::to_string(width) + "/Height " +
                    std::to_string(height) + "/ColorSpace/";
  return out += colours;
}

PdfPictures::Picture write(PdfFile& file, const std::string& bytes) {
  if (const auto jpeg = readJpegHead(bytes)) {
    const char* colours = jpeg->components == 1 ? "DeviceGray" : jpeg->components == 3 ? "DeviceRGB" : "DeviceCMYK";
    const int number = file.reserve();
    file.readyStream(number,
                     imageEntries(jpeg->width, jpeg->height, colours) + "/Filter/DCTDecode" +
                         (jpeg->inverted ? "/Decode[1 0 1 0 1 0 1 0]" : ""),
                     bytes);
    return {number, jpeg->width, jpeg->height};
  }
  const auto png = readPng(bytes);
  if (!png) return {};
  const int number = file.reserve();
  std::string entries = imageEntries(png->width, png->height, "DeviceRGB");
  if (!png->opacity.empty()) {
    const int mask = file.reserve();
    file.stream(mask, imageEntries(png->width, png->height, "DeviceGray"), png->opacity);
    entries += "/SMask " + reference(mask);
  }
  file.stream(number, entries, png->colours);
  return {number, png->width, png->height};
}

}  // namespace

PdfPictures::PdfPictures(PdfFile& file, const std::vector<std::string>& pictures) {
  for (const std::string& bytes : pictures) pictures_.push_back(write(file, bytes));
}

const PdfPictures::Picture* PdfPictures::find(std::uint32_t picture) const {
  if (picture >= pictures_.size() || pictures_[picture].number == 0) return nullptr;
  return &pictures_[picture];
}

std::string PdfPictures::resources() const {
  std::string out;
  for (std::size_t i = 0; i < pictures_.size(); ++i)
    if (pictures_[i].number != 0) out += "/P" + std::to_string(i) + " " + reference(pictures_[i].number);
  return out;
}

}  // namespace quillon::reports
