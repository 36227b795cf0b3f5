#include "shell/SoleUse.h"

#include <algorithm>
#include <array>

#include "form/App.h"
#include "form/Screen.h"
#include "shell/Session.h"
#include "store/Cursor.h"
#include "store/Errors.h"

namespace quillon::shell {
namespace {

constexpr std::array<std::string_view, 3> kMayStay = {"frmQuillon", "frmCalendar", "frmDialer"};

bool formsAreOpen(Session& session, const form::Screen* own) {
  return std::ranges::any_of(session.app().screens(), [own](const auto& screen) {
    return screen->visible() && screen.get() != own && !std::ranges::count(kMayStay, screen->name());
  });
}

// Opens the company's settings exclusively, for a moment. Afterwards they are closed.
void testNobodyElse(store::Cursor& company) {
  company.close();
  company.setExclusive(true);
  try {
    company.open();
  } catch (const store::StoreError& error) {
    company.setExclusive(false);
    company.open();
    if (error.code() == store::Code::tableInUse) throw Error(notAlone());
    throw;
  }
  company.close();
  company.setExclusive(false);
}

void openAgain(Session& session, const std::string& folder) noexcept {
  try {
    try {
      session.attach(folder);
    } catch (const Error& error) {
      session.menusEnabled = false;
      session.person().show(form::Tone::stop,
                            "The company in '" + folder + "' could not be opened again...\r" + error.what(), kTitle);
    }
  } catch (...) {
    // There is nobody left to tell.
  }
}

}  // namespace

std::string notAlone() { return std::string("No one else can be using ") + kTitle; }

SoleUse::SoleUse(Session& session, const form::Screen* own) : session_(session), folder_(session.dataFolder) {
  store::Cursor& company = session.tblCompany();
  // What is typed in a screen of it would be lost.
  if (company.isEditing()) throw Error(kFormsOpen);
  testNobodyElse(company);
  if (formsAreOpen(session, own)) {
    company.open();
    throw Error(kFormsOpen);
  }
  try {
    session.detach();
  } catch (...) {
    openAgain(session, folder_);
    throw;
  }
}

SoleUse::~SoleUse() {
  if (reopens_) openAgain(session_, folder_);
}

}  // namespace quillon::shell
