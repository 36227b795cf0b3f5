#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "reports/Pages.h"

namespace quillon::sim {

// Pages put together element by element, as no report would have to.
class HandMadePages {
 public:
  reports::PreparedPages pages;

  HandMadePages() {
    pages.reportTitle = "By hand";
    pages.author = "Acme";
    pages.moment = "20260305120000";
    pages.complete = true;
  }
  void newPage() { pages.pages.emplace_back(); }
  reports::Element& add(reports::Part part, reports::Box box, std::string_view text, reports::Style style = {}) {
    reports::Page& page = pages.pages.back();
    reports::Element& element = page.elements.emplace_back();
    element.part = part, element.style = style, element.box = box;
    element.text = static_cast<std::uint32_t>(page.texts.size());
    element.length = static_cast<std::uint32_t>(text.size());
    page.texts += text;
    return element;
  }
  reports::Element& add(reports::Part part, reports::Box box, std::string_view text, store::Value value,
                        reports::Style style = {}) {
    reports::Element& element = add(part, box, text, style);
    element.value = static_cast<std::int32_t>(pages.pages.back().values.size());
    pages.pages.back().values.push_back(std::move(value));
    return element;
  }
  reports::Element& addShape(reports::Element::Kind kind, reports::Box box, std::uint32_t picture = 0) {
    reports::Element& element = add(reports::Part::detail, box, {});
    element.kind = kind;
    element.text = picture;
    return element;
  }
};

}  // namespace quillon::sim
