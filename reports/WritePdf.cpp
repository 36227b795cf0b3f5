#include "reports/WritePdf.h"

#include "reports/OutputFile.h"
#include "reports/pdf/PdfContents.h"
#include "reports/pdf/PdfFile.h"
#include "reports/pdf/PdfOutline.h"
#include "reports/pdf/PdfPictures.h"

namespace quillon::reports {
namespace {

constexpr std::size_t kPagesOfNode = 64;  // a reader finds a page by walking the nodes

class Writer {
 public:
  Writer(const PreparedPages& report, OutputFile& out)
      : report_(report), file_(out), pictures_(file_, report.pictures), contents_(pictures_, report.height) {}

  void write();

 private:
  void writePage(const Page& page);
  std::string links();
  void closeNode();
  void writeRoot();
  std::string resources();

  const PreparedPages& report_;
  PdfFile file_;
  PdfPictures pictures_;
  PdfContents contents_;
  const int root_ = file_.reserve();
  std::vector<int> pages_, nodes_;
  std::size_t inNode_ = 0;  // pages that the last node has so far
};

void Writer::write() {
  for (const Page& page : report_.pages) writePage(page);
  if (report_.pages.empty()) writePage({});  // no reader takes a file without a page
  closeNode();
  writeRoot();
  const int outline = writeOutline(file_, report_, pages_);
  const int catalog = file_.reserve(), information = file_.reserve();
  std::string body = "<</Type/Catalog/Lang(en)/ViewerPreferences<</DisplayDocTitle true>>/Pages " + reference(root_);
  if (outline != 0) body += "/PageMode/UseOutlines/Outlines " + reference(outline);
  file_.object(catalog, body += ">>");
  body = "<</Producer(Quillon)/Title" + pdfText(report_.reportTitle);
  if (!report_.author.empty()) body += "/Author" + pdfText(report_.author);
  if (!report_.moment.empty()) body += "/CreationDate" + pdfText("D:" + report_.moment);
  file_.object(information, body += ">>");
  file_.finish(catalog, information);
}

void Writer::writePage(const Page& page) {
  if (inNode_ == kPagesOfNode) closeNode();
  if (inNode_++ == 0) nodes_.push_back(file_.reserve());
  const int number = file_.reserve(), contents = file_.reserve();
  pages_.push_back(number);
  file_.stream(contents, "", contents_.draw(page));
  file_.object(number,
               "<</Type/Page/Parent " + reference(nodes_.back()) + "/Contents " + reference(contents) + links() + ">>");
}

// Of the page that was drawn last.
std::string Writer::links() {
  std::string all;
  for (const PdfContents::MailLink& link : contents_.links()) {
    const int number = file_.reserve();
    std::string body = "<</Type/Annot/Subtype/Link/F 4/Border[0 0 0]/Rect[";
    for (const double edge : {link.left, link.bottom, link.right, link.top}) {
      appendNumber(body, edge);
      body += ' ';
    }
    file_.object(number, body += "]/A<</S/URI/URI(mailto:" + link.address + ")>>>>");
    all += (all.empty() ? "" : " ") + reference(number);
  }
  return all.empty() ? all : "/Annots[" + all + "]";
}

void Writer::closeNode() {
  std::string kids;
  for (std::size_t i = pages_.size() - inNode_; i < pages_.size(); ++i) kids += reference(pages_[i]) + " ";
  file_.object(nodes_.back(), "<</Type/Pages/Parent " + reference(root_) + "/Count " + std::to_string(inNode_) +
                                  "/Kids[" + kids + "]>>");
  inNode_ = 0;
}

void Writer::writeRoot() {
  std::string kids, size;
  for (const int node : nodes_) kids += reference(node) + " ";
  for (const int edge : {report_.width, report_.height}) appendNumber(size += ' ', edge * kPoints);
  file_.object(root_, "<</Type/Pages/Count " + std::to_string(pages_.size()) + "/Kids[" + kids + "]/MediaBox[0 0" +
                          size + "]/Resources<<" + resources() + ">>>>");
}

std::string Writer::resources() {
  std::string fonts;
  for (const Face face : {Face::regular, Face::bold, Face::italic, Face::boldItalic}) {
    const PdfFont* font = contents_.font(face);
    if (font == nullptr || !font->used()) continue;
    const int number = file_.reserve();
    font->write(file_, number);
    fonts += "/F" + std::to_string(static_cast<int>(face)) + " " + reference(number);
  }
  const std::string pictures = pictures_.resources();
  return "/Font<<" + fonts + ">>" + (pictures.empty() ? "" : "/XObject<<" + pictures + ">>");
}

}  // namespace

void writePdf(const PreparedPages& report, const std::string& path) {
  OutputFile out(path);
  Writer(report, out).write();
  out.finish();
}

}  // namespace quillon::reports
