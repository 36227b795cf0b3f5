#include "reports/xlsx/Workbook.h"

#include "reports/xlsx/Sheet.h"
#include "reports/xlsx/SheetText.h"
#include "reports/xlsx/ZipFile.h"

namespace quillon::reports {
namespace {

std::string escaped(std::string_view text) {
  std::string out;
  appendSheetText(out, text);
  return out;
}

std::string workbookPart(const Workbook& workbook) {
  const std::string name = sheetName(workbook.title);
  std::string out(kXml);
  out +=
      "<workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
      "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\"><sheets><sheet name=\"" +
      escaped(name) + "\" sheetId=\"1\" r:id=\"rId1\"/></sheets>";
  if (workbook.headerEnd > 0) {
    std::string quoted = "'";
    for (const char c : name) quoted += c == '\'' ? std::string("''") : std::string(1, c);
    out += "<definedNames><definedName name=\"_xlnm.Print_Titles\" localSheetId=\"0\">" + escaped(quoted) + "'!$" +
           std::to_string(workbook.headerBegin) + ":$" + std::to_string(workbook.headerEnd) +
           "</definedName></definedNames>";
  }
  return out + "</workbook>";
}

std::string propertiesPart(const Workbook& workbook) {
  const std::string& at = workbook.moment;  // 20260305120000
  std::string created;
  if (at.size() == 14)
    created = at.substr(0, 4) + "-" + at.substr(4, 2) + "-" + at.substr(6, 2) + "T" + at.substr(8, 2) + ":" +
              at.substr(10, 2) + ":" + at.substr(12, 2) + "Z";
  std::string out(kXml);
  out +=
      "<cp:coreProperties xmlns:cp=\"http://schemas.openxmlformats.org/package/2006/metadata/core-properties\" "
      "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:dcterms=\"http://purl.org/dc/terms/\" "
      "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><dc:title>" +
      escaped(workbook.title) + "</dc:title><dc:creator>" + escaped(workbook.author) + "</dc:creator>";
  if (!created.empty()) out += "<dcterms:created xsi:type=\"dcterms:W3CDTF\">" + created + "</dcterms:created>";
  return out + "</cp:coreProperties>";
}

constexpr std::string_view kTypes =
    "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
    "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
    "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
    "<Override PartName=\"/xl/workbook.xml\" "
    "ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>"
    "<Override PartName=\"/xl/worksheets/sheet1.xml\" "
    "ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml\"/>"
    "<Override PartName=\"/xl/styles.xml\" "
    "ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml\"/>"
    "<Override PartName=\"/docProps/core.xml\" "
    "ContentType=\"application/vnd.openxmlformats-package.core-properties+xml\"/></Types>";
constexpr std::string_view kRelations =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
    "<Relationship Id=\"rId1\" Target=\"xl/workbook.xml\" "
    "Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument\"/>"
    "<Relationship Id=\"rId2\" Target=\"docProps/core.xml\" "
    "Type=\"http://schemas.openxmlformats.org/package/2006/relationships/metadata/core-properties\"/></Relationships>";
constexpr std::string_view kWorkbookRelations =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
    "<Relationship Id=\"rId1\" Target=\"worksheets/sheet1.xml\" "
    "Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet\"/>"
    "<Relationship Id=\"rId2\" Target=\"styles.xml\" "
    "Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles\"/></Relationships>";

std::string withHead(std::string_view xml) { return std::string(kXml) += xml; }

}  // namespace

void beginWorkbook(ZipFile& zip) {
  zip.addPart("[Content_Types].xml", withHead(kTypes));
  zip.addPart("_rels/.rels", withHead(kRelations));
}

void endWorkbook(ZipFile& zip, const Workbook& workbook, const SheetStyles& styles) {
  zip.addPart("xl/workbook.xml", workbookPart(workbook));
  zip.addPart("xl/_rels/workbook.xml.rels", withHead(kWorkbookRelations));
  zip.addPart("xl/styles.xml", styles.part());
  zip.addPart("docProps/core.xml", propertiesPart(workbook));
  zip.finish();
}

}  // namespace quillon::reports
