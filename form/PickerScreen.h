#pragma once

#include <string>
#include <vector>

#include "form/Screen.h"
#include "form/Table.h"

namespace quillon::form {

// Finds one row of its first table by a code or a name and gives its key.
//
// Asked for with the values "key" (the row to begin on; null or a row that is gone: the first), "text" (typed already)
// and "index" (the order to begin with), and a filter. Confirmed, its result has the value "key".
class PickerScreen : public Screen {
 public:
  PickerScreen(App& app, std::string title, std::string key)
      : Screen(app), standardTitle_(std::move(title)), key_(std::move(key)) {}
  std::string title() override { return title_.empty() ? standardTitle_ : title_; }

 protected:
  // A box that finds: each key sorts by its index and moves to the first row not before the text. The arrows
  // move in the rows.
  struct Box {
    std::string control, index;
    Variable text = {};
    Control* edit = nullptr;
  };
  Table& rows() const { return *tables().front(); }
  Control& findBox(Layout& layout, std::string caption, Box& box);
  Control& pickGrid(Layout& layout, std::vector<std::unique_ptr<Control>> columns);
  Control& buttons(Layout& layout, Control& toList);
  // The list screen behind the picker, to add or change rows; then the picker stands where that one stood.
  void maintain(std::string_view list, const store::Value& level = {});
  const std::string& callersFilter() const { return callersFilter_; }
  // A condition behind that of the caller; empty: none.
  void narrow(const std::string& condition);

  virtual void btnOKClick();
  void btnCancelClick() { setResult(false); }
  void shown(const Open& open) override;

 private:
  void type(Box& box, const std::string& text);
  void applyFilter();

  std::string standardTitle_, key_, title_, callersFilter_, condition_;
  std::vector<Box*> boxes_;
};

}  // namespace quillon::form
