#include "command/shell/Reported.h"

#include "command/grammar/UsageError.h"
#include "scrivo/Exception.h"
#include "scrivo/Interrupt.h"
#include "scrivo/Shown.h"

#include <cstdio>

namespace command::shell {

ExitStatus reported(const std::function<ExitStatus()>& work) noexcept {
  try {
    return work();
  } catch (const UsageError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return usage;
  } catch (const scrivo::sigintException&) {
    return scrivo::interruptRequested() ? interrupted : success;
  } catch (const std::exception& error) {
    const auto message = scrivo::shown(error.what(), scrivo::LineEnds::kept);
    std::fprintf(stderr, "rova: %s\n", message.c_str());
    return failure;
  }
}

} // namespace command::shell
