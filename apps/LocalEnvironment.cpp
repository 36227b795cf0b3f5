#include "apps/LocalEnvironment.h"

#include <unistd.h>

#include "platform/Account.h"

namespace quillon::apps {

LocalEnvironment::LocalEnvironment()
    : environment_{.files = files_,
                   .clock = store::systemClock(),
                   .user = platform::userName(),
                   .machine = platform::machineName(),
                   .process = ::getpid()} {}

}  // namespace quillon::apps
