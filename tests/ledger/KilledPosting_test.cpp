// A posting whose process dies has happened wholly or not at all, whoever else posts, unposts and enters meanwhile.
//
// Method: processes work on a real folder, with real locks: two post, one unposts, one enters vouchers through the
// screen. All are killed at a random moment after the first one's run began. Another process then looks: the files are
// sound, the audit finds nothing but interrupted entry, and of the vouchers that waited all are posted or none is. The
// parent never opens the folder itself.
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <iostream>
#include <thread>

#include "store/Database.h"
#include "store/Verify.h"
#include "store/vfs/DiskFileSystem.h"
#include "support/ChildProcess.h"
#include "support/PostedBooks.h"
#include "support/TempFolder.h"
#include "support/Trials.h"

namespace quillon::ledger {
namespace {

using Clock = std::chrono::steady_clock;
using Ids = std::set<int>;

constexpr std::uint32_t kBegins = 1, kWaits = 2, kPosted = 3, kWrong = 4;

sim::ChildMessage told(std::uint32_t kind, std::int64_t number, const std::string& words = {}) {
  sim::ChildMessage message;
  message.kind = kind;
  message.number = number;
  message.setText(words);
  return message;
}

class KilledPosting : public testing::Test {
 protected:
  using Work = std::function<void(sim::Clerk& clerk, const sim::ChildPipe& pipe)>;

  // A process with a clerk who gives up whenever somebody is in the way.
  std::unique_ptr<sim::ChildProcess> start(const Work& work) {
    return std::make_unique<sim::ChildProcess>([&](const sim::ChildPipe& pipe) {
      store::DiskFileSystem files;
      sim::Clerk clerk(files, store::systemClock(), folder_.path(), desktop_, ::getpid());
      clerk.person.answers.assign(1000, form::Button::cancel);
      work(clerk, pipe);
    });
  }
  void take(const sim::ChildMessage& message) {
    if (message.kind == kWaits) waiting_.insert(static_cast<int>(message.number));
    if (message.kind == kPosted) posted_.push_back(static_cast<int>(message.number));
    if (message.kind == kWrong || message.kind == sim::ChildProcess::kFailed)
      wrong_ += std::string(message.text) + "\n";
  }
  void finish(const Work& work) {
    const auto child = start(work);
    if (!child->finish([this](const auto& message) { take(message); })) wrong_ += "it did not end well\n";
  }
  void make() {
    sim::ChildProcess maker([this](const sim::ChildPipe&) {
      store::DiskFileSystem files;
      store::Session session({files, store::systemClock(), "MAKER", "PC", ::getpid()});
      store::Database database(session, folder_.path());
      sim::makeBooks(database);
    });
    ASSERT_TRUE(maker.finish([this](const auto& message) { take(message); })) << wrong_;
  }
  // More vouchers to post.
  void write(std::uint64_t seed) {
    finish([seed](sim::Clerk& clerk, const sim::ChildPipe&) {
      sim::SeededRandom random(seed);
      store::Cursor control(clerk.database(), "JVCtl");
      control.open();
      form::transact(clerk.database(), {"JV", "JVDet", "JVCtl"}, [&] {
        VoucherWriter writer(control);
        for (std::size_t count = 20 + random.below(60); count > 0; --count) {
          const int id = writer.write(sim::randomVoucher(random, 2025));
          if (random.oneIn(3))
            sim::runOn(clerk.database(), "UPDATE JV SET AutoReverse = true WHERE JVID = " + std::to_string(id));
        }
      });
    });
  }
  void look() {
    waiting_.clear();
    posted_.clear();
    finish([this](sim::Clerk& clerk, const sim::ChildPipe& pipe) {
      store::DiskFileSystem files;
      const auto report = store::verifyFolder({files, store::systemClock(), "LOOK", "PC", ::getpid()}, folder_.path());
      for (const store::Finding& finding : report.findings) pipe.tell(told(kWrong, 0, finding.table + finding.text));
      for (const Disagreement& one : auditLedger(clerk.database()).wrong)
        pipe.tell(
            told(kWrong, 0, one.table + ", " + one.key + ", " + one.what + ": " + one.stored + ", " + one.derived));
      store::Query vouchers(clerk.database(), "SELECT JVID, Posted FROM JV WHERE Source = 'AR'");
      for (vouchers.open(); !vouchers.eof(); vouchers.next())
        pipe.tell(told(vouchers["Posted"].asBool() ? kPosted : kWaits, vouchers["JVID"].asInt()));
    });
  }
  static void post(sim::Clerk& clerk, const sim::ChildPipe& pipe) {
    clerk.person.modals.push_back([&](form::Screen& screen) {
      pipe.tell(told(kBegins, 0));
      form::Input(clerk.session.app()).click(screen, *screen.find("btnOK"));
    });
    clerk.session.app().runModal("TfrmJVsPost");
  }
  static void enter(sim::Clerk& clerk, const sim::ChildPipe&) {
    form::Input input(clerk.session.app());
    form::Screen& screen = clerk.session.app().open("TfrmJV", {.newRow = true});
    while (true) {
      for (const std::uint64_t line : {0u, 1u}) {
        input.click(screen, *screen.find("btnNew"));
        input.setCell(screen, *screen.find("grdJVDet"), line, "GLAccount", std::to_string(1 + line));
        input.setCell(screen, *screen.find("grdJVDet"), line, "GLAmount", line == 0 ? "5" : "-5");
      }
      input.click(screen, *screen.find("btnOKNew"));
    }
  }
  // Until the first of them has begun its run and `moment` has passed. How long its run took when it came to an end.
  Clock::duration work(sim::SeededRandom& random, Clock::duration moment) {
    std::vector<std::unique_ptr<sim::ChildProcess>> others;
    if (random.oneIn(2)) others.push_back(start(enter));
    if (const auto posted = posted_; !posted.empty() && random.oneIn(2))
      others.push_back(
          start([id = posted[random.below(posted.size())]](sim::Clerk& clerk, const auto&) { clerk.unpost(id); }));
    if (random.oneIn(2)) others.push_back(start(post));
    const auto poster = start(post);
    bool begun = false;
    Clock::time_point from, now;
    pollfd end{poster->descriptor(), POLLIN, 0};
    const auto hear = [&](const sim::ChildMessage& message) {
      if (message.kind == kBegins) begun = true, from = Clock::now();
      take(message);
    };
    for (bool runs = true; runs && !begun;) ::poll(&end, 1, 1000), runs = poster->drain(hear);
    do {
      now = Clock::now();
      if (now - from >= moment) break;
      std::this_thread::sleep_for(std::chrono::microseconds(50));
    } while (poster->drain(hear));
    poster->kill(hear);
    for (const auto& other : others) other->kill([](const auto&) {});
    return now - from;
  }

