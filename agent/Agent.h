// Keeps a database current with the kernel: what is notified is gathered for 100 ms, or up to 5,000
// changes, and written in one transaction.
#pragma once

#include "agent/Options.h"
#include "agent/ServiceManager.h"
#include "agent/Signals.h"
#include "agent/Store.h"
#include "sources/database/Facts.h"
#include "sources/database/Lock.h"
#include "sources/kernel/LiveDevice.h"

namespace agent {

/// A kernel behind which somebody lives: during long dumps `pulse` is called again and again.
class LivingFeed final : public sources::kernel::Feed {
 public:
  LivingFeed(sources::kernel::Feed& feed, std::function<void()> pulse)
      : feed_(feed), pulse_(std::move(pulse)) {}
  void follow(unsigned group) override { feed_.follow(group); }
  sources::kernel::DumpEnd dump(const sources::kernel::Request& request,
                                const sources::kernel::TakeMessage& take,
                                const std::function<bool()>& keepsOn) override {
    return feed_.dump(request, take, [&] {
      pulse_();
      return keepsOn();
    });
  }
  bool drain(const sources::kernel::TakeNotification& take) override { return feed_.drain(take); }

 private:
  sources::kernel::Feed& feed_;
  const std::function<void()> pulse_;
};

/// Whether the process is in the network namespace of that name.
bool isIn(const std::string& netns);

class Agent {
 public:
  /// For the network namespace that the process is in. Raises `SourceError`.
  Agent(const Options& options, const Rights& rights, ServiceManager& manager);

  /// Until a signal ends it. Raises `SourceError` when the kernel refuses at first, and when the
  /// namespace is gone.
  void run();
  /// Writes the state once.
  void runOnce();

 private:
  void begin();
  void step();
  Time nextEvent() const;
  void wait(Time until);
  void heedSignals();
  void listen();

  void load(const std::string& reason);
  bool read(const std::string& reason);
  void resynchronise(const std::string& reason);
  void writeBatch();
  bool writeChanges();
  bool writeAll();
  void settle();
  bool isDue(Time now) const;
  std::optional<std::string> reasonToRead(Time now) const;

  bool tellAlive(Time now);
  void beat();
  void pulse() noexcept;
  void requireNamespace() const;
  void end();

  const Options options_;
  ServiceManager& manager_;
  Signals signals_;
  Store store_;
  sources::kernel::KernelFeed kernel_;
  LivingFeed feed_;
  sources::kernel::Follower follower_;
  sources::kernel::LiveDevice device_;
  sources::database::Facts facts_;

  sources::kernel::Heard heard_;  ///< and not yet written
  std::optional<Time> batchEnds_; ///< nothing while nothing was heard
  bool behind_ = true;            ///< the database may lack what was heard before
  std::string asked_;             ///< why all is to be read anew; empty for no reason
  std::string doubt_;             ///< why tables are not known to be whole
  std::string refusal_;           ///< what the kernel said to the last reading; empty for nothing
  Backoff rereads_;
  Time rereadAt_{}, beatAt_{}, pulseAt_{};
  int ended_ = 0; ///< the signal that ends it
  bool knowsFecs_ = false;
  std::uint64_t rows_ = 0; ///< that the last writing of all changed
};

} // namespace agent
