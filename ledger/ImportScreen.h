#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "form/App.h"
#include "form/Screen.h"

namespace quillon::ledger {

// A dialog that takes the name of a text file and imports it: title, what the file looks like, a status and a progress
// bar. It closes confirmed when the import came to its end, and stays open when that failed.
class ImportScreen : public form::Screen {
 public:
  // `format`: a line of text each.
  ImportScreen(form::App& app, std::string title, std::vector<std::string> format)
      : Screen(app), title_(std::move(title)), format_(std::move(format)) {}
  std::string title() override { return title_; }

 protected:
  virtual void import(const std::string& path) = 0;
  void show(const std::string& status);
  void progress(std::uint64_t done, std::uint64_t total);
  void shown(const form::Open& open) override;

 private:
  void build(form::Layout& layout) override;
  void btnBrowseClick();
  void btnOKClick();
  void btnCancelClick() { setResult(false); }
  void requireFile();

  std::string title_;
  std::vector<std::string> format_;
  form::Variable fileName_;
  std::string status_;
};

}  // namespace quillon::ledger
