#include "reports/Bands.h"

#include <algorithm>
#include <limits>

namespace quillon::reports {

Item& Band::add(Item item) {
  height = std::max(height, item.box.bottom());
  return items.emplace_back(std::move(item));
}

Item& Band::text(Box box, std::string fixed, Style style) {
  return text(
      box, [fixed = std::move(fixed)] { return fixed; }, style);
}

Item& Band::text(Box box, std::function<std::string()> asked, Style style) {
  return add({.box = box, .style = style, .source = [asked = std::move(asked)] { return Cell{asked()}; }});
}

Column& Bands::add(std::string caption, std::string field, int width, form::ConverterPtr format, Align align) {
  Column& column = columns.emplace_back();
  column.caption = std::move(caption);
  column.field = std::move(field);
  column.width = width;
  column.format = std::move(format);
  column.align = align;
  return column;
}

Column& Bands::text(std::string caption, std::string field, int width) {
  return add(std::move(caption), std::move(field), width, form::textConverter(0), Align::left);
}

Column& Bands::date(std::string caption, std::string field, int width) {
  return add(std::move(caption), std::move(field), width, form::dateConverter(formats_), Align::left);
}

Column& Bands::whole(std::string caption, std::string field, int width) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  return add(std::move(caption), std::move(field), width, form::wholeConverter(formats_, -kMost, kMost), Align::right);
}

Column& Bands::money(std::string caption, std::string field, int width) {
  return add(std::move(caption), std::move(field), width, form::moneyConverter(formats_), Align::right);
}

Column& Bands::quantity(std::string caption, std::string field, int width) {
  return add(std::move(caption), std::move(field), width, form::quantityConverter(formats_), Align::right);
}

Column& Bands::shown(std::string caption, int width, std::function<std::string()> text) {
  Column& column = add(std::move(caption), {}, width, form::textConverter(0), Align::left);
  column.value = [text = std::move(text)] { return store::Value(text()); };
  return column;
}

Column& Bands::shownMoney(std::string caption, int width, std::function<store::Value()> amount) {
  Column& column = money(std::move(caption), {}, width);
  column.value = std::move(amount);
  return column;
}

Group& Bands::group(std::function<store::Value()> key, std::function<std::string()> heading) {
  Group& group = groups.emplace_back();
  group.key = std::move(key);
  group.heading = std::move(heading);
  return group;
}

}  // namespace quillon::reports
