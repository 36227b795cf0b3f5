#pragma once

#include <string>
#include <vector>

#include "form/Screen.h"

namespace quillon::form {

// The conditions of a list, kept from one use to the next. OK sets the list's filter; a screen with nothing filled in
// takes it off.
class FilterScreen : public Screen {
 public:
  // `list` is the class of the list screen.
  FilterScreen(App& app, std::string list) : Screen(app), list_(std::move(list)) {}

  void reset();  // clears every condition
  void btnResetClick();

 protected:
  // The conditions that are filled in, each in parentheses, joined by " AND ".
  virtual std::string expression() const = 0;
  // A condition: cleared by Reset.
  void clears(Variable& variable) { variables_.push_back(&variable); }
  void btnOKClick();
  void btnCancelClick() { setResult(false); }
  // OK, Cancel and Reset.
  Control& buttons(Layout& layout);
  void shown(const Open& open) override;
  void closed() override;

 private:
  std::string list_;
  std::vector<Variable*> variables_;
  std::vector<store::Value> before_;  // what Cancel puts back
  bool clearsJump_ = false;
};

// "All", which is null, and the choices behind it.
ConverterPtr orAllConverter(const Choices& choices);
// Yes, No, All; All is null.
ConverterPtr yesNoAllConverter();
// Joins what is not empty by " AND ".
std::string allOf(std::initializer_list<std::string> conditions);

}  // namespace quillon::form
