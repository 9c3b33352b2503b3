// SPDX-License-Identifier: Apache-2.0
#include "Fuzz/Reader.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Common/Exception.h"
#include "Tests/Support/MemoryFile.h"
#include "Tests/Support/ReadEverything.h"

#include <QLoggingCategory>

#include <algorithm>

/// HDF5 loses what it has read of a header that proves to be damaged; nothing of ours stands below it.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libhdf5_serial\n";
}

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerInitialize(int*, char***)
{
    QLoggingCategory::setFilterRules(QStringLiteral("rte.exception=false"));
    return 0;
}

namespace Fuzz
{

void read(const unsigned char* bytes, std::size_t count, std::initializer_list<std::string_view> signatures)
{
    constexpr unsigned long long mostPixelBytes = 1ULL << 26U;
    const std::string_view content(reinterpret_cast<const char*>(bytes), count);
    if (std::none_of(signatures.begin(), signatures.end(),
                     [&](std::string_view signature) { return content.starts_with(signature); })) {
        return;
    }
    const TestSupport::MemoryFile file(content);
    try {
        const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::ImportBuffer(file.path()));
        TestSupport::readEverything(*buffer, mostPixelBytes);
    } catch (const RTE::Exception&) {
        return;
    }
}

} // namespace Fuzz
