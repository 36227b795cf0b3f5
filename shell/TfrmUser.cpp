// One user: the name and password to log in with, and the rights.
#include "form/RecordScreen.h"
#include "shell/MakeScreens.h"
#include "shell/Rights.h"
#include "shell/Session.h"
#include "store/Errors.h"

namespace quillon::shell {
namespace {

using form::Control;
using form::focus;
using form::refuse;

class TfrmUser final : public form::RecordScreen {
 public:
  explicit TfrmUser(Session& session);
  std::string title() override { return isNew() ? "New User" : "User"; }

 private:
  void build(form::Layout& layout) override;
  void recordShown(const form::Open& open) override;
  void tblUsersNewRecord();
  void tblUsersBeforePost();
  void save() override;
  void give(const RightGroup& group, bool all);
  Control& told(form::Layout& l, const RightGroup& group);

  Session& session_;
  std::string storedName_;  // empty: of a new user
  form::Table tblUsers{*this, "Users"};
};

TfrmUser::TfrmUser(Session& session)
    : RecordScreen(session.app(),
                   {.key = "UserName", .list = {}, .keyViolation = "User already exists", .keyFocus = "UserName"}),
      session_(session) {
  tblUsers.events.onNewRecord = [this] { tblUsersNewRecord(); };
  tblUsers.events.beforePost = [this] { tblUsersBeforePost(); };
}

void TfrmUser::build(form::Layout& l) {
  l.field("&User Name:", tblUsers["UserName"]);
  l.field("Pass&word:", tblUsers["Password"], form::secretConverter(30)).secret();
  std::vector<Control*> pages;
  const std::span<const RightGroup> groups = rightGroups();
  for (std::size_t i = 0; i < groups.size();) {
    const std::string page = groups[i].page;
    std::vector<Control*> held;
    for (; i < groups.size() && groups[i].page == page; ++i) held.push_back(&told(l, groups[i]));
    pages.push_back(held.size() == 1 ? &held.front()->caption(page) : &l.group(page, l.rowOf(held)));
  }
  l.pagesOf(pages).named("pagAll");
  l.row(l.button("btnOK", "OK", &TfrmUser::btnOKClick).saves().standard(),
        l.button("btnCancel", "Cancel", &TfrmUser::btnCancelClick).abandons());
}

Control& TfrmUser::told(form::Layout& l, const RightGroup& group) {
  std::vector<Control*> checks;
  for (const Right& right : allRights())
    if (right.group == std::string_view(group.name)) checks.push_back(&l.check(right.caption, tblUsers[right.field]));
  const std::string name = std::string("btn") + group.name;
  checks.push_back(&l.row(l.button(name + "All", "All", [this, &group] { give(group, true); }),
                          l.button(name + "None", "None", [this, &group] { give(group, false); })));
  return l.groupOf(group.caption, checks);
}

void TfrmUser::give(const RightGroup& group, bool all) {
  tblUsers.edit();
  if (!tblUsers.isEditing()) form::abort();
  for (const Right& right : allRights())
    if (right.group == std::string_view(group.name)) tblUsers[right.field] = all;
}

void TfrmUser::recordShown(const form::Open& /*open*/) { storedName_ = isNew() ? "" : tblUsers["UserName"].asText(); }

void TfrmUser::tblUsersNewRecord() {
  for (const Right& right : allRights()) tblUsers[right.field] = false;
}

// Somebody without a name would pass every check.
void TfrmUser::tblUsersBeforePost() {
  if (tblUsers["UserName"].asText().empty()) refuse("Field 'User Name' must have a value", focus("UserName"));
}

// Whoever gives themselves another name goes on under it. The list stands on the user then, and has the focus. It may
// be closed already, and its owner may have lost the right to open it.
void TfrmUser::save() {
  RecordScreen::save();
  const std::string name = tblUsers["UserName"].asText();
  if (!storedName_.empty() && storedName_ == session_.currentUser) session_.currentUser = name;
  storedName_ = name;
  form::Screen* list = app().find("frmUsers");
  if (!savedOnce() || list == nullptr || !list->visible()) return;
  try {
    session_.tblUsers().refresh();
    session_.tblUsers().locate("UserName", {tblUsers.value("UserName")});
  } catch (const store::StoreError&) {
    // The user is saved.
  }
  app().bring(*list);
}

}  // namespace

ScreenPtr makeUser(Session& session) { return std::make_unique<TfrmUser>(session); }

}  // namespace quillon::shell
