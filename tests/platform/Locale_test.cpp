#include "platform/Locale.h"

#include <gtest/gtest.h>

#include <chrono>

#include "platform/DatePattern.h"
#include "platform/Program.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"
#include "support/TextFile.h"

// The C library keeps the parts of LOCPATH that it took apart; the leak checker is to look past them.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep\n"; }

namespace quillon::platform {
namespace {

using sim::ScopedVariable;

// A user's variables; what is not given is not set.
struct Variables {
  explicit Variables(std::optional<std::string> all, std::optional<std::string> category = {},
                     std::optional<std::string> lang = {}, const char* name = "LC_MONETARY")
      : all_("LC_ALL", all), category_(name, category), lang_("LANG", lang) {}
  ScopedVariable all_, category_, lang_;
};

TEST(Locale, TheCountryIsTheTerritoryOfTheFirstVariableThatIsSet) {
  using Text = std::optional<std::string>;
  const struct {
    Text all, monetary, lang;
    std::string country;
  } cases[] = {
      {"en_US.UTF-8", "en_CA.UTF-8", "de_DE", "United States"},
      {"", "en_CA.UTF-8", "de_DE", "Canada"},
      {{}, {}, "en_GB", "United Kingdom"},
      {{}, {}, "de_AT@euro", "Austria"},
      {{}, "en_ZA.ISO-8859-1", {}, "South Africa"},
      {{}, "en_ZW", {}, "Zimbabwe"},
      {{}, "ps_AF", {}, "Afghanistan"},
      {{}, "pt_TL", {}, "Timor-Leste"},
      {"C", "en_CA", "en_CA", "unknown"},
      {"POSIX", {}, "en_CA", "unknown"},
      {"C.UTF-8", {}, {}, "unknown"},
      {"en", {}, {}, "unknown"},
      {"en_XX", {}, {}, "unknown"},
      {{}, {}, {}, "unknown"},
  };
  for (const auto& c : cases) {
    const Variables variables(c.all, c.monetary, c.lang);
    EXPECT_EQ(countryName(), c.country) << c.all.value_or("-") << ' ' << c.monetary.value_or("-");
  }
}

TEST(Locale, DatePatternsAreNumericAndKeepTheOrderAndTheMarks) {
  const struct {
    const char* format;
    const char* pattern;
  } cases[] = {
      {"%m/%d/%Y", "MM/dd/yyyy"},
      {"%d.%m.%Y", "dd.MM.yyyy"},
      {"%Y-%m-%d", "yyyy-MM-dd"},
      {"%F", "yyyy-MM-dd"},
      {"%D", "MM/dd/yy"},
      {"%-d.%-m.%Y", "d.M.yyyy"},
      {"%e.%m.%Y", "d.MM.yyyy"},
      {"%Y. %m. %d.", "yyyy. MM. dd."},
      {"%d %b %Y", "dd MM yyyy"},
      {"%a %d %B %y", "dd MM yy"},
      {"%Y年%m月%d日", "yyyy/MM/dd"},
      {"%A, %d %B Năm %Y", "dd MM yyyy"},
      {"%Oy/%Om/%Od", "yy/MM/dd"},
      {"%d/%m/%Ey", "dd/MM/yyyy"},
      {"%e.%m.%Y г.", "d.MM.yyyy"},
      {"%d/%m", "MM/dd/yyyy"},
      {"", "MM/dd/yyyy"},
      {"%d%d%m%Y", "MM/dd/yyyy"},
      {"100%%", "MM/dd/yyyy"},
      {"%", "MM/dd/yyyy"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(datePatternOf(c.format), c.pattern) << c.format;
    EXPECT_EQ(parseShortDate(c.pattern[0] == 'y'   ? "2026/3/4"
                             : c.pattern[0] == 'd' ? "4/3/2026"
                                                   : "3/4/2026",
                             ShortDateFormat(datePatternOf(c.format))),
              Date(2026, 3, 4));
  }
  EXPECT_EQ(withNumericParts("ddd dd/MMM/yyyy MMM"), "dd dd/MM/yyyy MMM");
}

// A locale made here, so that the test does not depend on what a machine has installed.
TEST(Locale, TheDataOfTheCLibraryCounts) {
  const sim::TempFolder folder;
  sim::writeFile(folder.path() + "/source",
                 "comment_char %\nescape_char /\nLC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"<U202F>\"\n"
                 "grouping 3;3\nEND LC_NUMERIC\nLC_TIME\nd_fmt \"%e.%m.%Y\"\n"
                 "day \"So\";\"Mo\";\"Di\";\"Mittwoch\";\"Do\";\"Fr\";\"Sa\"\nEND LC_TIME\n");
  const auto made =
      run({"localedef", "-c", "-f", "UTF-8", "-i", folder.path() + "/source", folder.path() + "/xx_CH.UTF-8"},
          std::chrono::seconds(30));
  if (!made || made->status > 1) GTEST_SKIP() << "no localedef with the UTF-8 character map here";
  const ScopedVariable place("LOCPATH", folder.path());
  {
    const Variables variables({}, "xx_CH.UTF-8", "C", "LC_TIME");
    EXPECT_EQ(shortDateFormat().pattern(), "d.MM.yyyy");
    EXPECT_EQ(weekdayName(Date(2026, 3, 4)), "Mittwoch");
    EXPECT_EQ(separators().decimal, ".");
  }
  {
    const Variables variables("xx_CH.UTF-8");
    EXPECT_EQ(separators().decimal, ",");
    EXPECT_EQ(separators().group, "\u202F");
  }
  for (const char* name : {"C", "POSIX", "yy_YY.UTF-8"}) {
    const Variables variables(name);
    EXPECT_EQ(shortDateFormat().pattern(), "MM/dd/yyyy") << name;
    EXPECT_EQ(separators().decimal + separators().group, ".,") << name;
    EXPECT_EQ(weekdayName(Date(2026, 3, 4)), "Wednesday") << name;
  }
}

}  // namespace
}  // namespace quillon::platform
