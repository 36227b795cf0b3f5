#include "apps/ImportCommand.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "apps/GivenLogin.h"
#include "apps/LocalEnvironment.h"
#include "apps/ProgressLine.h"
#include "apps/ValueText.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/Session.h"

namespace quillon::apps {
namespace {

class ImportFile {
 public:
  explicit ImportFile(const std::string& path) : path_(path) {
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown)) throw Error("cannot read " + path + ": it is a folder");
    errno = 0;
    in_.open(path, std::ios::binary);
    if (!in_) throw Error("cannot read " + path + (errno ? std::string(": ") + std::strerror(errno) : ""));
    size_ = std::filesystem::file_size(path, unknown);
    if (unknown) size_ = 0;
  }

  // Without its line end. The row counts from 0, which is the line of names.
  bool next(std::string& line) {
    if (!std::getline(in_, line)) {
      if (in_.bad() || !in_.eof())
        throw Error("cannot read " + path_ + (row_ > 0 ? " behind row " + std::to_string(row_) : ""));
      return false;
    }
    read_ += line.size() + 1;
    if (line.ends_with('\r')) line.pop_back();
    if (++row_ == 0 && line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
    return true;
  }
  std::int64_t row() const { return row_; }
  // Of the file's bytes read so far; 0 where its size is not known, as of a pipe.
  int percent() const { return size_ > 0 ? static_cast<int>(std::min(read_, size_) * 100 / size_) : 0; }
  [[noreturn]] void refuse(const std::string& column, const std::string& reason) const {
    const std::string place = row_ > 0 ? "row " + std::to_string(row_) : "the line of names";
    throw Error(path_ + ", " + place + (column.empty() ? "" : ", column " + column) + ": " + reason);
  }

 private:
  std::string path_;
  std::ifstream in_;
  std::int64_t row_ = -1;
  std::uintmax_t size_ = 0, read_ = 0;
};

class Import {
 public:
  Import(store::Database& database, const std::string& table, ImportFile& file)
      : cursor_(database, table), probe_(database, table), file_(file) {
    for (store::Cursor* cursor : {&cursor_, &probe_}) {
      cursor->setRowOrder();
      cursor->open();
    }
  }

  void run() {
    std::string line;
    if (!file_.next(line)) file_.refuse("", "it is missing");
    readNames(line);
    ProgressLine progress;
    int shown = -1;
    while (file_.next(line)) {
      addRow(line);
      if (const int percent = file_.percent(); percent != shown)
        progress.show(cursor_.definition().name + ' ' + std::to_string(shown = percent) + '%');
    }
  }

 private:
  std::string fieldName(int field) const { return cursor_.definition().fields[static_cast<std::size_t>(field)].name; }

  void readNames(const std::string& line) {
    if (line.empty()) file_.refuse("", "it is empty");
    if (!isValidUtf8(line) || line.find('\0') != std::string::npos)
      file_.refuse("", "it is no text in UTF-8; save the file in that encoding");
    for (const std::string_view cell : cellsOf(line)) {
      const std::string name(cell);
      int field = -1;
      try {
        field = cursor_.definition().fieldIndex(unescaped(cell));
      } catch (const Error& error) {
        file_.refuse(name, error.what());
      }
      if (field < 0) file_.refuse(name, "the table " + cursor_.definition().name + " has no such field");
      if (std::ranges::count(fields_, field)) file_.refuse(name, "it is named twice");
      fields_.push_back(field);
    }
  }

  void addRow(const std::string& line) {
    const auto cells = cellsOf(line);
    if (cells.size() != fields_.size())  // at the first that is missing
      file_.refuse(fieldName(fields_[std::min(cells.size(), fields_.size() - 1)]),
                   std::to_string(cells.size()) + (cells.size() == 1 ? " cell, not " : " cells, not ") +
                       std::to_string(fields_.size()));
    cursor_.insert();
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const store::Field field = cursor_.field(fields_[i]);
      try {
        field = valueOfCell(cells[i], field.definition());
      } catch (const Error& error) {
        file_.refuse(field.definition().name, error.what());
      }
    }
    try {
      cursor_.post();
    } catch (const store::StoreError& error) {
      if (error.code() == store::Code::keyViolation) file_.refuse(repeatedFields(), error.what());
      if (error.code() == store::Code::required) file_.refuse(missingField(), error.what());
      throw;
    }
  }

  // The fields of the unique index in which the table has these values already.
  std::string repeatedFields() {
    for (const store::IndexDef& index : cursor_.definition().indexes) {
      if (!index.unique) continue;
      std::string names;
      std::vector<store::Value> values;
      for (const store::IndexPart& part : index.parts) {
        names += (names.empty() ? "" : ", ") + fieldName(part.field);
        values.push_back(cursor_.field(part.field).value());
      }
      probe_.setIndex(index.name);
      if (probe_.findKey(values)) return names;
    }
    return {};
  }

  std::string missingField() {
    for (const store::FieldDef& field : cursor_.definition().fields)
      if (field.required && field.type != store::FieldType::autoInc && cursor_[field.name].isNull()) return field.name;
    return {};
  }

  store::Cursor cursor_, probe_;
  ImportFile& file_;
  std::vector<int> fields_;  // of each cell
};

}  // namespace

ExitStatus importCommand(Arguments arguments) {
  const GivenLogin login(arguments);
  const Arguments words = login.words();
  if (words.size() != 3) throw UsageError("import takes a folder, a table and a file");
  const std::string table(words[1]);
  ImportFile file{std::string(words[2])};
  const LocalEnvironment environment;
  store::Session session(environment.get());
  store::Database database(session, std::string(words[0]));
  login.requireSecurity(database);
  Import import(database, table, file);
  database.startTransaction({table});
  try {
    import.run();
    database.commit();
  } catch (...) {
    database.rollback();
    throw;
  }
  std::cout << table << ": " << file.row() << (file.row() == 1 ? " row" : " rows") << '\n';
  return ExitStatus::done;
}

}  // namespace quillon::apps
