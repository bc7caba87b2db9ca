#include "command/shell/Reported.h"

#include "command/grammar/UsageError.h"
#include "command/terminal/Message.h"
#include "scrivo/Exception.h"
#include "scrivo/Interrupt.h"
#include "scrivo/Shown.h"

namespace command::shell {

ExitStatus reported(const std::function<ExitStatus()>& work) noexcept {
  try {
    return work();
  } catch (const UsageError& error) {
    terminal::tell(error.what());
    return usage;
  } catch (const scrivo::sigintException&) {
    return scrivo::interruptRequested() ? interrupted : success;
  } catch (const std::exception& error) {
    terminal::tell("rova: " + scrivo::shown(error.what(), scrivo::LineEnds::kept));
    return failure;
  }
}

} // namespace command::shell
