#pragma once

namespace quillon::bench {

// The most memory that this process had since it was last forgotten, in MiB.
double peakMemory();
void forgetPeak();

}  // namespace quillon::bench
