#pragma once

#include <deque>
#include <string>

#include "form/Binding.h"
#include "form/Layout.h"

namespace quillon::shell {

// The next numbers of documents, as a person sees and changes them. They stand in the control tables of the documents'
// families; only those that the person changed are written, so that numbers that others take meanwhile are not undone.
class DocumentNumbers {
 public:
  explicit DocumentNumbers(form::App& app);

  form::Control& told(form::Layout& layout);  // their page
  // As they are now. One whose table cannot be read is disabled, and says why.
  void read();
  bool changed() const;
  // Refuses a zero; one that is stored is shown as the number that the next document gets.
  void requireNoZero() const;
  // Each by itself, at the moment when nobody else takes a number. Refusal at the field of one that cannot be written.
  void write();

 private:
  struct Number {
    std::string table, field;
    form::Variable now = {};
    store::Value before = {};
    bool typed = false;
    std::string fault = {};
    std::string control() const { return "edit" + field; }
    bool changed() const { return typed && now.value != before; }
  };

  form::App& app_;
  std::deque<Number> numbers_;
};

}  // namespace quillon::shell