  sim::TempFolder folder_;
  sim::SimDesktop desktop_;
  Ids waiting_;  // unposted vouchers of the writer
  std::vector<int> posted_;
  std::string wrong_;
};

TEST_F(KilledPosting, IsWholeOrNotAtAll) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(static_cast<std::uint64_t>(::getpid()));
  SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "KilledPosting.*"));
  sim::SeededRandom random(seed);
  make();
  int whole = 0, none = 0;
  Clock::duration usual{};
  const std::uint64_t kills = trials.aim(30, 500);
  for (std::uint64_t kill = 0; kill <= kills; ++kill) {
    if (waiting_.empty()) write(random.next());
    look();
    ASSERT_EQ(wrong_, "") << "kill " << kill;
    const Ids before = waiting_;
    // The first one runs to its end; from then on about as many die before their commit as behind it.
    const Clock::duration took =
        work(random, kill == 0 ? std::chrono::seconds(60) : usual * static_cast<int>(random.below(2000)) / 1000);
    look();
    ASSERT_EQ(wrong_, "") << "kill " << kill;
    const auto left = std::ranges::count_if(before, [this](int id) { return waiting_.contains(id); });
    ASSERT_TRUE(left == 0 || left == static_cast<long>(before.size())) << left << " of " << before.size() << " wait";
    ++(left == 0 ? whole : none);
    usual = kill == 0 ? took : usual * (left == 0 ? 9 : 11) / 10;
  }
  std::cout << "posted wholly " << whole << ", not at all " << none << "\n";
  EXPECT_TRUE(kills < 20 || (whole > 0 && none > 0)) << "the moments miss one of the two";
}

}  // namespace
}  // namespace quillon::ledger
