#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace quillon::form {

class App;

// A figure on a page that opens what it is made of; its place in 1/1000 inch from the paper's upper left corner.
struct PageLink {
  std::string text;
  int x = 0, y = 0, width = 0, height = 0;
};

// Prepared pages, as a preview shows them and a printer prints them. 1 is the first page.
class PageSource {
 public:
  virtual ~PageSource() = default;
  virtual int pageCount() const = 0;
  virtual std::string title() const = 0;
  virtual std::string pageText(int page) const = 0;  // in reading order
  virtual std::vector<PageLink> links(int page) const = 0;
  virtual void follow(App& app, int page, std::size_t link) const = 0;
};

// What a page view shows of them.
struct PageView {
  std::shared_ptr<PageSource> pages;  // null: nothing yet
  int page = 1;
  int zoom = 100;          // percent
  std::string found = {};  // marked on the page, in any case
};

}  // namespace quillon::form
