#include "shell/SampleVouchers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "base/Rounding.h"

namespace quillon::shell {
namespace {

// How busy the months are, in per cent of an average one.
constexpr std::array<int, 12> kSeason = {80, 86, 97, 104, 111, 105, 92, 88, 106, 114, 121, 96};
// How the foreign currency stands, in thousandths of its usual rate.
constexpr std::array<int, 12> kCourse = {1000, 1004, 1011, 1007, 998, 993, 989, 996, 1003, 1012, 1018, 1009};

constexpr double kYearBefore = 0.985;    // of this year's rates
constexpr int kBusinessYearBefore = 96;  // per cent of this year's

constexpr Money units(std::int64_t whole) { return Money::fromRaw(whole * Money::kScale); }
// Hundredths of a unit.
constexpr Money hundredths(std::int64_t count) { return Money::fromRaw(count * (Money::kScale / 100)); }
std::int64_t countOf(Money amount) { return amount.raw() / (Money::kScale / 100); }
Money percent(Money amount, int rate) { return hundredths((countOf(amount) * rate + 50) / 100); }
Money converted(Money foreign, double rate) { return Money::fromDouble(round2(foreign.toDouble() * rate)); }

class Years {
 public:
  Years(int last, int taxRate, double usualRate)
      : last_(last), year_(last - 1), taxRate_(taxRate), usualRate_(usualRate) {}
  std::vector<SampleVoucher> take();

 private:
  using Lines = std::vector<SampleLine>;

  void open();
  void month();
  void sell(int day, int share);
  void buyMaterials(int day, int about);
  void produce();
  void pay(int day);
  void payBills();
  void collect();
  void depreciate();
  void accrue();
  void tradeAbroad();
  void revalue();
  void payExpenses();
  void eachQuarter();
  void eachYear();

  // Adds a voucher; the line that balances it is booked to `against`.
  void book(int day, const char* description, Lines lines, const char* against, bool autoReverse = false);
  // Around so many units in an average month, to the hundredth and a little different each time.
  Money about(int average);
  Money tax(Money net) const { return percent(net, taxRate_); }
  double rate() const { return sampleRate(usualRate_, month_, year_ < last_); }
  int lastDay() const { return static_cast<int>(Date(year_, static_cast<unsigned>(month_), 1).lastOfMonth().day()); }
  Money balance(const char* account) const {
    const auto found = balances_.find(account);
    return found == balances_.end() ? Money() : found->second;
  }

