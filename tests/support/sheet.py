"""The first sheet of a workbook. Fails where the archive or its parts are not sound."""
import decimal
import re
import xml.etree.ElementTree as tree
import zipfile

MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"


class Sheet:
    def __init__(self, path):
        archive = zipfile.ZipFile(path)
        if archive.testzip():
            raise ValueError("a damaged part: " + archive.testzip())
        parts = {name: tree.fromstring(archive.read(name)) for name in archive.namelist()}
        self.workbook, self.styles = parts["xl/workbook.xml"], parts["xl/styles.xml"]
        self.sheet = parts["xl/worksheets/sheet1.xml"]

    def cells(self):
        """Of each its name, whether it is a text, its text and its look."""
        looks = list(self.styles.find(MAIN + "cellXfs"))
        seen = set()
        for cell in self.sheet.iter(MAIN + "c"):
            name, is_text = cell.get("r"), cell.get("t") == "inlineStr"
            if name in seen:
                raise ValueError("two cells " + name)
            seen.add(name)
            value = cell.find(MAIN + "is").find(MAIN + "t").text if is_text else cell.find(MAIN + "v").text
            plain = re.sub("_x([0-9A-Fa-f]{4})_", lambda found: chr(int(found[1], 16)), value or "")
            yield name, is_text, plain, looks[int(cell.get("s"))]

    def rows(self):
        """Its rows: column and text or number of each cell."""
        rows = {}
        for name, is_text, value, _ in self.cells():
            column, row = re.fullmatch("([A-Z]+)([0-9]+)", name).groups()
            rows.setdefault(int(row), {})[column] = value if is_text else decimal.Decimal(value)
        return list(rows.values())
