#pragma once

#include <functional>
#include <string>
#include <vector>

#include "form/App.h"
#include "form/Binding.h"
#include "form/Layout.h"
#include "form/Screen.h"

namespace quillon::reports {

// A report as a launcher offers it.
struct Launched {
  const char* name;    // "Trial Balance"
  const char* report;  // its class
  unsigned options;    // bits of what it asks for
};

// Where a module's reports are run: on the first page they are listed, on the second stands what the chosen one asks
// for; a launcher may put a page between. Stays open after a preview, with its values.
//
// Options that several modules have are here, each with a bit of its own: those of derived classes begin at kOwn.
class LauncherScreen : public form::Screen {
 public:
  static constexpr unsigned kPeriod = 1, kAsOf = 2, kDates = 4, kOwn = 8;

  LauncherScreen(form::App& app, std::string caption, std::vector<Launched> reports);
  std::string title() override { return caption_; }

 protected:
  const Launched& chosen() const;
  bool asks(unsigned option) const { return (chosen().options & option) != 0; }
  // An option of a derived class: it shows while the chosen report has that bit.
  form::Control& option(unsigned bit, form::Control& control);

  // Tells the options of its own, by `option`.
  virtual void buildOptions(form::Layout& /*layout*/) {}
  // A page between the two, and whether the chosen report has it.
  virtual form::Control* buildBetween(form::Layout& /*layout*/) { return nullptr; }
  virtual bool hasBetween() const { return false; }
  virtual void reachBetween() {}
  virtual void leaveBetween() {}  // raises what keeps the person there
  virtual void reachOptions() {}
  // Adds what the derived class asks for; raises what is wrong with it and where.
  virtual void fill(form::Open& /*open*/) {}
  // Called by buildOptions, for the year and the period of kPeriod; a report may ask for a period that must be there.
  virtual bool needsPeriod() const { return false; }

  void shown(const form::Open& open) override;

  form::Variable year_, period_, asOf_, dateFrom_, dateTo_;

 private:
  enum Step { kReports, kOptions, kBetween };

  void build(form::Layout& layout) final;
  void btnBackClick();
  void btnNextClick();
  void turnTo(Step step);
  Step step() const { return static_cast<Step>(steps_->page); }
  void preview();
  void fillPeriod(form::Open& open) const;
  void fillDates(form::Open& open) const;

  std::string caption_;
  std::vector<Launched> reports_;
  form::Variable report_;
  std::vector<form::Control*> options_;
  form::Control* steps_ = nullptr;
};

// "Period: 03/2026" of a year and period, "Period: All 2026" without a period.
std::string periodWords(const store::Value& year, const store::Value& period);

}  // namespace quillon::reports