  int last_, year_, taxRate_, month_ = 1, turn_ = 0;
  double usualRate_;
  std::vector<SampleVoucher> vouchers_;
  std::map<std::string, Money> balances_;    // without what is reversed
  Money sold_, soldAbroad_, bought_, made_;  // in this month: without tax, with tax, cost of wages in the workshop
  Money owing_ = units(52000), owed_ = units(24600);  // by customers and to vendors, of the month before
};

void Years::book(int day, const char* description, Lines lines, const char* against, bool autoReverse) {
  std::erase_if(lines, [](const SampleLine& line) { return line.amount == Money(); });
  Money rest;
  for (const SampleLine& line : lines) rest -= line.amount;
  if (rest != Money()) lines.push_back({.account = against, .amount = rest});
  if (lines.empty()) return;
  if (!autoReverse)
    for (const SampleLine& line : lines) balances_[line.account] += line.amount;
  vouchers_.push_back({Date(year_, static_cast<unsigned>(month_), static_cast<unsigned>(day)), description, autoReverse,
                       std::move(lines)});
}

Money Years::about(int average) {
  ++turn_;
  const int odd = (turn_ * 3719 + month_ * 517) % 9973;  // differs from turn to turn
  const Money amount = hundredths(static_cast<std::int64_t>(average) * kSeason[static_cast<std::size_t>(month_ - 1)] +
                                  odd * average / 9000);
  return year_ < last_ ? percent(amount, kBusinessYearBefore) : amount;
}

void Years::open() {
  book(1, "Opening balances",
       {{.account = "1000", .amount = units(300)},
        {.account = kHomeBank, .amount = units(48500)},
        {.account = "1100", .amount = owing_},
        {.account = "1200", .amount = units(19800)},
        {.account = "1220", .amount = units(31400)},
        {.account = "1500", .amount = units(14500)},
        {.account = "1510", .amount = units(-5200)},
        {.account = "1520", .amount = units(36000)},
        {.account = "1530", .amount = units(-14800)},
        {.account = "1540", .amount = units(88000)},
        {.account = "1550", .amount = units(-31500)},
        {.account = "2000", .amount = -owed_},
        {.account = "2100", .amount = taxRate_ > 0 ? units(-3900) : Money()},
        {.account = "2200", .amount = units(-5300)},
        {.account = "2500", .amount = units(-60000)},
        {.account = "3000", .amount = units(-80000)}},
       "3900");
}

void Years::sell(int day, int share) {
  const Money ofTables = about(405 * share), ofChairs = about(260 * share), net = ofTables + ofChairs;
  sold_ += net;
  book(day, "Sales on account",
       {{.account = "1100", .amount = net + tax(net)},
        {.account = "4000", .department = showroom, .product = tables, .amount = -ofTables},
        {.account = "4000", .department = showroom, .product = chairs, .amount = -ofChairs}},
       "2100");
}

void Years::buyMaterials(int day, int average) {
  const Money net = about(average);
  bought_ += net + tax(net);
  book(day, "Timber, fittings and varnish",
       {{.account = "1200", .amount = net}, {.account = "2100", .amount = tax(net)}}, "2000");
}

// The workshop's output at its cost, and what of it was sold.
void Years::produce() {
  const Money used = percent(balance("1200"), 54), applied = percent(made_, 122);
  book(lastDay(), "Production of the month",
       {{.account = "1220", .amount = used + applied}, {.account = "1200", .amount = -used}}, "5500");
  book(lastDay(), "Cost of sales", {{.account = "5000", .amount = percent(sold_ + soldAbroad_, 59)}}, "1220");
}

void Years::pay(int day) {
  const Money inWorkshop = about(6200), inOffice = units(3100), inShowroom = units(2400);
  const Money gross = inWorkshop + inOffice + inShowroom, employer = percent(gross, 7);
  made_ += inWorkshop;
  book(day, "Payroll",
       {{.account = "5300", .department = workshop, .amount = inWorkshop},
        {.account = "6000", .department = office, .amount = inOffice},
        {.account = "6000", .department = showroom, .amount = inShowroom},
        {.account = "6050", .department = office, .amount = employer},
        {.account = "2200", .amount = -(percent(gross, 22) + employer)}},
       kHomeBank);
}

void Years::payBills() {
  const Money power = about(620), calls = hundredths(24000 + month_ * 37 % 11 * 125);
  book(20, "Electricity, heat and water",
       {{.account = "6150", .department = workshop, .amount = percent(power, 70)},
        {.account = "6150", .department = showroom, .amount = power - percent(power, 70)},
        {.account = "2100", .amount = tax(power)}},
       kHomeBank);
  book(22, "Telephone and internet",
       {{.account = "6200", .department = office, .amount = calls}, {.account = "2100", .amount = tax(calls)}},
       kHomeBank);
  book(28, "Payments to vendors",
       {{.account = "2000", .amount = owed_}, {.account = "5100", .amount = -percent(owed_, 1)}}, kHomeBank);
  book(lastDay(), "Bank charges", {{.account = "6700", .department = office, .amount = hundredths(3850)}}, kHomeBank);
}

void Years::collect() {
  const Money early = percent(owing_, 60), late = percent(owing_, 39);
  book(8, "Receipts from customers",
       {{.account = "1100", .amount = -early}, {.account = "4200", .amount = percent(early, 1)}}, kHomeBank);
  book(24, "Receipts from customers", {{.account = "1100", .amount = -late}}, kHomeBank);
}

void Years::depreciate() {
  book(lastDay(), "Depreciation",
       {{.account = "5430", .department = workshop, .amount = units(950)},
        {.account = "6850", .department = office, .amount = units(600)},
        {.account = "1550", .amount = units(-950)},
        {.account = "1530", .amount = units(-420)}},
       "1510");
  book(lastDay(), "Insurance of the month", {{.account = "6300", .department = office, .amount = units(600)}}, "1300");
}

void Years::accrue() {
  const Money power = about(310), commission = percent(sold_ + soldAbroad_, 1);
  book(lastDay(), "Accrued electricity and commissions",
       {{.account = "6150", .department = workshop, .amount = power},
        {.account = "6000", .department = showroom, .amount = commission},
        {.account = "2300", .amount = -power}},
       "2250", true);
}

// Accounts in foreign currency hold foreign units; the other side is in home units, and what is between them goes to
// the gain or loss on exchange.
void Years::tradeAbroad() {
  // The like of 8,200 home units, in round foreign ones.
  const Money supply = units(std::max(1L, std::lround(82 / usualRate_)) * 100);
  soldAbroad_ = {};
  if (month_ % 3 == 1) {
    const Money sum = percent(supply, 40), sale = percent(supply, 58 + 2 * month_);
    book(3, "Transfer to the foreign account",
         {{.account = kForeignBank, .amount = sum}, {.account = kHomeBank, .amount = -converted(sum, rate())}}, "7000");
    soldAbroad_ = converted(sale, rate());
    book(14, "Sale abroad",
         {{.account = kForeignReceivable, .amount = sale},
          {.account = "4000", .department = showroom, .product = tables, .amount = -soldAbroad_}},
         "7000");
  }
  if (month_ % 3 == 2) {
    const Money foreign = percent(supply, 75 + month_);
    book(10, "Hardware from abroad",
         {{.account = "1200", .amount = converted(foreign, rate())}, {.account = kForeignPayable, .amount = -foreign}},
         "7000");
  }
  if (month_ % 3 != 0) return;
  book(7, "Receipt from abroad", {{.account = kForeignReceivable, .amount = -balance(kForeignReceivable)}},
       kForeignBank);
  book(9, "Payment abroad", {{.account = kForeignPayable, .amount = -balance(kForeignPayable)}}, kForeignBank);
}

// At the end of a month they are brought to home units, until the next day.
void Years::revalue() {
  Lines lines;
  for (const char* account : {kForeignBank, kForeignReceivable, kForeignPayable})
    lines.push_back({.account = account, .amount = converted(balance(account), rate()) - balance(account)});
  book(lastDay(), "Revaluation of foreign currency", std::move(lines), "7000", true);
}

void Years::payExpenses() {
  const Money fuel = about(380), supplies = about(350), stationery = about(95), carriage = about(640);
  const auto bill = [this](int day, const char* description, SampleLine line) {
    const Money net = line.amount;
    book(day, description, {std::move(line), {.account = "2100", .amount = tax(net)}}, kHomeBank);
  };
  bill(6, "Fuel and care of the van", {.account = "6400", .department = showroom, .amount = fuel});
  bill(11, "Blades, sandpaper and glue", {.account = "5400", .department = workshop, .amount = supplies});
  bill(17, "Paper and postage", {.account = "6250", .department = office, .amount = stationery});
  bill(23, "Carriers", {.account = "6650", .department = showroom, .amount = carriage});
  if (month_ % 4 == 2)
    bill(18, "Service of the machines", {.account = "5420", .department = workshop, .amount = about(540)});
}

void Years::eachQuarter() {
  if (month_ % 3 == 1) {
    book(15, "Income tax of the quarter", {{.account = "2400", .amount = -balance("2400")}}, kHomeBank);
    book(25, "Tax on sales of the quarter", {{.account = "2100", .amount = -balance("2100")}}, kHomeBank);
  }
  if (month_ % 3 != 0) return;
  const Money fee = units(year_ < last_ ? 1100 : 1200);
  book(21, "Accountant",
       {{.account = "6550", .department = office, .amount = fee}, {.account = "2100", .amount = tax(fee)}}, kHomeBank);
  book(lastDay(), "Income tax of the quarter", {{.account = "7900", .amount = units(year_ < last_ ? 2700 : 3300)}},
       "2400");
  const Money interest = percent(-balance("2500"), 2);
  book(27, "Bank loan",
       {{.account = "2500", .amount = units(2500)}, {.account = "6750", .department = office, .amount = interest}},
       kHomeBank);
  book(27, "Advertising", {{.account = "6450", .department = showroom, .amount = about(900)}}, kHomeBank);
  book(28, "Owners' drawings", {{.account = "3100", .amount = units(9000)}}, kHomeBank);
}

void Years::eachYear() {
  if (month_ == 1) book(2, "Drawings of the year before", {{.account = "3100", .amount = -balance("3100")}}, "3000");
  if (month_ == 1) book(4, "Insurance for the year", {{.account = "1300", .amount = units(7200)}}, kHomeBank);
  if (month_ == 10) {
    const Money back = about(420);
    book(16, "Chairs sent back",
         {{.account = "4100", .department = showroom, .product = chairs, .amount = back},
          {.account = "2100", .amount = tax(back)}},
         "1100");
  }
  if (month_ == 11)
    book(lastDay(), "Doubtful accounts", {{.account = "6800", .department = office, .amount = units(650)}}, "1150");
  if (month_ == 6 && year_ == last_)
    book(11, "Edge-banding machine",
         {{.account = "1540", .amount = units(18000)}, {.account = "2100", .amount = tax(units(18000))}}, kHomeBank);
}

void Years::month() {
  sold_ = bought_ = made_ = {};
  book(1, "Rent",
       {{.account = "5410", .department = workshop, .amount = units(2600)},
        {.account = "6100", .department = showroom, .amount = units(1400)}},
       kHomeBank);
  eachYear();
  // Before the first tax of the month's own sales.
  eachQuarter();
  book(15, "Payroll deductions", {{.account = "2200", .amount = -balance("2200")}}, kHomeBank);
  tradeAbroad();
  buyMaterials(5, 14200);
  buyMaterials(19, 8800);
  collect();
  sell(12, 54);
  sell(26, 46);
  pay(15);
  pay(lastDay());
  payBills();
  payExpenses();
  produce();
  depreciate();
  accrue();
  revalue();
  owing_ = sold_ + tax(sold_);
  owed_ = bought_;
}

std::vector<SampleVoucher> Years::take() {
  open();
  for (; year_ <= last_; ++year_)
    for (month_ = 1; month_ <= 12; ++month_) month();
  std::ranges::stable_sort(vouchers_, {}, &SampleVoucher::date);
  return std::move(vouchers_);
}

}  // namespace

double sampleRate(double usual, int month, bool yearBefore) {
  return round6((yearBefore ? usual * kYearBefore : usual) * kCourse.at(static_cast<std::size_t>(month - 1)) / 1000);
}

std::vector<SampleVoucher> sampleVouchers(int year, int taxRate, double usualRate) {
  return Years(year, taxRate, usualRate).take();
}

}  // namespace quillon::shell
