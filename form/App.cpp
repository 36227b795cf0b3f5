#include "form/App.h"

#include <algorithm>
#include <stdexcept>

#include "base/Text.h"
#include "form/Ending.h"
#include "form/ErrorWords.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"

namespace quillon::form {
namespace {

// A picker leads to a list, that to a record, and that to a picker: each waits for the next on the stack.
constexpr std::size_t kMostModals = 20;

// Stands at the end of the list while it lives, on whatever path it ends.
template <typename T>
class Standing {
 public:
  Standing(std::vector<T>& list, T some) : list_(list) { list_.push_back(some); }
  ~Standing() { list_.pop_back(); }
  Standing(const Standing&) = delete;
  Standing& operator=(const Standing&) = delete;

 private:
  std::vector<T>& list_;
};

}  // namespace

App::App(Person& person, const Registry& registry, Formats formats, std::string title)
    : person_(person), registry_(registry), formats_(std::move(formats)), title_(std::move(title)) {}

// What is being edited is undone; what goes wrong then is told by whoever closes the company before.
App::~App() {
  Ending ending;
  for (auto screen = screens_.rbegin(); screen != screens_.rend(); ++screen)
    if ((*screen)->visible()) ending.step([&] { (*screen)->hide(); });
}

void App::settle() {
  if (database_ == nullptr) return;
  if (database_->inTransaction()) throw std::logic_error("somebody would wait for a person within a transaction");
  database_->settle();
}

void App::setDatabase(store::Database* database) {
  lookUps_.clear();
  database_ = database;
}

store::Database& App::database() const {
  if (database_ == nullptr) throw Error("No company is open");
  return *database_;
}

store::Cursor& App::lookUp(std::string_view table) {
  auto found = lookUps_.find(table);
  if (found == lookUps_.end()) {
    auto cursor = std::make_unique<store::Cursor>(database(), std::string(table));
    found = lookUps_.emplace(std::string(table), std::move(cursor)).first;
  }
  found->second->open();
  return *found->second;
}

void App::refreshLookUps() {
  for (const auto& [table, cursor] : lookUps_)
    if (cursor->isOpen()) cursor->refresh();
}

// Screens.

const ScreenEntry& App::entryOf(std::string_view className) const {
  const ScreenEntry* entry = registry_.find(className);
  if (entry == nullptr) throw Error("There is no screen '" + std::string(className) + "'");
  if (!entry->make) throw Error("This version does not have the screen '" + entry->className + "' yet");
  return *entry;
}

Screen* App::find(std::string_view instanceName) const {
  for (const auto& screen : screens_)
    if (equalFolded(screen->name(), instanceName)) return screen.get();
  return nullptr;
}

Screen& App::make(const ScreenEntry& entry) {
  std::string name = entry.instanceName();
  if (entry.many)
    for (int number = 2; find(name) != nullptr; ++number) name = entry.instanceName() + std::to_string(number);
  else if (Screen* there = find(name))
    return *there;
  std::unique_ptr<Screen> screen = entry.make(*this);
  screen->prepare(entry, name);
  screens_.push_back(std::move(screen));
  return *screens_.back();
}

void App::bring(Screen& screen) {
  const auto found = std::ranges::find(screens_, &screen, &std::unique_ptr<Screen>::get);
  std::rotate(found, found + 1, screens_.end());
}

void App::requireAccess(const ScreenEntry& entry) const {
  if (entry.right.empty() || !checkAccess) return;
  if (!checkAccess(entry.right, entry.displayName.empty() ? entry.right : entry.displayName)) throw Abort();
}

bool App::has(std::string_view className) const {
  const ScreenEntry* entry = registry_.find(className);
  return entry != nullptr && entry->make;
}

Screen& App::open(std::string_view className, const Open& open) {
  const ScreenEntry& entry = entryOf(className);
  requireAccess(entry);
  Screen& screen = make(entry);
  const bool wasVisible = screen.visible();
  try {
    screen.show(open);
  } catch (...) {
    if (!wasVisible) leave(screen);
    throw;
  }
  if (!wasVisible) {
    screen.layer = static_cast<int>(modals_.size());
    if (watcher_) watcher_->opened(screen);
  }
  bring(screen);
  return screen;
}

Result App::runModal(std::string_view className, const Open& open) {
  const ScreenEntry& entry = entryOf(className);
  if (modals_.size() >= kMostModals)
    throw Error("Too many windows are waiting for one another. Please finish with this one first.");
  const Screen* there = entry.many ? nullptr : find(entry.instanceName());
  const bool stays = there != nullptr && there->visible();
  const auto place = std::ranges::find(screens_, there, &std::unique_ptr<Screen>::get) - screens_.begin();
  Screen& screen = this->open(className, open);
  const int before = screen.layer;
  {
    const Standing onTop(modals_, &screen);
    screen.layer = static_cast<int>(modals_.size());
    settle();
    person_.runModal(screen);
  }
  // Screens that were opened meanwhile and stay belong to the layer below from now on.
  for (const auto& other : screens_) other->layer = std::min(other->layer, static_cast<int>(modals_.size()));
  screen.layer = before;
  Result result = screen.result();
  // It was on view before, and is again, where it stood, for whoever is behind the modal run.
  if (stays && !screen.visible()) {
    screen.show({.locate = result.values});
    const auto now = std::ranges::find(screens_, &screen, &std::unique_ptr<Screen>::get);
    std::rotate(std::min(now, screens_.begin() + place), now, now + 1);
    if (watcher_) watcher_->opened(screen);
  }
  if (!screen.visible()) sweep();
  return result;
}

void App::work(Screen& screen, const std::function<bool()>& step) {
  const int before = screen.layer;
  {
    const Standing onTop(modals_, &screen);
    screen.layer = static_cast<int>(modals_.size());
    settle();
    person_.work(screen, step);
  }
  for (const auto& other : screens_) other->layer = std::min(other->layer, static_cast<int>(modals_.size()));
  screen.layer = before;
}

Screen* App::openFromMenu(std::string_view className) {
  const ScreenEntry& entry = entryOf(className);
  if (entry.opening == Opening::modal) {
    runModal(className);
    return nullptr;
  }
  if (entry.opening != Opening::filterFirst) return &open(className);
  requireAccess(entry);
  if (Screen* there = find(entry.instanceName()); there && there->visible() && !close(*there)) return nullptr;
  runModal(entry.filterScreen);
  Screen* result = find(entry.instanceName());
  return result != nullptr && result->visible() ? result : nullptr;
}

bool App::close(Screen& screen) {
  if (!screen.visible()) return true;
  if (!screen.askToClose()) return false;
  leave(screen);
  return true;
}

void App::leave(Screen& screen) {
  if (watcher_ && screen.visible()) watcher_->closing(screen);
  Ending ending;
  ending.step([&] { screen.hide(); });
  std::erase(closing_, &screen);
  if (running_.empty() && modals_.empty()) sweep();
  ending.raise();
}

// Frees what closed, but for what a command or a modal run still stands in.
void App::sweep() {
  if (!running_.empty()) return;
  std::vector<std::unique_ptr<Screen>> gone;
  for (auto screen = screens_.begin(); screen != screens_.end();) {
    const bool done = !(*screen)->visible() && (*screen)->entry().lifetime == Lifetime::freed &&
                      std::ranges::find(modals_, screen->get()) == modals_.end();
    if (done) gone.push_back(std::move(*screen));
    screen = done ? screens_.erase(screen) : screen + 1;
  }
}

Screen* App::active() const {
  for (auto screen = screens_.rbegin(); screen != screens_.rend(); ++screen)
    if ((*screen)->visible() && (*screen)->layer == static_cast<int>(modals_.size())) return screen->get();
  return modal();
}

bool App::isInUse(const Screen& screen) const {
  return std::ranges::find(running_, &screen, &Running::screen) != running_.end() ||
         std::ranges::find(modals_, &screen) != modals_.end();
}

bool App::closeAll() {
  std::vector<Screen*> open;
  for (const auto& screen : screens_)
    if (screen->visible() && screen->entry().ofCompany) open.push_back(screen.get());
  bool all = true;
  for (auto screen = open.rbegin(); screen != open.rend(); ++screen) {
    // The one before may have closed it, and freed it.
    const bool there = std::ranges::find(screens_, *screen, &std::unique_ptr<Screen>::get) != screens_.end();
    if (there) all = !isInUse(**screen) && close(**screen) && all;
  }
  return all;
}

void App::dropScreens() {
  const auto stays = [this](const Screen& screen) { return !screen.entry().ofCompany || isInUse(screen); };
  Ending ending;
  for (auto each = screens_.rbegin(); each != screens_.rend(); ++each) {
    Screen& screen = **each;
    if (stays(screen)) {
      ending.step([&] { screen.closeTables(); });
    } else if (screen.visible()) {
      if (watcher_) watcher_->closing(screen);
      ending.step([&] { screen.hide(); });
    }
  }
  for (auto screen = screens_.end(); screen != screens_.begin();)
    if (!stays(**--screen)) {
      std::erase(closing_, screen->get());
      screen = screens_.erase(screen);
    }
  lookUps_.clear();
  ending.raise();
}

// The guard.

bool App::accepts(const Screen& screen) const {
  const auto layer = static_cast<int>(modals_.size());
  return screen.visible() && screen.layer == layer &&
         std::ranges::find(running_, layer, &Running::layer) == running_.end();
}

Ended App::run(Screen& screen, const std::string& name, const std::function<void()>& action) {
  if (!accepts(screen)) throw Error("'" + name + "' has to wait: something else is running");
  Ended ended{.command = name};
  {
    const Standing running(running_, Running{&screen, static_cast<int>(modals_.size())});
    const Place place = attempt(action, ended);
    attempt([this] { settle(); }, ended);
    person_.hourglass(false);
    if (screen.visible()) attempt([&] { screen.goTo(place); }, ended);
  }
  if (screen.visible() && screen.hasResult()) attempt([&] { leave(screen); }, ended);
  attempt([this] { settleClosing(); }, ended);
  if (watcher_) watcher_->ended(ended);
  if (running_.empty()) sweep();
  return ended;
}

// Tells what goes wrong; gives where the focus goes then.
Place App::attempt(const std::function<void()>& action, Ended& ended) {
  const auto failed = [&](const Error& error) {
    ended.ok = false;
    ended.error = wordsFor(error);
    person_.hourglass(false);
    person_.show(Tone::error, ended.error, title_);
  };
  try {
    action();
  } catch (const SilentStop& stop) {
    ended.ok = false;
    ended.aborted = true;
    return stop.place();
  } catch (const Abort&) {
    ended.ok = false;
    ended.aborted = true;
  } catch (const Refusal& refusal) {
    failed(refusal);
    return refusal.place();
  } catch (const store::StoreError& error) {
    ended.code = error.number();
    failed(error);
  } catch (const Error& error) {
    failed(error);
  }
  return {};
}

void App::settleClosing() {
  while (!closing_.empty()) {
    Screen* screen = closing_.back();
    closing_.pop_back();
    if (screen->visible()) leave(*screen);
  }
}

store::ErrorAnswer App::editError(store::Cursor& cursor, const store::StoreError& error) {
  using store::Code;
  if (error.code() == Code::recordLocked) {
    const bool again = person_.confirm(
        "The '" + cursor.name() +
            "' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would "
            "happen if the record (customer, invoice, etc.) is currently being edited by another person or process.",
        Tone::warning);
    return again ? store::ErrorAnswer::retry : store::ErrorAnswer::abort;
  }
  if (error.code() == Code::recordChanged) {
    person_.show(Tone::warning, "A record you are trying to edit or delete on '" + cursor.name() +
                                    "' has been changed or deleted since last retrieved.\rData will now be refreshed.");
    cursor.refresh();
    return store::ErrorAnswer::abort;
  }
  person_.show(Tone::error, wordsFor(error), title_);
  return store::ErrorAnswer::abort;
}

}  // namespace quillon::form
