#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "form/App.h"

namespace quillon::apps {

// A request that is not done; says what there is instead of what was asked for.
class RequestRefused final : public Error {
 public:
  explicit RequestRefused(const std::string& text, std::vector<std::string> exists = {})
      : Error(text), exists_(std::move(exists)) {}
  const std::vector<std::string>& exists() const { return exists_; }

 private:
  std::vector<std::string> exists_;
};

// A control of an open screen, or a cell of a grid.
struct Target {
  form::Screen* screen = nullptr;
  form::Control* control = nullptr;
  std::optional<std::uint64_t> row = {};  // 0 is the first
  std::string column = {};
};

// The screen that is on view under this name. All of these raise RequestRefused for names that are not there.
form::Screen& screenNamed(const form::App& app, std::string_view name);
// "frmJV.btnOK" or "frmJV.grdJVDet[1].GLAccount". `fits` says which controls are named to those who ask for another.
Target targetNamed(const form::App& app, std::string_view name, const std::function<bool(const form::Control&)>& fits);
// Where the focus of a screen is, in the same form; empty for nowhere.
std::string focusOf(const form::Screen& screen);

// Calls for each entry of a screen's menus with its path, as "&File > &Companies > Acme".
void eachMenuEntry(const form::Control& holder,
                   const std::function<void(const std::string& path, form::Control& entry)>& call,
                   const std::string& path = {});
// Calls for each control in reading order, without columns.
void eachControl(form::Control& holder, const std::function<void(form::Control&)>& call);

}  // namespace quillon::apps
