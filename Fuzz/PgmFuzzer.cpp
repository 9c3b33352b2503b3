// SPDX-License-Identifier: Apache-2.0
#include "Fuzz/Reader.h"

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const unsigned char* bytes,
                                                                             std::size_t count)
{
    Fuzz::read(bytes, count, {"P2", "P5"});
    return 0;
}
