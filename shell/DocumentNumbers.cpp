#include "shell/DocumentNumbers.h"

#include <algorithm>
#include <cstdint>

#include "form/App.h"
#include "form/ControlRow.h"
#include "form/ErrorWords.h"
#include "store/Cursor.h"
#include "store/Errors.h"

namespace quillon::shell {
namespace {

constexpr int kFirst = 1;       // of each family
constexpr int kAttempts = 150;  // 10 ms apart: as long as any lock is waited for

struct Told {
  const char *table, *field, *caption;
};
constexpr Told kNumbers[] = {{"ARInvCtl", "NextInvoiceNo", "Next invoice no.:"},
                             {"ARInvCtl", "NextOrderNo", "Next sales order no.:"},
                             {"ItemCtl", "NextPurchaseOrderNo", "Next purchase order no.:"},
                             {"ItemCtl", "NextInvReceiptNo", "Next inventory receipt no.:"},
                             {"ItemCtl", "NextMfgOrderNo", "Next mfg order no.:"},
                             {"ItemCtl", "NextMfgReceiptNo", "Next mfg receipt no.:"}};

}  // namespace

DocumentNumbers::DocumentNumbers(form::App& app) : app_(app) {
  for (const Told& told : kNumbers) {
    Number& number = numbers_.emplace_back(Number{.table = told.table, .field = told.field});
    number.now.change = [&number](const store::Value&) { number.typed = true; };
  }
}

form::Control& DocumentNumbers::told(form::Layout& l) {
  const form::ConverterPtr whole = form::wholeConverter(app_.formats(), 0, INT32_MAX);
  std::vector<form::Control*> fields;
  for (std::size_t i = 0; i < numbers_.size(); ++i) {
    Number& number = numbers_[i];
    fields.push_back(&l.edit(number.control(), kNumbers[i].caption, number.now, whole)
                          .wide(10)
                          .hint([&number] { return number.fault; })
                          .enabledWhen([&number] { return number.fault.empty(); }));
  }
  return l.groupOf("Numbers", fields);
}

void DocumentNumbers::read() {
  for (Number& number : numbers_) {
    number.fault.clear();
    number.before = {};
    try {
      store::Cursor row(app_.database(), number.table);
      row.open();
      if (row.isEmpty()) throw Error("Table '" + number.table + "' has lost its row.");
      number.before = row.value(number.field);
    } catch (const Error& error) {
      number.fault = error.what();
    }
    // What no document has needed yet waits below the first number of its family.
    const bool waits = number.fault.empty() && number.before.asInt() < kFirst;
    number.now.value = waits ? store::Value(kFirst) : number.before;
    number.typed = false;
  }
}

bool DocumentNumbers::changed() const { return std::ranges::any_of(numbers_, &Number::changed); }

void DocumentNumbers::requireNoZero() const {
  for (const Number& number : numbers_)
    if (number.fault.empty() && number.now.value.asInt() == 0)
      form::refuse("Next number cannot be zero", form::focus(number.control()));
}

void DocumentNumbers::write() {
  for (Number& number : numbers_) {
    if (!number.changed()) continue;
    try {
      form::takeNumbers(app_, {.table = number.table, .attempts = kAttempts},
                        [&](store::Cursor& row) { row[number.field] = number.now.value; });
    } catch (const store::StoreError& error) {
      form::refuse(form::wordsFor(error), form::focus(number.control()));
    }
    number.before = number.now.value;
  }
}

}  // namespace quillon::shell
